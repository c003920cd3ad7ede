// The select tool and the operations on its floating selection: lifting,
// moving and copying by drag, undo, nudges, transforms, trim, Select All,
// Clear and the Edit menu's sensitivity, checked on the image's pixels.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <X11/Xlib.h>

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>

#include <string>
#include <vector>

#include "app/app.h"
#include "app/commands.h"
#include "app/draw.h"
#include "app/menus.h"
#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "tools/palettes.h"
#include "tools/selection.h"
#include "tools/tool_table.h"

namespace {

// Pixel (x, y) of the marked block gets value base + x + 4 * y.
void paint_block(Drawing* d, int x0, int y0, int w, int h, unsigned long base)
{
    Display* dpy = app().display;
    GC gc = XCreateGC(dpy, d->image, 0, nullptr);
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++) {
            XSetForeground(dpy, gc, d->depth == 1 ? 1 : base + static_cast<unsigned long>(x + 4 * y));
            XDrawPoint(dpy, d->image, gc, x0 + x, y0 + y);
        }
    XFreeGC(dpy, gc);
    commit(d);
    refresh_rect(d, x0, y0, w, h);
    pump();
}

Drawing* selecting_drawing(int w, int h, int depth = 0)
{
    Drawing* d = depth == 1 ? create_drawing("bits", w, h, 1, None, -1, -1, nullptr)
                            : make_drawing(w, h);
    if (d) {
        select_tool(d, TOOL_SELECT);
        pump();
    }
    return d;
}

XRectangle current(Drawing* d)
{
    return d->selection ? d->selection->current : XRectangle{};
}

bool sensitive(Drawing* d, int command)
{
    Widget w = menu_item(d, command);
    return w && XtIsSensitive(w);
}

// "" when the rectangle of `d` at (x, y) holds base + x + 4 * y.
std::string block_at(Drawing* d, int x0, int y0, int w, int h, unsigned long base)
{
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++) {
            unsigned long want = base + static_cast<unsigned long>(x + 4 * y);
            unsigned long got = image_pixel(d, x0 + x, y0 + y);
            if (got != want)
                return "pixel " + std::to_string(x0 + x) + "," + std::to_string(y0 + y) + " is " +
                       std::to_string(got) + " not " + std::to_string(want);
        }
    return "";
}

}  // namespace

