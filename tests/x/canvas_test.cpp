// The canvas: zoom and its menu items, the magnified display, extreme sizes, input scaling, the Shift constraint and
// every button with every modifier reaching the input.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <Xm/DrawingA.h>

#include "app/commands.h"
#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "tools/palettes.h"
#include "tools/tool_table.h"

// Zoom in from actual size lands on 2, Shift jumps to 4 or back; the menu items and the area shown follow.
TEST(Canvas, ZoomStepsAndMenuSensitivity)
{
    Drawing* d = make_drawing(16, 12);
    set_zoom(d, 0);
    XEvent shift = pointer_event(None, ButtonRelease, Button1, 0, 0, ShiftMask);
    const struct { void (*zoom)(Drawing*, XEvent*); bool shift; int want; } steps[] = {
        {zoom_out, false, 0}, {zoom_in, false, 2}, {zoom_in, true, 4}, {zoom_out, true, 0}, {nullptr, false, 2}};
    for (const auto& s : steps) {
        if (s.zoom)
            s.zoom(d, s.shift ? &shift : nullptr);
        else
            run_command(d, CMD_ZOOM_IN, nullptr, False);   // the menu item
        pump();
        ASSERT_EQ(d->zoom, s.want);
        EXPECT_EQ(item_sensitive(d, CMD_ZOOM_IN), s.want < 4) << s.want;
        EXPECT_EQ(item_sensitive(d, CMD_ZOOM_OUT), s.want > 0) << s.want;
        EXPECT_EQ(d->activeArea, s.want ? d->zoomedArea : d->actualArea);
        EXPECT_FALSE(XtIsManaged(s.want ? d->actualArea : d->zoomedArea));
    }
}

// Every magnified cell shows its pixel and grid line after an expose, a zoom change or a stroke; in bitmaps too.
TEST(Canvas, MagnifiedDisplayIsExactAtEveryZoom)
{
    Drawing* d = make_drawing(24, 20);
    set_zoom(d, 3);
    paint_test_picture(d);
    EXPECT_EQ(check_display(d), "");
    EXPECT_EQ(check_image_copy(d), "");
    {
        ServerGrab grab;   // no other window may expose ours meanwhile
        XRaiseWindow(app().display, XtWindow(d->shell));
        pump();
        XFillRectangle(app().display, XtWindow(d->zoomedArea), d->foregroundGC, 10, 10, 60, 50);
        EXPECT_NE(check_display(d), "") << "the window was scribbled on";
        XClearArea(app().display, XtWindow(d->zoomedArea), 10, 10, 60, 50, True);
        pump();
        EXPECT_EQ(check_display(d), "") << "expose repaints even cells the copy of the image matches";
    }
    for (int z : {4, 2, 1, 0, 3}) {
        set_zoom(d, z);
        EXPECT_EQ(check_display(d), "") << "after changing to zoom " << z;
    }
    stroke(d, Button1, {{1, 1}, {20, 17}, {3, 15}});
    EXPECT_EQ(check_display(d), "");
    for (auto step : {zoom_out, zoom_out, zoom_in})   // the copy of the image is taken again on leaving actual size
        step(d, nullptr);
    pump();
    EXPECT_EQ(check_display(d), "") << "back from actual size";

    Drawing* b = create_drawing("bits", 40, 12, 1, None, -1, -1, nullptr);
    ASSERT_NE(b, nullptr);
    pump();
    set_zoom(b, 3);
    paint_test_picture(b);
    EXPECT_EQ(check_display(b), "");
    XFillRectangle(app().display, b->image, b->blackGC, 5, 3, 30, 4);
    refresh_rect(b, 5, 3, 30, 4);
    pump();
    EXPECT_EQ(check_display(b), "") << "parts of rows";
    XFillRectangle(app().display, b->image, b->whiteGC, 0, 2, 40, 3);
    refresh_rect(b, -4, 2, 100, 3);
    pump();
    EXPECT_EQ(check_display(b), "") << "whole rows, clipped";
    EXPECT_EQ(check_image_copy(b), "");
}

