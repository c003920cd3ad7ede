// The eraser: a square of background swept along the pointer's path, its
// size fixed in screen pixels. Each motion fills the hexagon the square
// sweeps since the last one, so a fast pointer leaves no gaps.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>

#include "canvas/image_store.h"
#include "canvas/input.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/geometry.h"
#include "tools/stroke.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

// X coordinates are 16 bits; a point dragged far off the image is kept
// where the square and its sweep cannot wrap round.
Point kept_in_range(Point p)
{
    constexpr int LIMIT = 16000;
    return Point{std::clamp(p.x, -LIMIT, LIMIT), std::clamp(p.y, -LIMIT, LIMIT)};
}

// The pointer's window x: the input layer keeps it in the root field for
// the magnified area. Elsewhere (the actual-size small view) every screen
// pixel is the first of its image pixel, and the root field is only the
// position on the screen.
int window_x(Widget w, Drawing* d, const XEvent* event)
{
    if (d->zoom <= 0 || w != d->zoomedArea)
        return 0;
    return event->xbutton.x_root;
}

}  // namespace

void eraser_input(Widget w, Drawing* d, XEvent* event)
{
    if (palette_event(w, d, event, TOOL_ERASER))
        return;
    if (event->type != ButtonPress)
        return;
    // Whatever the button, the eraser paints the background.
    set_line_width(d->backgroundGC, 1);
    ToolStroke& s = stroke_of(d);
    s.side = eraser_side(d->zoom, window_x(w, d, event));
    Point p = kept_in_range(event_point(event));
    XFillRectangle(app().display, d->image, d->backgroundGC, p.x, p.y, static_cast<unsigned>(s.side),
                   static_cast<unsigned>(s.side));
    refresh_rect(d, p.x, p.y, s.side, s.side);
    s.last = s.start = p;
}

void eraser_motion(Widget w, Drawing* d, XEvent* event)
{
    ToolStroke& s = stroke_of(d);
    Point p = held_drag_point(s.start, kept_in_range(event_point(event)), d->constraint);
    Point corners[6];
    eraser_sweep(s.last, p, s.side, corners);
    XPoint points[6];
    for (int i = 0; i < 6; i++)
        points[i] = XPoint{static_cast<short>(corners[i].x), static_cast<short>(corners[i].y)};
    Display* dpy = app().display;
    XFillPolygon(dpy, d->image, d->backgroundGC, points, 6, Convex, CoordModeOrigin);
    Region swept = XPolygonRegion(points, 6, WindingRule);
    refresh_region(d, swept);
    XDestroyRegion(swept);
    s.last = p;
}
