// The rectangle tool: one axis-aligned rectangle per drag, outlined with the
// pressed button's GC and, while DrawFilled is on, filled with the current
// pattern. Only the grown difference of the old and new boxes is repainted.
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

void rect_input(Widget w, Drawing* d, XEvent* event)
{
    shape_input(w, d, event, TOOL_RECT, 0, &d->rectFilled);
}

void rect_motion(Widget w, Drawing* d, XEvent* event)
{
    Display* dpy = app().display;
    ToolStroke& s = stroke_of(d);
    Point p = shape_drag_point(d, event);
    Box oldBox = box_of(s.start, s.last);
    Box newBox = box_of(s.start, p);
    Region damage = damage_region();
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
    s.last = p;
}
