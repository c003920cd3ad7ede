// One level of undo: the Undo item's sensitivity and the Undo command.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

void set_undo_sensitive(Drawing* d, bool on);
bool undo_sensitive(Drawing* d);
// A tool's undo that puts the whole image back as it was at the press.
void undo_whole_image(Drawing* d);
int cmd_undo(Drawing* d, XEvent* event, Boolean set);
