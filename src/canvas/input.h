// Pointer and key input on the canvas areas: scaling to image pixels,
// choosing the GC per button, the Shift drag constraint, motion compression.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

void canvas_input_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept;
void canvas_motion_eh(Widget w, XtPointer clientData, XEvent* event, Boolean* cont) noexcept;
void canvas_key_eh(Widget w, XtPointer clientData, XEvent* event, Boolean* cont) noexcept;

// Makes every button press and release of a canvas area, with any
// modifiers, reach its input callback.
void take_every_button(Widget area);

// Returns the GC for a button (1 foreground, 2 pattern, 3 background) and
// stores it as the drawing's chosen GC, with the drawing's line width.
GC choose_gc(Drawing* d, unsigned button);

// XChangeGC of the line width alone.
void set_line_width(GC gc, unsigned width);
