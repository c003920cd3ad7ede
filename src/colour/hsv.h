// Integer colour maths of the colour editor: RGB <-> HSV with every
// quantity scaled to 0..255 (hue in degrees 0..359), and the geometry of
// the hue-saturation wheel. Plain values only, so it is tested without X.
#pragma once

struct Rgb {
    int red, green, blue;   // 0..255
};

struct Hsv {
    int hue;          // degrees, 0..359
    int saturation;   // 0..255
    int value;        // 0..255
};

Hsv rgb_to_hsv(Rgb c);
Rgb hsv_to_rgb(Hsv c);

// The wheel: three rings of nine sectors around a centre disc.
constexpr int WHEEL_RINGS = 3;
constexpr int WHEEL_SECTORS = 9;
constexpr int WHEEL_CELLS = WHEEL_RINGS * WHEEL_SECTORS + 1;   // the last is the centre
constexpr int WHEEL_MARGIN = 10;

// Hue and saturation painted in wheel cell `cell` (9k + j for ring k and
// sector j, 27 the centre).
Hsv wheel_cell_colour(int cell, int value);

struct WheelArc {
    int x, y;        // origin of the bounding square
    int diameter;
};
// Radius of the wheel in a drawing area of the given size (can be <= 0
// when the area is tiny).
int wheel_radius(int width, int height);
// Bounding square of ring k (0..2), or of the centre disc for k = 3.
WheelArc wheel_ring(int width, int height, int ring);

// Hue and saturation picked at (x, y) of the drawing area; the value is
// left 0 for the caller to fill in.
Hsv wheel_pick(int x, int y, int width, int height);

// Where the marker of a colour goes on a wheel `width` wide.
struct Point {
    int x, y;
};
Point wheel_marker(int hue, int saturation, int width);
