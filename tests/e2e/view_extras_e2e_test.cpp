// The real program: View > Grid hides and shows the grid of one window only; the status line reads out the pixel
// under the pointer and its colour, the rubber band's size while selecting, and nothing once the pointer leaves;
// a palette button shows its tooltip when the pointer rests on it.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "e2e_support.h"

namespace {

// A 4 x 4 picture: red at the left of the two top rows, transparent row 2, #123456 elsewhere.
void write_known_xpm(const std::string& path, int copies = 1)
{
    std::ofstream out(path);
    out << "/* XPM */\nstatic char *known[] = {\n\"" << 4 * copies << " " << 4 * copies << " 3 1\",\n"
        << "\"  c None\",\n\". c #ff0000\",\n\"X c #123456\",\n";
    const char* rows[] = {"..XX", "..XX", "    ", "XX.."};
    for (int y = 0; y < 4 * copies; y++) {
        std::string row;
        for (int c = 0; c < copies; c++)
            row += rows[y % 4];
        out << "\"" << row << "\"" << (y + 1 < 4 * copies ? ",\n" : "};\n");
    }
}

// Where the canvas shows the grid ("column row", "column", "row" or ""): the pixel between two cells differs from
// the cells' own (a red cell at zoom 3, its column 7 and its row 7).
std::string grid_of(E2eApp& app, Window shell, Window canvas)
{
    ImagePtr im = read_window(app.display(), shell, canvas, 32, 32);
    if (!im)
        return "unreadable";
    unsigned long cell = XGetPixel(im.get(), 3, 3);
    bool column = XGetPixel(im.get(), 7, 3) != cell, row = XGetPixel(im.get(), 3, 7) != cell;
    return column && row ? "column row" : column ? "column" : row ? "row" : "";
}

// Waits up to five seconds for a popup that was not there before.
Window new_popup(Display* dpy, const std::vector<Window>& before)
{
    for (int i = 0; i < 50; i++, e2e_sleep_ms(100))
        for (Window w : popups(dpy))
            if (std::find(before.begin(), before.end(), w) == before.end())
                return w;
    return 0;
}

}  // namespace

// The grid is each window's own: hiding it in one window leaves the other's alone, the hidden grid's cells close up
// in both directions, and the item brings it back. Started with showGrid off, a window has none.
TEST(ViewExtrasE2e, GridToggleIsPerWindowAndFollowsTheResource)
{
    E2eScratch s;
    write_known_xpm(s.dir + "/a.xpm");
    write_known_xpm(s.dir + "/b.xpm");
    E2eApp app;
    Window a = app.start_shown({s.dir + "/a.xpm", s.dir + "/b.xpm"}, "a.xpm"), b = app.wait_window("b.xpm");
    ASSERT_TRUE(a && b) << app.stderr_text();
    Window canvasA = find_canvas(app.display(), a, 32, 32), canvasB = find_canvas(app.display(), b, 32, 32);
    ASSERT_TRUE(canvasA && canvasB);

    EXPECT_EQ(grid_of(app, a, canvasA), "column row") << "the grid shows by default";
    app.menu(a, 2, "g");
    EXPECT_EQ(grid_of(app, a, canvasA), "") << "View > Grid hides it";
    EXPECT_EQ(grid_of(app, b, canvasB), "column row") << "the other window keeps its grid";
    app.menu(a, 2, "g");
    EXPECT_EQ(grid_of(app, a, canvasA), "column row") << "View > Grid again brings it back";

    E2eApp off;
    Window c = off.start_shown({"-xrm", "*showGrid: False", s.dir + "/a.xpm"}, "a.xpm");
    ASSERT_NE(c, 0u) << off.stderr_text();
    Window canvasC = find_canvas(off.display(), c, 32, 32);
    ASSERT_NE(canvasC, 0u);
    EXPECT_EQ(grid_of(off, c, canvasC), "") << "showGrid False starts without the grid";
    off.menu(c, 2, "g");
    EXPECT_EQ(grid_of(off, c, canvasC), "column row") << "and View > Grid shows it";
}

