// Rotate, flip, invert and trim of a drawing's floating selection, and the
// menu commands that run them and the one-pixel nudges.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;
struct Selection;

// Operations on the selection record, run through apply_to_selection.
int rotate_selection(Drawing* d, Selection* s);
int flip_selection_horizontal(Drawing* d, Selection* s);
int flip_selection_vertical(Drawing* d, Selection* s);
int invert_selection(Drawing* d, Selection* s);
int trim_selection(Drawing* d, Selection* s);

int cmd_rotate(Drawing* d, XEvent* event, Boolean set);
int cmd_flip_horizontal(Drawing* d, XEvent* event, Boolean set);
int cmd_flip_vertical(Drawing* d, XEvent* event, Boolean set);
int cmd_invert(Drawing* d, XEvent* event, Boolean set);
int cmd_nudge_up(Drawing* d, XEvent* event, Boolean set);
int cmd_nudge_right(Drawing* d, XEvent* event, Boolean set);
int cmd_nudge_down(Drawing* d, XEvent* event, Boolean set);
int cmd_nudge_left(Drawing* d, XEvent* event, Boolean set);
