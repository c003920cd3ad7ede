// The fill tool: one click recolours the connected area of the clicked
// pixel's value (with Control, every pixel of that value). The area is
// found client-side as a one-bit mask, and the image is then painted once
// through the mask with the pressed button's GC, so a fill lays down the
// foreground, the background or the current pattern alike.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <new>
#include <vector>

#include "canvas/image_store.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"
#include "tools/geometry.h"
#include "tools/seed_fill.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

FillStack stack;

std::vector<unsigned long> pixels_of(XImage* im, int width, int height)
{
    std::vector<unsigned long> out(static_cast<size_t>(width) * static_cast<size_t>(height));
    size_t i = 0;
    if (im->bits_per_pixel == 8 && im->format == ZPixmap) {
        for (int y = 0; y < height; y++) {
            const auto* row = reinterpret_cast<const unsigned char*>(im->data) + static_cast<long>(y) * im->bytes_per_line;
            for (int x = 0; x < width; x++)
                out[i++] = row[x];
        }
        return out;
    }
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++)
            out[i++] = XGetPixel(im, x, y);
    return out;
}

// Returns false when nothing could be filled (server or memory trouble);
// the image is then untouched.
bool fill_at(Drawing* d, int x, int y, bool everywhere)
{
    Display* dpy = app().display;
    int w = d->width, h = d->height;
    ImagePtr source(XGetImage(dpy, d->image, 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h),
                              AllPlanes, ZPixmap));
    if (!source)
        return false;
    std::vector<uint8_t> marks;
    long marked = seed_fill(pixels_of(source.get(), w, h), w, h, x, y, everywhere, &stack, &marks);
    source.reset();
    if (marked == 0)
        return false;
    // A stack that could not grow leaves part of the area unfilled; what
    // was found is still painted, as a partial fill is better than none.

    ScratchPixmap mask(dpy, XCreatePixmap(dpy, d->image, static_cast<unsigned>(w), static_cast<unsigned>(h), 1));
    GC bitGC = app().gcs[GC_BIT_CLEAR];
    XFillRectangle(dpy, mask.get(), bitGC, 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h));
    ImagePtr maskImage(XGetImage(dpy, mask.get(), 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h), 1, ZPixmap));
    if (!maskImage)
        return false;
    size_t i = 0;
    for (int my = 0; my < h; my++)
        for (int mx = 0; mx < w; mx++)
            if (marks[i++])
                XPutPixel(maskImage.get(), mx, my, 1);
    XPutImage(dpy, mask.get(), app().gcs[GC_BIT_COPY], maskImage.get(), 0, 0, 0, 0, static_cast<unsigned>(w),
              static_cast<unsigned>(h));
    GC gc = d->chosenGC ? d->chosenGC : d->foregroundGC;
    XSetClipMask(dpy, gc, mask.get());
    XFillRectangle(dpy, d->image, gc, 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h));
    XSetClipMask(dpy, gc, None);
    refresh_rect(d, 0, 0, w, h);
    return true;
}

}  // namespace

void fill_input(Widget w, Drawing* d, XEvent* event)
{
    if (event->type == TOOL_CREATED && !stack.records)
        fill_stack_init(&stack);
    if (palette_event(w, d, event, TOOL_FILL)) {
        if (event->type == TOOL_DESELECTED)
            fill_stack_shrink(&stack);
        return;
    }
    if (event->type != ButtonPress)
        return;
    Point p = event_point(event);
    // The canvas can be larger than the image: a click beside it has
    // no pixel to take the value from.
    if (p.x < 0 || p.y < 0 || p.x >= d->width || p.y >= d->height)
        return;
    // The fill keeps a copy of every pixel on the client side; for a
    // big picture there may be no room. Nothing is painted then, and
    // the exception must not run into the toolkit's callbacks.
    try {
        fill_at(d, p.x, p.y, (event_state(event) & ControlMask) != 0);
    } catch (const std::bad_alloc&) {
    }
}
