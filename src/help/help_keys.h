// On Keys: the keys of a drawing window, read from its menus as they are
// now, followed by the book's topic on the pointer and the canvas.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

// The key list of the menu bar `menuBar` (empty when it is null).
std::string menu_key_list(Widget menuBar);
