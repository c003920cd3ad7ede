// The drawing (or its selection) as the root window's background, and the
// reverse: a top-level window picked with the pointer taken into the
// drawing as a floating selection.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

struct Drawing;

// Tiles the root window with a copy of the drawable; 0 on success.
int root_background_from_drawable(Drawable drawable);
// The selection when there is one, else the whole image, as the root's
// background; a bitmap becomes black on white.
int set_root_background(Drawing* d);
// The topmost viewable child of the root containing the root position,
// both edges inclusive; 0 when none does.
Window window_at_point(Display* dpy, int x, int y);
// Waits for a click and pastes the picture of the window under it.
int grab_window(Drawing* d);

int cmd_set_root_window(Drawing* d, XEvent* event, Boolean set);
int cmd_pick_window(Drawing* d, XEvent* event, Boolean set);
