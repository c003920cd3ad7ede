// The text of the status line's pointer readout: where the pointer is in
// image pixels and what lies there. Pure.
#pragma once

#include <string>

// One image pixel under the pointer.
struct PointerSample {
    int x, y;
    bool transparent;                  // the drawing's transparent pixel
    unsigned short red, green, blue;   // 16-bit channels, as X gives them
    const char* name;                  // the colour's symbolic name, or null
};

// "#rrggbb" of 16-bit channels, each rounded to the nearest 8-bit value.
std::string rgb_hex(unsigned short red, unsigned short green, unsigned short blue);

// "X - 3, Y - 7  #ff0000", then the symbolic name when the colour has
// one; a transparent pixel reads "None", as XPM files write it.
std::string pointer_text(const PointerSample& s);

// "Selection - 5 x 2": the rubber band's size while the select tool marks
// it out.
std::string selection_text(int width, int height);
