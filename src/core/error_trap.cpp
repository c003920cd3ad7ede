#include "core/error_trap.h"

namespace {

int trappedError = 0;

int record_error(Display*, XErrorEvent* e)
{
    if (trappedError == 0)
        trappedError = e->error_code;
    return 0;
}

}  // namespace

ErrorTrap::ErrorTrap(Display* dpy) : dpy_(dpy)
{
    XSync(dpy_, False);   // errors of earlier requests belong to the old handler
    outerError_ = trappedError;   // (an enclosing trap's, when there is one)
    trappedError = 0;
    old_ = XSetErrorHandler(record_error);
}

ErrorTrap::~ErrorTrap()
{
    XSync(dpy_, False);
    XSetErrorHandler(old_);
    trappedError = outerError_;
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
