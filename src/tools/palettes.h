// The tools, patterns and line-width palettes of a drawing window.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

constexpr int PATTERN_COUNT = 8;
extern const unsigned char patternBits[PATTERN_COUNT][8];
extern const unsigned lineWidths[5];   // 1, 2, 4, 6, 9

Widget create_tools_box(Widget form, Drawing* d);
Widget create_patterns_box(Widget form, Drawing* d);
Widget create_line_width_box(Widget form, Drawing* d);

// The pattern's GC for a drawing of the given depth (1: bitmap variant).
GC pattern_gc(int pattern, int depth);

// An 8 x 8 stipple and the two opaque-stippled GCs that paint it, black on
// white for colour drawings and 1 on 0 for bitmaps. Kept for the program's
// life.
struct StippleGCs {
    Pixmap stipple;
    GC colour;
    GC bitmap;
};
StippleGCs make_stipple_gcs(const unsigned char bits[8]);

// who: a tool index, or 100 plus a pattern index.
void toggle_changed(Drawing* d, int who, bool set);

// Puts a reused drawing back to its first state: pencil, pattern 0, width 1.
void reset_tool_state(Drawing* d);

// Selects a tool's toggle in the palette (as a user click would).
void select_tool(Drawing* d, int tool);
