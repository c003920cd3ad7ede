// The rectangle tool: one axis-aligned rectangle per drag, outlined with the
// pressed button's GC and, while DrawFilled is on, filled with the current
// pattern. Only the grown difference of the old and new boxes is repainted.
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

Point start, end;
Region damage;

}  // namespace

void rect_input(Widget w, Drawing* d, XEvent* event)
{
    if (event->type == TOOL_CREATED) {
        d->rectFilled = 0;
        palette_event(w, d, event, TOOL_RECT);
        record_shape_pictures(w, 0);
        if (!damage)
            damage = XCreateRegion();
        return;
    }
    if (palette_event(w, d, event, TOOL_RECT))
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
        // Only the last rectangle's area goes back, not the whole image.
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

void rect_motion(Widget w, Drawing* d, XEvent* event)
{
    if (!damage)
        damage = XCreateRegion();
    Display* dpy = app().display;
    Point p = event_point(event);
    if (event_state(event) & ShiftMask)
        p = constrain_square(start, p);
    Box oldBox = box_of(start, end);
    Box newBox = box_of(start, p);
    // Even a hairline outline needs a one-pixel margin.
    int g = d->lineWidth ? static_cast<int>(d->lineWidth) : 1;
    frame_difference(oldBox, newBox, g, g, damage);
    copy_region(dpy, d->savedImage, d->image, d->scratchGC, damage);
    if (d->rectFilled == 1)
        if (GC pattern = pattern_gc(d->currentPattern, d->depth))
            XFillRectangle(dpy, d->image, pattern, newBox.x, newBox.y,
                           static_cast<unsigned>(newBox.width), static_cast<unsigned>(newBox.height));
    // width - 1 and height - 1 put a thin outline exactly on the box.
    XDrawRectangle(dpy, d->image, d->chosenGC, newBox.x, newBox.y,
                   static_cast<unsigned>(newBox.width - 1), static_cast<unsigned>(newBox.height - 1));
    refresh_region(d, damage);
    end = p;
}
