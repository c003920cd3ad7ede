// Files from the outside: an untitled drawing is saved through the file dialog (the typed name replaces the offered
// one, gets ".px" and the window takes it); Quit with unsaved changes asks, and Discard ends the program with status
// 0 and writes nothing. (Saving in place without asking: x.FilesSave.DirectSaveOrSaveAs.)
#include <gtest/gtest.h>

#include <X11/xpm.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "e2e_support.h"

TEST(FilesE2e, SaveAsThenQuitAsks)
{
    E2eScratch s;
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16);
    ASSERT_NE(d.canvas, 0u) << app.stderr_text();
    app.click(d.canvas, e2e_cell(2), e2e_cell(4));   // the default tool is the pencil
    app.key(d.shell, "ctrl+s");
    Window fd = app.shown("File Dialog");
    ASSERT_NE(fd, 0u) << "no file yet: Save As";
    // The offered name is selected: typing replaces it. mkdtemp's letters come in both cases.
    app.type(fd, s.dir + "/drawn");
    app.key(0, "Return");
    ASSERT_NE(app.wait_window("drawn.px"), 0u) << "the window takes the file's name";
    std::string target = s.dir + "/drawn.px";
    std::string first = e2e_read_file(target);
    EXPECT_NE(first.find("drawn[]"), std::string::npos) << first.substr(0, 80);

    app.click(d.canvas, e2e_cell(9), e2e_cell(9));
    app.key(d.shell, "ctrl+q");
    Window ask = app.shown("Close Drawing");
    ASSERT_NE(ask, 0u) << "Quit did not ask about the unsaved drawing";
    XWindowAttributes a{};
    ASSERT_TRUE(XGetWindowAttributes(app.display(), ask, &a));
    app.click(ask, a.width / 2, a.height * 7 / 10);   // Discard, the middle button
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(e2e_read_file(target), first) << "Discard writes nothing";
}

namespace {

// Scratch files beside `file` of saves that did not finish.
int unfinished_beside(const std::string& dir, const std::string& file)
{
    int n = 0;
    for (const auto& e : std::filesystem::directory_iterator(dir))
        n += e.path().filename().string().rfind("." + file + ".pictrel-", 0) == 0;
    return n;
}

// The drawing (its window titled with the file's base name) painted at one cell and saved with Ctrl+S.
bool paint_and_save(E2eApp& app, const std::string& title, int x)
{
    Window shell = app.shown(title);
    Window canvas = shell ? find_canvas(app.display(), shell, 16 << 3, 12 << 3) : 0;
    if (!canvas)
        return false;
    app.click(canvas, e2e_cell(x), e2e_cell(3));
    app.key(shell, "ctrl+s");
    return true;
}

}  // namespace

// The program killed between writing the new file and renaming it over the old one (strace kills it at the rename)
// leaves the old file byte for byte. The next save of the file finishes, and sweeps away the killed save's scratch
// files beside the target and under /tmp.
TEST(FilesE2e, KilledBeforeTheRenameLeavesTheOldFile)
{
    if (std::system("strace -o /dev/null true >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "strace cannot trace here";
    E2eScratch s;
    std::string target = s.dir + "/pic.xpm";
    std::string old = "/* XPM */\nstatic char *pic[] = {\n\"16 12 2 1\",\n\"  c #FFFFFF\",\n\". c #000000\",\n";
    for (int y = 0; y < 12; y++)
        old += std::string("\"") + (y % 2 ? "................" : "                ") + (y < 11 ? "\",\n" : "\"};\n");
    std::ofstream(target) << old;

    int status = 0;
    {
        E2eApp app;
        app.set_wrapper({"strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=rename,renameat,renameat2",
                         "-e", "inject=rename,renameat,renameat2:signal=KILL"});
        ASSERT_TRUE(app.start({target}));
        ASSERT_TRUE(paint_and_save(app, "pic.xpm", 2)) << app.stderr_text();
        ASSERT_TRUE(app.wait_exit(&status)) << "not killed at the rename";
    }
    EXPECT_NE(status, 0);
    EXPECT_EQ(e2e_read_file(target), old) << "the old file, byte for byte";
    EXPECT_EQ(unfinished_beside(s.dir, "pic.xpm"), 1) << "the new file was made beside the target";

    E2eApp again;
    ASSERT_TRUE(again.start({target}));
    ASSERT_TRUE(paint_and_save(again, "pic.xpm", 5)) << again.stderr_text();
    EXPECT_NE(changed_file(target, old), old) << "the second save wrote the file";
    XpmImage back{};
    ASSERT_EQ(XpmReadFileToXpmImage(const_cast<char*>(target.c_str()), &back, nullptr), XpmSuccess);
    EXPECT_EQ(back.width * 100 + back.height, 1612u);
    XpmFreeXpmImage(&back);
    EXPECT_EQ(unfinished_beside(s.dir, "pic.xpm"), 0) << "the killed save's file is swept away";
    int leftovers = 0;
    for (const auto& e : std::filesystem::directory_iterator("/tmp")) {
        std::string n = e.path().filename();
        long pid = n.rfind("pictrel-", 0) == 0 ? std::atol(n.c_str() + 8) : 0;
        leftovers += pid > 0 && kill(static_cast<pid_t>(pid), 0) != 0;
    }
    EXPECT_EQ(leftovers, 0) << "no staging directory of a dead process under /tmp";
}
