// The error trap: one handler for the whole program, with the state of the
// innermost trap; an enclosing trap's state is kept by the inner one and put
// back when it ends.
#include "core/error_trap.h"

#include <cstdio>

namespace {

int trappedError = 0;
ErrorTrap::Report reporting = ErrorTrap::Report::Silent;
int lastReported = 0;   // the error printed last, not printed again at once

void report(Display* dpy, const XErrorEvent* e)
{
    if (e->error_code == lastReported)
        return;
    char text[80];
    XGetErrorText(dpy, e->error_code, text, sizeof text);
    std::fprintf(stderr, "*** Error: %s ***\n", text);
    char number[16];
    std::snprintf(number, sizeof number, "%d", e->request_code);
    XGetErrorDatabaseText(dpy, "XRequest", number, "", text, sizeof text);
    std::fprintf(stderr, "    Request Major Code %s  %s\n", number, text);
    lastReported = e->error_code;
}

int record_error(Display* dpy, XErrorEvent* e) noexcept
{
    if (trappedError == 0)
        trappedError = e->error_code;
    if (reporting == ErrorTrap::Report::ReportOnce)
        report(dpy, e);
    return 0;
}

}  // namespace

ErrorTrap::ErrorTrap(Display* dpy, Report report) : dpy_(dpy)
{
    XSync(dpy_, False);   // errors of earlier requests belong to the old handler
    // (an enclosing trap's, when there is one)
    outerError_ = trappedError;
    outerReport_ = reporting;
    outerReported_ = lastReported;
    trappedError = 0;
    reporting = report;
    lastReported = 0;
    old_ = XSetErrorHandler(record_error);
}

ErrorTrap::~ErrorTrap()
{
    XSync(dpy_, False);
    XSetErrorHandler(old_);
    trappedError = outerError_;
    reporting = outerReport_;
    lastReported = outerReported_;
}

int ErrorTrap::error() const
{
    XSync(dpy_, False);
    return trappedError;
}

bool pixmap_geometry(Display* dpy, Pixmap p, unsigned* width, unsigned* height, unsigned* depth)
{
    ErrorTrap trap(dpy);
    Window root;
    int x, y;
    unsigned border = 0;
    *width = *height = *depth = 0;
    Status ok = XGetGeometry(dpy, p, &root, &x, &y, width, height, &border, depth);
    return ok && trap.error() == 0;
}
