// The input method, opened when the first text widget is made instead of
// when the first window is.
#pragma once

#include <X11/Intrinsic.h>

// Called once, before the first shell is realised. Motif otherwise opens
// the input method of the display at that first realise, and opening it
// reads the locale's whole Compose file (most of the start-up's work under
// a UTF-8 locale), though only text widgets ever use it. From here on, the
// making of the first XmText or XmTextField, wherever it is made, opens it
// first, as Motif would have, so that typed text, composed characters
// included, reaches every text widget as before.
void defer_input_method(Widget topLevel);

// Whether the input method is still put off (nothing has needed it yet).
bool input_method_deferred();
