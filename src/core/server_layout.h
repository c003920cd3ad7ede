// Client-side images laid out exactly as XGetImage hands back a pixmap of
// the same depth in ZPixmap format, so that a picture the program already
// holds can stand in for reading the pixmap back from the server.
#pragma once

#include <X11/Xlib.h>

// A copy of `from` (any format, depth 1 or that of a pixmap format of the
// display) in the server's ZPixmap layout for its depth: the scanline pad,
// bits per pixel, byte and bit order of the display, no visual, padding
// bytes zero. Null when the display has no such depth or memory runs out.
XImage* server_layout_copy(Display* dpy, XImage* from);
