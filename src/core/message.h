// The typed message dialog through which every error and notice is shown,
// and the stand-alone warning and error windows.
#pragma once

#include <X11/Intrinsic.h>

// Button codes written into the callback record's first field.
enum MessageButton { MSG_OK = 0, MSG_YES = 1, MSG_NO = 2, MSG_CANCEL = 3, MSG_HELP = 4 };

// Shows `text` in the dialog of button set `set` (0..5), centred over
// `parent` (the top-level shell when null). `response`, when given, is
// called with the button's code after a button is pressed. Returns 0, or
// -1 for a set number above 5.
int show_message(Widget parent, const char* text, int set,
                 XtCallbackProc response, XtPointer clientData);

// The dialog of a button set, made on first use (null for sets above 5).
Widget message_dialog(int set);

// Raises every message dialog that is up above the windows mapped after
// it, so that a message is never left under a window it is about.
void raise_messages();

// Moves a (dialog) shell so that it is centred over `parent`, or over the
// screen when the parent is null or not on screen.
void centre_shell_over(Widget shell, Widget parent);

void show_warning(const char* format, ...);
void show_error(const char* format, ...);
void show_warning_named(const char* programName, const char* format, ...);
void show_error_named(const char* programName, const char* format, ...);
