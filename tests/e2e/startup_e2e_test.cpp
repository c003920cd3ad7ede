// The real program from the outside: start-up with and without options, the wrong-visual exit and the ways of
// quitting.
#include <gtest/gtest.h>

#include <cstdlib>

#include "e2e_support.h"

// Start-up maps exactly one untitled window; the size options reach its status line; out-of-range options are
// reported on stderr and start-up goes on (a bad zoom level becomes 4); in-range values, zoom level 0 (actual size)
// among them, are accepted silently.
TEST(StartupE2e, OptionsAndTheFirstWindow)
{
    struct Case {
        std::vector<std::string> args;
        const char* message;   // null: no "out of range" at all
        int zoom;              // the zoom the 64 x 64 canvas shows at; -1: not looked at
        const char* status;    // the status line shown; null: not looked at
    };
    const Case cases[] = {
        {{}, nullptr, -1, "Width - 64, Height - 64"},
        {{"-width", "32", "-height", "16", "-debug", "1"}, nullptr, -1, "Width - 32, Height - 16"},
        {{"-zoomLevel", "0"}, nullptr, 0, nullptr},   // actual size, as a restart command may ask
        {{"-zoomLevel", "-1"}, "zoomLevel out of range\n", 4, nullptr},
        {{"-zoomLevel", "7"}, "zoomLevel out of range\n", 4, nullptr},
        {{"-zoomLevel", "4"}, "zoomLevel out of range\n", 4, nullptr},
        {{"-zoomLevel", "2"}, nullptr, 2, nullptr},
        {{"-width", "512"}, "drawAreaWidth out of range\n", -1, nullptr},
    };
    for (const Case& c : cases) {
        E2eApp app;
        ASSERT_TRUE(app.start(c.args));
        std::string what = c.args.empty() ? "no options" : c.args[0] + " " + c.args[1];
        Window w = app.wait_window("Untitled");
        ASSERT_NE(w, 0u) << what << ": " << app.stderr_text();
        if (c.zoom >= 0) {
            EXPECT_NE(find_canvas(app.display(), w, 64 << c.zoom, 64 << c.zoom), 0u) << what;
        }
        EXPECT_EQ(app.stderr_text().find(c.message ? c.message : "out of range") != std::string::npos, !!c.message)
            << what << ": " << app.stderr_text();
        if (!c.status)
            continue;
        e2e_sleep_ms(500);
        EXPECT_EQ(app.windows().size(), 1u) << what;
        EXPECT_TRUE(app.shows_text(w, LABEL_FONT, c.status)) << what;
        bool printed = app.stdout_text().find(std::string("Status: ") + c.status) != std::string::npos;
        EXPECT_EQ(printed, c.args.size() > 4) << "only -debug prints the status: " << app.stdout_text();
    }
}

// Without its application defaults file the program is plainer but works: the pencil paints black and the grid
// still shows between the cells.
TEST(StartupE2e, WorksWithoutApplicationDefaults)
{
    E2eApp app;
    app.set_resource_path("/nonexistent/%N");
    E2eDrawing d = open_untitled(app, 16, 16, "+760+0", {"-xrm", "*zoomLevel: 3"});
    ASSERT_NE(d.canvas, 0u) << app.stderr_text();
    app.click(d.canvas, 35, 19);
    e2e_sleep_ms(200);
    ImagePtr shown = read_window(app.display(), d.shell, d.canvas, 128, 128);
    ASSERT_TRUE(shown);
    EXPECT_EQ(rgb_of(app.display(), XGetPixel(shown.get(), 35, 19)), 0u) << "the pencil paints black";
    EXPECT_NE(XGetPixel(shown.get(), 35, 19), XGetPixel(shown.get(), 67, 67));
    EXPECT_NE(XGetPixel(shown.get(), 71, 67), XGetPixel(shown.get(), 67, 67)) << "the grid is invisible";
    EXPECT_EQ(app.stderr_text(), "");
}

// On a display that is not PseudoColor the program says why on stderr and in a dialog, opens no drawing, and ends
// with status 0 once OK is pressed.
TEST(StartupE2e, WrongVisualExitsAfterOk)
{
    const char* display24 = getenv("PICTREL_TEST_DISPLAY24");
    if (!display24 || !*display24)
        GTEST_SKIP() << "PICTREL_TEST_DISPLAY24 not set";
    E2eApp app(display24);
    ASSERT_TRUE(app.start({}));
    Window dialog = app.wait_window("Error");
    ASSERT_NE(dialog, 0u) << app.stderr_text();
    EXPECT_NE(app.stderr_text().find("Pictrel only works under Psuedo Color\n\n"), std::string::npos)
        << app.stderr_text();
    EXPECT_EQ(app.windows().size(), 1u) << "no drawing besides the dialog";
    app.key(dialog, "Return");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status, 5000)) << "still running after OK";
    EXPECT_EQ(status, 0);
}

// File > Quit (F10 selects File, Down opens it, Up wraps to Quit) and the window manager's delete of the only
// drawing both end the program with 0. (The version dialog: x.ShellHelpMenu.)
TEST(StartupE2e, QuitOrDeleteOfTheLastWindow)
{
    for (bool viaMenu : {true, false}) {
        E2eApp app;
        Window w = app.start_shown({}, "Untitled");
        ASSERT_NE(w, 0u);
        if (viaMenu)
            app.keys(w, {"F10", "Down", "Up", "Return"});
        else
            app.send_protocol(w);
        int status = -1;
        ASSERT_TRUE(app.wait_exit(&status, 5000)) << (viaMenu ? "File > Quit" : "WM_DELETE_WINDOW");
        EXPECT_EQ(status, 0);
    }
}