// A rubber band lifts a selection that a button-1 drag moves, leaving
// background behind; undo puts everything back; the menu follows.
TEST(Selection, MakeMoveAndUndo)
{
    Drawing* d = selecting_drawing(32, 24);
    ASSERT_NE(d, nullptr);
    paint_block(d, 2, 2, 4, 3, 20);
    unsigned long bg = background_pixel(d);
    run_command(d, CMD_UPDATE_SENSITIVITY, nullptr, False);   // as the Edit menu opens
    EXPECT_FALSE(sensitive(d, CMD_CUT));

    stroke(d, Button1, {{2, 2}, {4, 3}, {5, 4}});
    XRectangle r = current(d);
    EXPECT_EQ(r.x, 2);
    EXPECT_EQ(r.y, 2);
    EXPECT_EQ(r.width, 4);
    EXPECT_EQ(r.height, 3);
    EXPECT_TRUE(sensitive(d, CMD_CUT));
    EXPECT_TRUE(sensitive(d, CMD_ROTATE));
    EXPECT_FALSE(sensitive(d, CMD_INVERT)) << "Invert is for bitmaps";

    stroke(d, Button1, {{3, 3}, {10, 8}, {13, 13}});
    r = current(d);
    EXPECT_EQ(r.x, 12);
    EXPECT_EQ(r.y, 12);
    // Lay it down by pressing outside, which also hides the outline.
    stroke(d, Button1, {{30, 1}});
    EXPECT_EQ(block_at(d, 12, 12, 4, 3, 20), "");
    EXPECT_EQ(image_pixel(d, 2, 2), bg);
    EXPECT_EQ(image_pixel(d, 5, 4), bg);

    // The release of a fresh band without motion is a 1 x 1 selection.
    r = current(d);
    EXPECT_EQ(r.width, 1);
    EXPECT_EQ(r.height, 1);

    // A drag, then undo: the picture is as before the drag.
    stroke(d, Button1, {{12, 12}, {15, 14}});
    stroke(d, Button1, {{13, 13}, {20, 13}});
    ASSERT_TRUE(undo_sensitive(d));
    cmd_undo(d, nullptr, False);
    pump();
    EXPECT_EQ(block_at(d, 12, 12, 4, 3, 20), "");
    EXPECT_EQ(current(d).width, 0);
    EXPECT_FALSE(undo_sensitive(d));
    EXPECT_EQ(check_image_copy(d), "");

    // Clear of a moved selection, then undo: both places come back.
    unsigned long under = image_pixel(d, 13, 20);
    stroke(d, Button1, {{12, 12}, {15, 14}});
    stroke(d, Button1, {{13, 13}, {14, 20}});
    run_command(d, CMD_CLEAR, nullptr, False);
    EXPECT_EQ(image_pixel(d, 12, 12), bg);
    ASSERT_TRUE(undo_sensitive(d));
    cmd_undo(d, nullptr, False);
    pump();
    EXPECT_EQ(block_at(d, 12, 12, 4, 3, 20), "");
    EXPECT_EQ(image_pixel(d, 13, 20), under);
    EXPECT_FALSE(undo_sensitive(d));
    EXPECT_EQ(check_image_copy(d), "");
}

// Button 3 drags a copy; the source stays.
TEST(Selection, ButtonThreeDragCopies)
{
    Drawing* d = selecting_drawing(32, 24);
    ASSERT_NE(d, nullptr);
    paint_block(d, 1, 1, 3, 2, 40);
    stroke(d, Button1, {{1, 1}, {3, 2}});
    stroke(d, Button3, {{2, 1}, {12, 6}});
    EXPECT_EQ(current(d).x, 11);
    select_tool(d, TOOL_PENCIL);   // lays the selection down
    pump();
    EXPECT_EQ(block_at(d, 1, 1, 3, 2, 40), "");
    EXPECT_EQ(block_at(d, 11, 6, 3, 2, 40), "");
    EXPECT_EQ(current(d).width, 0);
}

// A band dragged far right stops at the last column; one stopped exactly
// at the width reaches one pixel past the image.
TEST(Selection, BandClampsToImage)
{
    Drawing* d = selecting_drawing(20, 10);
    ASSERT_NE(d, nullptr);
    stroke(d, Button1, {{15, 2}, {60, 4}});
    EXPECT_EQ(current(d).x + current(d).width, 20);
    stroke(d, Button1, {{0, 9}});
    stroke(d, Button1, {{15, 2}, {20, 4}});
    EXPECT_EQ(current(d).x + current(d).width, 21);
}

