// Help on the part of a window the user points at (On Context) or that has
// the keyboard focus (the help key, F1).
#pragma once

#include <X11/Intrinsic.h>

#include <string>

// Start-up: every dialog made from now on answers the help key.
void install_context_help();

// The help key on the drawing window `mainWindow`.
void add_window_help(Widget mainWindow);

// On Context, chosen in the window that holds `w`: the user picks a part of
// any window with the help cursor and reads its topic; Shift held at the
// pick opens the widget-tree browser on it instead.
void help_on_context(Widget w);

// The topic shown for `w`: its own or its nearest ancestor's, or the
// drawing window's when none has one.
std::string help_topic_for(Widget w);
