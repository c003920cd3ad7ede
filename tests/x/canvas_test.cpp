// The canvas: zoom steps and the menu items that follow them, the exact magnified display, expose, refresh
// clipping, extreme sizes, input scaling and motion compression, and the black-and-white rendering.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <Xm/Xm.h>

#include "app/commands.h"
#include "app/menus.h"
#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "canvas/views.h"
#include "tools/palettes.h"
#include "tools/tool_table.h"

namespace {

void queue_motion(Drawing* d, int x, int y, unsigned state = Button1Mask | ShiftMask)
{
    post_pointer(XtWindow(d->activeArea), MotionNotify, 0, x, y, state);
}

}  // namespace

// Zoom in from actual size lands on 2, Shift goes to 4, zoom out from 2
// goes straight back to 0; the items follow and the right area is shown.
TEST(Canvas, ZoomStepsAndMenuSensitivity)
{
    Drawing* d = make_drawing(16, 12);
    set_zoom(d, 0);
    XEvent shift{};
    shift.xbutton.type = ButtonRelease;
    shift.xbutton.state = ShiftMask;
    const struct {
        int command;   // 0: zoom out, 1: zoom in, 2: the menu's ZoomIn
        bool shift;
        int zoom;
    } steps[] = {{0, false, 0}, {1, false, 2}, {1, true, 4}, {1, false, 4}, {0, false, 3}, {0, false, 2},
                 {0, false, 0}, {1, false, 2}, {1, false, 3}, {0, true, 0}, {2, false, 2}};
    for (const auto& s : steps) {
        XEvent* ev = s.shift ? &shift : nullptr;
        if (s.command == 2)
            run_command(d, CMD_ZOOM_IN, nullptr, False);
        else
            (s.command ? zoom_in : zoom_out)(d, ev);
        pump();
        ASSERT_EQ(d->zoom, s.zoom);
        EXPECT_EQ(item_sensitive(d, CMD_ZOOM_IN), s.zoom < 4) << s.zoom;
        EXPECT_EQ(item_sensitive(d, CMD_ZOOM_OUT), s.zoom > 0) << s.zoom;
        EXPECT_EQ(item_sensitive(d, CMD_SHOW_SMALL_VIEW), s.zoom > 0) << s.zoom;
        EXPECT_EQ(d->activeArea, s.zoom ? d->zoomedArea : d->actualArea);
        EXPECT_EQ(d->activeWindow, XtWindow(d->activeArea));
        EXPECT_FALSE(XtIsManaged(s.zoom ? d->actualArea : d->zoomedArea));
    }
    Dimension w = 0, h = 0;
    XtVaGetValues(d->zoomedArea, XmNwidth, &w, XmNheight, &h, nullptr);
    EXPECT_EQ(w, 16 << 2);
    EXPECT_EQ(h, 12 << 2);
}

// After a picture of many colours and after every zoom change, each cell of the magnified window shows its pixel in
// the square and the window background in the grid line, and actual size shows the image itself.
TEST(Canvas, MagnifiedDisplayIsExactAtEveryZoom)
{
    Drawing* d = make_drawing(24, 20);
    set_zoom(d, 3);
    paint_test_picture(d);
    EXPECT_EQ(check_display(d), "");
    EXPECT_EQ(check_image_copy(d), "");

    for (int z : {4, 2, 1, 0, 3}) {
        set_zoom(d, z);
        EXPECT_EQ(check_display(d), "") << "after changing to zoom " << z;
    }
    // A stroke after the zoom changes is shown exactly as well.
    stroke(d, Button1, {{1, 1}, {20, 17}, {3, 15}});
    EXPECT_EQ(check_display(d), "");
    zoom_out(d, nullptr);
    zoom_out(d, nullptr);
    pump();
    EXPECT_EQ(d->zoom, 0);
    EXPECT_EQ(check_display(d), "");
    zoom_in(d, nullptr);
    pump();
    EXPECT_EQ(check_display(d), "") << "back from actual size";

    // A bitmap shows set bits black and clear bits white, also when whole rows change at once.
    Drawing* b = create_drawing("bits", 40, 12, 1, None, -1, -1, nullptr);
    ASSERT_NE(b, nullptr);
    pump();
    set_zoom(b, 3);
    paint_test_picture(b);   // full-width refresh: the row path
    EXPECT_EQ(check_display(b), "");
    XFillRectangle(app().display, b->image, b->blackGC, 5, 3, 30, 4);
    refresh_rect(b, 5, 3, 30, 4);   // partial rows: the cell path
    pump();
    EXPECT_EQ(check_display(b), "");
    XFillRectangle(app().display, b->image, b->whiteGC, 0, 2, 40, 3);
    refresh_rect(b, -4, 2, 100, 3);
    pump();
    EXPECT_EQ(check_display(b), "");
    EXPECT_EQ(check_image_copy(b), "");
}

