// Fitting a file's colours into the colormap when they need more cells
// than are free: counting the free cells, choosing how many colours to keep,
// and reducing an XPM image's colour table to that many before any cell is
// taken for it.
#pragma once

#include <X11/Xlib.h>
#include <X11/xpm.h>

// Returned by read_image_file, when the caller gave it a ColourFit without
// a target, for an XPM whose colours do not fit the free cells.
constexpr int READ_TOO_MANY_COLOURS = 2;

// What a read that may run out of cells is told, and tells back.
struct ColourFit {
    unsigned reduceTo = 0;    // in: reduce the opaque colours to at most this many (0: ask first)
    unsigned colours = 0;     // out: the colours of the file's table
    unsigned freeCells = 0;   // out: the cells free when the read gave up
    bool reduced = false;     // out: the colours were reduced
};

// Cells left free after a reduction: the question comes before the
// drawing's window exists, and the first window's widget colours take about
// a dozen cells of their own; the rest are for New Color and pasted colours.
// The colour editor's hue wheel asks for 36 more when first shown; keeping
// those too would cost a large image a fifth of its colours.
constexpr unsigned CELLS_KEPT_FREE = 24;

// How many opaque colours a file may keep when `freeCells` are free: one
// cell goes to the transparent colour and CELLS_KEPT_FREE stay free. 0 when
// too few are free for a reduction to be worth offering.
constexpr unsigned reduction_target(unsigned freeCells)
{
    return freeCells >= CELLS_KEPT_FREE + 1 + 2 ? freeCells - CELLS_KEPT_FREE - 1 : 0;
}

// The read/write cells of the default colormap free right now (at most `limit`).
unsigned count_free_cells(Display* dpy, Colormap colormap, unsigned limit);

// Replaces the opaque colours of `image` by at most `target` colours close
// to them, and its pixels with them. Transparent colours stay as they are
// and are not counted. Each new colour keeps the character key and
// monochrome key of the colour with the most pixels in it, and the symbolic
// name of the one with the most pixels that has one. Returns 0, or -1 when
// a colour of the file names no colour the server knows.
int reduce_xpm_colours(Display* dpy, Colormap colormap, XpmImage& image, unsigned target);

// What a read does when the file needs more cells than are free (`fit` as
// given to read_image_file, never null): reduces `image` when asked to, or
// fills in the counts and returns READ_TOO_MANY_COLOURS. 0 when the read
// goes on; -1 for a file whose colours cannot be reduced.
int fit_colours(Display* dpy, Colormap colormap, XpmImage& image, ColourFit* fit);
