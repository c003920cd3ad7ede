// The fill, the eraser and the hotspot tool: what each leaves in the image, their undo, and the blinking marker.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <Xm/DrawingA.h>
#include <Xm/ToggleB.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <tuple>
#include <utility>

#include "app/commands.h"
#include "files_support.h"
#include "canvas/input.h"
#include "canvas/undo.h"
#include "app/open_save.h"
#include "tools/palettes.h"
#include "tools/tool_table.h"
#include "files/write_drawing.h"

// A click fills the 4-connected area (a corner-touching wall holds); Control fills everywhere; button 2 a pattern.
TEST(Fill, ConnectedAreaControlEverywhereAndPattern)
{
    Drawing* d = make_drawing(20, 12);
    set_zoom(d, 2);
    unsigned long blank = image_pixel(d, 0, 0), fg = foreground_pixel(d), bg = background_pixel(d);
    for (int i = 0; i < 10; i++)   // a diagonal wall from (0, 9) to (9, 0) cuts off the top-left corner
        XDrawPoint(app().display, d->image, d->foregroundGC, i, 9 - i);
    select_tool(d, TOOL_FILL);

    stroke(d, Button1, {{15, 10}, {2, 2}});
    EXPECT_EQ(pixels_are(d, fg, {{19, 0}, {5, 11}}), "");
    EXPECT_EQ(pixels_are(d, blank, {{0, 0}, {4, 4}, {2, 2}}), "") << "the corner-touching wall holds";
    EXPECT_EQ(check_display(d), "") << "the canvas shows the fill";
    cmd_undo(d, nullptr, False);
    EXPECT_EQ(image_pixel(d, 19, 0), blank);
    EXPECT_EQ(image_pixel(d, 9, 0), fg) << "the wall stays";

    stroke(d, Button1, {{15, 10}}, ControlMask);
    EXPECT_EQ(pixels_are(d, fg, {{0, 0}, {19, 11}}), "") << "Control fills the value everywhere";
    cmd_undo(d, nullptr, False);
    stroke(d, Button3, {{15, 10}}, ControlMask);
    EXPECT_EQ(pixels_are(d, bg, {{0, 0}, {19, 11}}), "") << "Control + button 3: the background everywhere";
    EXPECT_EQ(image_pixel(d, 9, 0), fg) << "the wall is another value";
    cmd_undo(d, nullptr, False);

    WidgetList patterns = nullptr;
    XtVaGetValues(d->patternsBox, XmNchildren, &patterns, nullptr);
    XmToggleButtonSetState(patterns[3], True, True);
    stroke(d, Button2, {{15, 10}});
    for (int y = 0; y < 12; y++)
        for (int x = std::max(0, 10 - y); x < 20; x++)   // beyond the wall
            ASSERT_EQ(image_pixel(d, x, y), (patternBits[3][y % 8] >> (x % 8)) & 1 ? fg : bg) << x << "," << y;
    EXPECT_EQ(image_pixel(d, 0, 0), blank);
    EXPECT_EQ(check_display(d), "");

    // A bitmap: a set column divides the clear bits, Control reaches both sides, in either button's bit.
    Drawing* b = create_drawing("bits", 16, 8, 1, None, -1, -1, nullptr);
    ASSERT_NE(b, nullptr);
    put_pixels(b, 1, 8, 0, 1, 8);
    select_tool(b, TOOL_FILL);
    stroke(b, Button1, {{2, 2}}, ControlMask);
    EXPECT_EQ(pixels_are(b, 1, {{0, 0}, {15, 7}}), "");
    stroke(b, Button3, {{12, 5}}, ControlMask);
    EXPECT_EQ(pixels_are(b, 0, {{0, 0}, {8, 3}, {15, 7}}), "");
}

