// The select tool and the operations on its floating selection, checked on the image's pixels.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>

#include "app/commands.h"
#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "tools/palettes.h"
#include "tools/selection.h"
#include "tools/tool_table.h"
#include "files_support.h"

using filetest::command;

namespace {

// Pixel (x, y) of the block gets value base + x + 4 * y (a bitmap: set).
void paint_block(Drawing* d, int x0, int y0, int w, int h, unsigned long base)
{
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++)
            put_pixels(d, d->depth == 1 ? 1 : base + static_cast<unsigned long>(x + 4 * y), x0 + x, y0 + y);
    commit(d);
    refresh_rect(d, x0, y0, w, h);
    select_tool(d, TOOL_SELECT);
    pump();
}

// "x,y,w,h" of the selection, "" without one.
std::string current(Drawing* d)
{
    if (!selection_exists(d))
        return "";
    XRectangle r = d->selection->current;
    return std::to_string(r.x) + "," + std::to_string(r.y) + "," + std::to_string(r.width) + "," +
           std::to_string(r.height);
}

// "" when the rectangle at (x0, y0) holds base + x + 4 * y.
std::string block_at(Drawing* d, int x0, int y0, int w, int h, unsigned long base)
{
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++)
            if (image_pixel(d, x0 + x, y0 + y) != base + static_cast<unsigned long>(x + 4 * y))
                return std::to_string(x0 + x) + "," + std::to_string(y0 + y);
    return "";
}

}  // namespace

// A rubber band lifts a selection that a button-1 drag moves (leaving background) and a button-3 drag copies; undo
// puts a moved and cleared selection back; Select All lifts everything; the Edit menu follows.
TEST(Selection, MakeMoveCopyClearAndUndo)
{
    Drawing* d = make_drawing(32, 24);
    paint_block(d, 2, 2, 4, 3, 20);
    unsigned long bg = background_pixel(d);
    stroke(d, Button1, {{2, 2}, {4, 3}, {5, 4}});
    EXPECT_EQ(current(d), "2,2,4,3");
    command(d, CMD_UPDATE_SENSITIVITY);   // as the Edit menu opens
    EXPECT_TRUE(item_sensitive(d, CMD_CUT));
    EXPECT_FALSE(item_sensitive(d, CMD_INVERT)) << "Invert is for bitmaps";
    stroke(d, Button1, {{3, 3}, {10, 8}, {13, 13}});
    EXPECT_EQ(current(d), "12,12,4,3");
    stroke(d, Button1, {{30, 1}});   // lays it down and starts a 1 x 1 one
    EXPECT_EQ(current(d), "30,1,1,1");
    EXPECT_EQ(block_at(d, 12, 12, 4, 3, 20), "");
    EXPECT_EQ(pixels_are(d, bg, {{2, 2}, {5, 4}}), "");
    stroke(d, Button1, {{15, 2}, {60, 4}});
    EXPECT_EQ(current(d), "15,2,17,3") << "a band stops at the image's edge";

    stroke(d, Button1, {{12, 12}, {15, 14}});
    stroke(d, Button3, {{13, 13}, {3, 3}});
    select_tool(d, TOOL_PENCIL);   // lays the copy down
    pump();
    EXPECT_EQ(current(d), "");
    EXPECT_EQ(block_at(d, 2, 2, 4, 3, 20), "");
    EXPECT_EQ(block_at(d, 12, 12, 4, 3, 20), "");

    select_tool(d, TOOL_SELECT);
    stroke(d, Button1, {{12, 12}, {15, 14}});
    stroke(d, Button1, {{13, 13}, {14, 16}});
    command(d, CMD_CLEAR);
    EXPECT_EQ(image_pixel(d, 12, 12), bg);
    EXPECT_NE(image_pixel(d, 13, 15), 20u) << "Clear drops the moved piece";
    ASSERT_TRUE(undo_sensitive(d));
    cmd_undo(d, nullptr, False);
    pump();
    EXPECT_EQ(block_at(d, 12, 12, 4, 3, 20), "");
    EXPECT_EQ(current(d), "");
    EXPECT_FALSE(undo_sensitive(d));
    EXPECT_EQ(check_image_copy(d), "");

    select_tool(d, TOOL_PENCIL);
    command(d, CMD_SELECT_ALL);
    EXPECT_EQ(d->currentTool, TOOL_SELECT);
    EXPECT_EQ(current(d), "0,0,32,24");
    command(d, CMD_CLEAR);
    EXPECT_EQ(current(d), "");
    EXPECT_FALSE(item_sensitive(d, CMD_CLEAR));
    EXPECT_EQ(pixels_are(d, bg, {{2, 2}, {12, 12}, {31, 23}}), "");
}

