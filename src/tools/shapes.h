// Rectangle and oval tools and the DrawFilled menu toggle.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

void set_rectangle_filled(Drawing* d, bool on);
void toggle_oval_filled(Drawing* d);
int cmd_draw_filled(Drawing* d, XEvent* event, Boolean set);
