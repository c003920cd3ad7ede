// The auxiliary views of a drawing. For now only the black-and-white
// rendering is real (Save As black-and-white needs it); the small view and
// the black-and-white view dialogs come later and are inert here.
#include "canvas/views.h"

#include <X11/Xutil.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "app/app.h"
#include "app/draw.h"
#include "colour/color_list.h"

namespace {

// XDestroyImage is a macro, so the deleter is a small function object.
struct ImageDeleter {
    void operator()(XImage* im) const { XDestroyImage(im); }
};
using ImagePtr = std::unique_ptr<XImage, ImageDeleter>;

// 1 for a pixel that renders black, 0 for white and transparent.
int bw_value(Pixel mapped, const ColorList* list)
{
    if (mapped == res().background || (list && mapped == list->transparentPixel))
        return 0;
    return mapped == app().blackPixel ? 1 : 0;
}

int map_pixel(Pixel p, const ColorList* list)
{
    if (p == res().background || (list && p == list->transparentPixel))
        return 0;
    if (list && list->anchor) {
        int guard = 0;   // a damaged chain must not loop forever
        for (ColorEntry* e = list->anchor->next; e && guard < 4096; e = e->next, guard++)
            if (e->pixel == p)
                return bw_value(e->mapsTo, list);
    }
    return p == app().blackPixel ? 1 : 0;
}

}  // namespace

void create_small_view(Widget, Drawing*) {}
void create_bw_view(Widget, Drawing*) {}
void small_view_update(Drawing*, int, int, int, int) {}
void bw_view_update(Drawing*, int, int, int, int) {}
int cmd_show_small_view(Drawing*, XEvent*, Boolean) { return 0; }
int cmd_show_bw_view(Drawing*, XEvent*, Boolean) { return 0; }

Pixmap render_bw_pixmap(Drawing* d)
{
    if (!d || !d->image || d->width == 0 || d->height == 0)
        return None;
    Display* dpy = app().display;
    unsigned w = d->width, h = d->height;
    if (!d->bwPixmap)
        d->bwPixmap = XCreatePixmap(dpy, app().root, w, h, 1);
    GC bitCopy = app().gcs[GC_BIT_COPY];
    if (d->depth == 1) {
        XCopyArea(dpy, d->image, d->bwPixmap, bitCopy, 0, 0, w, h, 0, 0);
        return d->bwPixmap;
    }
    ImagePtr colour(XGetImage(dpy, d->image, 0, 0, w, h, AllPlanes, ZPixmap));
    if (!colour)
        return d->bwPixmap;
    ImagePtr bits(XCreateImage(dpy, app().visual, 1, XYBitmap, 0, nullptr, w, h, 8, 0));
    if (!bits)
        return d->bwPixmap;
    bits->data = static_cast<char*>(calloc(static_cast<size_t>(bits->bytes_per_line) * h, 1));
    if (!bits->data)
        return d->bwPixmap;

    ColorList* list = color_list_of(d);
    // Pixels of a PseudoColor image are small: map each value once.
    std::array<signed char, 256> cache;
    cache.fill(-1);
    for (unsigned y = 0; y < h; y++)
        for (unsigned x = 0; x < w; x++) {
            Pixel p = XGetPixel(colour.get(), static_cast<int>(x), static_cast<int>(y));
            int v;
            if (p < cache.size()) {
                if (cache[p] < 0)
                    cache[p] = static_cast<signed char>(map_pixel(p, list));
                v = cache[p];
            } else {
                v = map_pixel(p, list);
            }
            if (v)
                XPutPixel(bits.get(), static_cast<int>(x), static_cast<int>(y), 1);
        }
    XPutImage(dpy, d->bwPixmap, app().gcs[GC_BIT_PLANE], bits.get(), 0, 0, 0, 0, w, h);
    return d->bwPixmap;
}
