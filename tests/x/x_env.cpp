// The in-process test harness: starts the toolkit once and offers helpers to pump events, make drawings and read
// pixels back.
#include "x_env.h"

#include <X11/extensions/XTest.h>
#include <Xm/Text.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "app/startup.h"

namespace {

class XEnvironment : public ::testing::Environment {
public:
    void SetUp() override
    {
        if (!getenv("DISPLAY"))
            GTEST_SKIP() << "no DISPLAY";
        // Point the toolkit at the resources of the source tree, as scripts do.
        setenv("XFILESEARCHPATH", PICTREL_RESOURCE_DIR "/%N", 0);
        static char arg0[] = "pictrel";
        static char* argv[] = {arg0, nullptr};
        int argc = 1;
        ASSERT_EQ(startup(&argc, argv), 0) << "start-up failed (is the display 8-bit PseudoColor?)";
        // The first drop site Motif registers on a server makes its drag
        // window through a second connection of its own. A test that holds
        // the server grabbed while it makes its first drawing would wait
        // for that connection for ever: make the window now, ungrabbed.
        XtDestroyWidget(XmCreateText(app().topLevel, const_cast<char*>("dropSiteProbe"), nullptr, 0));
    }
};

pid_t testProcess;
bool testsDone;

// The program ends itself with status 0 when its last drawing closes. In the
// middle of a test that is a fault which would otherwise pass unseen: the
// process would end well before the test's remaining checks ran.
void exit_guard()
{
    if (getpid() == testProcess && !testsDone) {
        std::fputs("the program exited in the middle of a test\n", stderr);
        _exit(1);
    }
}

}  // namespace

void pump(int rounds)
{
    for (int r = 0; r < rounds; r++) {
        XSync(app().display, False);
        while (XtAppPending(app().context))
            XtAppProcessEvent(app().context, XtIMAll);
    }
}

Drawing* make_drawing(int width, int height, bool mayFail)
{
    Drawing* d = new_untitled_drawing(nullptr, width, height);
    pump();
    if (!d && !mayFail)
        ADD_FAILURE() << "no " << width << "x" << height << " drawing";
    return d;
}

unsigned long window_pixel(Window w, int x, int y)
{
    XImage* im = XGetImage(app().display, w, x, y, 1, 1, AllPlanes, ZPixmap);
    if (!im)
        return ~0UL;
    unsigned long p = XGetPixel(im, 0, 0);
    XDestroyImage(im);
    return p;
}

unsigned long image_pixel(Drawing* d, int x, int y) { return window_pixel(d->image, x, y); }

XEvent pointer_event(Window w, int type, unsigned button, int wx, int wy, unsigned state)
{
    XEvent ev{};
    Display* dpy = app().display;
    if (type == MotionNotify)
        ev.xmotion = {MotionNotify, 0, False, dpy, w, app().root, None, CurrentTime, wx, wy, 0, 0, state, NotifyNormal, True};
    else
        ev.xbutton = {type, 0, False, dpy, w, app().root, None, CurrentTime, wx, wy, 0, 0, state, button, True};
    return ev;
}

void post_pointer(Window w, int type, unsigned button, int wx, int wy, unsigned state)
{
    XEvent ev = pointer_event(w, type, button, wx, wy, state);
    long mask = type == MotionNotify ? ButtonMotionMask : type == ButtonPress ? ButtonPressMask : ButtonReleaseMask;
    XSendEvent(app().display, w, True, mask, &ev);
}

void send_motion(Window w, int wx, int wy, unsigned state)
{
    XEvent ev = pointer_event(w, MotionNotify, 0, wx, wy, state);
    XSendEvent(app().display, w, True, ButtonMotionMask | PointerMotionMask, &ev);
    pump();
}

void xtest_move(Window w, int wx, int wy)
{
    Window child;
    int rx, ry;
    XTranslateCoordinates(app().display, w, app().root, wx, wy, &rx, &ry, &child);
    XTestFakeMotionEvent(app().display, app().screen, rx, ry, CurrentTime);
    pump();
}

void xtest_button(unsigned button, bool press)
{
    XTestFakeButtonEvent(app().display, button, press ? True : False, CurrentTime);
    pump();
}

int main(int argc, char** argv)
{
    bool deathTestChild = false;   // a death test's child is meant to exit
    for (int i = 1; i < argc; i++)
        deathTestChild |= std::strstr(argv[i], "internal_run_death_test") != nullptr;
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new XEnvironment);
    testProcess = deathTestChild ? 0 : getpid();
    std::atexit(exit_guard);
    int status = RUN_ALL_TESTS();
    testsDone = true;
    return status;
}
