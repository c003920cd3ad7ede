// The application icon that window managers show for a drawing window.
#pragma once

#include <X11/Intrinsic.h>

// Puts the icon pixmap and its mask into the WM hints of a drawing's shell.
// The icon takes the colours of `colours` (a widget of the window: its
// background, foreground and shadows), so it needs no colour cells.
void set_window_icon(Widget shell, Widget colours);
