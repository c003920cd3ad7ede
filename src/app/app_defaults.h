// The application defaults under everything the toolkit found: those of the
// program's own installation, or the ones compiled in from resources/Pictrel.
#pragma once

#include <X11/Xlib.h>

// The lines of resources/Pictrel, generated at build time; null-terminated.
extern const char* const fallbackResources[];

// When the toolkit found no application defaults file along its search path
// (XFILESEARCHPATH or its built-in one), merges the installation's own file,
// or failing that the compiled-in lines, into the display's database. They
// go in below what is already there, as the toolkit itself merges an
// application defaults file, so the user's resources still win.
void add_application_defaults(Display* dpy);
