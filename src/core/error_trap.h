// Requests on resources that another client owns, or that may vanish at any
// moment (a clipboard pixmap, the root window's background, a colour cell
// named by a damaged file, a drop site's window), run under an error trap:
// their errors are recorded instead of ending the program.
#pragma once

#include <X11/Xlib.h>

class ErrorTrap {
public:
    // Silent traps only record; ReportOnce ones also print each error on
    // standard error ("*** Error: ... ***" and the request), but not again
    // while the same error repeats, as the drop-in protocol reports a site
    // that went away under an exchange.
    enum class Report { Silent, ReportOnce };

    explicit ErrorTrap(Display* dpy, Report report = Report::Silent);
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
    Report outerReport_;
    int outerReported_;
};

// The size and depth of a pixmap that may no longer exist; false when it
// does not.
bool pixmap_geometry(Display* dpy, Pixmap p, unsigned* width, unsigned* height, unsigned* depth);
