// The built-in help window "Pictrel Help": one per program, reused.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

// Shows `topic` of the built-in help book (or, when the book lacks it, the
// nearest topic above it) in the help window, first placed beside the
// drawing of `from`. Returns 0 when shown.
int help_window_show(Widget from, const char* topic);

// The window's dialog (null until first shown) and the topic it shows.
Widget help_window_dialog();
std::string help_window_topic();
