// The first tools and their palettes: Shift lines, the pencil's click, rectangles and ovals outlined and filled,
// one-level undo per tool, the patterns' colours, the DrawFilled pictures and a reused window's reset.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <Xm/ToggleB.h>
#include <Xm/Xm.h>

#include <string>
#include <vector>

#include "app/app.h"
#include "app/commands.h"
#include "app/draw.h"
#include "app/menus.h"
#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "tools/palettes.h"
#include "tools/shapes.h"
#include "tools/tool_table.h"

namespace {

std::vector<Widget> children(Widget box)
{
    WidgetList list = nullptr;
    Cardinal n = 0;
    XtVaGetValues(box, XmNchildren, &list, XmNnumChildren, &n, nullptr);
    return std::vector<Widget>(list, list + n);
}

// Chooses a palette entry as a click would.
void click(Widget toggle)
{
    XmToggleButtonSetState(toggle, True, True);
    pump();
}

Drawing* actual_size_drawing(int w, int h)
{
    Drawing* d = make_drawing(w, h);
    if (d)
        set_zoom(d, 0);
    return d;
}

unsigned long pattern_pixel(Drawing* d, int pattern, int x, int y)
{
    bool set = (patternBits[pattern][y % 8] >> (x % 8)) & 1;
    return set ? foreground_pixel(d) : background_pixel(d);
}

Pixmap label_pixmap(Widget w)
{
    Pixmap p = None;
    XtVaGetValues(w, XmNlabelPixmap, &p, nullptr);
    return p;
}

// The pencil, pattern 0, width 1 and outline shapes, in the state and on the
// palettes.
void expect_fresh_palettes(Drawing* d)
{
    EXPECT_EQ(d->currentTool, TOOL_PENCIL);
    EXPECT_TRUE(XmToggleButtonGetState(children(d->toolsBox)[TOOL_PENCIL]));
    EXPECT_EQ(d->currentPattern, 0);
    EXPECT_TRUE(XmToggleButtonGetState(children(d->patternsBox)[0]));
    EXPECT_EQ(d->lineWidth, 1u);
    EXPECT_TRUE(XmToggleButtonGetState(children(d->lineWidthBox)[0]));
    EXPECT_EQ(d->rectFilled, 0);
    EXPECT_EQ(d->ovalFilled, 0);
}

}  // namespace

