// Where every request for help goes: to the help server when one answers,
// otherwise to the built-in help window.
#pragma once

#include <X11/Intrinsic.h>

// Shows `topic` (an id of the help book, e.g. "window" or "tool.pencil")
// to the user of the window that holds `from`.
void help_show(Widget from, const char* topic);