// Nudging left and back puts the pixels where they were; the lifted
// place of a cut selection keeps its background hole.
TEST(Selection, NudgesAndTransforms)
{
    Drawing* d = selecting_drawing(32, 24);
    ASSERT_NE(d, nullptr);
    paint_block(d, 4, 4, 3, 2, 60);
    stroke(d, Button1, {{4, 4}, {6, 5}});
    run_command(d, CMD_NUDGE_LEFT, nullptr, False);
    EXPECT_EQ(current(d).x, 3);
    run_command(d, CMD_NUDGE_RIGHT, nullptr, False);
    run_command(d, CMD_NUDGE_DOWN, nullptr, False);
    run_command(d, CMD_NUDGE_UP, nullptr, False);
    pump();
    EXPECT_EQ(current(d).x, 4);
    EXPECT_EQ(current(d).y, 4);

    // Rotate 3 x 2: 2 x 3 at the same corner, top row now the left column
    // read upwards; four turns give the original back.
    run_command(d, CMD_ROTATE, nullptr, False);
    XRectangle r = current(d);
    EXPECT_EQ(r.x, 4);
    EXPECT_EQ(r.y, 4);
    EXPECT_EQ(r.width, 2);
    EXPECT_EQ(r.height, 3);
    stroke(d, Button1, {{30, 20}});   // lay it down, outline gone
    EXPECT_EQ(image_pixel(d, 4, 6), 60u);
    EXPECT_EQ(image_pixel(d, 4, 4), 62u);
    EXPECT_EQ(image_pixel(d, 5, 4), 66u);
    EXPECT_EQ(image_pixel(d, 6, 5), background_pixel(d)) << "vacated part is background";

    stroke(d, Button1, {{4, 4}, {5, 6}});
    for (int i = 0; i < 3; i++)
        run_command(d, CMD_ROTATE, nullptr, False);
    run_command(d, CMD_FLIP_HORIZONTAL, nullptr, False);
    run_command(d, CMD_FLIP_HORIZONTAL, nullptr, False);
    run_command(d, CMD_FLIP_VERTICAL, nullptr, False);
    run_command(d, CMD_FLIP_VERTICAL, nullptr, False);
    stroke(d, Button1, {{30, 20}});
    EXPECT_EQ(block_at(d, 4, 4, 3, 2, 60), "");

    // Flip horizontally once: columns mirrored.
    stroke(d, Button1, {{4, 4}, {6, 5}});
    run_command(d, CMD_FLIP_HORIZONTAL, nullptr, False);
    stroke(d, Button1, {{30, 20}});
    EXPECT_EQ(image_pixel(d, 4, 4), 62u);
    EXPECT_EQ(image_pixel(d, 6, 5), 64u);

    // Without a selection the commands change nothing.
    std::vector<unsigned long> before;
    for (int x = 0; x < 8; x++)
        before.push_back(image_pixel(d, x, 4));
    stroke(d, Button1, {{0, 0}});
    cmd_clear(d, nullptr, False);   // drop the 1 x 1 selection
    for (int c : {CMD_ROTATE, CMD_FLIP_VERTICAL, CMD_NUDGE_LEFT, CMD_CLEAR})
        run_command(d, c, nullptr, False);
    pump();
    for (int x = 0; x < 8; x++)
        EXPECT_EQ(image_pixel(d, x, 4), before[static_cast<size_t>(x)]) << x;
}

// Invert of a bitmap selection swaps set and clear bits.
TEST(Selection, InvertBitmap)
{
    Drawing* d = selecting_drawing(16, 8, 1);
    ASSERT_NE(d, nullptr);
    paint_block(d, 2, 2, 2, 1, 0);   // two set bits at (2,2), (3,2)
    stroke(d, Button1, {{2, 2}, {4, 3}});
    EXPECT_TRUE(sensitive(d, CMD_INVERT));
    run_command(d, CMD_INVERT, nullptr, False);
    stroke(d, Button1, {{15, 7}});
    EXPECT_EQ(image_pixel(d, 2, 2), 0u);
    EXPECT_EQ(image_pixel(d, 3, 2), 0u);
    EXPECT_EQ(image_pixel(d, 4, 2), 1u);
    EXPECT_EQ(image_pixel(d, 2, 3), 1u);
    EXPECT_EQ(image_pixel(d, 5, 2), 0u) << "outside the selection";
}

