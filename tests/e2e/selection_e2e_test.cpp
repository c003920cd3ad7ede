// The select tool through the real program: a rubber band lifts part of a
// line, a button-1 drag moves it, and Ctrl+C / Ctrl+V carry a selection to
// a second running copy of the program through the clipboard.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <memory>
#include <vector>

#include "e2e_support.h"

namespace {

constexpr int IMAGE_SIZE = 32;
constexpr int ZOOM = 3;   // the default zoomLevel
constexpr int CANVAS = IMAGE_SIZE << ZOOM;

int at(int v) { return (v << ZOOM) + 3; }

void drag(E2eApp& app, Window canvas, unsigned button, int x0, int y0, int x1, int y1)
{
    Display* dpy = app.display();
    app.move(canvas, at(x0), at(y0));
    XTestFakeButtonEvent(dpy, button, True, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(50);
    for (int s = 1; s <= 4; s++) {
        app.move(canvas, at(x0 + (x1 - x0) * s / 4), at(y0 + (y1 - y0) * s / 4));
        e2e_sleep_ms(30);
    }
    XTestFakeButtonEvent(dpy, button, False, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(200);
}

struct ImageDeleter {
    void operator()(XImage* im) const { XDestroyImage(im); }
};

// Whether the canvas cell is shown in a dark colour, read with our window
// raised and the server grabbed.
bool dark_cell(Display* dpy, Window shell, Window canvas, int x, int y)
{
    XRaiseWindow(dpy, shell);
    XSync(dpy, False);
    e2e_sleep_ms(200);
    XGrabServer(dpy);
    std::unique_ptr<XImage, ImageDeleter> im(
        XGetImage(dpy, canvas, at(x), at(y), 1, 1, AllPlanes, ZPixmap));
    XUngrabServer(dpy);
    XSync(dpy, False);
    if (!im)
        return false;
    XColor c{};
    c.pixel = XGetPixel(im.get(), 0, 0);
    XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &c);
    return c.red < 0x4000 && c.green < 0x4000 && c.blue < 0x4000;
}

struct Window2 {
    Window shell = 0, canvas = 0;
    std::vector<Window> tools;
};

Window2 open_window(E2eApp& app, const char* geometry)
{
    Window2 w;
    if (!app.start({"-width", "32", "-height", "32", "-geometry", geometry}))
        return w;
    w.shell = app.wait_window("Untitled");
    if (!w.shell)
        return w;
    e2e_sleep_ms(300);
    w.canvas = find_window(app.display(), w.shell, [](Display*, const Geometry& g) {
        return g.width == CANVAS && g.height == CANVAS;
    });
    w.tools = palette(app.display(), w.shell, 9, 24, 24);
    return w;
}

}  // namespace

TEST(SelectionE2e, MoveByDragAndPasteIntoAnotherProgram)
{
    E2eApp first;
    ASSERT_TRUE(first.connected());
    Window2 a = open_window(first, "+760+0");
    ASSERT_NE(a.canvas, 0u);
    ASSERT_EQ(a.tools.size(), 9u);
    Display* dpy = first.display();

    XRaiseWindow(dpy, a.shell);
    first.click(a.tools[1], 12, 12);   // line
    drag(first, a.canvas, 1, 2, 4, 28, 4);
    first.click(a.tools[0], 12, 12);   // select
    drag(first, a.canvas, 1, 1, 3, 10, 5);
    drag(first, a.canvas, 1, 5, 4, 5, 14);   // move it ten rows down
    first.click(a.canvas, at(30), at(30));   // lay it down
    e2e_sleep_ms(200);
    first.screenshot("selection_moved");
    EXPECT_FALSE(dark_cell(dpy, a.shell, a.canvas, 5, 4)) << "a hole where it was";
    EXPECT_TRUE(dark_cell(dpy, a.shell, a.canvas, 15, 4)) << "the rest of the line stays";
    EXPECT_TRUE(dark_cell(dpy, a.shell, a.canvas, 5, 14)) << "moved down";

    // Lift the moved piece again and copy it.
    drag(first, a.canvas, 1, 1, 13, 10, 15);
    first.key(a.shell, "ctrl+c");
    e2e_sleep_ms(200);

    E2eApp second;
    Window2 b = open_window(second, "+760+420");
    ASSERT_NE(b.canvas, 0u);
    second.key(b.shell, "ctrl+v");
    e2e_sleep_ms(300);
    // Laid down by choosing another tool; it sits at the top-left.
    second.click(b.tools[2], 12, 12);
    e2e_sleep_ms(200);
    second.screenshot("selection_pasted");
    Display* dpy2 = second.display();
    EXPECT_TRUE(dark_cell(dpy2, b.shell, b.canvas, 4, 1)) << "pasted line";
    EXPECT_TRUE(dark_cell(dpy2, b.shell, b.canvas, 8, 1));
    EXPECT_FALSE(dark_cell(dpy2, b.shell, b.canvas, 4, 10));
    EXPECT_FALSE(dark_cell(dpy2, b.shell, b.canvas, 14, 1)) << "only what was copied";
    second.kill_now();
    first.kill_now();
}
