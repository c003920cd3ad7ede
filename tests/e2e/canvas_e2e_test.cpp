// The real program driven through XTest: typed text and Ctrl+Z; a line (button 1) and a pattern-filled rectangle
// (button 2) dragged on the magnified canvas, and Ctrl+Z; the zoom accelerators.
#include <gtest/gtest.h>

#include <vector>

#include "e2e_support.h"

namespace {

constexpr int CANVAS = 32 << 3;   // at the default zoomLevel

}  // namespace

TEST(CanvasE2e, TypeDrawLineAndFilledRectangleThenUndo)
{
    E2eApp app;
    ASSERT_TRUE(app.connected());
    // Away from the corner where in-process tests put their windows.
    E2eDrawing drawing = open_untitled(app, 32, 32, "+760+0");
    Window shell = drawing.shell, canvas = drawing.canvas;
    ASSERT_TRUE(shell && canvas);
    Display* dpy = app.display();
    std::vector<Window> tools = drawing.tools, patterns = palette(dpy, shell, 8, 32, 30);
    ASSERT_EQ(tools.size(), 9u) << "tools palette";
    ASSERT_EQ(patterns.size(), 8u) << "patterns palette";
    // How many image pixels of the box the canvas shows dark.
    auto dark_cells = [&](int x0, int x1, int y0, int y1) {
        ImagePtr im = read_window(dpy, shell, canvas, CANVAS, CANVAS);
        int n = 0;
        for (int y = y0; im && y <= y1; y++)
            for (int x = x0; x <= x1; x++)
                n += dark(dpy, XGetPixel(im.get(), e2e_cell(x), e2e_cell(y)));
        return im ? n : -1;
    };

    // The text tool types where the user clicked; Ctrl+Z takes the text back.
    XRaiseWindow(dpy, shell);
    app.click(tools[5], 12, 12);   // alpha
    app.click(canvas, e2e_cell(2), e2e_cell(14));
    app.keys(shell, {"shift+h", "i"});
    e2e_sleep_ms(300);
    EXPECT_GT(dark_cells(2, 13, 4, 17), 10) << "\"Hi\" in \"fixed\" shows";
    app.key(shell, "ctrl+z");
    e2e_sleep_ms(300);
    EXPECT_EQ(dark_cells(0, 13, 0, 31), 0) << "the text is gone";

    XRaiseWindow(dpy, shell);
    app.click(tools[1], 12, 12);   // line: the caret goes
    drag_cells(app, canvas, 1, 2, 4, 28, 4);
    app.click(patterns[7], 16, 15);
    app.keys(shell, {"F10", "Right", "Right", "Right", "Down", "Return"});   // Tools > DrawFilled
    e2e_sleep_ms(200);
    app.click(tools[6], 12, 12);   // rect
    drag_cells(app, canvas, 2, 8, 10, 24, 26);
    EXPECT_EQ(dark_cells(2, 27, 4, 4), 26) << "the line";
    EXPECT_EQ(dark_cells(0, 31, 5, 9), 0) << "below the line";
    EXPECT_EQ(dark_cells(8, 24, 10, 26), 17 * 17) << "pattern 7 fills the rectangle with the foreground";
    EXPECT_EQ(dark_cells(25, 31, 10, 26), 0) << "right of the rectangle";

    app.key(shell, "ctrl+z");
    e2e_sleep_ms(300);
    EXPECT_EQ(dark_cells(0, 31, 5, 31), 0) << "the rectangle is gone";
    EXPECT_EQ(dark_cells(2, 27, 4, 4), 26) << "the line stays";
    app.kill_now();
}

// The zoom accelerators step one level; with Shift they jump straight to the largest zoom or to actual size.
TEST(CanvasE2e, ZoomAcceleratorsWithAndWithoutShift)
{
    E2eApp app;
    ASSERT_TRUE(app.start({"-width", "16", "-height", "16"}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u) << app.stderr_text();
    const struct { const char* combo; int zoom; } steps[] = {
        {"ctrl+equal", 4}, {"ctrl+minus", 3}, {"ctrl+shift+minus", 0}, {"ctrl+equal", 2}, {"ctrl+shift+equal", 4},
        {"ctrl+shift+equal", 4}, {"ctrl+minus", 3}, {"ctrl+minus", 2}, {"ctrl+minus", 0}};
    for (const auto& s : steps) {
        app.key(w, s.combo);
        e2e_sleep_ms(300);
        EXPECT_NE(find_canvas(app.display(), w, 16 << s.zoom, 16 << s.zoom), 0u) << s.combo << ": zoom " << s.zoom;
    }
}
