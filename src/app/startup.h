// Start-up: from the command line to the Xt main loop.
#pragma once

// Steps up to the cursors and signals: toolkit, visual check, resources,
// shared GCs, converters, pixmaps, cursors. Returns 0 when the program can
// open drawings, 1 on a wrong visual (the message is then already shown and
// the caller should run the main loop until the user acknowledges it).
int startup(int* argc, char** argv);

// Opens one drawing per file argument (at most eight), or one untitled
// drawing when there are none, and warns about too many arguments.
void open_start_files(int argc, char** argv);

// The whole program: startup, files, main loop. Never returns.
[[noreturn]] void run_pictrel(int argc, char** argv);
