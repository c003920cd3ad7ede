// The file dialog: Open, Save, Save As, Save As black-and-white, and the
// mapping of read statuses to messages.
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

void report_read_status(Widget parent, int status, const char* fileName);

// Writes the drawing to target through a private staging directory; 0 on
// success. bw selects the black-and-white rendering.
int write_drawing(Drawing* d, const char* target, bool bw);

Widget file_dialog();   // null until first used
