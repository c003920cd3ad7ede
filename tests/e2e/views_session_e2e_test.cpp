// The session protocols from the outside: the real program writes its restart command on its window and leaves when
// a session manager ends it; a drawing at actual size is restarted at actual size.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "e2e_support.h"

constexpr int SIZE = 16;

// A drawing zoomed out to actual size comes back at actual size: the command stored on its window at
// WM_SAVE_YOURSELF (the program by its absolute path), run as a session manager runs it, starts a program that shows
// the file at zoom 0 and says nothing about the range of zoomLevel. Prepare-to-die closes the drawing but the program
// stays until closedown, which ends it with 0.
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
        Window shell = app.start_shown({path}, "small.xbm");
        ASSERT_NE(shell, 0u) << app.stderr_text();
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
        EXPECT_TRUE(cmd[0][0] == '/' && cmd[0].ends_with("/" + app.app_name())) << "found through PATH: " << cmd[0];
        EXPECT_EQ(cmd, (std::vector<std::string>{cmd[0], path, "-zoomLevel", "0"}));
        app.send_protocol(shell, "WM_PREPARE_TO_DIE");
        e2e_sleep_ms(300);
        EXPECT_TRUE(app.running()) << "prepare-to-die alone does not end the program";
        app.send_protocol(shell, "WM_CLOSEDOWN");
        int status = -1;
        ASSERT_TRUE(app.wait_exit(&status));
        EXPECT_EQ(status, 0);
    }

    E2eApp again;
    ASSERT_TRUE(again.start_command(cmd));
    Window shell = again.shown("small.xbm");
    ASSERT_NE(shell, 0u) << "the restarted program shows the drawing: " << again.stderr_text();
    EXPECT_NE(find_canvas(again.display(), shell, SIZE, SIZE), 0u) << "at actual size";
    EXPECT_EQ(find_canvas(again.display(), shell, SIZE << 4, SIZE << 4), 0u) << "not at zoom 4";
    EXPECT_EQ(again.stderr_text().find("out of range"), std::string::npos) << again.stderr_text();
}
