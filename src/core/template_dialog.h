// The builders every dialog of the program is made with: a template dialog
// or message box whose work area is a form "main" filled by the caller,
// with a row of buttons from a table, and the fallback resources a dialog
// brings along for when the application defaults file is missing.
#pragma once

#include <X11/Intrinsic.h>

#include <cstddef>
#include <string>

struct DialogButton {
    const char* name;
    XtCallbackProc callback;
    XtPointer clientData;
};

// A template dialog whose work area is a form "main" filled by `fill`;
// `buttons` ends with a null name (at most 32). Returned unmanaged.
Widget template_dialog(Widget parent, const char* name, void (*fill)(Widget form),
                       ArgList args, Cardinal argCount, const DialogButton* buttons);
Widget message_box(Widget parent, const char* name, void (*fill)(Widget form),
                   ArgList args, Cardinal argCount, const DialogButton* buttons);
void set_dialog_message(Widget dialog, const char* text);
void set_default_button(Widget dialog, const char* childName);
// The default button as above, and Escape answering the dialog's "Cancel"
// button, as in every dialog that has one.
void set_default_and_cancel(Widget dialog, const char* defaultName);

// The help callback of every dialog (F1, and a Help button where one is
// shown): given once at start-up by the help subsystem, which lies above
// this layer; add_dialog_help does nothing before then.
void set_dialog_help(XtCallbackProc callback);
void add_dialog_help(Widget dialog);

// Puts a dialog's built-in resource lines under the resource database, so
// that it still looks right without the application defaults file while
// that file (and the user's settings) win wherever they say something.
// Done once per `merged` flag.
void merge_fallback_resources(Display* dpy, const char* const* lines, size_t count, bool* merged);

// The text of a dialog's text field ("" for none), and a number put into one.
std::string field_text(Widget field);
void set_field(Widget field, int value);
