// The colour editor from the outside: a drawing filled with its white background colour, the colour list opened by
// its accelerator, the editor by a double click on the background well, and a click on the wheel turns every pixel
// of that colour red.
#include <gtest/gtest.h>

#include <X11/extensions/XTest.h>

#include "e2e_support.h"

TEST(ColourE2e, WheelRecoloursTheDrawing)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16, "+300+300");
    ASSERT_TRUE(d.canvas && d.tools.size() == 9u);
    Display* dpy = app.display();
    app.click(d.tools[3], 12, 12);
    app.click(d.canvas, 60, 60, 3);   // fill with the white background colour
    app.key(d.shell, "ctrl+l");
    Window colours = app.wait_window("Untitled - Colors");
    e2e_sleep_ms(200);
    int wells = 0;
    Geometry background{};   // the right one of the foreground and background wells
    find_window(dpy, colours, [&](const Geometry& g) {
        if (g.width == 64 && g.height == 32 && ++wells && g.x >= background.x)
            background = g;
        return false;
    });
    ASSERT_EQ(wells, 2) << "the colour list's foreground and background wells";
    app.move(background.id, 30, 15);
    for (int i = 0; i < 2; i++) {   // well inside the multi-click time
        XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
        XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    }
    XSync(dpy, False);
    Window editor = app.wait_window("Edit Color");
    e2e_sleep_ms(300);
    Window wheel = find_canvas(dpy, editor, 160, 160);
    ASSERT_NE(wheel, 0u) << "a double click on the well opens the editor with its wheel";
    app.click(wheel, 150, 80);   // right edge: hue 0, full saturation
    e2e_sleep_ms(300);
    ImagePtr shown = read_window(dpy, d.shell, d.canvas, 128, 128);
    ASSERT_TRUE(shown);
    EXPECT_EQ(rgb_of(dpy, XGetPixel(shown.get(), 60, 60)), 0xFF0000u) << "the canvas turned red";
    EXPECT_EQ(XGetPixel(shown.get(), 5, 5), XGetPixel(shown.get(), 120, 120));
}
