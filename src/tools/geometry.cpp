// Boxes and constraints shared by the line, rectangle and oval tools and by
// the input layer's Shift-drag test. Plain integers only, so unit-testable.
#include "tools/geometry.h"

#include <algorithm>
#include <cstdlib>

Box box_of(Point p, Point q)
{
    return Box{std::min(p.x, q.x), std::min(p.y, q.y), std::abs(p.x - q.x) + 1,
               std::abs(p.y - q.y) + 1};
}

Box grow_box(Box b, int g)
{
    return Box{b.x - g, b.y - g, b.width + 2 * g, b.height + 2 * g};
}

Point constrain_line(Point s, Point p)
{
    int dx = s.x - p.x, dy = s.y - p.y;
    int ax = std::abs(dx), ay = std::abs(dy);
    if (ax == ay)
        return p;
    // A leg is negligible only when it is less than half the other one;
    // everything in between snaps to the diagonal.
    if (ax < ay && 2 * ax < ay)
        return Point{s.x, p.y};
    if (ay < ax && 2 * ay < ax)
        return Point{p.x, s.y};
    int d = std::min(ax, ay);
    int sign = dx < 0 ? -1 : 1;
    return Point{s.x - sign * d, s.y < p.y ? s.y + d : s.y - d};
}

Point constrain_square(Point s, Point p)
{
    int d = std::min(std::abs(s.x - p.x), std::abs(s.y - p.y));
    return Point{s.x > p.x ? s.x - d : s.x + d, s.y > p.y ? s.y - d : s.y + d};
}

Point held_drag_point(Point anchor, Point p, DragConstraint held)
{
    if (held == DragConstraint::Horizontal)
        p.y = anchor.y;
    else if (held == DragConstraint::Vertical)
        p.x = anchor.x;
    return p;
}

DragConstraint drag_constraint(int x0, int y0, int x, int y)
{
    // Vertical first: a diagonal flick that passes both thresholds at once
    // counts as vertical.
    if (std::abs(y - y0) > 5)
        return DragConstraint::Vertical;
    if (std::abs(x - x0) > 5)
        return DragConstraint::Horizontal;
    return DragConstraint::Free;
}

Box clip_box(Box b, int width, int height)
{
    long x0 = std::max(b.x, 0), y0 = std::max(b.y, 0);
    long x1 = std::min(static_cast<long>(b.x) + b.width, static_cast<long>(width));
    long y1 = std::min(static_cast<long>(b.y) + b.height, static_cast<long>(height));
    if (b.width <= 0 || b.height <= 0 || x1 <= x0 || y1 <= y0)
        return Box{static_cast<int>(x0), static_cast<int>(y0), 0, 0};
    return Box{static_cast<int>(x0), static_cast<int>(y0), static_cast<int>(x1 - x0),
               static_cast<int>(y1 - y0)};
}

WidthPicture width_picture(unsigned lineWidth)
{
    int w = static_cast<int>(std::min(lineWidth, 64u));
    int h = w < 6 ? 6 : w;
    int mid = h / 2;
    // Even wide bars sit one pixel higher than their middle row; moving the
    // triangle with them keeps it centred on the bar.
    int m = (w % 2 == 0 && w > 1) ? mid - 1 : mid;
    return WidthPicture{18, h, mid, m};
}

int eraser_side(int zoom, int windowX)
{
    if (zoom <= 0)
        return 15;
    int s = zoom >= 16 ? 0 : 16 >> zoom;
    if (s == 0)
        s = 1;
    int cellMask = zoom >= 30 ? -1 : (1 << zoom) - 1;
    return s + ((windowX & cellMask) != 0 ? 1 : 0);
}

void eraser_sweep(Point from, Point to, int side, Point out[6])
{
    // L is the leftmost of the two, the starting point on a tie.
    Point l = to.x < from.x ? to : from;
    Point r = to.x < from.x ? from : to;
    int s = side;
    if (l.y > r.y) {   // rising to the right
        out[0] = {l.x, l.y};
        out[1] = {l.x, l.y + s};
        out[2] = {l.x + s, l.y + s};
        out[3] = {r.x + s, r.y + s};
        out[4] = {r.x + s, r.y};
        out[5] = {r.x, r.y};
    } else {
        out[0] = {l.x, l.y};
        out[1] = {l.x + s, l.y};
        out[2] = {r.x + s, r.y};
        out[3] = {r.x + s, r.y + s};
        out[4] = {r.x, r.y + s};
        out[5] = {l.x, l.y + s};
    }
}
