// The Help menu of every drawing window.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// Adds the "Help" cascade (HelpOnContext, HelpOnWindow, HelpOnKeys,
// HelpIndex, HelpOnHelp, HelpOnVersion) to the menu bar and makes it the
// bar's help widget.
Widget build_help_menu(Widget menuBar, Drawing* d);
