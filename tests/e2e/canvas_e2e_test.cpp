// The real program driven through XTest: typed text and Ctrl+Z; a line (button 1) and a pattern-filled rectangle
// (button 2) dragged on the magnified canvas, and Ctrl+Z; then the zoom accelerators. Control-clicks of the fill tool.
#include <gtest/gtest.h>

#include <fstream>
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
    app.keys(d.shell, {"F10", "Right", "Right", "Right", "Down", "Return"});   // Tools > DrawFilled
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
    const struct { const char* combo; int zoom; } steps[] = {
        {"ctrl+equal", 4}, {"ctrl+minus", 3}, {"ctrl+shift+minus", 0}, {"ctrl+equal", 2}, {"ctrl+shift+equal", 4},
        {"ctrl+shift+equal", 4}, {"ctrl+minus", 3}, {"ctrl+minus", 2}, {"ctrl+minus", 0}};
    for (const auto& s : steps) {
        app.key(d.shell, s.combo);
        e2e_sleep_ms(300);
        EXPECT_NE(find_canvas(app.display(), d.shell, 32 << s.zoom, 32 << s.zoom), 0u) << s.combo << " " << s.zoom;
    }
}


namespace {

// Control held around a real click of `button` at image cell (x, y).
void control_click(E2eApp& app, const E2eDrawing& d, int x, int y, unsigned button)
{
    app.hold("ctrl", true);
    app.click(d.canvas, e2e_cell(x), e2e_cell(y), button);
    app.hold("ctrl", false);
    e2e_sleep_ms(200);
}

}  // namespace

// Control with any button reaches the fill tool, on a colour drawing and on a bitmap: Control + button 1 gives every
// pixel of the clicked colour the foreground, also those beyond a dividing column; Control + button 3 the background.
TEST(CanvasE2e, ControlClickFillsEveryPixelOfTheColour)
{
    E2eScratch scratch;
    std::string path = scratch.dir + "/divided.xbm";
    std::string rows;   // 16 x 16 with column 8 set: two areas of clear bits that do not touch
    for (int y = 0; y < 16; y++)
        rows += std::string(" 0x00, 0x01") + (y < 15 ? "," : "};\n");
    std::ofstream(path) << "#define divided_width 16\n#define divided_height 16\n"
                           "static unsigned char divided_bits[] = {\n" << rows;

    for (bool bitmap : {false, true}) {
        SCOPED_TRACE(bitmap ? "bitmap" : "colour drawing");
        E2eApp app;
        E2eDrawing d;
        if (bitmap) {
            ASSERT_TRUE(app.start({path, "-geometry", "+760+0"}));
            d.shell = app.wait_window("divided.xbm");
            ASSERT_NE(d.shell, 0u) << app.stderr_text();
            e2e_sleep_ms(300);
            d.width = d.height = 16 << 3;
            d.canvas = find_canvas(app.display(), d.shell, d.width, d.height);
            d.tools = palette(app.display(), d.shell, 9, 24, 24);
        } else {
            d = open_untitled(app, 16, 16);
        }
        ASSERT_TRUE(d.canvas && d.tools.size() == 9u) << "canvas and tools";
        XRaiseWindow(app.display(), d.shell);
        if (!bitmap)   // the pencil's press also sets the pixel below right: here it falls outside
            drag_cells(app, d, 1, 8, 15, 8, 0);
        ASSERT_EQ(dark_cells(app, d, 0, 0, 15, 15), 16) << "the dividing column";

        app.click(d.tools[3], 12, 12);   // fill
        control_click(app, d, 2, 2, 1);
        EXPECT_EQ(dark_cells(app, d, 0, 0, 15, 15), 256) << "Control + button 1 paints both areas in the foreground";
        control_click(app, d, 12, 5, 3);
        EXPECT_EQ(dark_cells(app, d, 0, 0, 15, 15), 0) << "Control + button 3 paints them all in the background";
    }
}
