// The line tool: a straight segment rubber-banded from the press point,
// snapped to horizontal, vertical or 45 degrees while Shift is held.
#include <X11/Xlib.h>

#include "canvas/image_store.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/geometry.h"
#include "tools/regions.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

// One stroke at a time for the whole program.
Point start, end;
Region damage;

}  // namespace

void line_input(Widget w, Drawing* d, XEvent* event)
{
    if (palette_event(w, d, event, TOOL_LINE)) {
        if (event->type == TOOL_CREATED && !damage)
            damage = XCreateRegion();
        return;
    }
    // The segment drawn at the last motion will be the result.
    if (event->type == ButtonPress)
        start = end = event_point(event);
}

void line_motion(Widget w, Drawing* d, XEvent* event)
{
    if (!damage)
        damage = XCreateRegion();
    Point p = event_point(event);
    if (event_state(event) & ShiftMask)
        p = constrain_line(start, p);
    int lw = static_cast<int>(d->lineWidth);
    // Wide lines reach lw past their ends: grow the boxes so no trail stays.
    Box oldBox = grow_box(box_of(start, end), lw);
    restore_rect(d, oldBox.x, oldBox.y, oldBox.width, oldBox.height);
    XDrawLine(app().display, d->image, d->chosenGC, start.x, start.y, p.x, p.y);
    Box newBox = grow_box(box_of(start, p), lw);
    set_region_to_box(damage, oldBox);
    union_box(damage, newBox);
    refresh_region(d, damage);
    end = p;
}
