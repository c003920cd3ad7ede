// One level of undo: whether there is something to take back, and the Undo
// command, which is always the current tool's business.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// Sets d->undoAvailable and tells the window, whose Undo item follows it.
void set_undo_available(Drawing* d, bool on);
// A tool's undo that puts the whole image back as it was at the press.
void undo_whole_image(Drawing* d);
int cmd_undo(Drawing* d, XEvent* event, Boolean set);
