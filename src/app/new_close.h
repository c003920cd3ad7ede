// The New dialog, the confirm-close dialog, and Quit.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

int cmd_new(Drawing* d, XEvent* event, Boolean set);
int cmd_quit(Drawing* d, XEvent* event, Boolean set);
int cmd_close(Drawing* d, XEvent* event, Boolean set);

void show_new_dialog(Drawing* d);
// Closes at once when unmodified, else asks Save / Discard / Cancel.
void request_close(Drawing* d);
void finish_close(Widget w, Drawing* d, XtPointer callData);

Widget new_dialog();
Widget confirm_dialog();
