// The status line's readout of the pointer over a drawing's canvas: the
// image pixel under it and that pixel's colour, or the size of the
// rectangle the select tool is marking out.
#pragma once

struct Drawing;

// Follows the pointer over the drawing's canvas areas (actual size,
// magnified and the small view); call once the areas exist.
void attach_pointer_readout(Drawing* d);
