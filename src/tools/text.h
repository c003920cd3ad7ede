// What the text tool offers beyond its row of the tool table: the font the
// font chooser gives it, and the caret kept out of saved files.
#pragma once

#include <X11/Xlib.h>

struct Drawing;

// Makes `fontName` the drawing's text font. A text still being typed is
// redrawn in the new font from the same start point. Returns 0, or 1 when
// the font cannot be loaded (the text keeps its font and nothing changes).
int text_set_font(Drawing* d, const char* fontName);

// The font the drawing's text is typed in (null before the tool's init or
// when even "fixed" could not be loaded).
XFontStruct* text_font(Drawing* d);

// Takes the caret out of the image (it is drawn into the picture itself);
// the next key typed shows it again.
void text_hide_caret(Drawing* d);

// Records the font the font chooser holds: every drawing that opens from
// now on types in it (text_reset).
void set_chosen_text_font(const char* fontName);

// Readies the text of a drawing that (re)opens in its record: no text and
// no caret carried over from the picture that had the record before, and
// the font chosen in the font chooser, like every other open drawing.
void text_reset(Drawing* d);
