// The installed program as a user meets it: installed into a prefix of its own (with a blank and a non-ASCII letter
// in it) and started with no resource environment at all, it must find its application defaults and pictures, or do
// without any application defaults file through the resources compiled into it.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "e2e/e2e_support.h"
#include "install_support.h"

namespace {

// The override-redirect window on top of the stack, larger than a tooltip: a pulled-down menu.
Window menu_window(Display* dpy)
{
    Window found = 0;
    for (Window w : popups(dpy)) {
        XWindowAttributes a;
        found = XGetWindowAttributes(dpy, w, &a) && a.width > 40 && a.height > 40 ? w : found;
    }
    return found;
}

// The File menu pulled down with its mnemonic (Alt+F) shows the labels and accelerators of the application
// defaults, not the widget names ("SaveAs").
void expect_real_file_menu(E2eApp& app, Window shell, const char* saveAs = "Save As...")
{
    app.key(shell, "Alt_L+f");
    e2e_sleep_ms(300);
    Window menu = menu_window(app.display());
    ASSERT_NE(menu, 0u) << "Alt+F opened no menu: no mnemonic";
    EXPECT_TRUE(app.shows_text(menu, BOLD_FONT, saveAs)) << "the File menu does not show " << saveAs;
    EXPECT_TRUE(app.shows_text(menu, BOLD_FONT, "Ctrl+S")) << "the File menu shows no accelerators";
    EXPECT_FALSE(app.shows_text(menu, BOLD_FONT, "SaveAs")) << "the text check matches anything";
    app.key(0, "Escape");
    app.key(0, "Escape");
}

}  // namespace

class InstalledProgram : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!getenv("DISPLAY"))
            GTEST_SKIP() << "no DISPLAY";
        ASSERT_TRUE(installation().installed) << "cmake --install into " << installation().prefix << " failed";
    }
};

// With XFILESEARCHPATH and XAPPLRESDIR unset, the program reads the application defaults file of its own
// installation (a label changed in it shows, so it is not the compiled-in copy) and finds its pictures (no warning
// about one it could not find). Its window carries the application icon.
TEST_F(InstalledProgram, FindsItsOwnFilesWithNoEnvironment)
{
    const std::string file = installation().app_defaults();
    std::string saved = e2e_read_file(file);
    ASSERT_FALSE(saved.empty()) << file;
    std::ofstream(file, std::ios::app) << "*menuBar*SaveAs.labelString: Keep As...\n";
    E2eApp app;
    app.set_binary(installation().program());
    app.set_resource_path("");
    bool started = app.start({"-geometry", "+0+0"});
    Window shell = started ? app.shown("Untitled") : 0;
    std::ofstream(file, std::ios::trunc) << saved;
    ASSERT_NE(shell, 0u) << app.stderr_text();
    expect_real_file_menu(app, shell, "Keep As...");
    EXPECT_EQ(app.stderr_text(), "") << "the pictures of the tool palette were not found";
    // Window managers show the application icon, whose mask cuts it out.
    XWMHints* hints = XGetWMHints(app.display(), shell);
    ASSERT_NE(hints, nullptr);
    EXPECT_TRUE((hints->flags & IconPixmapHint) && hints->icon_pixmap) << "no icon pixmap in the WM hints";
    EXPECT_TRUE((hints->flags & IconMaskHint) && hints->icon_mask) << "no icon mask in the WM hints";
    XFree(hints);
    app.key(shell, "ctrl+q");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status)) << "Ctrl+Q did not quit";
    EXPECT_EQ(status, 0);
}

// With no application defaults file anywhere (none installed, the toolkit's search path pointing nowhere), the
// compiled-in resources make the program whole: labels, mnemonics, accelerators (Ctrl+N, Ctrl+Q), dialog titles and
// dialog texts.
TEST_F(InstalledProgram, CompleteWithoutAnyApplicationDefaults)
{
    const std::string file = installation().app_defaults();
    const std::string aside = file + ".aside";
    ASSERT_EQ(std::rename(file.c_str(), aside.c_str()), 0) << file;
    E2eApp app;
    app.set_binary(installation().program());
    app.set_resource_path("/nonexistent/%N");
    Window shell = app.start_shown({"-geometry", "+0+0"}, "Untitled");
    if (shell) {
        expect_real_file_menu(app, shell);
        app.key(shell, "ctrl+n");
        Window dialog = app.shown("New Drawing", 5000);
        EXPECT_NE(dialog, 0u) << "Ctrl+N opened no dialog titled \"New Drawing\"";
        if (dialog) {
            EXPECT_TRUE(app.shows_text(dialog, LABEL_FONT, "Width:")) << "the dialog's texts are missing";
            app.key(dialog, "Escape");
        }
        app.key(shell, "ctrl+q");
        int status = -1;
        EXPECT_TRUE(app.wait_exit(&status)) << "Ctrl+Q did not quit";
        EXPECT_EQ(status, 0);
    }
    std::rename(aside.c_str(), file.c_str());
    ASSERT_NE(shell, 0u) << app.stderr_text();
}

// "-help" prints the summary of the five options and the file arguments on standard output and exits 0, with no
// display needed. (An unreachable display is the launcher's test: it runs the program there.)
TEST(InstalledProgramCommandLine, Help)
{
    ASSERT_TRUE(installation().installed);
    E2eScratch out;
    std::string program = "'" + installation().program() + "'";
    std::string command = "env -u DISPLAY " + program + " -help >" + out.dir + "/out 2>" + out.dir + "/err";
    int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    std::string text = e2e_read_file(out.dir + "/out");
    for (const char* option : {"-width W", "-height H", "-zoomLevel Z", "-debug N", "-xpmType T", "file ..."})
        EXPECT_NE(text.find(option), std::string::npos) << option << " missing from:\n" << text;
    EXPECT_EQ(e2e_read_file(out.dir + "/err"), "");
}
