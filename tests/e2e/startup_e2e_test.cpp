// The real program from the outside: start-up with and without options,
// the wrong-visual exit, the ways of quitting, and the version dialog.
#include <gtest/gtest.h>

#include <X11/Xutil.h>

#include <cstdlib>

#include "e2e_support.h"

namespace {

// The fonts the application defaults give labels and the version number.
const char* const labelFont = "-misc-fixed-medium-r-normal--13-*-*-*-*-*-iso8859-1";
const char* const boldFont = "-misc-fixed-bold-r-normal--13-*-*-*-*-*-iso8859-1";

int count_titled(E2eApp& app, const std::string& title)
{
    int n = 0;
    for (const E2eWindow& w : app.windows())
        n += w.title == title;
    return n;
}

}  // namespace

// Started without files, the program maps exactly one window: an untitled
// drawing of the default size, and no dialog.
TEST(StartupE2e, NoFilesMapsExactlyOneUntitledWindow)
{
    E2eApp app;
    ASSERT_TRUE(app.connected());
    ASSERT_TRUE(app.start({}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u) << "no Untitled window; stderr:\n" << app.stderr_text();
    e2e_sleep_ms(500);
    app.screenshot("startup-no-files");
    EXPECT_EQ(app.windows().size(), 1u);
    EXPECT_EQ(count_titled(app, "Untitled"), 1);
    EXPECT_TRUE(app.shows_text(w, labelFont, "Width - 64, Height - 64", BlackPixel(app.display(), 0)))
        << "status line does not show the default size";
}

// Without its application defaults file the program is plainer but works:
// the window maps, and the pencil paints on a canvas whose grid still
// shows between the cells.
TEST(StartupE2e, WorksWithoutApplicationDefaults)
{
    E2eApp app;
    app.set_resource_path("/nonexistent/%N");
    ASSERT_TRUE(app.start({"-width", "16", "-height", "16", "-xrm", "*zoomLevel: 3"}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u) << app.stderr_text();
    e2e_sleep_ms(300);
    Display* dpy = app.display();
    Window canvas = find_canvas(dpy, w, 16 << 3, 16 << 3);
    ASSERT_NE(canvas, 0u);
    app.click(canvas, 4 * 8 + 3, 2 * 8 + 3);
    e2e_sleep_ms(200);
    app.screenshot("startup-without-defaults");
    XImage* shown = XGetImage(dpy, canvas, 0, 0, 16 << 3, 16 << 3, AllPlanes, ZPixmap);
    ASSERT_NE(shown, nullptr);
    unsigned long painted = XGetPixel(shown, 4 * 8 + 3, 2 * 8 + 3);
    unsigned long blank = XGetPixel(shown, 8 * 8 + 3, 8 * 8 + 3);
    unsigned long grid = XGetPixel(shown, 8 * 8 + 7, 8 * 8 + 3);
    XDestroyImage(shown);
    XColor colour{};
    colour.pixel = painted;
    XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &colour);
    EXPECT_EQ(colour.red | colour.green | colour.blue, 0) << "the pencil paints black";
    EXPECT_NE(painted, blank);
    EXPECT_NE(grid, blank) << "the grid is invisible against transparent cells";
    EXPECT_EQ(app.stderr_text(), "");
}

// -width and -height reach the new drawing: its status line reads the size.
TEST(StartupE2e, SizeOptionsShowInStatusLine)
{
    E2eApp app;
    ASSERT_TRUE(app.start({"-width", "32", "-height", "16", "-debug", "1"}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u) << app.stderr_text();
    EXPECT_TRUE(app.wait_stdout("Status: Width - 32, Height - 16")) << app.stdout_text();
    e2e_sleep_ms(300);
    app.screenshot("startup-32x16");
    EXPECT_TRUE(app.shows_text(w, labelFont, "Width - 32, Height - 16", BlackPixel(app.display(), 0)));
}

// Out-of-range sizes and zoom levels are reported on stderr and start-up
// goes on (a bad zoom level becomes 4); an in-range value is accepted
// silently.
TEST(StartupE2e, OutOfRangeOptionsAreReported)
{
    struct Case {
        std::vector<std::string> args;
        const char* message;   // null: no "out of range" at all
        int zoom;              // the zoom the 64 x 64 canvas shows at; -1: not looked at
    };
    const Case cases[] = {
        {{"-zoomLevel", "0"}, "zoomLevel out of range\n", 4},
        {{"-zoomLevel", "7"}, "zoomLevel out of range\n", 4},
        {{"-zoomLevel", "2"}, nullptr, 2},
        {{"-width", "512"}, "drawAreaWidth out of range\n", -1},
        {{"-width", "511"}, nullptr, -1},
    };
    for (const Case& c : cases) {
        E2eApp app;
        ASSERT_TRUE(app.start(c.args));
        std::string what = c.args[0] + " " + c.args[1];
        Window w = app.wait_window("Untitled");
        ASSERT_NE(w, 0u) << what << ": " << app.stderr_text();
        if (c.zoom >= 0) {
            EXPECT_NE(find_canvas(app.display(), w, 64 << c.zoom, 64 << c.zoom), 0u)
                << what << ": no canvas at zoom " << c.zoom;
        }
        if (c.message)
            EXPECT_NE(app.stderr_text().find(c.message), std::string::npos) << what << ": " << app.stderr_text();
        else
            EXPECT_EQ(app.stderr_text().find("out of range"), std::string::npos) << what << ": "
                                                                                  << app.stderr_text();
    }
}

// On a display that is not PseudoColor the program says why on stderr and
// in a dialog, opens no drawing, and ends with status 0 once OK is pressed.
TEST(StartupE2e, WrongVisualExitsAfterOk)
{
    const char* display24 = getenv("PICTREL_TEST_DISPLAY24");
    if (!display24 || !*display24)
        GTEST_SKIP() << "PICTREL_TEST_DISPLAY24 not set";
    E2eApp app(display24);
    ASSERT_TRUE(app.connected());
    ASSERT_TRUE(app.start({}));
    Window dialog = app.wait_window("Error");
    ASSERT_NE(dialog, 0u) << app.stderr_text();
    EXPECT_NE(app.stderr_text().find("Pictrel only works under Psuedo Color\n\n"), std::string::npos)
        << app.stderr_text();
    app.screenshot("startup-wrong-visual");
    EXPECT_EQ(count_titled(app, "Untitled"), 0);
    app.key(dialog, "Return");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status, 5000)) << "still running after OK";
    EXPECT_EQ(status, 0);
}

