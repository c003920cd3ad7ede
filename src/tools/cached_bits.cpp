#include "tools/cached_bits.h"

#include <X11/Xutil.h>
#include <Xm/Xm.h>

#include "core/app_state.h"

bool install_cached_bits(const char* name, unsigned char* bits, int width, int height)
{
    XImage* image = XCreateImage(app().display, app().visual, 1, XYBitmap, 0, reinterpret_cast<char*>(bits),
                                 static_cast<unsigned>(width), static_cast<unsigned>(height), 8, (width + 7) / 8);
    if (!image)
        return false;
    image->bitmap_bit_order = LSBFirst;
    image->byte_order = LSBFirst;
    if (!XmInstallImage(image, const_cast<char*>(name))) {
        // The bits are not the image's to free.
        image->data = nullptr;
        XDestroyImage(image);
        return false;
    }
    return true;
}
