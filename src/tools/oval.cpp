// The oval tool: one ellipse inscribed in the dragged box, outlined with the
// pressed button's GC and filled with the current pattern while DrawFilled
// is on. The inside of an ellipse changes wherever its box changes, so both
// boxes are repainted whole.
#include <X11/Xlib.h>

#include "canvas/image_store.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/geometry.h"
#include "tools/palettes.h"
#include "tools/regions.h"
#include "tools/shape_state.h"
#include "tools/stroke.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

constexpr int FULL_CIRCLE = 360 * 64;

}  // namespace

void oval_input(Widget w, Drawing* d, XEvent* event)
{
    shape_input(w, d, event, TOOL_OVAL, 1, &d->ovalFilled);
}

void oval_motion(Widget w, Drawing* d, XEvent* event)
{
    Display* dpy = app().display;
    ToolStroke& s = stroke_of(d);
    Point p = shape_drag_point(d, event);
    int lw = static_cast<int>(d->lineWidth);
    Box oldBox = grow_box(box_of(s.start, s.last), lw);
    restore_rect(d, oldBox.x, oldBox.y, oldBox.width, oldBox.height);
    Box newBox = box_of(s.start, p);
    unsigned aw = static_cast<unsigned>(newBox.width - 1), ah = static_cast<unsigned>(newBox.height - 1);
    if (d->ovalFilled == 1)
        if (GC pattern = pattern_gc(d->currentPattern, d->depth))
            XFillArc(dpy, d->image, pattern, newBox.x, newBox.y, aw, ah, 0, FULL_CIRCLE);
    XDrawArc(dpy, d->image, d->chosenGC, newBox.x, newBox.y, aw, ah, 0, FULL_CIRCLE);
    Region damage = damage_region();
    set_region_to_box(damage, oldBox);
    union_box(damage, grow_box(newBox, lw));
    refresh_region(d, damage);
    s.last = p;
}
