// The window-manager and session protocols of a drawing's shell, and the
// restart command (WM_COMMAND) kept on it.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

struct Drawing;

// Registers WM_SAVE_YOURSELF, WM_DELETE_WINDOW, WM_PREPARE_TO_DIE and
// WM_CLOSEDOWN on the shell (once per shell) and sets the restart command.
void install_protocols(Drawing* d);

// Sets the drawing's restart command: as the shell's argv before it has a
// window, with XSetCommand after.
void update_restart_command(Drawing* d);

// argv[0] of the program made absolute, through PATH for a bare name.
std::string program_path();

// "WIDTHxHEIGHT+X+Y" of a widget.
std::string shell_geometry(Widget w);