// Over the canvas the status line names the image pixel under the pointer and its colour, magnified and at actual
// size; off the canvas it says nothing; while the select tool marks a rectangle it gives the rectangle's size.
TEST(ViewExtrasE2e, PointerReadoutFollowsThePointer)
{
    E2eScratch s;
    write_known_xpm(s.dir + "/known.xpm", 2);
    E2eApp app;
    Window shell = app.start_shown({s.dir + "/known.xpm"}, "known.xpm");
    ASSERT_NE(shell, 0u) << app.stderr_text();
    Window canvas = find_canvas(app.display(), shell, 64, 64);
    std::vector<Window> tools = palette(app.display(), shell, 9, 24, 24);
    ASSERT_TRUE(canvas && tools.size() == 9u);

    const struct { int x, y; const char* text; } magnified[] = {
        {1, 0, "X - 1, Y - 0  #ff0000"},
        {7, 1, "X - 7, Y - 1  #123456"},
        {5, 6, "X - 5, Y - 6  None"},
    };
    for (const auto& m : magnified) {
        app.move(canvas, e2e_cell(m.x), e2e_cell(m.y));
        EXPECT_TRUE(app.shows_text(shell, LABEL_FONT, m.text)) << m.text;
    }
    app.move(tools[2], 12, 12);
    EXPECT_FALSE(app.shows_text(shell, LABEL_FONT, "X - 5, Y - 6")) << "leaving the canvas clears the readout";
    EXPECT_TRUE(app.shows_text(shell, LABEL_FONT, "Width - 8, Height - 8")) << "the size text stays";

    app.key(shell, "ctrl+shift+minus");
    e2e_sleep_ms(300);
    Window actual = find_canvas(app.display(), shell, 8, 8);
    ASSERT_NE(actual, 0u) << "actual size";
    app.move(actual, 0, 3);
    EXPECT_TRUE(app.shows_text(shell, LABEL_FONT, "X - 0, Y - 3  #123456")) << "at actual size";
    app.move(actual, 4, 4);
    EXPECT_TRUE(app.shows_text(shell, LABEL_FONT, "X - 4, Y - 4  #ff0000")) << "at actual size";

    app.key(shell, "ctrl+shift+equal");
    e2e_sleep_ms(300);
    canvas = find_canvas(app.display(), shell, 128, 128);
    ASSERT_NE(canvas, 0u) << "the largest zoom";
    app.click(tools[0], 12, 12);   // select
    auto cell = [](int v) { return (v << 4) + 7; };
    app.move(canvas, cell(1), cell(1));
    app.button(1, true);
    app.move(canvas, cell(3), cell(2));
    app.move(canvas, cell(4), cell(3));
    EXPECT_TRUE(app.shows_text(shell, LABEL_FONT, "Selection - 4 x 3")) << "marking a selection";
    app.button(1, false);
}

// Resting on a tool button brings up its tooltip, a window of its own naming the tool and what the modifiers do;
// leaving the button takes it down.
TEST(ViewExtrasE2e, TooltipOnAPaletteButton)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16);
    ASSERT_EQ(d.tools.size(), 9u) << app.stderr_text();
    std::vector<Window> before = popups(app.display());
    app.move(d.tools[3], 10, 10);   // fill
    app.move(d.tools[3], 12, 12);
    Window tip = new_popup(app.display(), before);
    ASSERT_NE(tip, 0u) << "no tooltip came up";
    e2e_sleep_ms(300);   // mapped, now drawn
    EXPECT_TRUE(app.shows_text(tip, LABEL_FONT, "Fill"));
    EXPECT_TRUE(app.shows_text(tip, LABEL_FONT, "Control: every pixel of the clicked colour"));
    app.move(d.canvas, e2e_cell(8), e2e_cell(8));
    e2e_sleep_ms(300);
    std::vector<Window> after = popups(app.display());
    EXPECT_EQ(std::find(after.begin(), after.end(), tip), after.end()) << "the tooltip goes when the pointer leaves";
}
