// The floating selection's record and the operations on it shared by the
// select tool and the menus: the marching outline, painting the lifted
// pixels, Select All, Clear, transforms, nudges and paste.
#include "tools/selection.h"

#include <Xm/Xm.h>

#include <algorithm>
#include <cstdio>

#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "colour/paste_colours.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "core/error_trap.h"
#include "tools/palettes.h"
#include "tools/regions.h"
#include "tools/tool_table.h"

namespace {

// Each phase is the previous one with its first row moved to the end, so
// the stipple walks round the outline.
const unsigned char marchBits[8][8] = {
    {0xF0, 0x78, 0x3C, 0x1E, 0x0F, 0x87, 0xC3, 0xE1},
    {0x78, 0x3C, 0x1E, 0x0F, 0x87, 0xC3, 0xE1, 0xF0},
    {0x3C, 0x1E, 0x0F, 0x87, 0xC3, 0xE1, 0xF0, 0x78},
    {0x1E, 0x0F, 0x87, 0xC3, 0xE1, 0xF0, 0x78, 0x3C},
    {0x0F, 0x87, 0xC3, 0xE1, 0xF0, 0x78, 0x3C, 0x1E},
    {0x87, 0xC3, 0xE1, 0xF0, 0x78, 0x3C, 0x1E, 0x0F},
    {0xC3, 0xE1, 0xF0, 0x78, 0x3C, 0x1E, 0x0F, 0x87},
    {0xE1, 0xF0, 0x78, 0x3C, 0x1E, 0x0F, 0x87, 0xC3},
};

struct MarchGCs {
    Pixmap stipple = None;
    GC colour = nullptr;
    GC bitmap = nullptr;
};
MarchGCs marchGCs[8];
int marchPhase = 0;   // shared by every drawing

short clamp16(long v)
{
    return static_cast<short>(std::clamp(v, -16383L, 16383L));
}

unsigned short clamp_size(long v)
{
    return static_cast<unsigned short>(std::clamp(v, 0L, 16383L));
}

// The region the selection's operations work in; not the one a motion
// repaints (damage_region), which a drag uses beside it.
Region work_region()
{
    return scratch_region(1);
}

void fill_and_refresh(Drawing* d, Region r)
{
    fill_region(app().display, d->image, d->backgroundGC, r);
    refresh_region(d, r);
}

void restore_and_refresh(Drawing* d, Region r)
{
    restore_region(d, r);
    refresh_region(d, r);
}

void march_timer_cb(XtPointer clientData, XtIntervalId*) noexcept
{
    auto* d = static_cast<Drawing*>(clientData);
    if (!d || !d->selection)
        return;
    d->selection->timer = 0;
    if (drawing_is_open(d))
        march(d);
}

// The top-left image pixel of the visible part of the canvas.
Point visible_origin(Drawing* d)
{
    Position x = 0, y = 0;
    if (d->activeArea)
        XtVaGetValues(d->activeArea, XmNx, &x, XmNy, &y, nullptr);
    int zoom = std::max(d->zoom, 0);
    return Point{std::max(0, -x) >> zoom, std::max(0, -y) >> zoom};
}

}  // namespace

namespace {
void make_march_gcs()
{
    if (marchGCs[0].stipple)
        return;
    for (int p = 0; p < 8; p++) {
        StippleGCs gcs = make_stipple_gcs(marchBits[p]);
        marchGCs[p] = MarchGCs{gcs.stipple, gcs.colour, gcs.bitmap};
    }
}

}  // namespace

GC march_gc(const Drawing* d)
{
    make_march_gcs();
    const MarchGCs& m = marchGCs[marchPhase & 7];
    return d->depth == 1 ? m.bitmap : m.colour;
}

Selection* selection_record(Drawing* d)
{
    if (!d)
        return nullptr;
    if (!d->selection)
        d->selection = new Selection{};
    return d->selection;
}

bool selection_exists(const Drawing* d)
{
    return d && d->selection && d->selection->current.width != 0 &&
           d->selection->current.height != 0;
}