// A button-3 band shrinks to the drawn pixels; over background it stays.
TEST(Selection, ButtonThreeBandTrims)
{
    Drawing* d = selecting_drawing(32, 24);
    ASSERT_NE(d, nullptr);
    // Trim compares with the background colour, which a new image is not.
    XFillRectangle(app().display, d->image, d->backgroundGC, 0, 0, 32, 24);
    paint_block(d, 7, 9, 1, 1, 90);
    stroke(d, Button3, {{5, 6}, {12, 14}});
    XRectangle r = current(d);
    EXPECT_EQ(r.x, 7);
    EXPECT_EQ(r.y, 9);
    EXPECT_EQ(r.width, 1);
    EXPECT_EQ(r.height, 1);
    stroke(d, Button1, {{0, 0}});
    stroke(d, Button3, {{20, 2}, {25, 5}});
    r = current(d);
    EXPECT_EQ(r.x, 20);
    EXPECT_EQ(r.width, 6);
    EXPECT_EQ(r.height, 4);
}

// Select All lifts everything (switching tools); Clear leaves background
// and no selection.
TEST(Selection, SelectAllAndClear)
{
    Drawing* d = make_drawing(16, 12);
    ASSERT_NE(d, nullptr);
    select_tool(d, TOOL_PENCIL);
    pump();
    paint_block(d, 3, 3, 2, 2, 70);
    run_command(d, CMD_SELECT_ALL, nullptr, False);
    pump();
    EXPECT_EQ(d->currentTool, TOOL_SELECT);
    XRectangle r = current(d);
    EXPECT_EQ(r.width, 16);
    EXPECT_EQ(r.height, 12);
    run_command(d, CMD_CLEAR, nullptr, False);
    pump();
    EXPECT_EQ(current(d).width, 0);
    EXPECT_FALSE(sensitive(d, CMD_CLEAR));
    for (int x : {0, 3, 4, 15})
        EXPECT_EQ(image_pixel(d, x, 3), background_pixel(d)) << x;
}

// With movingSelection the outline marches on a timer; the timer stops
// when the selection goes.
TEST(Selection, MarchingOutline)
{
    Drawing* d = selecting_drawing(32, 24);
    ASSERT_NE(d, nullptr);
    Boolean was = res().movingSelection;
    res().movingSelection = True;
    stroke(d, Button1, {{2, 2}, {20, 2}});
    ASSERT_NE(d->selection->timer, 0u);
    std::vector<unsigned long> first, later;
    for (int x = 2; x < 10; x++)
        first.push_back(image_pixel(d, x, 2));
    usleep(250000);
    pump();
    for (int x = 2; x < 10; x++)
        later.push_back(image_pixel(d, x, 2));
    EXPECT_NE(first, later) << "the outline moved";
    select_tool(d, TOOL_LINE);
    pump();
    EXPECT_EQ(d->selection->timer, 0u);
    res().movingSelection = was;
}

// A transform whose pixel buffer does not fit in memory leaves the
// selection as it was instead of ending the program.
TEST(Selection, TransformWithoutMemoryKeepsSelection)
{
    Drawing* d = selecting_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    Display* dpy = app().display;
    Pixmap big = XCreatePixmap(dpy, app().root, 3000, 2000, static_cast<unsigned>(d->depth));
    XFillRectangle(dpy, big, d->backgroundGC, 0, 0, 3000, 2000);
    ASSERT_EQ(paste_pixmap(d, big), 0);
    XFreePixmap(dpy, big);
    pump();
    // Room for the X image of the pixels, not for a long per pixel.
    long pages = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld", &pages) != 1)
            pages = 0;
        std::fclose(f);
    }
    ASSERT_GT(pages, 0);
    rlimit old{};
    getrlimit(RLIMIT_AS, &old);
    rlimit tight = old;
    tight.rlim_cur = static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (24u << 20);
    if (old.rlim_cur != RLIM_INFINITY && old.rlim_cur <= tight.rlim_cur)
        GTEST_SKIP() << "the address space is already limited";
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    int status = run_command(d, CMD_ROTATE, nullptr, False);
    setrlimit(RLIMIT_AS, &old);
    EXPECT_NE(status, 0);
    ASSERT_TRUE(selection_exists(d));
    EXPECT_EQ(current(d).width, 3000);
    EXPECT_EQ(current(d).height, 2000);
}
