// Resize and Scale of a whole drawing: read the picture into a buffer, run
// the pure operation, make a pixmap of the result and hand it to the canvas,
// which gives the drawing the new size and keeps the old picture for Undo.
// Only pixel values already in the picture, or the background colour's, are
// written: the drawing's colours stay as they are.
#include "imageops/image_resize.h"

#include <X11/Xlib.h>

#include <new>

#include "canvas/image_size.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "imageops/pixmap_pixels.h"
#include "imageops/resize_scale.h"
#include "tools/tool_table.h"

namespace {

bool within_limits(int width, int height)
{
    return width >= 1 && height >= 1 && width <= MAX_IMAGE_WIDTH && height <= MAX_IMAGE_HEIGHT;
}

unsigned long background_pixel(Drawing* d)
{
    XGCValues v{};
    XGetGCValues(app().display, d->backgroundGC, GCForeground, &v);
    return d->depth == 1 ? (v.foreground & 1) : v.foreground;
}

using Operation = PixelBuffer (*)(Drawing* d, const PixelBuffer& src, int width, int height, int anchor,
                                  Point* hotspot);

PixelBuffer resize_op(Drawing* d, const PixelBuffer& src, int width, int height, int anchor, Point* hotspot)
{
    Anchor a = anchor_of_index(anchor);
    *hotspot = resize_hotspot(*hotspot, src.width, src.height, width, height, a);
    return resize_pixels(src, width, height, a, background_pixel(d));
}

PixelBuffer scale_op(Drawing*, const PixelBuffer& src, int width, int height, int, Point* hotspot)
{
    *hotspot = scale_hotspot(*hotspot, src.width, src.height, width, height);
    return scale_pixels(src, width, height);
}

int change(Drawing* d, int width, int height, int anchor, Operation op)
{
    if (!d || !d->image || !within_limits(width, height))
        return 1;
    // The tool lets go first: a floating selection settles into the
    // picture and the hotspot's marker comes off it before it is read.
    send_tool_event(d, d->activeArea, TOOL_DESELECTED);
    int status = 1;
    try {
        PixelBuffer src;
        if (read_pixels(d, d->image, d->width, d->height, &src)) {
            Point hotspot{d->hotspotX, d->hotspotY};
            PixelBuffer out = op(d, src, width, height, anchor, &hotspot);
            if (Pixmap p = write_pixels(d, out)) {
                status = change_image_size(d, p, width, height, hotspot.x, hotspot.y);
                XFreePixmap(app().display, p);
            }
        }
    } catch (const std::bad_alloc&) {
        status = 1;
    }
    send_tool_event(d, d->activeArea, TOOL_SELECTED);
    return status;
}

}  // namespace

int resize_image(Drawing* d, int width, int height, int anchor)
{
    return change(d, width, height, anchor, resize_op);
}

int scale_image(Drawing* d, int width, int height)
{
    return change(d, width, height, 0, scale_op);
}