// Nudges, rotations, flips, invert and trim move exactly the right pixels; without a selection they do nothing.
TEST(Selection, NudgesAndTransforms)
{
    Drawing* d = make_drawing(32, 24);
    paint_block(d, 4, 4, 3, 2, 60);
    stroke(d, Button1, {{4, 4}, {6, 5}});
    command(d, CMD_NUDGE_LEFT);
    EXPECT_EQ(current(d), "3,4,3,2");
    for (int c : {CMD_NUDGE_RIGHT, CMD_NUDGE_DOWN, CMD_NUDGE_UP})
        command(d, c);
    EXPECT_EQ(current(d), "4,4,3,2");

    // A quarter turn keeps the corner; the top row becomes the left column read upwards.
    command(d, CMD_ROTATE);
    EXPECT_EQ(current(d), "4,4,2,3");
    stroke(d, Button1, {{30, 20}});
    EXPECT_EQ(image_pixel(d, 4, 6), 60u);
    EXPECT_EQ(image_pixel(d, 4, 4), 62u);
    EXPECT_EQ(image_pixel(d, 5, 4), 66u);
    EXPECT_EQ(image_pixel(d, 6, 5), background_pixel(d)) << "vacated part is background";

    // Three more turns give the original back; then each flip once.
    stroke(d, Button1, {{4, 4}, {5, 6}});
    for (int c : {CMD_ROTATE, CMD_ROTATE, CMD_ROTATE, CMD_FLIP_HORIZONTAL})
        command(d, c);
    stroke(d, Button1, {{30, 20}});
    stroke(d, Button1, {{4, 4}, {6, 5}});
    command(d, CMD_FLIP_VERTICAL);
    stroke(d, Button1, {{30, 20}});
    cmd_clear(d, nullptr, False);   // nothing selected from here on
    for (int c : {CMD_ROTATE, CMD_FLIP_VERTICAL, CMD_NUDGE_LEFT, CMD_CLEAR})
        command(d, c);
    EXPECT_EQ(image_pixel(d, 4, 4), 66u);
    EXPECT_EQ(image_pixel(d, 5, 4), 65u);
    EXPECT_EQ(image_pixel(d, 6, 5), 60u);

    // A button-3 band trims to the pixels unlike the background colour (which a new image is not), if any.
    XFillRectangle(app().display, d->image, d->backgroundGC, 0, 0, 32, 24);
    paint_block(d, 7, 9, 1, 1, 90);
    stroke(d, Button3, {{5, 6}, {12, 14}});
    EXPECT_EQ(current(d), "7,9,1,1");
    stroke(d, Button1, {{0, 0}});
    stroke(d, Button3, {{20, 2}, {25, 5}});
    EXPECT_EQ(current(d), "20,2,6,4");

    // Invert of a bitmap selection swaps set and clear bits inside it only.
    Drawing* b = create_drawing("bits", 16, 8, 1, None, -1, -1, nullptr);
    ASSERT_NE(b, nullptr);
    paint_block(b, 2, 2, 2, 1, 0);
    stroke(b, Button1, {{2, 2}, {4, 3}});
    EXPECT_TRUE(item_sensitive(b, CMD_INVERT));
    command(b, CMD_INVERT);
    stroke(b, Button1, {{15, 7}});
    EXPECT_EQ(pixels_are(b, 0, {{2, 2}, {3, 2}, {5, 2}}), "");
    EXPECT_EQ(pixels_are(b, 1, {{4, 2}, {2, 3}}), "");
}

// With movingSelection the outline marches on a timer; the timer stops when the selection goes.
TEST(Selection, MarchingOutline)
{
    Drawing* d = make_drawing(32, 24);
    res().movingSelection = True;
    select_tool(d, TOOL_SELECT);
    stroke(d, Button1, {{2, 2}, {20, 2}});
    ASSERT_NE(d->selection->timer, 0u);
    auto row = [&] {
        std::vector<unsigned long> v;
        for (int x = 2; x < 10; x++)
            v.push_back(image_pixel(d, x, 2));
        return v;
    };
    std::vector<unsigned long> first = row();
    EXPECT_TRUE(wait_for([&] { return row() != first; })) << "the outline moved";
    select_tool(d, TOOL_LINE);
    pump();
    EXPECT_EQ(d->selection->timer, 0u);
}

// A transform whose pixel buffer does not fit in memory leaves the selection as it was instead of ending the program.
TEST(Selection, TransformWithoutMemoryKeepsSelection)
{
    if (underAddressSanitizer)
        GTEST_SKIP() << "out of memory under AddressSanitizer ends the process";
    Drawing* d = make_drawing(16, 16);
    Pixmap big = XCreatePixmap(app().display, app().root, 3000, 2000, static_cast<unsigned>(d->depth));
    XFillRectangle(app().display, big, d->backgroundGC, 0, 0, 3000, 2000);
    ASSERT_EQ(paste_pixmap(d, big), 0);
    XFreePixmap(app().display, big);
    pump();
    long pages = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        pages = std::fscanf(f, "%ld", &pages) == 1 ? pages : 0;
        std::fclose(f);
    }
    ASSERT_GT(pages, 0);
    rlimit old{};
    getrlimit(RLIMIT_AS, &old);
    // Room for the X image of the pixels, not for a long per pixel.
    rlimit tight{static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE) + (24 << 20)), old.rlim_max};
    if (old.rlim_cur != RLIM_INFINITY && old.rlim_cur <= tight.rlim_cur)
        GTEST_SKIP() << "the address space is already limited";
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    int status = run_command(d, CMD_ROTATE, nullptr, False);
    setrlimit(RLIMIT_AS, &old);
    EXPECT_NE(status, 0);
    EXPECT_EQ(current(d), "0,0,3000,2000");
}
