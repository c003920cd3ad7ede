// Transforms of a selection's pixels held in a plain buffer: quarter turn,
// flips, bit inversion and the bounding box of what differs from the
// background. No X here; the X side reads and writes the buffers.
#pragma once

#include <cstddef>
#include <vector>

#include "tools/geometry.h"

struct PixelBuffer {
    int width = 0, height = 0;
    std::vector<unsigned long> pixels;   // row by row

    PixelBuffer() = default;
    PixelBuffer(int w, int h)
        : width(w > 0 ? w : 0), height(h > 0 ? h : 0),
          pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0) {}
    unsigned long at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
    void set(int x, int y, unsigned long v) { pixels[static_cast<std::size_t>(y) * width + x] = v; }
};

// A quarter turn counter-clockwise: w x h becomes h x w and (x, y) goes to
// (y, w - 1 - x).
PixelBuffer rotate_quarter(const PixelBuffer& src);
// (x, y) goes to (w - 1 - x, y).
PixelBuffer flip_horizontal(const PixelBuffer& src);
// (x, y) goes to (x, h - 1 - y).
PixelBuffer flip_vertical(const PixelBuffer& src);
// Every 0 becomes 1 and every other value 0 (bitmap pixels).
void invert_bits(PixelBuffer& buf);
// The smallest box holding every pixel that is not `background`; a box of
// width and height 0 when there is none.
Box trim_box(const PixelBuffer& buf, unsigned long background);
