// Pure geometry of the painting tools: boxes, the Shift constraints and the
// drag-constraint test. No X here.
#pragma once

#include "core/drag_constraint.h"

struct Point { int x, y; };
struct Box { int x, y, width, height; };

// Bounding box of two points, both ends inclusive.
Box box_of(Point p, Point q);
// The box grown by g on every side.
Box grow_box(Box b, int g);
// Line tool: snap P to vertical, horizontal or 45 degrees from S.
Point constrain_line(Point s, Point p);
// Rectangle/oval: square the box on its shorter leg.
Point constrain_square(Point s, Point p);
// Where a held drag puts the pointer: on the anchor's row or column.
Point held_drag_point(Point anchor, Point p, DragConstraint held);
// Drag constraint from a Shift-press at (x0, y0) and a motion at (x, y);
// None while undecided (keep polling). Window pixels.
DragConstraint drag_constraint(int x0, int y0, int x, int y);

// The box cut to an image of the given size; width or height 0 when
// nothing is left.
Box clip_box(Box b, int width, int height);

// Geometry of a line-width button's pictures: an 18 x height picture with a
// bar from (6, mid) to (18, mid) and, on the marked picture, a triangle
// with its tip at (4, triangleY) and its back at x 1, triangleY -/+ 3.
struct WidthPicture {
    int width, height, mid, triangleY;
};
WidthPicture width_picture(unsigned lineWidth);

// Eraser: the side of its square in image pixels. The square is a fixed
// size on the screen (16 screen pixels, 15 at actual size), so it covers
// fewer image pixels the more the canvas is magnified; a pointer that is
// not on the first screen pixel of its cell gets one pixel more, so that
// the square still reaches as far right as the pointer's screen square.
int eraser_side(int zoom, int windowX);
// The convex hexagon a square of the given side sweeps moving from `from`
// to `to` (top-left corners): six corners in drawing order.
void eraser_sweep(Point from, Point to, int side, Point out[6]);
