// Taking the colour of any pixel on the screen: the pointer is grabbed with
// a crosshair ring, the user clicks anywhere, and the pixel value under the
// pointer at the release is read from the root window.
#include "colour/grab.h"

#include <X11/Intrinsic.h>
#include <X11/Xutil.h>
#include <unistd.h>

#include "core/x_owned.h"

namespace {

// A ring with a vertical and a horizontal bar through its centre, X bitmap
// order (two bytes a row, least significant bit leftmost).
const unsigned char grabBits[32] = {
    0xf0, 0x07, 0xfc, 0x1f, 0x9e, 0x3c, 0x8e, 0x38, 0x87, 0x70, 0x83, 0x60, 0x83, 0x60, 0x7f, 0x7f,
    0x83, 0x60, 0x83, 0x60, 0x87, 0x70, 0x8e, 0x38, 0x9e, 0x3c, 0xfc, 0x1f, 0xf0, 0x07, 0x00, 0x00,
};
// The same ring drawn thicker, so the cursor stays visible on any colour.
const unsigned char grabMaskBits[32] = {
    0xf0, 0x07, 0xf8, 0x0f, 0xfc, 0x3f, 0xbe, 0x79, 0x9f, 0x71, 0x8f, 0xe1, 0x87, 0xc1, 0xff, 0xff,
    0xfe, 0xff, 0x87, 0xc1, 0x87, 0xc1, 0x8e, 0xe1, 0x9c, 0x71, 0xbc, 0x79, 0xf8, 0x3f, 0xe0, 0x0f,
};
constexpr unsigned GRAB_SIZE = 16;
constexpr unsigned GRAB_HOT = 7;
constexpr int GRAB_ATTEMPTS = 50;
constexpr useconds_t GRAB_RETRY_US = 20000;

// Made on the first grab and kept for the program's life.
Cursor grabCursor = None;

Cursor grab_cursor(Display* dpy)
{
    if (grabCursor != None)
        return grabCursor;
    int screen = DefaultScreen(dpy);
    Window root = RootWindow(dpy, screen);
    Pixmap source = XCreatePixmapFromBitmapData(dpy, root, reinterpret_cast<char*>(const_cast<unsigned char*>(grabBits)),
                                                GRAB_SIZE, GRAB_SIZE, 1, 0, 1);
    Pixmap mask = XCreatePixmapFromBitmapData(dpy, root, reinterpret_cast<char*>(const_cast<unsigned char*>(grabMaskBits)),
                                              GRAB_SIZE, GRAB_SIZE, 1, 0, 1);
    XColor colours[2]{};
    colours[0].pixel = BlackPixel(dpy, screen);
    colours[1].pixel = WhitePixel(dpy, screen);
    XQueryColors(dpy, DefaultColormap(dpy, screen), colours, 2);
    grabCursor = XCreatePixmapCursor(dpy, source, mask, &colours[0], &colours[1], GRAB_HOT, GRAB_HOT);
    XFreePixmap(dpy, source);
    XFreePixmap(dpy, mask);
    return grabCursor;
}

}  // namespace

Cursor grab_pixel_cursor(Display* display)
{
    return grab_cursor(display);
}

unsigned long grab_pixel(Display* display)
{
    Window root = RootWindow(display, DefaultScreen(display));
    // Another client may hold the pointer for a moment (a window manager,
    // a tool probing the pointer): try again for a short while before going
    // on without the grab. A failed grab is not fatal: the loop below still
    // ends at the next release the program sees.
    for (int attempt = 0; attempt < GRAB_ATTEMPTS; attempt++) {
        int status = XGrabPointer(display, root, False, ButtonPressMask | ButtonReleaseMask,
                                  GrabModeAsync, GrabModeAsync, None, grab_cursor(display), CurrentTime);
        if (status != AlreadyGrabbed && status != GrabFrozen)
            break;
        usleep(GRAB_RETRY_US);
    }

    // Other events are dispatched so the program's windows keep redrawing
    // while the user looks for the colour.
    XEvent ev;
    for (;;) {
        XNextEvent(display, &ev);
        if (ev.type == ButtonPress)
            continue;
        if (ev.type == ButtonRelease)
            break;
        XtDispatchEvent(&ev);
    }
    XUngrabPointer(display, CurrentTime);

    ImagePtr image(XGetImage(display, root, ev.xbutton.x_root, ev.xbutton.y_root, 1, 1, AllPlanes, ZPixmap));
    if (!image)
        return 0;
    return XGetPixel(image.get(), 0, 0);
}
