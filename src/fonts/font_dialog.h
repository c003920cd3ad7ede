// The "Font Dialog": the server's fonts browsed by foundry, family, pixel
// size, weight and slant; every choice is loaded at once, shown in
// "Sample" and given to the text tool of every open drawing.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include <vector>

struct Drawing;

// The chosen font: what "Sample" shows and the text tool types in.
struct FontChoice {
    XFontStruct* font;   // null until the dialog first loads a font
    GC gc;               // on the sample's window: copy, black on white
    int lineHeight;
    const char* name;    // the pattern or name it was loaded by
};
const FontChoice& current_font_choice();

// Makes the dialog on first use and shows it over the drawing's window.
void show_font_dialog(Drawing* d);

// The dialog, or null before its first use.
Widget font_dialog();

// Fills the lists from these names instead of the server's list read when
// the dialog was made, and chooses the first font as that does.
void set_font_names(const std::vector<const char*>& names);

// The Fonts item of the Tools menu.
int cmd_fonts(Drawing* d, XEvent* event, Boolean set);
