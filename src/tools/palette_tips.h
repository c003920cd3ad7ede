// The palette buttons' tooltips, taken from the resources when the pointer
// first comes near them rather than when the buttons are made.
#pragma once

#include <X11/Intrinsic.h>

// The argument to make a palette button with: it keeps the button from
// fetching and converting its tooltip then.
void no_tip_yet(Arg* arg);

// Gives the buttons of `box` their tooltips from the resources, under the
// same names as if they had fetched them themselves, once, when the pointer
// first enters the box (always before it can rest on a button).
void tips_on_first_entry(Widget box);
