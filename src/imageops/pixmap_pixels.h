// A drawing's pixmaps read into plain pixel buffers and buffers made into
// pixmaps, the X side of every operation that works on pixel buffers.
#pragma once

#include <X11/Xlib.h>

#include "imageops/pixel_ops.h"

struct Drawing;

// The w x h pixels of `p` (of the drawing's depth): bitmaps as their one
// plane, colour drawings as whole pixels. False when they cannot be read.
bool read_pixels(Drawing* d, Pixmap p, int w, int h, PixelBuffer* out);
// A new pixmap of the buffer's size and the drawing's depth holding it, or
// None.
Pixmap write_pixels(Drawing* d, const PixelBuffer& buf);
