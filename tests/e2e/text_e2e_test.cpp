// The real program driven through XTest: the text tool types into the magnified canvas where the user clicked, and
// Ctrl+Z takes the text back while the caret stays for more typing.
#include <gtest/gtest.h>

#include <vector>

#include "e2e_support.h"

namespace {

constexpr int ZOOM = 3;   // the default zoomLevel
constexpr int CANVAS = 32 << ZOOM;

// Dark cells of the canvas in image columns [x0, x1] and rows [y0, y1].
int dark_cells(Display* dpy, Window shell, Window canvas, int x0, int x1, int y0, int y1)
{
    ImagePtr im = read_window(dpy, shell, canvas, CANVAS, CANVAS);
    if (!im)
        return -1;
    int n = 0;
    for (int y = y0; y <= y1; y++)
        for (int x = x0; x <= x1; x++)
            n += dark(dpy, XGetPixel(im.get(), (x << ZOOM) + 3, (y << ZOOM) + 3));
    return n;
}

}  // namespace

TEST(TextE2e, TypeIntoCanvasThenUndo)
{
    E2eApp app;
    ASSERT_TRUE(app.connected());
    ASSERT_TRUE(app.start({"-width", "32", "-height", "32", "-geometry", "+760+0"}));
    Window shell = app.wait_window("Untitled");
    ASSERT_NE(shell, 0u);
    e2e_sleep_ms(300);
    Display* dpy = app.display();
    Window canvas = find_canvas(dpy, shell, CANVAS, CANVAS);
    ASSERT_NE(canvas, 0u);
    std::vector<Window> tools = palette(dpy, shell, 9, 24, 24);
    ASSERT_EQ(tools.size(), 9u);

    XRaiseWindow(dpy, shell);
    app.click(tools[5], 12, 12);   // alpha
    app.click(canvas, (2 << ZOOM) + 3, (14 << ZOOM) + 3);
    e2e_sleep_ms(200);
    EXPECT_EQ(dark_cells(dpy, shell, canvas, 0, 31, 0, 31), dark_cells(dpy, shell, canvas, 3, 5, 0, 31))
        << "only the caret, just right of the click";
    app.keys(shell, {"shift+h", "i"});
    e2e_sleep_ms(300);
    app.screenshot("text_typed");
    // "Hi" in "fixed" covers about two 6-pixel cells from x = 2.
    EXPECT_GT(dark_cells(dpy, shell, canvas, 2, 13, 4, 17), 10) << "the letters show";

    app.key(shell, "ctrl+z");
    e2e_sleep_ms(300);
    app.screenshot("text_undone");
    EXPECT_EQ(dark_cells(dpy, shell, canvas, 0, 13, 0, 31), 0) << "the text is gone";
    EXPECT_GT(dark_cells(dpy, shell, canvas, 14, 18, 0, 31), 3) << "the caret waits after it";
    app.kill_now();
}
