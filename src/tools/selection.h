// The floating selection of a drawing: the pixels the select tool lifted,
// where they came from and where they stand now, and the operations the
// Edit and Tools menus run on it.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "tools/geometry.h"

struct Drawing;

struct Selection {
    Point anchor{};            // press point of the rubber band
    Point corner{};            // moving corner, later the last drag position
    Point grab{};              // pointer minus the selection's left/top
    XRectangle origin{};       // where the pixels were lifted; 0 size: a copy
    XRectangle current{};      // where they stand; 0 size: no selection
    int mode = 0;              // 0 rubber band, 1 drag that cuts, 2 that copies
    Pixmap pixels = None;      // current width x height, drawing depth
    XtIntervalId timer = 0;    // pending march
    // What the last Clear or Cut took away (current, then origin), so that
    // Undo can bring it back; empty once anything else has happened.
    XRectangle cleared[2]{};
};

// The drawing's record, made on first use.
Selection* selection_record(Drawing* d);
bool selection_exists(const Drawing* d);
Box rect_box(const XRectangle& r);
// Sets a rectangle, clamped to what X's 16-bit fields hold.
void set_rect(XRectangle& r, long x, long y, long width, long height);
// The outline GC of the current march phase for the drawing's depth.
GC march_gc(const Drawing* d);

// The outline drawn into the image at the current rectangle.
void draw_outline(Drawing* d);
// Advances the outline by one phase and, with movingSelection, keeps it
// marching every 100 ms.
void march(Drawing* d);
void stop_march(Drawing* d);
// Copies the lifted pixels into the image at (x, y), hiding the outline.
void paint_selection(Drawing* d, int x, int y);
// Forgets the selection; whatever was painted stays in the image.
void drop_selection(Drawing* d);
// Paints a shown selection back where it stands and drops it.
void settle_and_drop(Drawing* d);

// Uncovers what the selection hides before it moves to `target`: the
// part of the origin outside the target becomes background, and the part
// of the current rectangle outside both comes back from savedImage.
void vacate_for(Drawing* d, Box target);

// An operation on the selection record that may replace the pixels and
// change the current rectangle; returns 0 on success.
using SelectionOp = int (*)(Drawing* d, Selection* s);
int apply_to_selection(Drawing* d, SelectionOp op);
int nudge_selection(Drawing* d, int dx, int dy);
int select_all(Drawing* d);
int clear_selection(Drawing* d);
// Makes a copy of `source` the drawing's floating selection at the top-left
// of the visible canvas. Returns 0, or 1 when the pixmap is gone or of
// another depth.
int paste_pixmap(Drawing* d, Pixmap source);

// Paints a lifted selection back into the image (through the select tool's
// deselection, which drops it) before a save or close.
void settle_selection(Drawing* d);

int cmd_select_all(Drawing* d, XEvent* event, Boolean set);
int cmd_clear(Drawing* d, XEvent* event, Boolean set);
