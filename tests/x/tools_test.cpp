// The first tools and their palettes: Shift lines, rectangles and ovals, undo, patterns, DrawFilled, window reuse.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <Xm/ToggleB.h>

#include <tuple>

#include "app/commands.h"
#include "canvas/undo.h"
#include "tools/palettes.h"
#include "tools/shapes.h"
#include "tools/tool_table.h"

namespace {

Widget entry(Widget palette, int i)
{
    WidgetList list = nullptr;
    XtVaGetValues(palette, XmNchildren, &list, nullptr);
    return list[i];
}

// Chooses entry i of a palette as a click would.
void click(Widget palette, int i)
{
    XmToggleButtonSetState(entry(palette, i), True, True);
    pump();
}

Drawing* actual_size_drawing(int w, int h)
{
    Drawing* d = make_drawing(w, h);
    set_zoom(d, 0);
    return d;
}

Pixmap label_pixmap(Drawing* d, int tool)
{
    Pixmap p = None;
    XtVaGetValues(entry(d->toolsBox, tool), XmNlabelPixmap, &p, nullptr);
    return p;
}

}  // namespace

// The Shift line snaps towards (13, 30) vertical, (20, 14) horizontal and (20, 16) to the diagonal point (16, 16).
// (A line of width 1 ends just before its end point, as X draws wide lines with butt caps.)
TEST(Tools, ShiftLineSnaps)
{
    Drawing* d = actual_size_drawing(40, 40);
    select_tool(d, TOOL_LINE);
    unsigned long fg = foreground_pixel(d), blank = image_pixel(d, 0, 0);
    const struct { ImagePoint end; std::vector<ImagePoint> painted, clear; } cases[] = {
        {{13, 30}, {{10, 29}, {10, 20}}, {{12, 29}, {11, 20}}},
        {{20, 14}, {{19, 10}}, {{19, 13}, {15, 12}}},
        {{20, 16}, {{15, 15}, {13, 13}}, {{19, 16}, {15, 13}}}};
    for (const auto& c : cases) {
        stroke(d, Button1, {{10, 10}, c.end}, ShiftMask);
        EXPECT_EQ(pixels_are(d, fg, c.painted), "") << "towards " << c.end.x << "," << c.end.y;
        EXPECT_EQ(pixels_are(d, blank, c.clear), "") << "towards " << c.end.x << "," << c.end.y;
        cmd_undo(d, nullptr, False);
        EXPECT_EQ(pixels_are(d, blank, c.painted), "") << "undo takes the line back";
    }
}

// A thin outline lies on the box, a wide one is centred on it; an earlier drag leaves no trace; the filled inside
// carries pattern 3 aligned on the image's origin. Undo takes each back; a click without a drag draws nothing.
TEST(Tools, RectangleAndOvalOutlinedAndFilled)
{
    Drawing* d = actual_size_drawing(32, 24);
    unsigned long fg = foreground_pixel(d), bg = background_pixel(d), blank = image_pixel(d, 0, 0);
    click(d->patternsBox, 3);
    const struct {
        int tool, width;   // the line-width entry: 0 is 1, 2 is 4
        bool filled;
        ImagePoint from, via, to;
        std::vector<ImagePoint> painted, clear;
        int x0, y0, x1, y1;   // the patterned inside
    } cases[] = {
        {TOOL_RECT, 0, false, {5, 5}, {12, 20}, {20, 15}, {{5, 5}, {20, 15}, {12, 5}, {5, 10}, {20, 10}, {12, 15}},
         {{12, 10}, {4, 10}, {21, 10}, {12, 16}, {12, 20}}, 0, 0, -1, -1},
        {TOOL_RECT, 2, true, {5, 5}, {20, 15}, {20, 15},
         {{12, 3}, {12, 6}, {12, 13}, {12, 16}, {3, 10}, {6, 10}, {18, 10}, {21, 10}}, {{12, 2}, {2, 10}, {22, 10}},
         7, 7, 17, 12},
        {TOOL_OVAL, 0, false, {5, 5}, {28, 22}, {25, 19}, {{15, 5}, {15, 19}, {5, 12}, {25, 12}},
         {{5, 5}, {15, 12}, {28, 22}}, 0, 0, -1, -1},
        {TOOL_OVAL, 2, true, {5, 5}, {25, 19}, {25, 19}, {{15, 4}, {15, 6}, {3, 12}}, {{15, 2}, {2, 12}, {5, 5}},
         11, 10, 19, 14}};
    for (const auto& c : cases) {
        const std::string what = std::string(toolTable[c.tool].name) + (c.filled ? " filled" : " outline");
        select_tool(d, c.tool);
        click(d->lineWidthBox, c.width);
        if (c.filled != (d->rectFilled != 0))   // the menu toggle: called only on a change
            cmd_draw_filled(d, nullptr, c.filled);
        stroke(d, Button1, {c.from, c.via, c.to});
        EXPECT_EQ(pixels_are(d, fg, c.painted), "") << what;
        EXPECT_EQ(pixels_are(d, blank, c.clear), "") << what;
        for (int y = c.y0; y <= c.y1; y++)
            for (int x = c.x0; x <= c.x1; x++)
                ASSERT_EQ(image_pixel(d, x, y), (patternBits[3][y % 8] >> (x % 8)) & 1 ? fg : bg) << x << "," << y;
        cmd_undo(d, nullptr, False);
        EXPECT_EQ(pixels_are(d, blank, c.painted), "") << what << " undone";
        stroke(d, Button1, {{9, 9}});
        EXPECT_EQ(image_pixel(d, 9, 9), blank) << what << ": a click draws nothing";
    }
}

