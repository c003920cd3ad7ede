// The real binary starts on the test display and maps its drawing window.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Looks through the root's children (no window manager: the shells are
// top-level windows) for a mapped one with the given WM_NAME.
bool find_mapped_window(Display* dpy, const char* title)
{
    Window root = DefaultRootWindow(dpy), parent, *children = nullptr;
    unsigned n = 0;
    bool found = false;
    if (!XQueryTree(dpy, root, &root, &parent, &children, &n))
        return false;
    for (unsigned i = 0; i < n && !found; i++) {
        char* name = nullptr;
        XWindowAttributes attr;
        if (XGetWindowAttributes(dpy, children[i], &attr) && attr.map_state == IsViewable &&
            XFetchName(dpy, children[i], &name) && name) {
            found = strcmp(name, title) == 0;
        }
        if (name)
            XFree(name);
    }
    if (children)
        XFree(children);
    return found;
}

}  // namespace

TEST(Smoke, StartsAndMapsUntitledWindow)
{
    Display* dpy = XOpenDisplay(nullptr);
    ASSERT_NE(dpy, nullptr);
    pid_t pid = fork();
    if (pid == 0) {
        execl(PICTREL_BINARY, "pictrel", (char*)nullptr);
        _exit(127);
    }
    bool seen = false;
    for (int i = 0; i < 100 && !seen; i++) {
        usleep(100000);
        seen = find_mapped_window(dpy, "Untitled");
    }
    kill(pid, SIGTERM);
    int status = 0;
    waitpid(pid, &status, 0);
    XCloseDisplay(dpy);
    EXPECT_TRUE(seen) << "no mapped window titled Untitled";
}
