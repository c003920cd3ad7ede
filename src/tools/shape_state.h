// What the rectangle and oval units share with the DrawFilled toggle: the
// outline pictures recorded at tool-init and the filled pictures.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xutil.h>

#include "tools/geometry.h"

struct Drawing;

struct ShapePictures {
    Pixmap outlineLabel, outlineSelect;
    Pixmap filledLabel, filledSelect;
};

// 0 rectangle, 1 oval.
ShapePictures& shape_pictures(int shape);

// Records the toggle's outline pictures. The filled ones are worked out
// when first shown: from the resources when they name usable pictures,
// else drawn from the built-in filled icon.
void record_shape_pictures(Widget toggle, int shape);

// Converts the filled pictures' application resources into app().res, once.
void read_filled_picture_resources();

// The input handler both shape tools share: palette events, the drag's
// start (the input layer has committed the image), and an undo that
// restores only the last shape's box, grown by the line width it was drawn
// with. `filled` is the tool's DrawFilled flag in the drawing.
void shape_input(Widget w, Drawing* d, XEvent* event, int tool, int shape, int* filled);

// Where a motion of the drag puts the shape's far corner: the pointer, or
// with Shift the corner of a square.
Point shape_drag_point(Drawing* d, XEvent* event);
