// The installed launcher on a 24-bit display, as the desktop entry starts it: a nested 8-bit server with a window
// manager, the files passed through whatever their names, and nothing left running once the program or the nested
// window is gone; with Xephyr or the window manager missing, a message that says what to install.
#include <gtest/gtest.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "install_support.h"

namespace {

// The installed launcher started on `display` as a desktop entry starts it: no resource environment, and the
// toolkit's own message where that display cannot be opened.
void launch(E2eApp& app, const std::vector<std::string>& args, const std::string& path = "")
{
    app.set_binary(installation().launcher());
    app.set_resource_path("");
    app.set_path(path);
    EXPECT_TRUE(app.start(args));
}

// The nested display the launcher announces on standard output, or empty once it has ended.
std::string nested_display(E2eApp& app)
{
    std::regex announced("display (:[0-9]+)");
    for (int waited = 0; waited < 15000; waited += 50) {
        std::smatch m;
        std::string text = app.stdout_text();
        if (std::regex_search(text, m, announced))
            return m[1];
        if (!app.running())
            return "";
        e2e_sleep_ms(50);
    }
    return "";
}

// The viewable windows of the class below `top`, depth first.
void find_class(Display* dpy, Window top, const std::string& cls, std::vector<Window>* found)
{
    for (const Geometry& g : child_windows(dpy, top)) {
        if (window_class(dpy, g.id) == cls)
            found->push_back(g.id);
        else
            find_class(dpy, g.id, cls, found);
    }
}

// A window the window manager framed with a title bar: it lies inside a frame, below another window of the frame
// that spans it (the title bar).
bool has_title_bar(Display* dpy, Window client)
{
    Window frame = 0;
    child_windows(dpy, client, &frame);
    XWindowAttributes c;
    if (!frame || frame == DefaultRootWindow(dpy) || !XGetWindowAttributes(dpy, client, &c) || c.y < 8)
        return false;
    for (const Geometry& t : child_windows(dpy, frame))
        if (t.id != client && t.y + t.height <= c.y + 2 && t.width >= c.width / 2)
            return true;
    return false;
}

// The drawing windows on the nested display once `count` of them are framed, or fewer on timeout.
std::vector<Window> framed_drawings(Display* dpy, size_t count)
{
    std::vector<Window> found;
    for (int waited = 0; waited < 15000; waited += 100) {
        found.clear();
        find_class(dpy, DefaultRootWindow(dpy), "Pictrel", &found);
        size_t framed = 0;
        for (Window w : found)
            framed += has_title_bar(dpy, w);
        if (found.size() >= count && framed == found.size())
            return found;
        e2e_sleep_ms(100);
    }
    return found;
}

// The window's place on the screen.
void root_position(Display* dpy, Window w, int* x, int* y)
{
    Window child;
    XTranslateCoordinates(dpy, w, DefaultRootWindow(dpy), 0, 0, x, y, &child);
}

// A press at (x, y) on the screen, moved by (dx, dy) in steps, and released, through XTest.
void drag(Display* dpy, int x, int y, int dx, int dy)
{
    XTestFakeMotionEvent(dpy, DefaultScreen(dpy), x, y, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(100);
    XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(100);
    for (int step = 1; step <= 5; step++) {
        XTestFakeMotionEvent(dpy, DefaultScreen(dpy), x + dx * step / 5, y + dy * step / 5, CurrentTime);
        XSync(dpy, False);
        e2e_sleep_ms(50);
    }
    XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(300);
}

// The frame (the root's child) that holds the window.
Window frame_of(Display* dpy, Window w)
{
    Window parent = 0;
    while (w) {
        child_windows(dpy, w, &parent);
        if (!parent || parent == DefaultRootWindow(dpy))
            return w;
        w = parent;
    }
    return 0;
}

// A point of the window's title bar that no other window covers, on the screen; false when there is none.
bool title_point(Display* dpy, Window w, Window frame, int* px, int* py)
{
    int x, y;
    XWindowAttributes a;
    root_position(dpy, w, &x, &y);
    if (!XGetWindowAttributes(dpy, w, &a))
        return false;
    for (int dx = 30; dx < a.width - 30; dx += 10) {
        Window root = DefaultRootWindow(dpy), top = 0;
        int rx, ry;
        XTranslateCoordinates(dpy, root, root, x + dx, y - 6, &rx, &ry, &top);
        if (top == frame) {
            *px = x + dx;
            *py = y - 6;
            return true;
        }
    }
    return false;
}

// A PATH of every command there is but one.
std::string path_without(const std::string& missing, const std::string& dir)
{
    for (const char* bin : {"/usr/local/bin", "/usr/bin", "/bin"}) {
        DIR* d = opendir(bin);
        while (dirent* e = d ? readdir(d) : nullptr) {
            std::string name = e->d_name;
            if (name != "." && name != ".." && name != missing)
                symlink((std::string(bin) + "/" + name).c_str(), (dir + "/" + name).c_str());
        }
        if (d)
            closedir(d);
    }
    return dir;
}

// The nested server's window on the 24-bit display.
Window nested_window(Display* dpy)
{
    for (int waited = 0; waited < 10000; waited += 100) {
        for (const Geometry& g : child_windows(dpy, DefaultRootWindow(dpy)))
            if (window_class(dpy, g.id) == "Xephyr" && window_name(dpy, g.id) == "Pictrel")
                return g.id;
        e2e_sleep_ms(100);
    }
    return 0;
}

class LauncherOn24Bits : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char* d = getenv("PICTREL_TEST_DISPLAY24");
        if (!d || !*d)
            GTEST_SKIP() << "PICTREL_TEST_DISPLAY24 not set";
        display24 = d;
        ASSERT_TRUE(installation().installed) << "cmake --install into " << installation().prefix << " failed";
        // Files as a file manager passes them through the desktop entry: names with blanks and non-ASCII letters.
        xpm = files.dir + "/a picture.xpm";
        xbm = files.dir + "/Bild \xc3\xa4 2.xbm";
        std::ofstream(xpm) << "/* XPM */\nstatic char *p[] = {\n\"2 2 2 1\",\n\". c #000000\",\n\"o c #ffffff\",\n"
                              "\".o\",\n\"o.\"};\n";
        std::ofstream(xbm) << "#define b_width 8\n#define b_height 2\nstatic unsigned char b_bits[] = {\n 0x0f, 0xf0};\n";
    }

