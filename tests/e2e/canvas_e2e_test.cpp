// The real program driven through XTest: typed text and its undo; a line (button 1) and a filled rectangle
// (button 2) on the magnified canvas, and Ctrl+Z; the fill and the eraser; the zoom accelerators.
#include <gtest/gtest.h>

#include <X11/extensions/XTest.h>

#include <vector>

#include "e2e_support.h"

namespace {

constexpr int ZOOM = 3;   // the default zoomLevel
constexpr int CANVAS = 32 << ZOOM;

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

}  // namespace

TEST(CanvasE2e, TypeDrawLineAndFilledRectangleThenUndo)
{
    E2eApp app;
    ASSERT_TRUE(app.connected());
    // Away from the corner where in-process tests put their windows.
    ASSERT_TRUE(app.start({"-width", "32", "-height", "32", "-geometry", "+760+0"}));
    Window shell = app.wait_window("Untitled");
    ASSERT_NE(shell, 0u);
    e2e_sleep_ms(300);
    Display* dpy = app.display();
    Window canvas = find_canvas(dpy, shell, CANVAS, CANVAS);
    ASSERT_NE(canvas, 0u);
    std::vector<Window> tools = palette(dpy, shell, 9, 24, 24);
    ASSERT_EQ(tools.size(), 9u) << "tools palette";
    std::vector<Window> patterns = palette(dpy, shell, 8, 32, 30);
    ASSERT_EQ(patterns.size(), 8u) << "patterns palette";
    auto shown = [&] {
        ImagePtr im = read_window(dpy, shell, canvas, CANVAS, CANVAS);
        EXPECT_TRUE(im);
        return [im = std::shared_ptr<XImage>(std::move(im))](int x, int y) { return XGetPixel(im.get(), at(x), at(y)); };
    };
    unsigned long blank = shown()(20, 20);
    auto dark_cells = [&](int x0, int x1, int y0, int y1) {
        auto cell = shown();
        int n = 0;
        for (int y = y0; y <= y1; y++)
            for (int x = x0; x <= x1; x++)
                n += dark(dpy, cell(x, y));
        return n;
    };

    // The text tool types where the user clicked; Ctrl+Z takes the text back while the caret stays.
    XRaiseWindow(dpy, shell);
    app.click(tools[5], 12, 12);   // alpha
    app.click(canvas, at(2), at(14));
    e2e_sleep_ms(200);
    EXPECT_EQ(dark_cells(0, 31, 0, 31), dark_cells(3, 5, 0, 31)) << "only the caret, just right of the click";
    app.keys(shell, {"shift+h", "i"});
    e2e_sleep_ms(300);
    // "Hi" in "fixed" covers about two 6-pixel cells from x = 2.
    EXPECT_GT(dark_cells(2, 13, 4, 17), 10) << "the letters show";
    app.key(shell, "ctrl+z");
    e2e_sleep_ms(300);
    EXPECT_EQ(dark_cells(0, 13, 0, 31), 0) << "the text is gone";
    EXPECT_GT(dark_cells(14, 18, 0, 31), 3) << "the caret waits after it";

    XRaiseWindow(dpy, shell);
    app.click(tools[1], 12, 12);   // line: the caret goes
    drag(app, canvas, 1, 2, 4, 28, 4);
    app.click(patterns[7], 16, 15);
    app.keys(shell, {"F10", "Right", "Right", "Right", "Down", "Return"});   // Tools > DrawFilled
    e2e_sleep_ms(200);
    app.click(tools[6], 12, 12);   // rect
    drag(app, canvas, 2, 8, 10, 24, 26);

    auto drawn = shown();
    for (int x : {2, 15, 27})
        EXPECT_TRUE(dark(dpy, drawn(x, 4))) << "line at " << x;
    EXPECT_EQ(drawn(15, 6), blank) << "below the line";
    int light = 0;
    for (int y = 10; y <= 26; y++)
        for (int x = 8; x <= 24; x++)
            light += !dark(dpy, drawn(x, y));
    EXPECT_EQ(light, 0) << "pattern 7 fills the rectangle with the foreground";
    EXPECT_EQ(drawn(26, 18), blank) << "right of the rectangle";

    app.key(shell, "ctrl+z");
    e2e_sleep_ms(300);
    auto undone = shown();
    for (auto [x, y] : {std::pair{16, 18}, {8, 10}, {24, 26}})
        EXPECT_EQ(undone(x, y), blank) << "the rectangle is gone at " << x << "," << y;
    EXPECT_TRUE(dark(dpy, undone(15, 4))) << "the line stays";

    // The fill floods the open area around the line; the eraser's square
    // (three image pixels at zoom 3) clears a spot of it.
    XRaiseWindow(dpy, shell);
    app.click(tools[3], 12, 12);   // fill
    app.click(canvas, at(20), at(20));
    e2e_sleep_ms(300);
    auto filled = shown();
    EXPECT_TRUE(dark(dpy, filled(0, 0)));
    EXPECT_TRUE(dark(dpy, filled(31, 31)));
    app.click(tools[4], 12, 12);   // eraser
    app.click(canvas, at(10), at(10));
    e2e_sleep_ms(300);
    auto erased = shown();
    EXPECT_FALSE(dark(dpy, erased(10, 10)));
    EXPECT_FALSE(dark(dpy, erased(12, 12)));
    EXPECT_TRUE(dark(dpy, erased(13, 13)));
    EXPECT_TRUE(dark(dpy, erased(9, 10)));
    app.kill_now();
}

// The zoom accelerators step one level; with Shift they jump straight to
// the largest zoom or to actual size.
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
        {"ctrl+equal", 4}, {"ctrl+minus", 3}, {"ctrl+shift+minus", 0}, {"ctrl+equal", 2}, {"ctrl+shift+equal", 4},
        {"ctrl+shift+equal", 4}, {"ctrl+minus", 3}, {"ctrl+minus", 2}, {"ctrl+minus", 0},
    };
    for (const auto& s : steps) {
        app.key(w, s.combo);
        e2e_sleep_ms(300);
        EXPECT_NE(find_canvas(app.display(), w, 16 << s.zoom, 16 << s.zoom), 0u) << s.combo << ": zoom " << s.zoom;
    }
}
