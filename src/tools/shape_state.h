// What the rectangle and oval units share with the DrawFilled toggle: the
// outline pictures recorded at tool-init and the filled pictures.
#pragma once

#include <X11/Intrinsic.h>

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