// At every zoom, strokes of every painting tool in and around the smallest and largest drawings stay in the pixmaps.
TEST(Canvas, ExtremeSizesAtEveryZoom)
{
    ErrorTrap trap(app().display);
    Drawing* tiny = make_drawing(1, 1);
    Drawing* big = make_drawing(511, 719);
    for (int z = 0; z <= 4; z++)
        for (Drawing* d : {tiny, big}) {
            set_zoom(d, z);
            stroke(d, Button1, {{0, 0}, {d->width - 1, d->height - 1}});
            EXPECT_EQ(image_pixel(d, 0, 0), foreground_pixel(d)) << "the pencil stroke painted its first pixel";
            for (int tool : {TOOL_PENCIL, TOOL_RECT, TOOL_OVAL, TOOL_LINE, TOOL_FILL, TOOL_ERASER, TOOL_ALPHA,
                             TOOL_HOTSPOT}) {
                select_tool(d, tool);
                stroke(d, Button1, {{-5, -5}, {d->width + 5, d->height + 5}, {d->width / 2, 3}});
            }
            select_tool(d, TOOL_PENCIL);
            refresh_rect(d, 0, 0, d->width, d->height);
            pump();
            EXPECT_EQ(z ? check_image_copy(d) : "", "") << d->width << "x" << d->height << " zoom " << z;
            EXPECT_EQ(check_display(d), "") << d->width << "x" << d->height << " zoom " << z;
        }
    EXPECT_EQ(trap.error(), 0);
}

// Events carry any 16-bit position: a far press leaves the image alone, far rubber bands break no repaint or clip.
TEST(Canvas, FarEventCoordinatesStayHarmless)
{
    ErrorTrap trap(app().display);
    Drawing* d = make_drawing(40, 40);
    set_zoom(d, 0);
    unsigned long blank = image_pixel(d, 0, 5);
    area_button(d, ButtonPress, Button1, 32767, 5);
    area_button(d, ButtonRelease, Button1, 32767, 5, Button1Mask);
    pump();
    for (int x = 0; x < 40; x++)
        ASSERT_EQ(image_pixel(d, x, 5), blank) << "pencil press wrapped round to x " << x;
    d->lineWidth = 9;
    for (int tool : {TOOL_LINE, TOOL_RECT}) {
        select_tool(d, tool);
        area_button(d, ButtonPress, Button1, 10, 10);
        for (int far : {32767, -32768, 30}) {
            area_motion(d, far, far / 2, Button1Mask);
            area_motion(d, 20, 20, Button1Mask);
        }
        area_button(d, ButtonRelease, Button1, 32767, 20, Button1Mask);
        pump();
        EXPECT_EQ(check_display(d), "") << toolTable[tool].name;
    }
    EXPECT_EQ(trap.error(), 0);
}

// At zoom 3 window (17, 9) is image (2, 1): the pencil click sets (2, 1) and (3, 2) but shows only (2, 1) at once.
// A burst of motions reaches the tool once, at the latest position: one chord from the press.
TEST(Canvas, PressScaledAndMotionsCompressed)
{
    Drawing* d = make_drawing(16, 16);
    set_zoom(d, 3);
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

    set_zoom(d, 0);
    area_button(d, ButtonPress, Button1, 0, 15);
    for (auto [x, y] : {std::pair{10, 0}, {10, 10}, {0, 5}, {5, 15}})
        post_pointer(XtWindow(d->activeArea), MotionNotify, 0, x, y, Button1Mask);
    pump();
    area_button(d, ButtonRelease, Button1, 5, 15, Button1Mask);
    pump();
    EXPECT_EQ(pixels_are(d, fg, {{0, 15}, {5, 15}}), "") << "the chord to the last motion";
    EXPECT_EQ(pixels_are(d, blank, {{10, 0}, {10, 5}, {10, 10}, {0, 5}}), "") << "intermediate motions were dropped";
}

