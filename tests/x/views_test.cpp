// The small (actual-size) view and the black-and-white view, checked pixel for pixel.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <Xm/DrawingA.h>
#include <Xm/ToggleB.h>

#include "app/commands.h"
#include "app/menus.h"
#include "canvas/image_store.h"
#include "canvas/input.h"
#include "colour/color_list.h"
#include "files_support.h"
#include "tools/palettes.h"
#include "tools/tool_table.h"

namespace {

bool toggle_on(Drawing* d, int command)
{
    Widget t = menu_item(d, command);
    return t && XmToggleButtonGetState(t) && d->menuState.toggles[command];
}

// The top-left w x h of a view's area, read with its dialog raised and the server grabbed.
ImagePtr read_area(Widget dialog, Widget area, int w, int h)
{
    ServerGrab grab;
    XRaiseWindow(app().display, XtWindow(XtParent(dialog)));
    pump();
    return ImagePtr(XGetImage(app().display, XtWindow(area), 0, 0, static_cast<unsigned>(w),
                              static_cast<unsigned>(h), AllPlanes, ZPixmap));
}

// Compares the visible part of the small view with the image ("" if equal); a bitmap's set bits show black.
std::string check_small_view(Drawing* d, int w, int h)
{
    auto shown = [d](unsigned long v) { return d->depth != 1 ? v : v ? app().blackPixel : app().whitePixel; };
    return first_difference(read_area(d->smallViewDialog, d->smallArea, w, h).get(), image_of(d).get(), w, h, shown);
}

void fill(Drawing* d, unsigned long pixel, int x, int y, int w, int h)
{
    put_pixels(d, pixel, x, y, w, h);
    refresh_rect(d, x, y, w, h);
    pump();
}

}  // namespace

// The small view shows the image pixel for pixel, follows painting and exposure, and painting in it reaches the image.
TEST(SmallView, ShowsFollowsAndPaints)
{
    ErrorTrap trap(app().display);
    Drawing* d = make_drawing(24, 20);
    set_zoom(d, 2);
    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    pump();
    ASSERT_TRUE(XtIsManaged(d->smallViewDialog));
    EXPECT_TRUE(toggle_on(d, CMD_SHOW_SMALL_VIEW));

    paint_test_picture(d);
    EXPECT_EQ(check_small_view(d, 24, 20), "") << "after a whole-image refresh";
    select_tool(d, TOOL_LINE);
    stroke(d, Button1, {{3, 4}, {20, 15}});
    EXPECT_EQ(check_small_view(d, 24, 20), "") << "after a line drawn on the canvas";
    XClearArea(app().display, XtWindow(d->smallArea), 0, 0, 0, 0, True);
    pump();
    EXPECT_EQ(check_small_view(d, 24, 20), "") << "after an expose";

    select_tool(d, TOOL_PENCIL);
    for (int type : {ButtonPress, ButtonRelease}) {   // a click in the view at (10, 7)
        XEvent ev = pointer_event(XtWindow(d->smallArea), type, Button1, 10, 7,
                                  type == ButtonRelease ? Button1Mask : 0);
        XmDrawingAreaCallbackStruct cbs{XmCR_INPUT, &ev, ev.xbutton.window};
        canvas_input_cb(d->smallArea, d, &cbs);
    }
    pump();
    unsigned long fg = foreground_pixel(d);
    EXPECT_EQ(image_pixel(d, 10, 7), fg) << "painting in the view is actual size";
    ImagePtr shown = read_area(d->smallViewDialog, d->smallArea, 24, 20);
    ASSERT_TRUE(shown);
    EXPECT_EQ(XGetPixel(shown.get(), 10, 7), fg) << "the view shows the click at once";
    EXPECT_EQ(trap.error(), 0);
}

