// The Help menu of every drawing window.
#pragma once

#include <X11/Intrinsic.h>

// Adds the "Help" cascade (HelpOnContext, HelpOnWindow, HelpOnKeys,
// HelpIndex, HelpOnHelp, HelpOnVersion) to the menu bar and makes it the
// bar's help widget. The version dialog is the window's: HelpOnVersion
// calls `showVersion` with the shell of the window it was chosen in.
Widget build_help_menu(Widget menuBar, void (*showVersion)(Widget parent));
