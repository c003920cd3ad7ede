// Titles of the dialogs that belong to one drawing (its views, its colour
// list): the drawing's name, then what the dialog is, so that two of them
// can be told apart and each can be told to which drawing it belongs.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

// Takes what the dialog is from its title as the application defaults set
// it ("Colors"), or `builtIn` when they set none. Called once, when the
// dialog is made.
void remember_dialog_role(Widget dialog, const char* builtIn);

// Titles the dialog for the drawing named `drawingName`: "pic.xpm - Colors".
void title_dialog_for(Widget dialog, const std::string& drawingName);
