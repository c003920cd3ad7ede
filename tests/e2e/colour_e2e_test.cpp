// The colour editor from the outside: a drawing filled with its foreground,
// the editor opened by double-clicking the foreground well, the value
// raised and the wheel clicked, and every pixel of that colour changes.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include "e2e_support.h"

namespace {

XColor colour_at(Display* dpy, Window w, int x, int y)
{
    XColor c{};
    if (XImage* image = XGetImage(dpy, w, x, y, 1, 1, AllPlanes, ZPixmap)) {
        c.pixel = XGetPixel(image, 0, 0);
        XDestroyImage(image);
        XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &c);
    }
    return c;
}

// The leftmost viewable window of that size below `top`.
Geometry leftmost(Display* dpy, Window top, int width, int height)
{
    Geometry found{};
    find_window(dpy, top, [&](Display*, const Geometry& g) {
        if (g.width == width && g.height == height && (!found.id || g.x < found.x))
            found = g;
        return false;
    });
    return found;
}

}  // namespace

TEST(ColourE2e, WheelRecoloursTheDrawing)
{
    E2eApp app;
    ASSERT_TRUE(app.connected());
    ASSERT_TRUE(app.start({"-width", "16", "-height", "16", "-geometry", "+300+300"}));
    Window shell = app.wait_window("Untitled");
    ASSERT_NE(shell, 0u);
    e2e_sleep_ms(300);
    Display* dpy = app.display();
    Window canvas = leftmost(dpy, shell, 128, 128).id;
    std::vector<Window> tools = palette(dpy, shell, 9, 24, 24);
    ASSERT_TRUE(canvas && tools.size() == 9u);
    app.click(tools[3], 12, 12);   // fill with the black foreground
    app.click(canvas, 60, 60);
    app.key(shell, "ctrl+l");
    Window colours = app.wait_window("Colors");
    ASSERT_NE(colours, 0u);
    e2e_sleep_ms(200);
    Window well = leftmost(dpy, colours, 64, 32).id;
    ASSERT_NE(well, 0u) << "foreground well";
    app.move(well, 30, 15);
    for (int i = 0; i < 2; i++) {   // well inside the multi-click time
        XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
        XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    }
    XSync(dpy, False);
    Window editor = app.wait_window("Edit Color");
    ASSERT_NE(editor, 0u) << "a double click on the well opens the editor";
    e2e_sleep_ms(300);
    Window wheel = leftmost(dpy, editor, 160, 160).id;
    ASSERT_NE(wheel, 0u);
    EXPECT_LT(colour_at(dpy, wheel, 2, 2).red, 0x4000) << "black shows round the wheel";

    // At black's value 0 the whole wheel is black: drag the scale's slider
    // from the bottom of its trough to the top first.
    Geometry trough{};
    find_window(dpy, editor, [&](Display*, const Geometry& g) {
        if (g.height >= 150 && g.height < 200 && g.width < 30)
            trough = g;
        return false;
    });
    ASSERT_NE(trough.id, 0u) << "value scale";
    app.move(trough.id, trough.width / 2, trough.height - 6);
    XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
    for (int y = trough.height - 20; y > -40; y -= 20) {
        e2e_sleep_ms(30);
        app.move(trough.id, trough.width / 2, y);
    }
    XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(200);
    EXPECT_GT(colour_at(dpy, canvas, 60, 60).red, 0xf000) << "full value turns black to white";

    app.click(wheel, 150, 80);   // right edge: hue 0, full saturation
    e2e_sleep_ms(300);
    app.screenshot("colour_editor_red");
    XColor after = colour_at(dpy, canvas, 60, 60);
    EXPECT_TRUE(after.red > 0xf000 && after.green < 0x1000 && after.blue < 0x1000)
        << "the canvas turned red: " << after.red << "," << after.green << "," << after.blue;
    EXPECT_EQ(colour_at(dpy, canvas, 5, 5).pixel, colour_at(dpy, canvas, 120, 120).pixel);
    app.kill_now();
}
