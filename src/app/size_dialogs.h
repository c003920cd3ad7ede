// Tools > Resize Image... and Tools > Scale Image...: the dialogs that ask
// for the new size and the commands that open them.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

int cmd_resize_image(Drawing* d, XEvent* event, Boolean set);
int cmd_scale_image(Drawing* d, XEvent* event, Boolean set);

// The dialogs, null until first shown.
Widget resize_dialog();
Widget scale_dialog();
