// The X side of window placement: the rectangles of shells on the screen,
// and moving a shell to an origin the arithmetic of placement.h chose.
#pragma once

#include <X11/Intrinsic.h>

#include "core/placement.h"

// The shell's rectangle on the screen while it is shown (realised and
// viewable), border included; false otherwise.
bool shown_box(Widget shell, WindowBox* box);

// The size the shell will take on the screen, border included. A dialog
// shell popping up for the first time has no size of its own yet: its
// child's is taken then.
void outer_size(Widget shell, int* width, int* height);

// The screen's size, for the arithmetic.
void screen_size(Widget w, int* width, int* height);

// Moves the shell so that its outer rectangle starts at `origin`.
void move_shell(Widget shell, Origin origin);

// Moves a shell about to pop up so that all of it is on the screen.
void keep_shell_on_screen(Widget shell);

struct Drawing;

// Moves a window that belongs to the drawing (a view, its colour list)
// beside the drawing's window, clear of the drawing's other such windows
// that are shown, and on the screen.
void place_beside_drawing(Widget shell, Drawing* d);
// The same as a pop-up callback of the shell; the client data is the
// drawing. It runs at every pop-up: the drawing may have moved meanwhile.
void beside_drawing_cb(Widget shell, XtPointer drawing, XtPointer) noexcept;