// A fill that runs out of memory leaves the picture as it was and the program running.
TEST(Fill, OutOfMemoryPaintsNothing)
{
    if (underAddressSanitizer)
        GTEST_SKIP() << "out of memory under AddressSanitizer ends the process";
    Drawing* d = make_drawing(2000, 2000);
    set_zoom(d, 0);
    select_tool(d, TOOL_FILL);
    unsigned long blank = image_pixel(d, 1999, 1999);
    long pages = 0;
    FILE* statm = std::fopen("/proc/self/statm", "r");
    ASSERT_NE(statm, nullptr);
    ASSERT_EQ(std::fscanf(statm, "%ld", &pages), 1);
    std::fclose(statm);
    rlimit old{};
    getrlimit(RLIMIT_AS, &old);
    // Room for the server's picture of the image, not for the fill's own.
    rlimit tight{static_cast<rlim_t>(pages * sysconf(_SC_PAGESIZE) + (12 << 20)), old.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    area_button(d, ButtonPress, Button1, 5, 5);
    setrlimit(RLIMIT_AS, &old);
    area_button(d, ButtonRelease, Button1, 5, 5, Button1Mask);
    EXPECT_EQ(image_pixel(d, 1999, 1999), blank);
}

// The eraser's square: 15 image pixels at actual size, 4 at zoom factor 4 (5 off a cell's first screen pixel, 4 on
// the small view); a fast drag clears the whole swept band and nothing beyond.
TEST(Eraser, SquareSizesAndGaplessSweep)
{
    Drawing* d = make_drawing(48, 40);
    set_zoom(d, 0);
    select_tool(d, TOOL_FILL);
    stroke(d, Button1, {{0, 0}});   // everything foreground
    unsigned long fg = foreground_pixel(d), bg = background_pixel(d);
    select_tool(d, TOOL_ERASER);

    stroke(d, Button1, {{2, 2}});
    EXPECT_EQ(pixels_are(d, bg, {{2, 2}, {16, 16}}), "");
    EXPECT_EQ(pixels_are(d, fg, {{17, 16}, {16, 17}, {1, 2}}), "");
    cmd_undo(d, nullptr, False);
    EXPECT_EQ(image_pixel(d, 2, 2), fg);

    set_zoom(d, 2);
    for (auto [wx, wy, last] : {std::tuple{4 * 30, 4 * 30, ImagePoint{33, 33}}, {4 * 20 + 2, 4 * 30 + 2, {24, 34}}}) {
        area_button(d, ButtonPress, Button1, wx, wy);
        area_button(d, ButtonRelease, Button1, wx, wy, Button1Mask);
        EXPECT_EQ(image_pixel(d, last.x, last.y), bg) << wx;
        EXPECT_EQ(pixels_are(d, fg, {{last.x + 1, last.y}, {last.x, last.y + 1}}), "") << wx;
    }
    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);   // the view is built when first shown
    pump();
    ASSERT_NE(d->smallArea, nullptr);
    for (int type : {ButtonPress, ButtonRelease}) {
        XEvent ev = pointer_event(XtWindow(d->smallArea), type, Button1, 40, 2);
        ev.xbutton.x_root = 401;   // any place on the screen
        XmDrawingAreaCallbackStruct cbs{XmCR_INPUT, &ev, ev.xbutton.window};
        canvas_input_cb(d->smallArea, d, &cbs);
    }
    EXPECT_EQ(image_pixel(d, 43, 5), bg);
    EXPECT_EQ(pixels_are(d, fg, {{44, 5}, {43, 6}}), "");

    // From (10, 10) to (20, 10) in one motion: a 4-pixel square.
    area_button(d, ButtonPress, Button1, 4 * 10, 4 * 10);
    area_motion(d, 4 * 20, 4 * 10, Button1Mask);
    area_button(d, ButtonRelease, Button1, 4 * 20, 4 * 10, Button1Mask);
    for (int y = 8; y < 16; y++)
        for (int x = 8; x < 26; x++)
            ASSERT_EQ(image_pixel(d, x, y), x >= 10 && x < 24 && y >= 10 && y < 14 ? bg : fg) << x << "," << y;
    EXPECT_EQ(check_display(d), "");
}

// Undo goes back one hotspot move, even after one in another drawing; a save holds the real pixel under the blinking
// marker, leaving the tool puts it back, and closing a drawing stops its blink before the record is reused.
TEST(Hotspot, MoveUndoBlinkAndSave)
{
    Drawing* d = create_drawing("hot", 16, 16, 1, None, -1, -1, nullptr);
    ASSERT_NE(d, nullptr);
    pump();
    set_zoom(d, 3);
    XDrawPoint(app().display, d->image, d->foregroundGC, 5, 6);   // a set bit under the coming hotspot
    select_tool(d, TOOL_HOTSPOT);
    d->modified = 0;
    auto hotspot = [&] { return std::pair{d->hotspotX, d->hotspotY}; };

    stroke(d, Button1, {{2, 3}});
    EXPECT_EQ(hotspot(), std::pair(2, 3));
    EXPECT_TRUE(d->modified) << "a moved hotspot is a change to save";
    stroke(d, Button1, {{5, 6}});
    stroke(d, Button1, {{99, 99}});
    EXPECT_EQ(hotspot(), std::pair(5, 6)) << "a click beside the image is ignored";
    Drawing* other = create_drawing("other", 40, 40, 1, None, 30, 30, nullptr);
    ASSERT_NE(other, nullptr);
    select_tool(other, TOOL_HOTSPOT);
    stroke(other, Button1, {{1, 1}});
    cmd_undo(d, nullptr, False);
    EXPECT_EQ(hotspot(), std::pair(2, 3));
    ASSERT_NE(other->hotspotBlink, 0u);
    close_drawing(other);
    EXPECT_TRUE(wait_for([&] { return other->hotspotBlink == 0; })) << "closing stops the blink";
    EXPECT_FALSE(undo_sensitive(d));
    stroke(d, Button1, {{5, 6}});
    EXPECT_EQ(image_pixel(d, 2, 3), 0u) << "the old place lost its marker";

    // Save as the marker over the set bit turns light again.
    ASSERT_TRUE(wait_for([&] { return image_pixel(d, 5, 6) == 1; }));
    ASSERT_TRUE(wait_for([&] { return image_pixel(d, 5, 6) == 0; })) << "the marker does not blink";
    filetest::ScratchDir dir;
    ASSERT_EQ(write_drawing(d, dir.path("hot.xbm").c_str(), false), 0);
    filetest::XbmBack back = filetest::read_xbm(dir.path("hot.xbm"));
    ASSERT_EQ(back.status, BitmapSuccess);
    EXPECT_EQ(std::pair(back.hx, back.hy), std::pair(5, 6));
    EXPECT_EQ(back.bit(5, 6), 1) << "the marker was saved instead of the pixel";

    select_tool(d, TOOL_PENCIL);
    EXPECT_EQ(image_pixel(d, 5, 6), 1u);
    EXPECT_FALSE(wait_for([&] { return image_pixel(d, 5, 6) != 1; })) << "no blink after the tool is left";
    ASSERT_EQ(make_drawing(8, 8), other) << "the closed record is reused";
    EXPECT_EQ(std::pair(other->currentTool, other->hotspotBlink), std::pair(int(TOOL_PENCIL), XtIntervalId(0)));
}
