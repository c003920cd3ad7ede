// The pencil: a free-hand trail one pixel wide. Fast strokes become straight
// chords between the motions the input layer lets through.
#include <X11/Xlib.h>

#include <algorithm>
#include <climits>

#include "canvas/image_store.h"
#include "canvas/input.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/geometry.h"
#include "tools/stroke.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

void pencil_input(Widget w, Drawing* d, XEvent* event)
{
    if (palette_event(w, d, event, TOOL_PENCIL))
        return;
    if (event->type != ButtonPress)
        return;
    Point p = event_point(event);
    // The pencil ignores the line-width palette; the next press puts
    // the palette's width back on the GC. It draws one-pixel lines as
    // thin (width 0) lines: X's width-1 lines leave out the far end of
    // a one-pixel diagonal, and the press must set both of its pixels.
    set_line_width(d->chosenGC, 0);
    // A press draws a short diagonal, not a point, but shows only its
    // first pixel at once.
    // X coordinates are 16 bits: at the far edge of that range the
    // second pixel would wrap round to the other side of the image.
    XDrawLine(app().display, d->image, d->chosenGC, p.x, p.y, std::min(p.x + 1, SHRT_MAX),
              std::min(p.y + 1, SHRT_MAX));
    refresh_rect(d, p.x, p.y, 1, 1);
    ToolStroke& s = stroke_of(d);
    s.last = s.start = p;
}

void pencil_motion(Widget w, Drawing* d, XEvent* event)
{
    ToolStroke& s = stroke_of(d);
    Point p = held_drag_point(s.start, event_point(event), d->constraint);
    XDrawLine(app().display, d->image, d->chosenGC, p.x, p.y, s.last.x, s.last.y);
    refresh_corners(d, p.x, p.y, s.last.x, s.last.y);
    s.last = p;
}