    std::string display24;
    E2eScratch files;
    std::string xpm, xbm;
};

}  // namespace

// Both files open in a nested 8-bit server titled "Pictrel" that fits the screen; every drawing window there has a
// title bar from the window manager; when the last drawing closes, the launcher exits 0 and takes the window manager
// and the server with it.
TEST_F(LauncherOn24Bits, NestsAServerWithAWindowManagerAndEndsThem)
{
    E2eApp app(display24.c_str());
    launch(app, {xpm, xbm});
    std::string nested = nested_display(app);
    ASSERT_FALSE(nested.empty()) << app.stdout_text() << app.stderr_text();
    Display* dpy24 = app.display();
    Window outer = nested_window(dpy24);
    ASSERT_NE(outer, 0u) << "no window titled \"Pictrel\" on " << display24;
    XWindowAttributes a;
    ASSERT_TRUE(XGetWindowAttributes(dpy24, outer, &a));
    EXPECT_LE(a.width, WidthOfScreen(DefaultScreenOfDisplay(dpy24)));
    EXPECT_LE(a.height, HeightOfScreen(DefaultScreenOfDisplay(dpy24)));

    Display* inner = XOpenDisplay(nested.c_str());
    ASSERT_NE(inner, nullptr) << nested;
    EXPECT_EQ(DefaultVisual(inner, DefaultScreen(inner))->c_class, PseudoColor);
    std::vector<Window> drawings = framed_drawings(inner, 2);
    std::vector<std::string> titles;
    for (Window w : drawings) {
        titles.push_back(window_name(inner, w));
        EXPECT_TRUE(has_title_bar(inner, w)) << titles.back() << " has no title bar";
    }
    ASSERT_EQ(drawings.size(), 2u) << app.stderr_text();
    // Each title is the file's name, as UTF-8 or, where the locale takes it for Latin-1 text, in Latin-1.
    std::sort(titles.begin(), titles.end());
    EXPECT_EQ(titles[1], "a picture.xpm");
    EXPECT_TRUE(titles[0] == "Bild \xc3\xa4 2.xbm" || titles[0] == "Bild \xe4 2.xbm") << titles[0];
    EXPECT_EQ(app.stderr_text().find("Can't open"), std::string::npos) << app.stderr_text();

    // The window manager at work: a click on the title bar of the lower window raises it above the other and gives
    // it the keyboard, which stays when the pointer leaves; a drag on its title bar then moves it.
    auto on_top = [&](Window w) {
        Window top = 0;
        for (const Geometry& f : child_windows(inner, DefaultRootWindow(inner)))
            if (f.id == frame_of(inner, drawings[0]) || f.id == frame_of(inner, drawings[1]))
                top = f.id;
        return top == frame_of(inner, w);
    };
    Window lower = on_top(drawings[0]) ? drawings[1] : drawings[0];
    int x0, y0, x1, y1, tx, ty;
    ASSERT_TRUE(title_point(inner, lower, frame_of(inner, lower), &tx, &ty)) << "the lower window's title is covered";
    drag(inner, tx, ty, 0, 0);
    EXPECT_TRUE(on_top(lower)) << "a click on the title bar did not raise the window";
    XTestFakeMotionEvent(inner, DefaultScreen(inner), DisplayWidth(inner, DefaultScreen(inner)) - 1,
                         DisplayHeight(inner, DefaultScreen(inner)) - 1, CurrentTime);   // over no window
    XSync(inner, False);
    e2e_sleep_ms(200);
    Window focus = 0;
    int revert;
    XGetInputFocus(inner, &focus, &revert);
    EXPECT_EQ(frame_of(inner, focus), frame_of(inner, lower)) << "a click on the title bar gave no keyboard focus";
    root_position(inner, lower, &x0, &y0);
    ASSERT_TRUE(title_point(inner, lower, frame_of(inner, lower), &tx, &ty));
    drag(inner, tx, ty, 60, 40);
    root_position(inner, lower, &x1, &y1);
    EXPECT_EQ(x1 - x0, 60) << "a drag on the title bar did not move the window";
    EXPECT_EQ(y1 - y0, 40);

    // Closing the last drawing ends the program, and the launcher then ends the server: nothing more may be asked of
    // it, not even the round trip of closing this connection, which is left open.
    send_protocol(inner, drawings[0], "WM_DELETE_WINDOW");
    send_protocol(inner, drawings[1], "WM_DELETE_WINDOW");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status, 15000)) << "the launcher still runs after the last drawing closed";
    EXPECT_EQ(status, 0) << app.stderr_text();
    EXPECT_TRUE(app.group_ended()) << "the nested server or the window manager still runs";
}

