// What a tool keeps of one stroke, from its press to its release: kept per
// drawing, so that a stroke in one window never takes up where another
// window's stroke left off, and an undo never restores another drawing's
// shape.
#pragma once

#include "tools/geometry.h"

struct Drawing;

struct ToolStroke {
    Point start{};   // the press point: where a line, shape or Shift-drag is anchored
    Point last{};    // where the stroke drew at its last motion
    int side = 15;   // the eraser's square at this zoom, in image pixels
    int width = 0;   // a shape's line width at its press, which its undo grows the box by
};

// The drawing's stroke record, made on first use.
ToolStroke& stroke_of(Drawing* d);
