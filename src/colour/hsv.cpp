// The editor's colour maths in integers, so that a colour read from a cell,
// shown on the wheel and stored back is computed the same way every time.
#include "colour/hsv.h"

#include <algorithm>
#include <cmath>
#include <numbers>

Hsv rgb_to_hsv(Rgb c)
{
    int r = std::clamp(c.red, 0, 255), g = std::clamp(c.green, 0, 255), b = std::clamp(c.blue, 0, 255);
    int max = std::max({r, g, b});
    int min = std::min({r, g, b});
    int d = max - min;
    Hsv out{0, max ? d * 255 / max : 0, max};
    if (out.saturation == 0)
        return out;
    int rc = (max - r) * 255 / d;
    int gc = (max - g) * 255 / d;
    int bc = (max - b) * 255 / d;
    int h;
    if (r == max)
        h = bc - gc;
    else if (g == max)
        h = 510 + rc - bc;
    else
        h = 1020 + gc - rc;
    out.hue = h * 60 / 255;
    if (out.hue < 0)
        out.hue += 360;
    return out;
}

Rgb hsv_to_rgb(Hsv c)
{
    int v = std::clamp(c.value, 0, 255);
    int s = std::clamp(c.saturation, 0, 255);
    if (s == 0)
        return {v, v, v};
    // Out-of-range hues wrap onto the circle rather than index a seventh sector.
    int hue = ((c.hue % 360) + 360) % 360;
    int h = hue * 255 / 60;
    int i = h / 255;
    int f = h - 255 * i;
    int p = (255 - s) * v / 255;
    int q = (255 - f * s / 255) * v / 255;
    int t = (255 - (255 - f) * s / 255) * v / 255;
    switch (i) {
    case 0: return {v, t, p};
    case 1: return {q, v, p};
    case 2: return {p, v, t};
    case 3: return {p, q, v};
    case 4: return {t, p, v};
    default: return {v, p, q};
    }
}

Hsv wheel_cell_colour(int cell, int value)
{
    if (cell < 0 || cell >= WHEEL_CELLS - 1)
        return {0, 0, value};
    int ring = cell / WHEEL_SECTORS;
    int sector = cell % WHEEL_SECTORS;
    return {20 + 40 * sector, 255 - 72 * ring, value};
}

int wheel_radius(int width, int height)
{
    return std::min(width, height) / 2 - WHEEL_MARGIN;
}

WheelArc wheel_ring(int width, int height, int ring)
{
    int r = wheel_radius(width, height);
    int step = r * 2 / 7;
    int origin = step * ring + WHEEL_MARGIN;
    return {origin, origin, std::max(0, 2 * (r - step * ring))};
}

Hsv wheel_pick(int x, int y, int width, int height)
{
    int r = wheel_radius(width, height);
    double dx = double(x) - (r + WHEEL_MARGIN);
    double dy = double(r + WHEEL_MARGIN) - y;
    double angle = 0;
    if (dx != 0 || dy != 0) {
        angle = std::atan2(dy, dx) * 180 / std::numbers::pi;
        if (angle < 0)
            angle += 360;
    }
    int hue = std::min(int(angle), 359);
    int saturation = 255;
    // A wheel with no radius has no inside: everything off its centre is
    // at full saturation.
    if (r > 0)
        saturation = int(std::min(std::hypot(dx, dy) * 255 / r, 255.0));
    else if (dx == 0 && dy == 0)
        saturation = 0;
    return {hue, saturation, 0};
}

Point wheel_marker(int hue, int saturation, int width)
{
    double half = width * 0.5;
    double radians = hue * std::numbers::pi / 180;
    return {int(half + std::trunc(saturation * std::cos(radians) * half / 255)),
            int(half - std::trunc(saturation * std::sin(radians) * half / 255))};
}
