// The actual-size view and the session protocols from the outside: the real program opens the view from the View
// menu's keys and shows the picture in it, writes its restart command on its window, and leaves when a session
// manager ends it. A drawing at actual size is restarted at actual size.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "e2e_support.h"

constexpr int SIZE = 16;

TEST(ViewsSessionE2e, ViewsShowThePictureAndTheSessionEndsIt)
{
    E2eScratch scratch;
    std::string path = scratch.dir + "/pic.xpm";
    std::string rows;   // columns 0-5 black, 6-9 red, 10-15 white
    for (int y = 0; y < SIZE; y++)
        rows += std::string("\"######rrrr......\"") + (y < SIZE - 1 ? ",\n" : "};\n");
    std::ofstream(path) << "/* XPM */\nstatic char *pic[] = {\n\"16 16 3 1\",\n\"# c #000000 m black\",\n"
                           "\"r c #FF0000 m black\",\n\". c #FFFFFF m white\",\n" << rows;

    E2eApp app;
    ASSERT_TRUE(app.start({path, "-zoomLevel", "2"}));
    Window shell = app.wait_window("pic.xpm");
    ASSERT_NE(shell, 0u);
    Display* dpy = app.display();

    char** argv = nullptr;
    int argc = 0;
    ASSERT_TRUE(XGetCommand(dpy, shell, &argv, &argc));
    std::vector<std::string> cmd(argv, argv + argc);
    XFreeStringList(argv);
    ASSERT_EQ(cmd.size(), 4u);
    EXPECT_TRUE(cmd[0][0] == '/' && cmd[0].ends_with("/" + app.app_name())) << "the program's own path: " << cmd[0];
    EXPECT_EQ(cmd, (std::vector<std::string>{cmd[0], path, "-zoomLevel", "2"}));

    // View > Actual Size View, through the menu keys.
    app.keys(shell, {"F10", "Right", "Right", "Down", "a"});
    Window small = app.wait_window("pic.xpm - Actual Size");
    ASSERT_NE(small, 0u) << "the small view is titled with the drawing's name and what it shows";
    ImagePtr shown = read_window(dpy, small, find_canvas(dpy, small, SIZE, SIZE), SIZE, SIZE);
    ASSERT_TRUE(shown) << "its picture area";
    for (int x = 0; x < SIZE; x++) {
        unsigned want = x < 6 ? 0x000000 : x < 10 ? 0xFF0000 : 0xFFFFFF;
        EXPECT_EQ(rgb_of(dpy, XGetPixel(shown.get(), x, 5)), want) << "small view column " << x;
    }

    // Prepare-to-die closes the unmodified drawing; the program stays until closedown.
    app.send_protocol(shell, "WM_PREPARE_TO_DIE");
    e2e_sleep_ms(300);
    EXPECT_TRUE(app.running()) << "prepare-to-die alone does not end the program";
    app.send_protocol(shell, "WM_CLOSEDOWN");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status));
    EXPECT_EQ(status, 0);
}

// A drawing zoomed out to actual size comes back at actual size: the command stored on its window at
// WM_SAVE_YOURSELF, run as a session manager runs it, starts a program that shows the file at zoom 0 and says
// nothing about the range of zoomLevel.
TEST(ViewsSessionE2e, RestartCommandBringsBackActualSize)
{
    E2eScratch scratch;
    std::string path = scratch.dir + "/small.xbm";
    std::ofstream(path) << "#define small_width 16\n#define small_height 16\nstatic unsigned char small_bits[] = {\n"
                           " 0xff, 0xff, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80,\n"
                           " 0x01, 0x80, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80, 0x01, 0x80,\n"
                           " 0x01, 0x80, 0xff, 0xff};\n";
    std::vector<std::string> cmd;
    {
        E2eApp app;
        app.set_found_on_path(true);
        ASSERT_TRUE(app.start({path}));
        Window shell = app.wait_window("small.xbm");
        ASSERT_NE(shell, 0u) << app.stderr_text();
        e2e_sleep_ms(300);
        ASSERT_NE(find_canvas(app.display(), shell, SIZE << 3, SIZE << 3), 0u) << "the default zoom, 3";
        app.key(shell, "ctrl+shift+minus");   // straight to actual size
        e2e_sleep_ms(300);
        ASSERT_NE(find_canvas(app.display(), shell, SIZE, SIZE), 0u) << "actual size";
        app.send_protocol(shell, "WM_SAVE_YOURSELF");
        char** argv = nullptr;
        int argc = 0;
        ASSERT_TRUE(XGetCommand(app.display(), shell, &argv, &argc));
        cmd.assign(argv, argv + argc);
        XFreeStringList(argv);
        ASSERT_EQ(cmd.size(), 4u);
        EXPECT_EQ(cmd[0].substr(cmd[0].rfind('/') + 1), app.app_name()) << "found through PATH: " << cmd[0];
        EXPECT_EQ(cmd, (std::vector<std::string>{cmd[0], path, "-zoomLevel", "0"}));
        app.send_protocol(shell, "WM_DELETE_WINDOW");
        int status = -1;
        ASSERT_TRUE(app.wait_exit(&status)) << "the unchanged drawing closes and the program ends";
    }

    E2eApp again;
    ASSERT_TRUE(again.start_command(cmd));
    Window shell = again.wait_window("small.xbm");
    ASSERT_NE(shell, 0u) << "the restarted program shows the drawing: " << again.stderr_text();
    e2e_sleep_ms(300);
    EXPECT_NE(find_canvas(again.display(), shell, SIZE, SIZE), 0u) << "at actual size";
    EXPECT_EQ(find_canvas(again.display(), shell, SIZE << 4, SIZE << 4), 0u) << "not at zoom 4";
    EXPECT_EQ(again.stderr_text().find("out of range"), std::string::npos) << again.stderr_text();
}
