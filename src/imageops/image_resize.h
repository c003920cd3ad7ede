// Resize and Scale of a whole drawing: the X side of the pure operations
// in resize_scale.h.
#pragma once

struct Drawing;

// Crops or extends the picture to w x h about anchor 0..8 (row by row from
// the top left), the new area in the drawing's background colour.
// Returns 0, or 1 when the size is outside the limits or the server or
// memory gave out (the drawing then stays as it was).
int resize_image(Drawing* d, int width, int height, int anchor);
// Scales the picture to w x h by nearest neighbour. Returns as above.
int scale_image(Drawing* d, int width, int height);