// Ctrl+Q quits an unmodified drawing at once with status 0.
TEST(StartupE2e, CtrlQQuits)
{
    E2eApp app;
    ASSERT_TRUE(app.start({}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u);
    app.key(w, "ctrl+q");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status, 5000)) << "Ctrl+Q did not quit";
    EXPECT_EQ(status, 0);
}

// File > Quit chosen through the menu bar quits with status 0.
TEST(StartupE2e, FileMenuQuitQuits)
{
    E2eApp app;
    ASSERT_TRUE(app.start({}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u);
    // F10 selects File, Down opens it, Up wraps to its last item, Quit.
    app.keys(w, {"F10", "Down", "Up"});
    app.screenshot("startup-file-menu");
    app.key(0, "Return");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status, 5000)) << "File > Quit did not quit";
    EXPECT_EQ(status, 0);
}

// Closing the only drawing through the window manager ends the program.
TEST(StartupE2e, DeleteWindowOfLastDrawingExits)
{
    E2eApp app;
    ASSERT_TRUE(app.start({}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u);
    app.send_delete_window(w);
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status, 5000)) << "WM_DELETE_WINDOW did not end the program";
    EXPECT_EQ(status, 0);
}

// Help > On Version opens "Show Version", which shows the version number.
TEST(StartupE2e, HelpVersionShowsVersionNumber)
{
    E2eApp app;
    ASSERT_TRUE(app.start({}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u);
    // F10 selects File, Left wraps to Help, Down opens it, Up wraps to its
    // last item, On Version.
    app.keys(w, {"F10", "Left", "Down", "Up", "Return"});
    Window dialog = app.wait_window("Show Version", 5000);
    app.screenshot("startup-version");
    ASSERT_NE(dialog, 0u) << "no Show Version dialog";
    e2e_sleep_ms(300);
    EXPECT_TRUE(app.shows_text(dialog, boldFont, "5.1.1", BlackPixel(app.display(), 0)));
    EXPECT_FALSE(app.shows_text(dialog, boldFont, "5.1.2", BlackPixel(app.display(), 0)))
        << "the text check matches anything";
}