// Expose repaints cells even when imageCopy already matches them.
TEST(Canvas, ExposeForcesRepaint)
{
    Drawing* d = make_drawing(20, 16);
    set_zoom(d, 3);
    paint_test_picture(d);
    Display* dpy = app().display;
    ServerGrab grab;   // no other window may expose ours meanwhile
    XRaiseWindow(dpy, XtWindow(d->shell));
    pump();
    Window win = XtWindow(d->zoomedArea);
    GC junk = XCreateGC(dpy, win, 0, nullptr);
    XSetForeground(dpy, junk, 3);
    XFillRectangle(dpy, win, junk, 10, 10, 60, 50);
    XFreeGC(dpy, junk);
    EXPECT_NE(check_display(d), "") << "the window was scribbled on";
    XClearArea(dpy, win, 10, 10, 60, 50, True);
    pump();
    EXPECT_EQ(check_display(d), "");
}

// Refreshes starting left of or above the image are clipped; one wholly
// outside paints nothing; no X request ever reads outside the pixmaps.
TEST(Canvas, RefreshOutsideTheImageIsClipped)
{
    Drawing* d = make_drawing(16, 16);
    set_zoom(d, 3);
    XErrorTrap trap;
    Display* dpy = app().display;
    XFillRectangle(dpy, d->image, d->foregroundGC, 0, 0, 4, 4);
    refresh_rect(d, -10, -10, 14, 14);
    pump();
    EXPECT_EQ(check_display(d), "");
    unsigned long before = request_count();
    refresh_rect(d, 16, 0, 5, 5);
    refresh_rect(d, 0, 16, 5, 5);
    refresh_rect(d, -20, -20, 10, 10);
    refresh_corners(d, 100, 100, 200, 200);
    EXPECT_EQ(request_count(), before) << "nothing to paint outside the image";
    restore_rect(d, -5, -5, 1000, 1000);
    restore_corners_offset(d, -3, -3, 40, 40, 9, 9);
    refresh_corners(d, 40, 40, -40, -40);
    EXPECT_EQ(trap.errors(), 0);
    EXPECT_EQ(check_display(d), "");
}

// The smallest and the largest drawings work at every zoom: strokes, presses
// outside the image and refreshes never touch anything outside a pixmap.
TEST(Canvas, ExtremeSizesAtEveryZoom)
{
    XErrorTrap trap;
    Drawing* tiny = make_drawing(1, 1);
    Drawing* big = make_drawing(511, 719);
    for (int z = 0; z <= 4; z++) {
        for (Drawing* d : {tiny, big}) {
            set_zoom(d, z);
            int far = (d->width + 40) << z;
            stroke(d, Button1, {{0, 0}, {d->width - 1, d->height - 1}});
            area_button(d, ButtonPress, Button1, -30, -30);
            area_motion(d, far, far, Button1Mask);
            area_motion(d, -far, 5, Button1Mask);
            area_button(d, ButtonRelease, Button1, far, -far, Button1Mask);
            select_tool(d, TOOL_RECT);
            stroke(d, Button2, {{-5, -5}, {d->width + 5, d->height + 5}, {d->width / 2, 3}});
            select_tool(d, TOOL_OVAL);
            stroke(d, Button3, {{-5, -5}, {d->width + 5, d->height + 5}});
            select_tool(d, TOOL_LINE);
            stroke(d, Button1, {{d->width, d->height}, {-9, -9}});
            select_tool(d, TOOL_PENCIL);
            refresh_rect(d, 0, 0, d->width, d->height);
            pump();
            if (z != 0) {
                EXPECT_EQ(check_image_copy(d), "") << d->width << "x" << d->height << " zoom " << z;
            }
            EXPECT_EQ(check_display(d), "") << d->width << "x" << d->height << " zoom " << z;
        }
    }
    EXPECT_EQ(trap.errors(), 0);
    EXPECT_EQ(image_pixel(tiny, 0, 0), foreground_pixel(tiny)) << "the 1x1 stroke painted its pixel";
}

