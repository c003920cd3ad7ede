// The built-in help window "Pictrel Help": one per program, reused.
#pragma once

#include <X11/Intrinsic.h>

// Shows `topic` of the built-in help book in the help window near `from`.
// Returns 0 when shown.
int help_window_show(Widget from, const char* topic);