// The Shift line snaps towards (13, 30) vertical, (20, 14) horizontal and (20, 16) to the diagonal point (16, 16).
// (A line of width 1 ends just before its end point, as X draws wide lines with butt caps.)
TEST(Tools, ShiftLineSnaps)
{
    Drawing* d = actual_size_drawing(40, 40);
    ASSERT_NE(d, nullptr);
    select_tool(d, TOOL_LINE);
    unsigned long fg = foreground_pixel(d), blank = image_pixel(d, 0, 0);

    const struct {
        ImagePoint end;
        std::vector<ImagePoint> painted, clear;
    } cases[] = {{{13, 30}, {{10, 29}, {10, 20}}, {{12, 29}, {11, 20}}},
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

// A wide rubber band leaves no trail: after moving away, the first segment's
// thick edge is gone and only the last segment stays.
TEST(Tools, WideRubberBandLeavesNoTrail)
{
    Drawing* d = actual_size_drawing(64, 64);
    ASSERT_NE(d, nullptr);
    select_tool(d, TOOL_LINE);
    std::vector<Widget> widths = children(d->lineWidthBox);
    ASSERT_EQ(widths.size(), 5u);
    click(widths[4]);
    ASSERT_EQ(d->lineWidth, 9u);
    unsigned long fg = foreground_pixel(d), blank = image_pixel(d, 0, 0);
    stroke(d, Button1, {{10, 30}, {50, 30}, {30, 50}, {12, 58}});
    EXPECT_EQ(pixels_are(d, blank, {{40, 26}, {50, 30}, {30, 50}}), "") << "earlier segments erased";
    EXPECT_EQ(image_pixel(d, 11, 44), fg) << "the final segment stays";
}

// Rectangles: the outline lies on the box for a thin width and is centred on it for a wide one; filled, the inside
// carries pattern 3 in the current colours while the outline keeps the pressed button's colour.
TEST(Tools, RectangleOutlineAndPatternFill)
{
    Drawing* d = actual_size_drawing(32, 24);
    ASSERT_NE(d, nullptr);
    select_tool(d, TOOL_RECT);
    unsigned long fg = foreground_pixel(d), blank = image_pixel(d, 0, 0);

    stroke(d, Button1, {{5, 5}, {12, 20}, {20, 15}});
    EXPECT_EQ(pixels_are(d, fg, {{5, 5}, {20, 15}, {12, 5}, {5, 10}, {20, 10}, {12, 15}}), "");
    // Outline only, and the first drag's box (down to row 20) was erased.
    EXPECT_EQ(pixels_are(d, blank, {{12, 10}, {4, 10}, {21, 10}, {12, 16}, {12, 20}}), "");
    cmd_undo(d, nullptr, False);
    EXPECT_EQ(image_pixel(d, 5, 5), blank);

    click(children(d->patternsBox)[3]);
    ASSERT_EQ(d->currentPattern, 3);
    click(children(d->lineWidthBox)[2]);
    ASSERT_EQ(d->lineWidth, 4u);
    cmd_draw_filled(d, nullptr, True);
    stroke(d, Button1, {{5, 5}, {20, 15}});
    // Width 4 centred on the edges: x 3..6 on the left, 18..21 on the right.
    EXPECT_EQ(pixels_are(d, fg, {{12, 3}, {12, 6}, {12, 13}, {12, 16}, {3, 10}, {6, 10}, {18, 10}, {21, 10}}), "");
    EXPECT_EQ(pixels_are(d, blank, {{12, 2}, {2, 10}, {22, 10}}), "");
    for (int y = 7; y <= 12; y++)
        for (int x = 7; x <= 17; x++)
            ASSERT_EQ(image_pixel(d, x, y), pattern_pixel(d, 3, x, y)) << x << "," << y;
}

// Ovals: thin and wide outlines through the box's edge midpoints, the
// corners untouched, and a filled oval carries the pattern inside.
TEST(Tools, OvalOutlineAndPatternFill)
{
    Drawing* d = actual_size_drawing(32, 24);
    ASSERT_NE(d, nullptr);
    select_tool(d, TOOL_OVAL);
    unsigned long fg = foreground_pixel(d), blank = image_pixel(d, 0, 0);

    stroke(d, Button1, {{5, 5}, {28, 22}, {25, 19}});
    EXPECT_EQ(pixels_are(d, fg, {{15, 5}, {15, 19}, {5, 12}, {25, 12}}), "");
    // A corner, the centre, and where the first drag's oval was.
    EXPECT_EQ(pixels_are(d, blank, {{5, 5}, {15, 12}, {28, 22}}), "");
    cmd_undo(d, nullptr, False);

    click(children(d->patternsBox)[3]);
    click(children(d->lineWidthBox)[2]);
    cmd_draw_filled(d, nullptr, True);
    stroke(d, Button1, {{5, 5}, {25, 19}});
    EXPECT_EQ(pixels_are(d, fg, {{15, 4}, {15, 6}, {3, 12}}), "");
    EXPECT_EQ(pixels_are(d, blank, {{15, 2}, {2, 12}, {5, 5}}), "");
    for (int y = 10; y <= 14; y++)
        for (int x = 11; x <= 19; x++)
            ASSERT_EQ(image_pixel(d, x, y), pattern_pixel(d, 3, x, y)) << x << "," << y;
}

// Undo after two rectangles restores only the second one's box; the modified flag stays set and Undo becomes
// insensitive. Undo reaches exactly the box grown by the line width: a pencil line just outside stays.
TEST(Tools, UndoRestoresOnlyTheLastRectangle)
{
    Drawing* d = actual_size_drawing(40, 40);
    ASSERT_NE(d, nullptr);
    unsigned long fg = foreground_pixel(d), blank = image_pixel(d, 0, 0);
    stroke(d, Button1, {{5, 32}, {35, 32}});   // pencil line under the second box
    select_tool(d, TOOL_RECT);
    ASSERT_EQ(d->lineWidth, 1u);
    stroke(d, Button1, {{2, 2}, {10, 10}});
    EXPECT_TRUE(undo_sensitive(d));
    stroke(d, Button1, {{10, 30}, {20, 34}});
    ASSERT_EQ(image_pixel(d, 20, 34), fg);
    // Draw inside what undo restores, behind the tool's back.
    XFillRectangle(app().display, d->image, d->foregroundGC, 9, 29, 13, 7);
    run_command(d, CMD_UNDO, nullptr, False);
    pump();
    EXPECT_EQ(pixels_are(d, blank, {{20, 34}, {15, 30}, {9, 29}}), "") << "grown box restored";
    EXPECT_EQ(pixels_are(d, fg, {{15, 32}, {8, 32}, {25, 32}}), "") << "the pencil line under it comes back";
    EXPECT_EQ(pixels_are(d, fg, {{2, 2}, {10, 6}}), "") << "the first rectangle stays";
    EXPECT_TRUE(d->modified);
    EXPECT_FALSE(undo_sensitive(d));
}

// Undo is offered from a stroke's release until the user undoes or picks
// another tool.
TEST(Tools, UndoInsensitiveAfterToolSwitch)
{
    Drawing* d = actual_size_drawing(32, 32);
    ASSERT_NE(d, nullptr);
    EXPECT_FALSE(undo_sensitive(d)) << "nothing to undo yet";
    select_tool(d, TOOL_LINE);
    stroke(d, Button1, {{1, 1}, {20, 5}});
    EXPECT_TRUE(undo_sensitive(d));
    select_tool(d, TOOL_OVAL);
    EXPECT_EQ(d->currentTool, TOOL_OVAL);
    EXPECT_FALSE(undo_sensitive(d)) << "switching tools withdraws undo";
    stroke(d, Button1, {{1, 1}, {20, 5}});
    EXPECT_TRUE(undo_sensitive(d));
    cmd_undo(d, nullptr, False);
    EXPECT_FALSE(undo_sensitive(d));
}

// Button 2 paints the current pattern in the two current colours: pattern 7 is the foreground, pattern 0 the
// background; button 3 is the background colour.
TEST(Tools, PatternsPaintTheCurrentColours)
{
    Drawing* d = actual_size_drawing(32, 32);
    ASSERT_NE(d, nullptr);
    Display* dpy = app().display;
    XSetForeground(dpy, d->foregroundGC, 42);
    XSetForeground(dpy, d->backgroundGC, 43);
    std::vector<Widget> patterns = children(d->patternsBox);
    ASSERT_EQ(patterns.size(), 8u);
    const struct {
        int pattern;
        unsigned button;
        unsigned long pixel;
    } cases[] = {{7, Button2, 42}, {0, Button2, 43}, {7, Button3, 43}, {7, Button1, 42}};
    int x = 3;
    for (const auto& c : cases) {
        click(patterns[c.pattern]);
        stroke(d, c.button, {{x, 3}, {x, 10}});
        EXPECT_EQ(image_pixel(d, x, 7), c.pixel) << "pattern " << c.pattern << " button " << c.button;
        x += 3;
    }
}

// The palettes: nine tool toggles in table order with the pencil set, eight "pattern %d" toggles with pattern 0
// set, five line widths with 1 set and pictures 18 wide and at least 6 high.
TEST(Tools, PalettesStartWithPencilPatternZeroWidthOne)
{
    Drawing* d = make_drawing(16, 16);
    std::vector<Widget> tools = children(d->toolsBox);
    ASSERT_EQ(tools.size(), 9u);
    for (int t = 0; t < toolCount; t++) {
        EXPECT_EQ(std::string(XtName(tools[t])), toolTable[t].name);
        EXPECT_NE(label_pixmap(tools[t]), None) << toolTable[t].name << " has a picture";
    }
    std::vector<Widget> patterns = children(d->patternsBox);
    ASSERT_EQ(patterns.size(), 8u);
    EXPECT_EQ(std::string(XtName(patterns[5])), "pattern 5");
    std::vector<Widget> widths = children(d->lineWidthBox);
    ASSERT_EQ(widths.size(), 5u);
    expect_fresh_palettes(d);
    const unsigned heights[] = {6, 6, 6, 6, 9};
    for (int i = 0; i < 5; i++) {
        Window root;
        int x, y;
        unsigned w = 0, h = 0, border, depth;
        XGetGeometry(app().display, label_pixmap(widths[i]), &root, &x, &y, &w, &h, &border, &depth);
        EXPECT_EQ(w, 18u);
        EXPECT_EQ(h, heights[i]) << "width " << lineWidths[i];
        EXPECT_EQ(std::string(XtName(widths[i])), "lineWidth");
    }
}

// DrawFilled swaps the rectangle and oval pictures together, and back. A closed drawing's window, reused for a
// new drawing, starts again with the pencil, pattern 0, width 1 and outline shapes.
TEST(Tools, DrawFilledAndReusedWindowStartsAfresh)
{
    make_drawing(16, 16);   // another drawing stays open meanwhile
    Drawing* d = make_drawing(16, 16);
    Widget rect = children(d->toolsBox)[TOOL_RECT], oval = children(d->toolsBox)[TOOL_OVAL];
    Pixmap rectOutline = label_pixmap(rect), ovalOutline = label_pixmap(oval);
    cmd_draw_filled(d, nullptr, True);
    EXPECT_EQ(d->rectFilled + d->ovalFilled, 2);
    EXPECT_NE(label_pixmap(rect), rectOutline);
    EXPECT_NE(label_pixmap(oval), ovalOutline);
    EXPECT_NE(label_pixmap(rect), label_pixmap(oval));
    cmd_draw_filled(d, nullptr, False);
    EXPECT_EQ(d->rectFilled + d->ovalFilled, 0);
    EXPECT_EQ(label_pixmap(rect), rectOutline);
    EXPECT_EQ(label_pixmap(oval), ovalOutline);

    select_tool(d, TOOL_OVAL);
    click(children(d->patternsBox)[5]);
    click(children(d->lineWidthBox)[4]);
    cmd_draw_filled(d, nullptr, True);
    ASSERT_EQ(d->currentTool, TOOL_OVAL);
    close_drawing(d);
    pump();
    ASSERT_EQ(make_drawing(16, 16), d);
    expect_fresh_palettes(d);
    EXPECT_EQ(label_pixmap(rect), rectOutline);
    EXPECT_FALSE(XmToggleButtonGetState(children(d->toolsBox)[TOOL_OVAL]));
    EXPECT_FALSE(undo_sensitive(d));
}

// A press and release without motion draws nothing with the shape tools,
// yet marks the drawing modified.
TEST(Tools, ClickWithoutDragDrawsNoShape)
{
    Drawing* d = actual_size_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    unsigned long blank = image_pixel(d, 5, 5);
    for (int tool : {TOOL_LINE, TOOL_RECT, TOOL_OVAL}) {
        select_tool(d, tool);
        d->modified = 0;
        stroke(d, Button1, {{5, 5}});
        EXPECT_EQ(image_pixel(d, 5, 5), blank) << toolTable[tool].name;
        EXPECT_TRUE(d->modified) << toolTable[tool].name;
    }
}

// Undo of a shape takes back all of it: also when the line width was changed after drawing it, and also when a
// shape was drawn in another drawing since (the tools keep one drag for the whole program).
TEST(Tools, ShapeUndoTakesBackTheWholeShape)
{
    Drawing* a = actual_size_drawing(60, 60);
    Drawing* b = actual_size_drawing(60, 60);
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    unsigned long blank = image_pixel(a, 0, 0);
    auto all_blank = [&](Drawing* d) {
        for (int y = 0; y < d->height; y++)
            for (int x = 0; x < d->width; x++)
                if (image_pixel(d, x, y) != blank)
                    return "left at (" + std::to_string(x) + "," + std::to_string(y) + ")";
        return std::string();
    };
    select_tool(a, TOOL_RECT);
    a->lineWidth = 9;
    stroke(a, Button1, {{20, 20}, {40, 40}});
    a->lineWidth = 1;
    cmd_undo(a, nullptr, False);
    EXPECT_EQ(all_blank(a), "") << "width changed after the rectangle";

    select_tool(a, TOOL_OVAL);
    select_tool(b, TOOL_OVAL);
    stroke(a, Button1, {{5, 5}, {20, 20}});
    stroke(b, Button1, {{30, 30}, {50, 50}});
    cmd_undo(a, nullptr, False);
    EXPECT_EQ(all_blank(a), "") << "oval undone after one in another drawing";
    EXPECT_FALSE(undo_sensitive(a));
    EXPECT_NE(image_pixel(b, 50, 40), blank) << "the other drawing keeps its oval";
}