// At zoom 3 a press at window (17, 9) reaches the tool as image (2, 1): the pencil click sets (2, 1) and
// (3, 2) in the image but shows only (2, 1) at once; the release offers Undo.
TEST(Canvas, PressIsScaledToImagePixels)
{
    Drawing* d = make_drawing(16, 16);
    set_zoom(d, 3);
    ASSERT_EQ(d->currentTool, TOOL_PENCIL);
    unsigned long blank = image_pixel(d, 2, 1), fg = foreground_pixel(d);
    area_button(d, ButtonPress, Button1, 17, 9);
    EXPECT_EQ(pixels_are(d, fg, {{2, 1}, {3, 2}}), "");
    EXPECT_EQ(pixels_are(d, blank, {{1, 1}, {2, 0}, {3, 1}, {2, 2}}), "");
    EXPECT_EQ(XGetPixel(d->imageCopy, 2, 1), fg) << "the press point is shown";
    EXPECT_EQ(XGetPixel(d->imageCopy, 3, 2), blank) << "its diagonal neighbour waits";
    area_button(d, ButtonRelease, Button1, 17, 9, Button1Mask);
    pump();
    EXPECT_TRUE(d->modified);
    EXPECT_TRUE(undo_sensitive(d));
}

// A burst of motions reaches the tool once, with the latest position: the
// pencil draws one chord from the press to the last motion only.
TEST(Canvas, MotionBurstIsCompressedToTheLatest)
{
    Drawing* d = make_drawing(32, 32);
    set_zoom(d, 0);
    unsigned long blank = image_pixel(d, 20, 0);
    area_button(d, ButtonPress, Button1, 0, 0);
    for (auto [x, y] : {std::pair{20, 0}, {20, 20}, {0, 20}, {0, 10}})
        queue_motion(d, x, y, Button1Mask);
    pump();
    area_button(d, ButtonRelease, Button1, 0, 10, Button1Mask);
    pump();
    EXPECT_EQ(image_pixel(d, 0, 10), foreground_pixel(d)) << "the chord to the last motion";
    EXPECT_EQ(image_pixel(d, 0, 5), foreground_pixel(d));
    EXPECT_EQ(image_pixel(d, 20, 0), blank) << "intermediate motions were dropped";
    EXPECT_EQ(image_pixel(d, 20, 20), blank);
    EXPECT_EQ(image_pixel(d, 10, 20), blank);
}

// Motions that stay on one image pixel call the tool once (the second one
// issues no X request); tools without a motion handler (fill) ignore motion.
TEST(Canvas, SamePixelMotionAndMotionWithoutHandlerAreIgnored)
{
    Drawing* d = make_drawing(16, 16);
    set_zoom(d, 3);
    area_button(d, ButtonPress, Button1, 4, 4);
    area_motion(d, 17, 9, Button1Mask);
    unsigned long before = request_count();
    area_motion(d, 22, 14, Button1Mask);   // still cell (2, 1)
    EXPECT_EQ(request_count(), before);
    area_motion(d, 25, 9, Button1Mask);    // cell (3, 1)
    EXPECT_GT(request_count(), before);
    area_button(d, ButtonRelease, Button1, 25, 9, Button1Mask);
    pump();

    select_tool(d, TOOL_FILL);
    ASSERT_EQ(d->currentTool, TOOL_FILL);
    before = request_count();
    area_motion(d, 5, 5, Button1Mask);
    area_motion(d, 90, 90, Button1Mask);
    EXPECT_EQ(request_count(), before);
}

