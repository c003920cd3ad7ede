// The window-manager and session protocols of a drawing's shell: the restart command in WM_COMMAND, save-yourself,
// delete and prepare-to-die.
#include "x_env.h"   // first: gtest before Xlib's macros

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <climits>
#include <cstdlib>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "canvas/image_store.h"
#include "app/new_close.h"
#include "files_support.h"

namespace {

Atom atom(const char* name) { return XInternAtom(app().display, name, False); }

// A WM_PROTOCOLS client message to the drawing's shell, as a window or session manager sends it.
void send_protocol(Drawing* d, const char* protocol)
{
    XEvent ev{};
    ev.xclient = {ClientMessage, 0, False, app().display, XtWindow(d->shell), atom("WM_PROTOCOLS"), 32, {}};
    ev.xclient.data.l[0] = static_cast<long>(atom(protocol));
    ev.xclient.data.l[1] = CurrentTime;
    XSendEvent(app().display, ev.xclient.window, False, NoEventMask, &ev);
    pump();
}

std::vector<std::string> wm_command(Drawing* d)
{
    XSync(app().display, False);
    char** argv = nullptr;
    int argc = 0;
    if (!XGetCommand(app().display, XtWindow(d->shell), &argv, &argc))
        return {};
    std::vector<std::string> out(argv, argv + argc);
    XFreeStringList(argv);
    return out;
}

void forget_command(Drawing* d) { XDeleteProperty(app().display, XtWindow(d->shell), XA_WM_COMMAND); }

}  // namespace

// Every shell takes part in the four protocols; save-yourself writes the command that brings the drawing back: the
// file as an absolute path and the current zoom. An untitled drawing has no file.
TEST(Session, SaveYourselfWritesTheRestartCommand)
{
    filetest::ScratchDir dir;
    dir.file("a.xbm", filetest::xbm_text(filetest::pattern_xbm(8, 8)));
    ASSERT_EQ(chdir(dir.dir.c_str()), 0);
    ASSERT_EQ(open_file("a.xbm"), 0);
    pump();
    Drawing* d = filetest::drawing_named("a.xbm");
    ASSERT_NE(d, nullptr);

    Atom* protocols = nullptr;
    int count = 0;
    ASSERT_TRUE(XGetWMProtocols(app().display, XtWindow(d->shell), &protocols, &count));
    std::vector<Atom> got(protocols, protocols + count);
    XFree(protocols);
    for (const char* p : {"WM_SAVE_YOURSELF", "WM_DELETE_WINDOW", "WM_PREPARE_TO_DIE", "WM_CLOSEDOWN"})
        EXPECT_NE(std::find(got.begin(), got.end(), atom(p)), got.end()) << p;

    std::vector<std::string> cmd = wm_command(d);
    ASSERT_EQ(cmd.size(), 4u) << "set when the drawing is created";
    char resolved[PATH_MAX];
    ASSERT_TRUE(realpath(dir.path("a.xbm").c_str(), resolved));
    EXPECT_EQ(cmd[1], resolved) << "the file, made absolute";

    forget_command(d);
    d->zoom = d->zoom == 3 ? 1 : 3;
    send_protocol(d, "WM_SAVE_YOURSELF");
    cmd = wm_command(d);
    ASSERT_EQ(cmd.size(), 4u) << "save-yourself answers with the command";
    EXPECT_EQ(cmd[3], std::to_string(d->zoom));
    EXPECT_TRUE(drawing_is_open(d)) << "and nothing else happens";

    zoom_in(d, nullptr);
    pump();
    EXPECT_EQ(wm_command(d).at(3), std::to_string(d->zoom)) << "zooming keeps the command current";

    Drawing* untitled = make_drawing(10, 10);
    send_protocol(untitled, "WM_SAVE_YOURSELF");
    EXPECT_EQ(wm_command(untitled).size(), 3u) << "no file argument for a drawing without a file";
}

// Delete is an ordinary close. Prepare-to-die closes each drawing without taking its window down or ending the
// program, asking about a modified one without Cancel; a second prepare-to-die counts nothing twice.
TEST(Session, PrepareToDieClosesEachOnce)
{
    Drawing *a = make_drawing(10, 10), *b = make_drawing(10, 10), *c = make_drawing(10, 10);
    send_protocol(c, "WM_DELETE_WINDOW");
    EXPECT_FALSE(drawing_is_open(c));
    EXPECT_EQ(registry().openCount, 2);
    XWindowAttributes attrs{};
    // A second click on the frame's close button arrives after the close.
    send_protocol(c, "WM_DELETE_WINDOW");
    XGetWindowAttributes(app().display, XtWindow(c->shell), &attrs);
    EXPECT_NE(attrs.map_state, IsViewable) << "a closed drawing's window stays down";
    EXPECT_EQ(registry().openCount, 2);

    b->modified = 1;
    forget_command(a);
    send_protocol(a, "WM_PREPARE_TO_DIE");
    EXPECT_EQ(registry().openCount, 1);
    EXPECT_EQ(a->closing, 1);
    XGetWindowAttributes(app().display, XtWindow(a->shell), &attrs);
    EXPECT_EQ(attrs.map_state, IsViewable) << "the window stays while the session ends";
    EXPECT_EQ(wm_command(a).size(), 3u) << "the command is refreshed on the way out";
    send_protocol(a, "WM_PREPARE_TO_DIE");
    EXPECT_EQ(registry().openCount, 1) << "closed once only";

    send_protocol(b, "WM_PREPARE_TO_DIE");
    Widget confirm = confirm_dialog();
    ASSERT_NE(confirm, nullptr);
    ASSERT_TRUE(XtIsManaged(confirm)) << "a modified drawing asks";
    EXPECT_FALSE(XtIsManaged(XtNameToWidget(confirm, "Cancel"))) << "no way out but to answer";
    filetest::press(confirm, "Discard");
    EXPECT_EQ(registry().openCount, 0) << "and the program runs on until closedown";
}
