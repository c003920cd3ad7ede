// The select tool: a rubber band that lifts a rectangle of the image into
// the drawing's floating selection, and drags that move it (button 1) or
// copy it (button 3). A button-3 rubber band trims itself to what differs
// from the background.
#include <cstdio>
#include <cstdlib>

#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "imageops/selection_transforms.h"
#include "tools/geometry.h"
#include "tools/regions.h"
#include "tools/selection.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

void press(Drawing* d, Selection* s, const XEvent* event)
{
    if (res().debug)
        std::printf("Button down in %s\n", d->name.c_str());
    stop_march(d);
    Point p = event_point(event);
    s->corner = s->anchor = p;
    paint_selection(d, s->current.x, s->current.y);
    const XRectangle& c = s->current;
    // Both ends count, so the pixel just past the right and bottom edges
    // still grabs the selection.
    if (selection_exists(d) && p.x >= c.x && p.x <= c.x + c.width && p.y >= c.y &&
        p.y <= c.y + c.height) {
        s->grab = Point{p.x - c.x, p.y - c.y};
        s->mode = 1;
        if (event->xbutton.button == Button3) {
            // A copy: nothing is left behind, the pixels stay put.
            s->mode = 2;
            s->origin.width = s->origin.height = 0;
            commit(d);
            set_undo_available(d, false);
        }
        return;
    }
    drop_selection(d);
    commit(d);
    set_undo_available(d, false);
}

// Makes the selection the rubber band marked out.
void finish_band(Drawing* d, Selection* s, unsigned button)
{
    Box b = box_of(s->anchor, s->corner);
    set_rect(s->current, b.x, b.y, b.width, b.height);
    s->origin = s->current;
    if (s->current.width == 0 || s->current.height == 0)
        return;
    Display* dpy = app().display;
    const XRectangle& c = s->current;
    s->pixels = XCreatePixmap(dpy, app().root, c.width, c.height, static_cast<unsigned>(d->depth));
    if (!s->pixels) {
        s->current = s->origin = XRectangle{};
        return;
    }
    // A band that ends just past the image edge lifts a strip from
    // outside: let that be background rather than whatever the new
    // pixmap held.
    XFillRectangle(dpy, s->pixels, d->backgroundGC, 0, 0, c.width, c.height);
    restore_rect(d, c.x, c.y, c.width, c.height);
    XCopyArea(dpy, d->image, s->pixels, d->copyGC, c.x, c.y, c.width, c.height, 0, 0);
    if (button == Button3)
        apply_to_selection(d, trim_selection);
}

void release(Drawing* d, Selection* s, const XEvent* event)
{
    unsigned button = event->xbutton.button;
    if (s->mode == 0)
        finish_band(d, s, button);
    else if (s->mode == 1 && button == Button3)
        s->origin = s->current;
    march(d);
    set_undo_available(d, true);
    tell_selection_changed(d);
}

void band_motion(Drawing* d, Selection* s, Point p, unsigned state)
{
    // A pointer exactly at the width or height is left as it is: the box
    // may then reach one pixel past the image.
    if (p.x < 0)
        p.x = 0;
    if (p.y < 0)
        p.y = 0;
    if (p.x > d->width)
        p.x = d->width - 1;
    if (p.y > d->height)
        p.y = d->height - 1;
    if (state & ShiftMask)
        p = constrain_square(s->anchor, p);
    Box oldBox = box_of(s->anchor, s->corner);
    Box newBox = box_of(s->anchor, p);
    Region damage = damage_region();
    frame_difference(oldBox, newBox, 1, 1, damage);
    restore_region(d, damage);
    XDrawRectangle(app().display, d->image, march_gc(d), newBox.x, newBox.y,
                   static_cast<unsigned>(newBox.width - 1), static_cast<unsigned>(newBox.height - 1));
    refresh_region(d, damage);
    s->corner = p;
}

void drag_motion(Drawing* d, Selection* s, Point p, unsigned state)
{
    if (state & ShiftMask) {
        if (std::abs(s->corner.x - p.x) >= std::abs(s->corner.y - p.y))
            p.y = s->corner.y;
        else
            p.x = s->corner.x;
    }
    XRectangle moved = s->current;
    set_rect(moved, long{p.x} - s->grab.x, long{p.y} - s->grab.y, moved.width, moved.height);
    if (s->mode == 1) {
        vacate_for(d, rect_box(moved));
    } else {
        Region damage = damage_region();
        box_difference(rect_box(s->current), rect_box(moved), damage);
        restore_region(d, damage);
        refresh_region(d, damage);
    }
    paint_selection(d, moved.x, moved.y);
    s->current = moved;
    s->corner = p;
}

void undo(Drawing* d, Selection* s)
{
    stop_march(d);
    // After Clear or Cut there is no selection, but what it took away.
    bool cleared = !selection_exists(d);
    const XRectangle& c = cleared ? s->cleared[0] : s->current;
    const XRectangle& o = cleared ? s->cleared[1] : s->origin;
    restore_rect(d, c.x, c.y, c.width, c.height);
    restore_rect(d, o.x, o.y, o.width, o.height);
    refresh_rect(d, c.x, c.y, c.width, c.height);
    refresh_rect(d, o.x, o.y, o.width, o.height);
    drop_selection(d);
    set_undo_available(d, false);
    tell_selection_changed(d);
}

}  // namespace

void select_input(Widget w, Drawing* d, XEvent* event)
{
    if (!d || !event)
        return;
    Selection* s = selection_record(d);
    switch (event->type) {
    case TOOL_CREATED:
        // A reused drawing record starts without a selection.
        drop_selection(d);
        palette_event(w, d, event, TOOL_SELECT);
        return;
    case TOOL_DESELECTED:
        settle_and_drop(d);
        drop_selection(d);   // nor is a Clear undone under another tool
        set_undo_available(d, false);
        tell_selection_changed(d);
        return;
    case TOOL_UNDO:
        undo(d, s);
        return;
    case ButtonPress:
        press(d, s, event);
        return;
    case ButtonRelease:
        release(d, s, event);
        return;
    default:
        palette_event(w, d, event, TOOL_SELECT);
        return;
    }
}

void select_motion(Widget, Drawing* d, XEvent* event)
{
    if (!d || !d->selection || !event)
        return;
    Selection* s = d->selection;
    Point p = event_point(event);
    unsigned state = event_state(event);
    if (s->mode == 0)
        band_motion(d, s, p, state);
    else if (s->pixels)
        drag_motion(d, s, p, state);
}
