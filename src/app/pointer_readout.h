// The status line's readout of the pointer over a drawing's canvas: the
// image pixel under it and that pixel's colour, or the size of the
// rectangle the select tool is marking out.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// Follows the pointer over the drawing's canvas areas (actual size,
// magnified and the small view when built); call once the areas exist.
void attach_pointer_readout(Drawing* d);
// The same over one more area of the drawing, made later (the small view
// is built when first shown).
void follow_pointer_in(Drawing* d, Widget area);
