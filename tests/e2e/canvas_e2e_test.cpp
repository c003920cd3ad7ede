// The real program driven through XTest: typed text and Ctrl+Z; a line (button 1) and a pattern-filled rectangle
// (button 2) dragged on the magnified canvas, and Ctrl+Z; then the zoom accelerators.
#include <gtest/gtest.h>

#include <string>

#include "e2e_support.h"

TEST(CanvasE2e, TypeDrawLineAndFilledRectangleThenUndoThenZoom)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 32, 32);
    std::vector<Window> patterns = palette(app.display(), d.shell, 8, 32, 30);
    ASSERT_TRUE(d.canvas && d.tools.size() == 9u && patterns.size() == 8u) << "canvas, tools and patterns";

    // The text tool types where the user clicked; Ctrl+Z takes the text back.
    XRaiseWindow(app.display(), d.shell);
    app.click(d.tools[5], 12, 12);   // alpha
    app.click(d.canvas, e2e_cell(2), e2e_cell(14));
    app.keys(d.shell, {"shift+h", "i"});
    e2e_sleep_ms(300);
    EXPECT_GT(dark_cells(app, d, 2, 4, 13, 17), 10) << "\"Hi\" in \"fixed\" shows";
    app.key(d.shell, "ctrl+z");
    e2e_sleep_ms(300);
    EXPECT_EQ(dark_cells(app, d, 0, 0, 13, 31), 0) << "the text is gone";

    XRaiseWindow(app.display(), d.shell);
    app.click(d.tools[1], 12, 12);   // line: the caret goes
    drag_cells(app, d, 1, 2, 4, 28, 4);
    app.click(patterns[7], 16, 15);
    app.menu(d.shell, 3, "Return");   // Tools > DrawFilled
    e2e_sleep_ms(200);
    app.click(d.tools[6], 12, 12);   // rect
    drag_cells(app, d, 2, 8, 10, 24, 26);
    EXPECT_EQ(dark_cells(app, d, 2, 4, 27, 4), 26) << "the line";
    EXPECT_EQ(dark_cells(app, d, 0, 5, 31, 9), 0) << "below the line";
    EXPECT_EQ(dark_cells(app, d, 8, 10, 24, 26), 17 * 17) << "pattern 7 fills the rectangle with the foreground";
    EXPECT_EQ(dark_cells(app, d, 25, 10, 31, 26), 0) << "right of the rectangle";

    app.key(d.shell, "ctrl+z");
    e2e_sleep_ms(300);
    EXPECT_EQ(dark_cells(app, d, 0, 5, 31, 31), 0) << "the rectangle is gone";
    EXPECT_EQ(dark_cells(app, d, 2, 4, 27, 4), 26) << "the line stays";

    // The zoom accelerators step one level; with Shift they jump straight to the largest zoom or to actual size.
    // (The steps themselves, from every zoom: x.Canvas.ZoomStepsAndMenuSensitivity.)
    const struct { const char* combo; int zoom; } steps[] = {
        {"ctrl+equal", 4}, {"ctrl+minus", 3}, {"ctrl+shift+minus", 0}, {"ctrl+shift+equal", 4}};
    for (const auto& s : steps) {
        app.key(d.shell, s.combo);
        e2e_sleep_ms(300);
        EXPECT_NE(find_canvas(app.display(), d.shell, 32 << s.zoom, 32 << s.zoom), 0u) << s.combo << " " << s.zoom;
    }
}