// A Shift-press decides the constraint from the motions queued after it: more than 5 pixels down is vertical, so
// the pencil keeps the press column (the deciding motion is put back for it); a release first leaves it free.
TEST(Canvas, ShiftPressDetectsDragConstraint)
{
    Drawing* d = make_drawing(64, 64);
    set_zoom(d, 0);
    unsigned long blank = image_pixel(d, 14, 30);
    Window w = XtWindow(d->activeArea);
    post_pointer(w, MotionNotify, 0, 11, 13, Button1Mask | ShiftMask);   // too short to decide
    post_pointer(w, MotionNotify, 0, 14, 30, Button1Mask | ShiftMask);
    XSync(app().display, False);
    area_button(d, ButtonPress, Button1, 10, 10, ShiftMask);
    ASSERT_EQ(d->constraint, DragConstraint::Vertical);
    pump();
    area_button(d, ButtonRelease, Button1, 14, 30, Button1Mask);
    pump();
    EXPECT_EQ(pixels_are(d, foreground_pixel(d), {{10, 30}, {10, 20}, {10, 13}}), "");
    EXPECT_EQ(pixels_are(d, blank, {{14, 30}, {11, 13}}), "");

    post_pointer(w, MotionNotify, 0, 23, 23, Button1Mask | ShiftMask);
    post_pointer(w, ButtonRelease, Button1, 23, 23, Button1Mask | ShiftMask);
    XSync(app().display, False);
    area_button(d, ButtonPress, Button1, 20, 20, ShiftMask);
    EXPECT_EQ(d->constraint, DragConstraint::Free) << "released before deciding";
    pump();
}

namespace {

struct Delivered { int type; unsigned button, state; };
std::vector<Delivered> delivered;

void record_input_cb(Widget, XtPointer, XtPointer callData) noexcept
{
    auto* cbs = static_cast<XmDrawingAreaCallbackStruct*>(callData);
    if (cbs && cbs->event && (cbs->event->type == ButtonPress || cbs->event->type == ButtonRelease))
        delivered.push_back({cbs->event->type, cbs->event->xbutton.button, cbs->event->xbutton.state});
}

}  // namespace

// Every press and release of buttons 1 to 3, with any modifiers held, reaches the input callback of each canvas
// area through the toolkit's event dispatch: the magnified area, the actual-size area and the small view's area.
TEST(Canvas, EveryButtonWithEveryModifierReachesTheInput)
{
    Drawing* d = make_drawing(16, 16);
    d->currentTool = 8;   // hotspot: a press changes nothing that matters here
    set_zoom(d, 3);
    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    pump();
    ASSERT_TRUE(d->smallArea && XtIsRealized(d->smallArea));
    const unsigned states[] = {0, ShiftMask, ControlMask, ControlMask | ShiftMask, Mod1Mask, ControlMask | Mod1Mask,
                               LockMask, ControlMask | LockMask};
    for (Widget area : {d->zoomedArea, d->smallArea, d->actualArea}) {
        if (area == d->actualArea) {
            set_zoom(d, 0);
            ASSERT_EQ(d->activeArea, d->actualArea);
        }
        const char* name = area == d->zoomedArea ? "magnified area" : area == d->smallArea ? "small view" : "actual size";
        XtAddCallback(area, XmNinputCallback, record_input_cb, nullptr);
        delivered.clear();
        for (unsigned button : {Button1, Button2, Button3})
            for (unsigned state : states) {
                post_pointer(XtWindow(area), ButtonPress, button, 5, 5, state);
                post_pointer(XtWindow(area), ButtonRelease, button, 5, 5, state | (Button1Mask << (button - 1)));
                pump();
            }
        XtRemoveCallback(area, XmNinputCallback, record_input_cb, nullptr);
        size_t i = 0;
        for (unsigned button : {Button1, Button2, Button3})
            for (unsigned state : states)
                for (int type : {ButtonPress, ButtonRelease}) {
                    bool got = i < delivered.size() && delivered[i].type == type && delivered[i].button == button &&
                               (delivered[i].state & ~(Button1Mask << (button - 1))) == state;
                    EXPECT_TRUE(got) << name << ": button " << button << (type == ButtonPress ? " press" : " release")
                                     << " with state 0x" << std::hex << state;
                    i += got;
                }
        EXPECT_EQ(i, delivered.size()) << name << ": nothing else arrives";
    }
}
