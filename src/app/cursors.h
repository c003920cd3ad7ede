// The five tool cursors, made at start-up and set on every canvas area.
#pragma once

#include <X11/Intrinsic.h>

#include "core/window_hooks.h"   // CursorIndex

struct Drawing;

void create_cursors();
Cursor tool_cursor(int index);
// Defines the cursor on the actual-size, magnified and small-view areas,
// each only if realised.
void set_cursor(Drawing* d, int index);
// For the help client: busy shows `cursor`, not busy restores the tool's.
void help_cursor_cb(Widget w, Boolean busy, Cursor cursor);
