// The question asked when a file has more colours than the colormap has
// free cells: open it with its colours reduced, or not at all.
#pragma once

#include <X11/Intrinsic.h>

struct ColourFit;

// Asks about `fileName` (whose read came back with the counts in `fit`) and
// waits for the answer. Returns the number of colours to reduce it to, or
// 0 for No, for a question already waiting, and when so few cells are free
// that a reduction is no use.
unsigned ask_colour_reduction(Widget parent, const char* fileName, const ColourFit& fit);
