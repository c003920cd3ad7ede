// One level of undo: the Undo item's sensitivity and the Undo command.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

void set_undo_sensitive(Drawing* d, bool on);
bool undo_sensitive(Drawing* d);
int cmd_undo(Drawing* d, XEvent* event, Boolean set);
