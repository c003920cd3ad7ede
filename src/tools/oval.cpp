// The oval tool: one ellipse inscribed in the dragged box, outlined with the
// pressed button's GC and filled with the current pattern while DrawFilled
// is on. The inside of an ellipse changes wherever its box changes, so both
// boxes are repainted whole.
#include <X11/Xlib.h>

#include "app/app.h"
#include "app/draw.h"
#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "tools/geometry.h"
#include "tools/palettes.h"
#include "tools/regions.h"
#include "tools/shape_state.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

constexpr int FULL_CIRCLE = 360 * 64;

Point start, end;
Region damage;

}  // namespace

void oval_input(Widget w, Drawing* d, XEvent* event)
{
    if (event->type == TOOL_CREATED) {
        d->ovalFilled = 0;
        palette_event(w, d, event, TOOL_OVAL);
        record_shape_pictures(w, 1);
        if (!damage)
            damage = XCreateRegion();
        return;
    }
    if (palette_event(w, d, event, TOOL_OVAL))
        return;
    switch (event->type) {
    case ButtonPress:
        commit(d);
        start = end = event_point(event);
        break;
    case ButtonRelease:
        set_undo_sensitive(d, true);
        break;
    case TOOL_UNDO: {
        Box b = grow_box(box_of(start, end), static_cast<int>(d->lineWidth));
        restore_rect(d, b.x, b.y, b.width, b.height);
        refresh_rect(d, b.x, b.y, b.width, b.height);
        set_undo_sensitive(d, false);
        break;
    }
    default:
        break;
    }
}

void oval_motion(Widget w, Drawing* d, XEvent* event)
{
    if (!damage)
        damage = XCreateRegion();
    Display* dpy = app().display;
    Point p = event_point(event);
    if (event_state(event) & ShiftMask)
        p = constrain_square(start, p);
    int lw = static_cast<int>(d->lineWidth);
    Box oldBox = grow_box(box_of(start, end), lw);
    restore_rect(d, oldBox.x, oldBox.y, oldBox.width, oldBox.height);
    Box newBox = box_of(start, p);
    unsigned aw = static_cast<unsigned>(newBox.width - 1), ah = static_cast<unsigned>(newBox.height - 1);
    if (d->ovalFilled == 1)
        if (GC pattern = pattern_gc(d->currentPattern, d->depth))
            XFillArc(dpy, d->image, pattern, newBox.x, newBox.y, aw, ah, 0, FULL_CIRCLE);
    XDrawArc(dpy, d->image, d->chosenGC, newBox.x, newBox.y, aw, ah, 0, FULL_CIRCLE);
    set_region_to_box(damage, oldBox);
    union_box(damage, grow_box(newBox, lw));
    refresh_region(d, damage);
    end = p;
}
