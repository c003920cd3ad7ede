// The client of an external help server.
#pragma once

#include <X11/Intrinsic.h>

// Shows or clears a cursor over every drawing window while the client
// waits (busy True with the cursor to show, then busy False).
using HelpCursorProc = void (*)(Widget w, Boolean busy, Cursor cursor);

// Called once at start-up with the top-level widget, the book's name, the
// program's name, the version action of the Help menu and the cursor
// procedure. Returns 0.
int help_client_start(Widget top, const char* book, const char* name, void (*showVersion)(Widget parent),
                      HelpCursorProc setCursor);

// Asks the server to show `topic` of the book. Returns 0 when a server
// took the request, nonzero when the caller must show it itself.
int help_client_request(Widget from, const char* topic);

// After the last drawing closes: lets go of the server and its atoms.
void help_client_shutdown();
