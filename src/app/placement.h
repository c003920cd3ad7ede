// Where a dialog goes when it is centred over the window that asked for it.
#pragma once

// Origin, along one axis, of a box of `size` centred on the span [pos,
// pos + span), pulled back inside [0, screen) so that a dialog wider than a
// small drawing window never starts off the screen's edge, where no window
// manager brings it back. A box larger than the screen starts at 0.
int centred_on_screen(int pos, int span, int size, int screen);