// Actual size hides the view and turns its toggle off and insensitive; the toggle and Close hide it; a bitmap's view
// is black and white; closing a drawing hides both views, and its reused record renders at the new size.
TEST(SmallView, ToggleZoomCloseAndBitmap)
{
    Drawing* d = make_drawing(16, 16);
    set_zoom(d, 0);
    EXPECT_FALSE(item_sensitive(d, CMD_SHOW_SMALL_VIEW)) << "no small view at actual size";
    zoom_in(d, nullptr);
    EXPECT_TRUE(item_sensitive(d, CMD_SHOW_SMALL_VIEW));
    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    pump();
    ASSERT_TRUE(XtIsManaged(d->smallViewDialog));
    zoom_out(d, nullptr);   // 2 goes straight to 0
    pump();
    EXPECT_FALSE(XtIsManaged(d->smallViewDialog));
    EXPECT_FALSE(toggle_on(d, CMD_SHOW_SMALL_VIEW));
    EXPECT_FALSE(item_sensitive(d, CMD_SHOW_SMALL_VIEW));
    zoom_in(d, nullptr);
    for (Boolean on : {True, False}) {   // through the toggle widget itself, as a user would
        XmToggleButtonSetState(menu_item(d, CMD_SHOW_SMALL_VIEW), on, True);
        pump();
        EXPECT_EQ(XtIsManaged(d->smallViewDialog), on);
    }
    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    filetest::press(d->smallViewDialog, "Close");
    EXPECT_FALSE(XtIsManaged(d->smallViewDialog));
    EXPECT_FALSE(toggle_on(d, CMD_SHOW_SMALL_VIEW)) << "Close turns the toggle off";

    Drawing* b = create_drawing("bits", 12, 10, 1, None, -1, -1, nullptr);
    ASSERT_NE(b, nullptr);
    pump();
    set_zoom(b, 3);
    run_command(b, CMD_SHOW_SMALL_VIEW, nullptr, True);
    pump();
    select_tool(b, TOOL_LINE);
    stroke(b, Button1, {{2, 2}, {9, 7}});
    EXPECT_EQ(image_pixel(b, 2, 2), 1UL);
    EXPECT_EQ(check_small_view(b, 12, 10), "");
    EXPECT_FALSE(XtIsManaged(menu_item(b, CMD_SHOW_BW_VIEW))) << "bitmaps have no BW view";
    EXPECT_NE(run_command(b, CMD_SHOW_BW_VIEW, nullptr, True), 0);

    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    run_command(d, CMD_SHOW_BW_VIEW, nullptr, True);
    pump();
    close_drawing(d);
    pump();
    for (int c : {CMD_SHOW_SMALL_VIEW, CMD_SHOW_BW_VIEW})
        EXPECT_FALSE(toggle_on(d, c)) << c;
    EXPECT_FALSE(XtIsManaged(d->smallViewDialog));
    EXPECT_FALSE(XtIsManaged(d->bwDialog));
    Drawing* again = make_drawing(30, 14);
    ASSERT_EQ(again, d) << "the closed record is reused";
    fill(again, app().blackPixel, 25, 10, 5, 4);
    run_command(again, CMD_SHOW_BW_VIEW, nullptr, True);
    pump();
    ImagePtr bw(XGetImage(app().display, again->bwPixmap, 29, 13, 1, 1, 1, ZPixmap));
    ASSERT_TRUE(bw);
    EXPECT_EQ(XGetPixel(bw.get(), 0, 0), 1UL) << "the rendering has the new image's size";
}

// The black-and-white view shows black for black, white for white and transparent; it follows painting while shown,
// catches up when shown again, and repaints when a colour's mapping changes.
TEST(BWView, ShowsMappingFollowsAndCatchesUp)
{
    ErrorTrap trap(app().display);
    Drawing* d = make_drawing(20, 12);
    ColorList* list = color_list_of(d);
    ASSERT_TRUE(list);
    // A new drawing's colours: transparent, white, black, each its own cell.
    ColorEntry* whiteEntry = list->anchor->next->next;
    ASSERT_TRUE(whiteEntry && whiteEntry->next);
    unsigned long white = whiteEntry->pixel, black = whiteEntry->next->pixel;
    fill(d, black, 0, 0, 5, 12);
    fill(d, white, 5, 0, 5, 12);   // columns 10.. stay transparent

    run_command(d, CMD_SHOW_BW_VIEW, nullptr, True);
    pump();
    ASSERT_TRUE(XtIsManaged(d->bwDialog));
    EXPECT_TRUE(toggle_on(d, CMD_SHOW_BW_VIEW));
    auto expect_view = [&](int blackUpTo, const char* when) {
        ImagePtr im = read_area(d->bwDialog, d->bwArea, 20, 12);
        ASSERT_TRUE(im);
        for (int y = 0; y < 12; y++)
            for (int x = 0; x < 20; x++)
                ASSERT_EQ(XGetPixel(im.get(), x, y), x < blackUpTo ? app().blackPixel : app().whitePixel)
                    << when << " at " << x << "," << y;
    };
    expect_view(5, "on show");
    fill(d, black, 5, 0, 3, 12);
    expect_view(8, "after painting while shown");

    run_command(d, CMD_SHOW_BW_VIEW, nullptr, False);
    pump();
    EXPECT_FALSE(XtIsManaged(d->bwDialog));
    fill(d, black, 8, 0, 2, 12);   // over white and transparent alike
    fill(d, white, 10, 0, 2, 12);
    run_command(d, CMD_SHOW_BW_VIEW, nullptr, True);
    pump();
    expect_view(10, "after showing again");

    // White now renders black: the open view follows at once.
    d->modified = 0;
    whiteEntry->mapsTo = app().blackPixel;
    list->colorChanged(list->colorChangedData);
    pump();
    EXPECT_TRUE(d->modified);
    expect_view(12, "after white was mapped to black");
    EXPECT_EQ(trap.error(), 0);
}
