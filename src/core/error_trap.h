// Requests on resources that another client owns, or that may vanish at any
// moment (a clipboard pixmap, the root window's background, a colour cell
// named by a damaged file), run under an error trap: their errors are
// recorded instead of ending the program.
#pragma once

#include <X11/Xlib.h>

class ErrorTrap {
public:
    explicit ErrorTrap(Display* dpy);
    ~ErrorTrap();
    ErrorTrap(const ErrorTrap&) = delete;
    ErrorTrap& operator=(const ErrorTrap&) = delete;
    // The first error code of the requests made under the trap, 0 when none
    // (waits for the server to answer them).
    int error() const;

private:
    Display* dpy_;
    XErrorHandler old_;
    int outerError_;
};

// The size and depth of a pixmap that may no longer exist; false when it
// does not.
bool pixmap_geometry(Display* dpy, Pixmap p, unsigned* width, unsigned* height, unsigned* depth);
