// Repacking a client-side picture into the layout the server gives back.
#include "core/server_layout.h"

#include <X11/Xutil.h>

#include <cstdlib>
#include <cstring>

namespace {

// Whether pixel x of a row lies at bit x * bpp of the row's bytes taken in
// order, whatever the image's unit: true for whole bytes a pixel, and for
// bitmaps whose bit order is their byte order.
bool bytes_in_order(const XImage* im)
{
    if (im->bits_per_pixel >= 8)
        return true;
    return im->bits_per_pixel == 1 && (im->bitmap_unit == 8 || im->bitmap_bit_order == im->byte_order);
}

}  // namespace

XImage* server_layout_copy(Display* dpy, XImage* from)
{
    if (!dpy || !from || from->width <= 0 || from->height <= 0)
        return nullptr;
    int count = 0, pad = 0;
    if (XPixmapFormatValues* formats = XListPixmapFormats(dpy, &count)) {
        for (int i = 0; i < count; i++)
            if (formats[i].depth == from->depth)
                pad = formats[i].scanline_pad;
        XFree(formats);
    }
    if (pad == 0)
        return nullptr;
    unsigned w = static_cast<unsigned>(from->width), h = static_cast<unsigned>(from->height);
    // As XGetImage makes it: no visual for a pixmap, the display's orders.
    XImage* to = XCreateImage(dpy, nullptr, static_cast<unsigned>(from->depth), ZPixmap, 0, nullptr, w, h, pad, 0);
    if (!to)
        return nullptr;
    size_t stride = static_cast<size_t>(to->bytes_per_line);
    to->data = static_cast<char*>(std::calloc(stride * h, 1));
    if (!to->data) {
        XDestroyImage(to);
        return nullptr;
    }
    bool sameBits = from->bits_per_pixel == to->bits_per_pixel && from->xoffset == 0 &&
                    (from->format == ZPixmap || from->bits_per_pixel == 1) && bytes_in_order(from) &&
                    bytes_in_order(to) && (from->bits_per_pixel != 1 || from->bitmap_bit_order == to->bitmap_bit_order) &&
                    (from->bits_per_pixel <= 8 || from->byte_order == to->byte_order);
    if (sameBits) {
        size_t used = (static_cast<size_t>(w) * static_cast<size_t>(to->bits_per_pixel) + 7) / 8;
        unsigned spare = static_cast<unsigned>(w * static_cast<unsigned>(to->bits_per_pixel) % 8);
        for (unsigned y = 0; y < h; y++) {
            auto* row = reinterpret_cast<unsigned char*>(to->data) + y * stride;
            std::memcpy(row, from->data + y * static_cast<size_t>(from->bytes_per_line), used);
            // The bits past the last pixel of a bitmap row are padding too.
            if (spare)
                row[used - 1] &= static_cast<unsigned char>(
                    to->bitmap_bit_order == LSBFirst ? (1u << spare) - 1 : 0xffu << (8 - spare));
        }
    } else {
        for (int y = 0; y < from->height; y++)
            for (int x = 0; x < from->width; x++)
                XPutPixel(to, x, y, XGetPixel(from, x, y));
    }
    return to;
}