// Undo after two rectangles restores exactly the second one's box grown by the line width; a tool switch ends Undo.
TEST(Tools, UndoRestoresOnlyTheLastRectangle)
{
    Drawing* d = actual_size_drawing(40, 40);
    unsigned long fg = foreground_pixel(d), blank = image_pixel(d, 0, 0);
    stroke(d, Button1, {{5, 32}, {35, 32}});
    select_tool(d, TOOL_RECT);
    stroke(d, Button1, {{2, 2}, {10, 10}});
    stroke(d, Button1, {{10, 30}, {20, 34}});
    XFillRectangle(app().display, d->image, d->foregroundGC, 9, 29, 13, 7);
    run_command(d, CMD_UNDO, nullptr, False);
    pump();
    EXPECT_EQ(pixels_are(d, blank, {{20, 34}, {15, 30}, {9, 29}}), "") << "grown box restored";
    EXPECT_EQ(pixels_are(d, fg, {{15, 32}, {8, 32}, {25, 32}}), "") << "the pencil line under it comes back";
    EXPECT_EQ(pixels_are(d, fg, {{2, 2}, {10, 6}}), "") << "the first rectangle stays";
    EXPECT_TRUE(d->modified);
    EXPECT_FALSE(undo_sensitive(d));
    stroke(d, Button1, {{1, 1}, {20, 5}});
    EXPECT_TRUE(undo_sensitive(d));
    select_tool(d, TOOL_OVAL);
    EXPECT_FALSE(undo_sensitive(d)) << "switching tools withdraws undo";
}

// Button 2 paints the pattern in the current colours (7 all foreground, 0 all background); button 3 the background.
TEST(Tools, PatternsPaintTheCurrentColours)
{
    Drawing* d = actual_size_drawing(32, 32);
    XSetForeground(app().display, d->foregroundGC, 42);
    XSetForeground(app().display, d->backgroundGC, 43);
    const struct { int pattern; unsigned button; unsigned long pixel; } cases[] = {
        {7, Button2, 42}, {0, Button2, 43}, {7, Button3, 43}, {7, Button1, 42}};
    int x = 3;
    for (const auto& c : cases) {
        click(d->patternsBox, c.pattern);
        stroke(d, c.button, {{x, 3}, {x, 10}});
        EXPECT_EQ(image_pixel(d, x, 7), c.pixel) << "pattern " << c.pattern << " button " << c.button;
        x += 3;
    }
}

