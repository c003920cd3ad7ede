// The small (actual-size) view and the black-and-white view dialogs.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// Build the dialogs ("SmallView Dialog", "BWView Dialog"), unmanaged.
// The show commands build each the first time it is shown in a window: a
// window that never shows them does not pay for them at start-up.
void create_small_view(Widget parent, Drawing* d);
void create_bw_view(Widget parent, Drawing* d);
// Called by the refresh operations for a changed rectangle.
void small_view_update(Drawing* d, int x, int y, int width, int height);
void bw_view_update(Drawing* d, int x, int y, int width, int height);
// The View menu's toggles.
int cmd_show_small_view(Drawing* d, XEvent* event, Boolean set);
int cmd_show_bw_view(Drawing* d, XEvent* event, Boolean set);
// Hide the views and turn their toggles off (zoom to actual size, close).
void hide_small_view(Drawing* d);
void hide_views(Drawing* d);
// Renders the whole image into the depth-1 black-and-white pixmap (made
// when missing) and returns it.
Pixmap render_bw_pixmap(Drawing* d);
