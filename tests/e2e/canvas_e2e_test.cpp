// The real program driven through XTest: a line dragged with button 1 and a
// filled rectangle dragged with button 2 show on the magnified canvas, and
// Ctrl+Z (Edit > Undo) takes the rectangle back; the zoom accelerators step
// and, with Shift, jump; the fill floods and the eraser clears.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "e2e_support.h"

namespace {

constexpr int IMAGE_SIZE = 32;
constexpr int ZOOM = 3;   // the default zoomLevel
constexpr int CANVAS = IMAGE_SIZE << ZOOM;

void drag(E2eApp& app, Window canvas, unsigned button, int x0, int y0, int x1, int y1)
{
    Display* dpy = app.display();
    auto at = [](int v) { return (v << ZOOM) + 3; };
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

struct Shown {
    std::unique_ptr<XImage, ImageDeleter> image;
    unsigned long cell(int x, int y) const { return XGetPixel(image.get(), (x << ZOOM) + 3, (y << ZOOM) + 3); }
};

// Reads the canvas as shown, with our window raised above any other test's
// and the server grabbed while reading.
Shown read_canvas(Display* dpy, Window shell, Window canvas)
{
    XRaiseWindow(dpy, shell);
    XSync(dpy, False);
    e2e_sleep_ms(200);   // the program repaints what the raise exposed
    XGrabServer(dpy);
    Shown s;
    s.image.reset(XGetImage(dpy, canvas, 0, 0, CANVAS, CANVAS, AllPlanes, ZPixmap));
    XUngrabServer(dpy);
    XSync(dpy, False);
    return s;
}

bool dark(Display* dpy, unsigned long pixel)
{
    XColor c{};
    c.pixel = pixel;
    XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &c);
    return c.red < 0x4000 && c.green < 0x4000 && c.blue < 0x4000;
}

}  // namespace

