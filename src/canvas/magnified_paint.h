// The incremental painting of the magnified canvas area, shared by the
// refresh operations, expose and zoom.
#pragma once

#include <X11/Xlib.h>

struct Drawing;

// Repaints the cells of the image rectangle on the magnified area that
// differ from imageCopy (every cell when `force`), and brings imageCopy up
// to date. Coordinates are image pixels; the rectangle is clipped to the
// image.
void magnified_paint(Drawing* d, int x, int y, int width, int height, bool force);

// Bitmap drawings: repaints rows y .. y + n - 1 comparing whole rows and
// bytes first, for refreshes that span the full width.
void magnified_paint_rows(Drawing* d, int y, int n);

// Takes imageCopy afresh from the whole image (plane 1 for bitmaps).
void retake_image_copy(Drawing* d);

// Shows or hides the grid between the cells of the drawing's magnified
// area and repaints it; the image is untouched.
void show_grid(Drawing* d, bool on);
