// A drawing's picture replaced by one of another size, with every view
// following, and the one level of undo of that change.
#pragma once

#include <X11/Xlib.h>

struct Drawing;

// What a change of size takes away: the whole picture and its hotspot.
struct SizeUndo {
    Pixmap image;
    int width, height;
    int hotspotX, hotspotY;
};

// Makes the w x h `picture` (of the drawing's depth; copied, the caller
// keeps it) the drawing's picture with the hotspot (hx, hy): the canvas,
// the scroll area, the small and black-and-white views and the status line
// follow the new size, the drawing is modified, and Undo brings the old
// picture back. Returns 0, or 1 when the server could not make the
// pixmaps: the drawing then stays as it was.
int change_image_size(Drawing* d, Pixmap picture, int width, int height, int hx, int hy);

// Undo of the last change of size, when that is what Undo would take back:
// the old size, pixels and hotspot return. False when there is none.
bool undo_image_size(Drawing* d);

// Forgets the picture kept for undo (any other change of the undo state
// makes it stale).
void drop_size_undo(Drawing* d);
