// A drawing's image pixmaps, its magnified display and the refresh
// operations every tool calls after drawing into `image`.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xutil.h>

#include "core/x_owned.h"

struct Drawing;

// Builds "drawFrame", "scrollWin" and the two "drawArea"s in the form, with
// their expose, input, motion and key handlers. Stores them in the drawing.
Widget create_canvas(Widget form, Drawing* d);

// Gives an actual-size or magnified area the canvas's expose, input, motion
// and key handlers: the small view paints like the canvas itself.
void attach_canvas_handlers(Widget area, Drawing* d);

// Expose callback of the canvas areas and the small view: actual-size
// areas copy from `image`, the magnified one repaints its cells.
void canvas_expose_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept;

// The per-drawing GCs (four shared ones of the drawing's depth, three own).
void create_drawing_gcs(Drawing* d);

// Sizes both areas from width, height and zoom and picks the active one.
void size_canvas(Drawing* d);
// Sizes the scrolled window, and so the drawing window, to show the whole
// canvas (a screenful of a large one), as a new window does.
void fit_view(Drawing* d);

// Replaces image, savedImage, colourWork and imageCopy; copies `source` in
// when given. `sourceCopy`, when given, is the picture the source was
// uploaded from, in any layout: when it fits the image, imageCopy is made
// from it, laid out as XGetImage would read the image back, instead of
// reading it back. Returns 0, or 1 when the pixmaps cannot be made.
int create_image(Drawing* d, Pixmap source, ImagePtr sourceCopy = nullptr);

void refresh_rect(Drawing* d, int x, int y, int width, int height);
void refresh_corners(Drawing* d, int x1, int y1, int x2, int y2);
void refresh_region(Drawing* d, Region region);

// Marks the drawing modified and copies image into savedImage.
void commit(Drawing* d);
void restore_rect(Drawing* d, int x, int y, int width, int height);
void restore_corners(Drawing* d, int x1, int y1, int x2, int y2);
void restore_region(Drawing* d, Region region);

Pixmap snapshot_drawable(Display* dpy, Drawable drawable, GC gc,
                         unsigned* width, unsigned* height, unsigned* depth);

void zoom_in(Drawing* d, XEvent* event);
void zoom_out(Drawing* d, XEvent* event);
void layout_canvas(Drawing* d);