// A Shift-press decides the constraint from the motions queued after it: more than 5 pixels down is vertical even
// if x moved more, 6 right and 2 down is horizontal, and a release before that leaves it free. The pencil held
// vertical keeps the press column.
TEST(Canvas, ShiftPressDetectsDragConstraint)
{
    Drawing* d = make_drawing(64, 64);
    set_zoom(d, 0);
    Window win = XtWindow(d->activeArea);
    const struct {
        int x0, y0, x, y;   // the queued motions (x0 < 0: one only), then maybe a release
        bool released;
        int constraint;
    } cases[] = {{22, 21, 26, 22, false, 1}, {-1, 0, 40, 26, false, 2}, {-1, 0, 23, 23, true, 0}};
    for (const auto& c : cases) {
        if (c.x0 >= 0)
            queue_motion(d, c.x0, c.y0);
        queue_motion(d, c.x, c.y);
        if (c.released)
            post_pointer(win, ButtonRelease, Button1, c.x, c.y, Button1Mask | ShiftMask);
        XSync(app().display, False);
        area_button(d, ButtonPress, Button1, 20, 20, ShiftMask);
        EXPECT_EQ(d->constraint, c.constraint) << c.x << "," << c.y;
        pump();
        if (!c.released)
            area_button(d, ButtonRelease, Button1, c.x, c.y, Button1Mask);
    }
    area_button(d, ButtonPress, Button1, 20, 20, 0);
    EXPECT_EQ(d->constraint, 0) << "no Shift, no constraint";
    area_button(d, ButtonRelease, Button1, 20, 20, Button1Mask);
    pump();

    Drawing* e = make_drawing(64, 64);
    set_zoom(e, 0);
    queue_motion(e, 14, 30);
    XSync(app().display, False);
    unsigned long blank = image_pixel(e, 14, 30);
    area_button(e, ButtonPress, Button1, 10, 10, ShiftMask);
    ASSERT_EQ(e->constraint, 2);
    pump();   // the deciding motion was put back for the tool
    area_button(e, ButtonRelease, Button1, 14, 30, Button1Mask);
    pump();
    EXPECT_EQ(image_pixel(e, 10, 30), foreground_pixel(e));
    EXPECT_EQ(image_pixel(e, 10, 20), foreground_pixel(e));
    EXPECT_EQ(image_pixel(e, 14, 30), blank);
}

// The black-and-white rendering: black pixels set, white and the transparent background clear, through the colour
// list's mapping when there is one.
TEST(Canvas, BlackAndWhiteRendering)
{
    Drawing* d = make_drawing(8, 4);
    Display* dpy = app().display;
    GC gc = XCreateGC(dpy, d->image, 0, nullptr);
    XSetForeground(dpy, gc, app().blackPixel);
    XFillRectangle(dpy, d->image, gc, 0, 0, 2, 4);
    XSetForeground(dpy, gc, app().whitePixel);
    XFillRectangle(dpy, d->image, gc, 2, 0, 2, 4);
    XFreeGC(dpy, gc);   // columns 4..7 keep the transparent background
    Pixmap bw = render_bw_pixmap(d);
    ASSERT_NE(bw, None);
    ImagePtr im(XGetImage(dpy, bw, 0, 0, 8, 4, 1, ZPixmap));
    ASSERT_TRUE(im);
    for (int y = 0; y < 4; y++)
        for (int x = 0; x < 8; x++)
            EXPECT_EQ(XGetPixel(im.get(), x, y), x < 2 ? 1UL : 0UL) << x << "," << y;
    EXPECT_EQ(render_bw_pixmap(d), bw) << "the pixmap is kept";
}

// Events can carry any 16-bit position: a pencil press at the far edge leaves the image alone, and rubber bands
// reaching either end of the range neither break the repaint nor make the server refuse a clip.
TEST(Canvas, FarEventCoordinatesStayHarmless)
{
    XErrorTrap trap;
    Drawing* d = make_drawing(40, 40);
    set_zoom(d, 0);
    unsigned long blank = image_pixel(d, 0, 5);
    area_button(d, ButtonPress, Button1, 32767, 5);
    area_button(d, ButtonRelease, Button1, 32767, 5, Button1Mask);
    pump();
    for (int x = 0; x < 40; x++)
        ASSERT_EQ(image_pixel(d, x, 5), blank) << "pencil press wrapped round to x " << x;
    d->lineWidth = 9;
    select_tool(d, TOOL_LINE);
    area_button(d, ButtonPress, Button1, 10, 10);
    area_motion(d, 32767, 20, Button1Mask);
    area_button(d, ButtonRelease, Button1, 32767, 20, Button1Mask);
    pump();
    EXPECT_EQ(check_display(d), "") << "line";
    select_tool(d, TOOL_RECT);
    area_button(d, ButtonPress, Button1, 10, 10);
    for (int far : {32767, -32768, 30}) {
        area_motion(d, far, far, Button1Mask);
        area_motion(d, 20, 20, Button1Mask);
    }
    area_button(d, ButtonRelease, Button1, 20, 20, Button1Mask);
    pump();
    EXPECT_EQ(check_display(d), "") << "rectangle";
    EXPECT_EQ(trap.errors(), 0);
}