Box rect_box(const XRectangle& r)
{
    return Box{r.x, r.y, r.width, r.height};
}

void set_rect(XRectangle& r, long x, long y, long width, long height)
{
    r.x = clamp16(x);
    r.y = clamp16(y);
    r.width = clamp_size(width);
    r.height = clamp_size(height);
}

void draw_outline(Drawing* d)
{
    if (!selection_exists(d) || !d->image)
        return;
    const XRectangle& r = d->selection->current;
    XDrawRectangle(app().display, d->image, march_gc(d), r.x, r.y, r.width - 1u, r.height - 1u);
    refresh_rect(d, r.x, r.y, r.width, r.height);
}

void stop_march(Drawing* d)
{
    if (d && d->selection && d->selection->timer) {
        XtRemoveTimeOut(d->selection->timer);
        d->selection->timer = 0;
    }
}

void march(Drawing* d)
{
    if (!selection_exists(d))
        return;
    marchPhase = (marchPhase + 1) % 8;
    draw_outline(d);
    // One pending timer per drawing, however often the outline is re-shown.
    stop_march(d);
    if (res().movingSelection)
        d->selection->timer = XtAppAddTimeOut(app().context, 100, march_timer_cb, d);
}

void paint_selection(Drawing* d, int x, int y)
{
    if (!selection_exists(d) || !d->selection->pixels || !d->image)
        return;
    const XRectangle& r = d->selection->current;
    XCopyArea(app().display, d->selection->pixels, d->image, d->copyGC, 0, 0, r.width, r.height,
              clamp16(x), clamp16(y));
    refresh_rect(d, x, y, r.width, r.height);
}

void drop_selection(Drawing* d)
{
    Selection* s = d ? d->selection : nullptr;
    if (!s)
        return;
    stop_march(d);
    if (s->pixels) {
        XFreePixmap(app().display, s->pixels);
        s->pixels = None;
    }
    s->current = XRectangle{};
    s->origin = s->current;
    s->cleared[0] = s->cleared[1] = s->current;
    s->mode = 0;
}

void settle_and_drop(Drawing* d)
{
    if (!selection_exists(d))
        return;
    stop_march(d);
    paint_selection(d, d->selection->current.x, d->selection->current.y);
    drop_selection(d);
}

void vacate_for(Drawing* d, Box target)
{
    Selection* s = d->selection;
    Region r = work_region();
    box_difference(rect_box(s->origin), target, r);
    fill_and_refresh(d, r);
    box_difference(rect_box(s->current), target, r);
    subtract_box(r, rect_box(s->origin), r);
    restore_and_refresh(d, r);
}

int apply_to_selection(Drawing* d, SelectionOp op)
{
    if (!selection_exists(d) || !op)
        return 1;
    Selection* s = d->selection;
    stop_march(d);
    Region r = work_region();
    box_intersection(rect_box(s->current), rect_box(s->origin), r);
    fill_and_refresh(d, r);
    box_difference(rect_box(s->current), rect_box(s->origin), r);
    restore_and_refresh(d, r);
    int status = op(d, s);
    paint_selection(d, s->current.x, s->current.y);
    march(d);
    tell_selection_changed(d);
    return status;
}

int nudge_selection(Drawing* d, int dx, int dy)
{
    if (!selection_exists(d))
        return 1;
    Selection* s = d->selection;
    stop_march(d);
    XRectangle moved = s->current;
    set_rect(moved, long{s->current.x} + dx, long{s->current.y} + dy, moved.width, moved.height);
    vacate_for(d, rect_box(moved));
    paint_selection(d, moved.x, moved.y);
    s->current = moved;
    march(d);
    return 0;
}

