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

// Records the toggle's outline pictures and works out the filled ones:
// from the resources when they name usable pictures, else drawn from the
// built-in filled icon.
void record_shape_pictures(Widget toggle, int shape);

// One drag of the rectangle or oval tool: from the press point to where
// the outline was last drawn, and the region repainted at each motion.
// The drawing and line width of the drag are kept for its undo: the width
// may have changed since, and the drag may belong to another drawing.
struct ShapeDrag {
    Point start{}, end{};
    Region damage = nullptr;
    Drawing* owner = nullptr;
    int width = 0;
};

// The input handler both shape tools share: palette events, commit at the
// press, and an undo that restores only the last shape's grown box.
// `filled` is the tool's DrawFilled flag in the drawing.
void shape_input(Widget w, Drawing* d, XEvent* event, int tool, int shape, int* filled, ShapeDrag& drag);

// Where a motion of the drag puts the shape's far corner: the pointer, or
// with Shift the corner of a square. Also makes the drag's damage region
// on first use.
Point shape_drag_point(ShapeDrag& drag, XEvent* event);
