// Copy and paste of the floating selection through the Motif clipboard.
// What travels is the identifier of a server-side pixmap, so any drawing of
// the same depth on the display can paste it, also in another process.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// Puts a copy of the selection's pixels on the clipboard; 1 without one.
int clipboard_copy(Drawing* d, XEvent* event);
// Makes the clipboard's pixmap the drawing's floating selection.
int clipboard_paste(Drawing* d, XEvent* event);
// True when the clipboard names a live pixmap of the drawing's depth.
bool clipboard_can_paste(Drawing* d);

int cmd_cut(Drawing* d, XEvent* event, Boolean set);
int cmd_copy(Drawing* d, XEvent* event, Boolean set);
int cmd_paste(Drawing* d, XEvent* event, Boolean set);
