// The dialogs of the File menu's commands: the one "File Dialog", the
// placement of a dialog over the asking drawing, and the two small dialogs
// of a save (the write-permission warning and the overwrite question).
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// The one-shot centring of a dialog over a drawing's shell when it next
// pops up; one record per dialog.
struct Placement {
    Drawing* drawing;
    bool pending;
};
void centre_when_shown(Widget dialog, Placement* placement, Drawing* d);
// Moves a dialog's shell over the drawing's shell now (over the screen
// without a drawing), kept on the screen.
void centre_over_drawing(Widget shell, Drawing* d);

// The file dialog, made on first use under the asking drawing's shell.
Widget get_file_dialog(Drawing* d);
Widget file_dialog();   // null until first used
// Clears the pending save, removes every OK callback and unmanages it.
void hide_file_dialog();
// The dialog's text field.
Widget file_dialog_text();

void show_save_warning(const char* text);
// Asks "Overwrite %s?"; OK calls `overwrite` (no argument: it reads the
// file dialog again).
void show_overwrite_question(const char* target, void (*overwrite)());
Widget warning_dialog();
Widget overwrite_dialog();

// A pending Quit stops when its save is cancelled (confirm_close).
void cancel_quit();
