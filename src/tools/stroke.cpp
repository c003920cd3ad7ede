// The per-drawing stroke record.
#include "tools/stroke.h"

#include "core/drawing.h"

ToolStroke& stroke_of(Drawing* d)
{
    // Like the drawing record itself, kept for the program's life and
    // reused by the next drawing in the slot.
    if (!d->stroke)
        d->stroke = new ToolStroke{};
    return *d->stroke;
}