int select_all(Drawing* d)
{
    if (!d || !d->image)
        return 1;
    if (d->currentTool != TOOL_SELECT)
        select_tool(d, TOOL_SELECT);
    Selection* s = selection_record(d);
    if (!s)
        return 1;
    settle_and_drop(d);
    drop_selection(d);   // also forgets an earlier Clear
    commit(d);
    Pixmap p = XCreatePixmap(app().display, app().root, d->width, d->height,
                             static_cast<unsigned>(d->depth));
    if (!p)
        return 1;
    XCopyArea(app().display, d->image, p, d->copyGC, 0, 0, d->width, d->height, 0, 0);
    s->pixels = p;
    set_rect(s->current, 0, 0, d->width, d->height);
    s->origin = s->current;
    march(d);
    tell_selection_changed(d);
    return 0;
}

int clear_selection(Drawing* d)
{
    if (!selection_exists(d))
        return 1;
    Selection* s = d->selection;
    stop_march(d);
    const XRectangle& c = s->current;
    if (s->origin.width != 0) {
        Display* dpy = app().display;
        XFillRectangle(dpy, d->image, d->backgroundGC, s->origin.x, s->origin.y, s->origin.width,
                       s->origin.height);
        Region r = work_region();
        box_difference(rect_box(c), rect_box(s->origin), r);
        restore_region(d, r);
        // A selection moved away from its origin leaves that hole on
        // screen too.
        refresh_rect(d, s->origin.x, s->origin.y, s->origin.width, s->origin.height);
    } else {
        restore_rect(d, c.x, c.y, c.width, c.height);
    }
    refresh_rect(d, c.x, c.y, c.width, c.height);
    XRectangle taken[2] = {c, s->origin};
    drop_selection(d);
    // savedImage still holds the picture from before the lift: Undo puts
    // both places back from it, as it does for a move.
    s->cleared[0] = taken[0];
    s->cleared[1] = taken[1];
    tell_selection_changed(d);
    return 0;
}

int paste_pixmap(Drawing* d, Pixmap source)
{
    if (!d || !d->image || !source)
        return 1;
    Display* dpy = app().display;
    // The pixmap may belong to another client that has gone, or be of
    // another depth: look before touching it.
    unsigned w, h, depth;
    if (!pixmap_geometry(dpy, source, &w, &h, &depth) || w == 0 || h == 0 ||
        depth != static_cast<unsigned>(d->depth))
        return 1;
    w = std::min(w, 16383u);
    h = std::min(h, 16383u);
    // Take the pixels first: the pixmap can still vanish now, and then the
    // drawing and its selection stay as they were.
    Pixmap p = XCreatePixmap(dpy, app().root, w, h, depth);
    if (!p)
        return 1;
    {
        ErrorTrap trap(dpy);
        XCopyArea(dpy, source, p, d->copyGC, 0, 0, w, h, 0, 0);
        if (trap.error()) {
            XFreePixmap(dpy, p);
            return 1;
        }
    }

    if (d->currentTool != TOOL_SELECT)
        select_tool(d, TOOL_SELECT);
    Selection* s = selection_record(d);
    settle_and_drop(d);
    drop_selection(d);   // also forgets an earlier Clear
    commit(d);
    s->pixels = p;
    s->mode = 2;
    remap_pasted_colours(d, p, w, h);
    Point at = visible_origin(d);
    set_rect(s->current, at.x, at.y, w, h);
    set_rect(s->origin, at.x, at.y, 0, 0);
    paint_selection(d, at.x, at.y);
    march(d);
    // The paste is a fresh start like a press of the select tool: Undo
    // comes back at the next release.
    set_undo_available(d, false);
    tell_selection_changed(d);
    return 0;
}

int cmd_select_all(Drawing* d, XEvent*, Boolean)
{
    return select_all(d);
}

int cmd_clear(Drawing* d, XEvent*, Boolean)
{
    return clear_selection(d);
}

void settle_selection(Drawing* d)
{
    // The select tool puts a lifted selection back into the picture (and
    // drops it) when it is deselected.
    if (d && d->selection && d->currentTool == TOOL_SELECT && d->activeArea)
        send_tool_event(d, d->activeArea, TOOL_DESELECTED, TOOL_SELECT);
}
