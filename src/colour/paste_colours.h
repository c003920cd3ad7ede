// Pasted pixels into a drawing's own colour cells.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// Rewrites the pixmap (of the drawing's depth) so that every pixel is one
// of the drawing's colour cells: a pixel already in its list stays, another
// drawing's transparent pixel becomes this drawing's, one of the same RGB
// as a listed colour takes that colour, and any other colour gets a new
// cell in the list. When no cell is left the pixel keeps its value.
// Returns the number of colours added.
int remap_pasted_colours(Drawing* d, Pixmap pixmap, unsigned width, unsigned height);
