// The cursor that shows over every drawing while help waits for the user
// (context help) or for the help server.
#pragma once

#include <X11/Intrinsic.h>

#include "help/help_client.h"

// Kept from start-up: the window's procedure that sets or clears a cursor
// over one drawing's canvases.
void set_help_cursor_proc(HelpCursorProc proc);

// Busy True shows `cursor` over the canvases of every open drawing; busy
// False gives each back its tool's cursor.
void help_cursor_everywhere(Boolean busy, Cursor cursor);