// Without Xephyr, or without the window manager, the launcher says what is missing and how to install it, exits
// non-zero and leaves nothing running.
TEST_F(LauncherOn24Bits, SaysWhatIsMissing)
{
    struct Case {
        const char* command;
        const char* package;
    };
    for (Case c : {Case{"Xephyr", "apt-get install xserver-xephyr"}, Case{"twm", "apt-get install twm"}}) {
        E2eScratch bin;
        E2eApp app(display24.c_str());
        launch(app, {xpm}, path_without(c.command, bin.dir));
        int status = -1;
        ASSERT_TRUE(app.wait_exit(&status)) << c.command;
        EXPECT_NE(status, 0) << c.command;
        std::string err = app.stderr_text();
        EXPECT_NE(err.find(c.package), std::string::npos) << "without " << c.command << ": " << err;
        EXPECT_TRUE(app.group_ended()) << "without " << c.command << " something still runs";
    }
}

// A display that cannot be opened gets the toolkit's own message from the program, and a non-zero status.
TEST(LauncherCommandLine, UnreachableDisplay)
{
    ASSERT_TRUE(installation().installed);
    E2eApp app(":999");
    launch(app, {});
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status));
    EXPECT_NE(status, 0);
    EXPECT_NE(app.stderr_text().find("Can't open display: :999"), std::string::npos) << app.stderr_text();
    EXPECT_TRUE(app.group_ended());
}