// DrawFilled swaps both shape pictures for those the application defaults name; a reused window starts again with the pencil, pattern 0, width 1, outlines.
TEST(Tools, DrawFilledAndReusedWindowStartsAfresh)
{
    make_drawing(16, 16);   // another drawing stays open meanwhile
    Drawing* d = make_drawing(16, 16);
    Pixmap rectOutline = label_pixmap(d, TOOL_RECT), ovalOutline = label_pixmap(d, TOOL_OVAL);
    cmd_draw_filled(d, nullptr, True);
    Pixmap rectFilled = label_pixmap(d, TOOL_RECT), ovalFilled = label_pixmap(d, TOOL_OVAL);
    EXPECT_TRUE(rectFilled != rectOutline && ovalFilled != ovalOutline && rectFilled != ovalFilled);
    EXPECT_TRUE(rectFilled == res().rectfilled_labelPixmap && ovalFilled == res().ovalfilled_labelPixmap);
    select_tool(d, TOOL_OVAL);
    click(d->patternsBox, 5);
    click(d->lineWidthBox, 4);
    stroke(d, Button1, {{1, 1}, {9, 9}});
    close_drawing(d);
    pump();
    ASSERT_EQ(make_drawing(16, 16), d);
    EXPECT_EQ(std::tuple(d->currentTool, d->currentPattern, d->lineWidth, d->rectFilled + d->ovalFilled),
              std::tuple(int(TOOL_PENCIL), 0, 1u, 0));
    for (auto [palette, on, off] : {std::tuple{d->toolsBox, int(TOOL_PENCIL), int(TOOL_OVAL)}, {d->patternsBox, 0, 5},
                                    {d->lineWidthBox, 0, 4}})
        EXPECT_TRUE(XmToggleButtonGetState(entry(palette, on)) && !XmToggleButtonGetState(entry(palette, off)));
    EXPECT_TRUE(label_pixmap(d, TOOL_RECT) == rectOutline && label_pixmap(d, TOOL_OVAL) == ovalOutline);
    EXPECT_FALSE(undo_sensitive(d));
}

// Undo takes back the whole shape after a width change, and after a shape in another drawing (one drag is shared).
TEST(Tools, ShapeUndoTakesBackTheWholeShape)
{
    Drawing* a = actual_size_drawing(60, 60);
    Drawing* b = actual_size_drawing(60, 60);
    unsigned long blank = image_pixel(a, 0, 0);
    std::vector<ImagePoint> all;
    for (int i = 0; i < 60 * 60; i++)
        all.push_back({i % 60, i / 60});
    select_tool(a, TOOL_RECT);
    a->lineWidth = 9;
    stroke(a, Button1, {{20, 20}, {40, 40}});
    a->lineWidth = 1;
    cmd_undo(a, nullptr, False);
    EXPECT_EQ(pixels_are(a, blank, all), "") << "width changed after the rectangle";

    select_tool(a, TOOL_OVAL);
    select_tool(b, TOOL_OVAL);
    stroke(a, Button1, {{5, 5}, {20, 20}});
    stroke(b, Button1, {{30, 30}, {50, 50}});
    cmd_undo(a, nullptr, False);
    EXPECT_EQ(pixels_are(a, blank, all), "") << "oval undone after one in another drawing";
    EXPECT_NE(image_pixel(b, 50, 40), blank) << "the other drawing keeps its oval";
}

// There is one level of undo: once Undo has taken a stroke back, Edit > Undo is insensitive, whichever tool made it.
TEST(Tools, UndoLeavesNothingToUndo)
{
    Drawing* d = actual_size_drawing(40, 40);
    auto check = [&](int tool, const std::function<void()>& strokeOf) {
        select_tool(d, tool);
        pump();
        strokeOf();
        ASSERT_TRUE(undo_sensitive(d)) << toolTable[tool].name << ": a stroke offers undo";
        run_command(d, CMD_UNDO, nullptr, False);
        pump();
        EXPECT_FALSE(undo_sensitive(d)) << toolTable[tool].name << ": nothing is left to undo";
    };
    check(TOOL_PENCIL, [&] { stroke(d, Button1, {{2, 2}, {8, 8}}); });
    check(TOOL_LINE, [&] { stroke(d, Button1, {{2, 2}, {20, 8}}); });
    check(TOOL_ERASER, [&] { stroke(d, Button1, {{2, 2}, {8, 20}}); });
    check(TOOL_FILL, [&] { stroke(d, Button1, {{5, 5}}); });
    check(TOOL_RECT, [&] { stroke(d, Button1, {{2, 2}, {12, 12}}); });
    check(TOOL_OVAL, [&] { stroke(d, Button1, {{2, 2}, {12, 12}}); });
    check(TOOL_HOTSPOT, [&] { stroke(d, Button1, {{4, 4}}); });
    check(TOOL_SELECT, [&] { stroke(d, Button1, {{1, 1}, {9, 9}}); });
}