// A line (button 1) and a filled rectangle (button 2 with pattern 7, so
// foreground inside and out) appear on the magnified canvas; Ctrl+Z takes
// back the rectangle and leaves the line.
TEST(CanvasE2e, DrawLineAndFilledRectangleThenUndo)
{
    E2eApp app;
    ASSERT_TRUE(app.connected());
    // Away from the corner where in-process tests put their windows, and
    // wholly on the screen.
    ASSERT_TRUE(app.start({"-width", "32", "-height", "32", "-geometry", "+760+0"}));
    Window shell = app.wait_window("Untitled");
    ASSERT_NE(shell, 0u);
    e2e_sleep_ms(300);
    Display* dpy = app.display();

    Window canvas = find_window(dpy, shell, [](Display*, const Geometry& g) {
        return g.width == CANVAS && g.height == CANVAS;
    });
    ASSERT_NE(canvas, 0u) << "no " << CANVAS << "x" << CANVAS << " canvas area";
    std::vector<Window> tools = palette(dpy, shell, 9, 24, 24);
    ASSERT_EQ(tools.size(), 9u) << "tools palette";
    std::vector<Window> patterns = palette(dpy, shell, 8, 32, 30);
    ASSERT_EQ(patterns.size(), 8u) << "patterns palette";

    unsigned long blank = read_canvas(dpy, shell, canvas).cell(20, 20);

    XRaiseWindow(dpy, shell);
    app.click(tools[1], 12, 12);   // line
    drag(app, canvas, 1, 2, 4, 28, 4);

    app.click(patterns[7], 16, 15);
    // Tools > DrawFilled from the keyboard.
    app.keys(shell, {"F10", "Right", "Right", "Right", "Down", "Return"});
    e2e_sleep_ms(200);
    app.click(tools[6], 12, 12);   // rect
    drag(app, canvas, 2, 8, 10, 24, 26);
    app.screenshot("canvas_line_and_rectangle");

    Shown drawn = read_canvas(dpy, shell, canvas);
    ASSERT_TRUE(drawn.image);
    EXPECT_TRUE(dark(dpy, drawn.cell(2, 4))) << "line start";
    EXPECT_TRUE(dark(dpy, drawn.cell(15, 4))) << "line middle";
    EXPECT_TRUE(dark(dpy, drawn.cell(27, 4))) << "line end";
    EXPECT_EQ(drawn.cell(15, 6), blank) << "below the line";
    EXPECT_TRUE(dark(dpy, drawn.cell(8, 10))) << "rectangle corner";
    EXPECT_TRUE(dark(dpy, drawn.cell(24, 26))) << "rectangle far corner";
    int light = 0;
    for (int y = 11; y <= 25; y++)
        for (int x = 9; x <= 23; x++)
            light += !dark(dpy, drawn.cell(x, y));
    EXPECT_EQ(light, 0) << "pattern 7 fills the rectangle with the foreground";
    EXPECT_EQ(drawn.cell(26, 18), blank) << "right of the rectangle";

    app.key(shell, "ctrl+z");
    e2e_sleep_ms(300);
    app.screenshot("canvas_after_undo");
    Shown undone = read_canvas(dpy, shell, canvas);
    ASSERT_TRUE(undone.image);
    EXPECT_EQ(undone.cell(16, 18), blank) << "the rectangle is gone";
    EXPECT_EQ(undone.cell(8, 10), blank);
    EXPECT_EQ(undone.cell(24, 26), blank);
    EXPECT_TRUE(dark(dpy, undone.cell(15, 4))) << "the line stays";

    // The fill floods the open area around the line in the foreground, and
    // the eraser's small square (zoom 3: two or three image pixels) clears
    // a spot of it to the background.
    XRaiseWindow(dpy, shell);
    app.click(tools[3], 12, 12);   // fill
    app.click(canvas, (20 << ZOOM) + 3, (20 << ZOOM) + 3);
    e2e_sleep_ms(300);
    Shown filled = read_canvas(dpy, shell, canvas);
    ASSERT_TRUE(filled.image);
    EXPECT_TRUE(dark(dpy, filled.cell(0, 0)));
    EXPECT_TRUE(dark(dpy, filled.cell(31, 31)));
    app.click(tools[4], 12, 12);   // eraser
    app.click(canvas, (10 << ZOOM) + 3, (10 << ZOOM) + 3);
    e2e_sleep_ms(300);
    app.screenshot("canvas_fill_and_eraser");
    Shown erased = read_canvas(dpy, shell, canvas);
    ASSERT_TRUE(erased.image);
    EXPECT_FALSE(dark(dpy, erased.cell(10, 10)));
    EXPECT_FALSE(dark(dpy, erased.cell(12, 12))) << "a three-pixel square off the cell's first pixel";
    EXPECT_TRUE(dark(dpy, erased.cell(13, 13)));
    EXPECT_TRUE(dark(dpy, erased.cell(9, 10)));
    app.kill_now();
}

// The zoom accelerators step one level; with Shift they jump straight to
// the largest zoom or to actual size, whatever key the Shift level gives.
TEST(CanvasE2e, ZoomAcceleratorsWithAndWithoutShift)
{
    E2eApp app;
    ASSERT_TRUE(app.start({"-width", "16", "-height", "16"}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u) << app.stderr_text();
    const struct {
        const char* combo;
        int zoom;   // the zoom the canvas shows afterwards
    } steps[] = {
        {"ctrl+equal", 4},        {"ctrl+minus", 3},       {"ctrl+shift+minus", 0},
        {"ctrl+equal", 2},        {"ctrl+shift+equal", 4}, {"ctrl+shift+equal", 4},
        {"ctrl+minus", 3},        {"ctrl+minus", 2},       {"ctrl+minus", 0},
    };
    for (const auto& s : steps) {
        app.key(w, s.combo);
        e2e_sleep_ms(300);
        EXPECT_NE(find_canvas(app.display(), w, 16 << s.zoom, 16 << s.zoom), 0u)
            << s.combo << ": no canvas at zoom " << s.zoom;
    }
}
