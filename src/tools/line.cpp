// The line tool: a straight segment rubber-banded from the press point,
// snapped to horizontal, vertical or 45 degrees while Shift is held.
#include <X11/Xlib.h>

#include "canvas/image_store.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/geometry.h"
#include "tools/regions.h"
#include "tools/stroke.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

void line_input(Widget w, Drawing* d, XEvent* event)
{
    if (palette_event(w, d, event, TOOL_LINE))
        return;
    // The segment drawn at the last motion will be the result.
    if (event->type == ButtonPress) {
        ToolStroke& s = stroke_of(d);
        s.start = s.last = event_point(event);
    }
}

void line_motion(Widget w, Drawing* d, XEvent* event)
{
    ToolStroke& s = stroke_of(d);
    Point p = event_point(event);
    if (event_state(event) & ShiftMask)
        p = constrain_line(s.start, p);
    int lw = static_cast<int>(d->lineWidth);
    // Wide lines reach lw past their ends: grow the boxes so no trail stays.
    Box oldBox = grow_box(box_of(s.start, s.last), lw);
    restore_rect(d, oldBox.x, oldBox.y, oldBox.width, oldBox.height);
    XDrawLine(app().display, d->image, d->chosenGC, s.start.x, s.start.y, p.x, p.y);
    Box newBox = grow_box(box_of(s.start, p), lw);
    Region damage = damage_region();
    set_region_to_box(damage, oldBox);
    union_box(damage, newBox);
    refresh_region(d, damage);
    s.last = p;
}
