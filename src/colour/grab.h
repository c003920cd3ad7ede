// Taking the colour of any pixel on the screen.
#pragma once

#include <X11/Xlib.h>

// Grabs the pointer with the grab cursor and returns the pixel value under
// it when a button is released.
unsigned long grab_pixel(Display* display);

// The crosshair cursor of the grab (made on first use, kept).
Cursor grab_pixel_cursor(Display* display);
