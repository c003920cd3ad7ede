// The colour editor from the outside: a drawing filled with its white background colour, the colour list opened by
// its accelerator, the editor by a double click on the background well, and a click on the wheel turns every pixel
// of that colour red.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

#include <algorithm>

#include "e2e_support.h"

namespace {

// The viewable windows of that size below `top`, left to right.
std::vector<Geometry> of_size(Display* dpy, Window top, int width, int height)
{
    std::vector<Geometry> found;
    find_window(dpy, top, [&](Display*, const Geometry& g) {
        if (g.width == width && g.height == height)
            found.push_back(g);
        return false;
    });
    std::sort(found.begin(), found.end(), [](const Geometry& a, const Geometry& b) { return a.x < b.x; });
    return found;
}

}  // namespace

TEST(ColourE2e, WheelRecoloursTheDrawing)
{
    E2eApp app;
    E2eDrawing drawing = open_untitled(app, 16, 16, "+300+300");
    Window shell = drawing.shell, canvas = drawing.canvas;
    std::vector<Window> tools = drawing.tools;
    ASSERT_TRUE(shell && canvas && tools.size() == 9u);
    Display* dpy = app.display();
    app.click(tools[3], 12, 12);
    app.click(canvas, 60, 60, 3);   // fill with the white background colour
    app.key(shell, "ctrl+l");
    Window colours = app.wait_window("Colors");
    ASSERT_NE(colours, 0u);
    e2e_sleep_ms(200);
    std::vector<Geometry> wells = of_size(dpy, colours, 64, 32);
    ASSERT_EQ(wells.size(), 2u) << "foreground and background wells";
    app.move(wells[1].id, 30, 15);
    for (int i = 0; i < 2; i++) {   // well inside the multi-click time
        XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
        XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    }
    XSync(dpy, False);
    Window editor = app.wait_window("Edit Color");
    ASSERT_NE(editor, 0u) << "a double click on the well opens the editor";
    e2e_sleep_ms(300);
    std::vector<Geometry> wheel = of_size(dpy, editor, 160, 160);
    ASSERT_FALSE(wheel.empty());
    app.click(wheel[0].id, 150, 80);   // right edge: hue 0, full saturation
    e2e_sleep_ms(300);
    ImagePtr shown = read_window(dpy, shell, canvas, 128, 128);
    ASSERT_TRUE(shown);
    EXPECT_EQ(rgb_of(dpy, XGetPixel(shown.get(), 60, 60)), 0xFF0000u) << "the canvas turned red";
    EXPECT_EQ(XGetPixel(shown.get(), 5, 5), XGetPixel(shown.get(), 120, 120));
    app.kill_now();
}
