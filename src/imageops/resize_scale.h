// Changing the size of a whole picture: cropping or extending it about an
// anchor, and scaling it by nearest neighbour, with the hotspot following;
// and reading the sizes the user asks for. No X here: the X side reads the
// image into a buffer and makes a pixmap of the result.
#pragma once

#include "imageops/pixel_ops.h"
#include "tools/geometry.h"

// The largest picture the program makes: the New dialog's limits, which a
// resize or a scale may not pass either.
constexpr int MAX_IMAGE_WIDTH = 512;
constexpr int MAX_IMAGE_HEIGHT = 720;

// Which part of the picture stays put when its size changes: column 0 left,
// 1 centre, 2 right; row 0 top, 1 middle, 2 bottom. Numbered row by row
// (0 top left ... 8 bottom right), as the dialog's nine buttons are.
struct Anchor {
    int column, row;
};
Anchor anchor_of_index(int index);

// Where the old picture's top-left corner lands in a new one of w x h. A
// centred picture that cannot be centred exactly leans left and up.
Point resize_offset(int oldWidth, int oldHeight, int width, int height, Anchor anchor);

// The picture cropped or extended to w x h about the anchor; new pixels
// are `background`.
PixelBuffer resize_pixels(const PixelBuffer& src, int width, int height, Anchor anchor,
                          unsigned long background);

// The picture scaled to w x h: each new pixel takes the old pixel under its
// centre, so no value appears that was not there before.
PixelBuffer scale_pixels(const PixelBuffer& src, int width, int height);

// The hotspot after a resize: moved with the picture, or (-1, -1) when it
// falls outside or there was none.
Point resize_hotspot(Point hotspot, int oldWidth, int oldHeight, int width, int height, Anchor anchor);
// The hotspot after a scale: the new pixel that covers the old hotspot
// pixel's top-left corner; (-1, -1) stays none.
Point scale_hotspot(Point hotspot, int oldWidth, int oldHeight, int width, int height);

// A size typed into a field: blanks around whole decimal digits.
enum class SizeField { Ok, NotNumber, TooSmall, TooLarge };
SizeField parse_size_field(const char* text, int max, int* value);

// The other side of a picture scaled to `value` on one side, keeping its
// proportions (from:to being the old sides), rounded and at least 1.
int proportional_side(int value, int from, int to);
