// The status line at the bottom of a drawing window, and the version dialog.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

struct Drawing;

extern const char* const PICTREL_VERSION_STRING;  // "5.1.1"

// Builds "orvlogo", "status" and "separator" at the bottom of the form;
// returns the widget the canvas frame should sit above.
Widget create_status_area(Widget form, Drawing* d);
void update_status(Drawing* d);
// Shows `text` beside the size text: what lies under the pointer; empty
// when the pointer is off the canvas.
void show_pointer_text(Drawing* d, const std::string& text);
// Shows `note` after the size text for a while (a read that changed the
// file's colours says so here), then the size text alone again.
void show_status_note(Drawing* d, const char* note);
// Help > version.
void show_version();
// The same, centred over `parent` (the window whose Help menu was used).
void show_version_over(Widget parent);
Widget version_dialog();   // null until first shown
