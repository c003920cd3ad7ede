// The colour editor from the outside: a drawing filled with its foreground,
// the editor opened by double-clicking the foreground well, and a click on
// the wheel turns every pixel of that colour at once.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <vector>

#include "e2e_support.h"

namespace {

XColor colour_at(Display* dpy, Window w, int x, int y)
{
    XColor c{};
    XImage* image = XGetImage(dpy, w, x, y, 1, 1, AllPlanes, ZPixmap);
    if (!image)
        return c;
    c.pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &c);
    return c;
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
    Window canvas = find_window(dpy, shell, [](Display*, const Geometry& g) {
        return g.width == 128 && g.height == 128;
    });
    ASSERT_NE(canvas, 0u);
    std::vector<Window> tools = palette(dpy, shell, 9, 24, 24);
    ASSERT_EQ(tools.size(), 9u);
    XRaiseWindow(dpy, shell);
    app.click(tools[3], 12, 12);   // fill
    app.click(canvas, 60, 60);
    e2e_sleep_ms(200);
    XColor before = colour_at(dpy, canvas, 60, 60);
    EXPECT_LT(before.red, 0x4000) << "filled with the black foreground";

    app.key(shell, "ctrl+l");
    Window colours = app.wait_window("Colors");
    ASSERT_NE(colours, 0u);
    e2e_sleep_ms(200);
    // The two wells: the foreground one is on the left.
    Window well = 0;
    int wellX = 1 << 20;
    find_window(dpy, colours, [&](Display*, const Geometry& g) {
        if (g.width == 64 && g.height == 32 && g.x < wellX) {
            well = g.id;
            wellX = g.x;
        }
        return false;
    });
    ASSERT_NE(well, 0u) << "foreground well";
    // Both clicks well inside the multi-click time.
    app.move(well, 30, 15);
    for (int i = 0; i < 2; i++) {
        XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
        XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    }
    XSync(dpy, False);
    Window editor = app.wait_window("Edit Color");
    ASSERT_NE(editor, 0u) << "a double click on the well opens the editor";
    e2e_sleep_ms(300);
    Window wheel = find_window(dpy, editor, [](Display*, const Geometry& g) {
        return g.width == 160 && g.height == 160;
    });
    ASSERT_NE(wheel, 0u);
    XColor around = colour_at(dpy, wheel, 2, 2);
    EXPECT_LT(around.red, 0x4000) << "the edited black shows round the wheel";

    // The scale starts at black's value 0, where the whole wheel is black:
    // its slider is dragged from the bottom of the trough to the top.
    Geometry trough{};
    find_window(dpy, editor, [&](Display*, const Geometry& g) {
        if (g.height >= 150 && g.height < 200 && g.width < 30)
            trough = g;
        return false;
    });
    ASSERT_NE(trough.id, 0u) << "value scale";
    app.move(trough.id, trough.width / 2, trough.height - 6);
    XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(50);
    for (int y = trough.height - 20; y > -40; y -= 20) {
        app.move(trough.id, trough.width / 2, y);
        e2e_sleep_ms(30);
    }
    XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    XSync(dpy, False);
    e2e_sleep_ms(200);
    XColor raised = colour_at(dpy, canvas, 60, 60);
    EXPECT_GT(raised.red, 0xf000) << "full value at the centre turns black to white";
    app.click(wheel, 150, 80);   // right edge: hue 0, full saturation
    e2e_sleep_ms(300);
    app.screenshot("colour_editor_red");
    XRaiseWindow(dpy, shell);
    XSync(dpy, False);
    e2e_sleep_ms(200);
    XColor after = colour_at(dpy, canvas, 60, 60);
    EXPECT_GT(after.red, 0x2000) << "the canvas turned red without a redraw of the image";
    EXPECT_LT(after.green, 0x1000);
    EXPECT_LT(after.blue, 0x1000);
    EXPECT_EQ(colour_at(dpy, canvas, 5, 5).pixel, colour_at(dpy, canvas, 120, 120).pixel);
    app.kill_now();
}
