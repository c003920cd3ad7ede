// Pixel buffers to and from a drawing's pixmaps, one pixel at a time
// through XGetPixel and XPutPixel, whatever the server's image format.
#include "imageops/pixmap_pixels.h"

#include <X11/Xutil.h>

#include <cstdlib>

#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"

bool read_pixels(Drawing* d, Pixmap p, int w, int h, PixelBuffer* out)
{
    if (!p || w <= 0 || h <= 0)
        return false;
    bool bitmap = d->depth == 1;
    ImagePtr img(XGetImage(app().display, p, 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h),
                           bitmap ? 1UL : AllPlanes, bitmap ? XYPixmap : ZPixmap));
    if (!img)
        return false;
    *out = PixelBuffer(w, h);
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++)
            out->set(x, y, XGetPixel(img.get(), x, y));
    return true;
}

Pixmap write_pixels(Drawing* d, const PixelBuffer& buf)
{
    Display* dpy = app().display;
    if (buf.width <= 0 || buf.height <= 0)
        return None;
    unsigned w = static_cast<unsigned>(buf.width), h = static_cast<unsigned>(buf.height);
    unsigned depth = static_cast<unsigned>(d->depth);
    XImage* raw = XCreateImage(dpy, app().visual, depth, depth == 1 ? XYPixmap : ZPixmap, 0,
                               nullptr, w, h, 32, 0);
    if (!raw)
        return None;
    ImagePtr img(raw);
    // One plane for a bitmap, so one bytes_per_line * h block either way.
    img->data = static_cast<char*>(calloc(static_cast<size_t>(img->bytes_per_line) * h, 1));
    if (!img->data)
        return None;
    for (int y = 0; y < buf.height; y++)
        for (int x = 0; x < buf.width; x++)
            XPutPixel(img.get(), x, y, buf.at(x, y));
    Pixmap p = XCreatePixmap(dpy, app().root, w, h, depth);
    if (p)
        XPutImage(dpy, p, d->copyGC, img.get(), 0, 0, 0, 0, w, h);
    return p;
}
