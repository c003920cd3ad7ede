// The commands of the File menu that go through the file dialog: Open,
// Save, Save As and Save As black-and-white.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// What to do after a successful save (the confirm-close dialog closes).
using SaveContinuation = void (*)(Widget w, Drawing* d, XtPointer callData);

int cmd_open(Drawing* d, XEvent* event, Boolean set);
int cmd_save(Drawing* d, XEvent* event, Boolean set);
int cmd_save_as(Drawing* d, XEvent* event, Boolean set);
int cmd_save_as_bw(Drawing* d, XEvent* event, Boolean set);

void save_drawing(Drawing* d, SaveContinuation then);
void save_as(Drawing* d, SaveContinuation then);
void save_as_bw(Drawing* d, SaveContinuation then);
