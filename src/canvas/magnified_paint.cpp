// Magnified painting: each image pixel is a square of 2^zoom - 1 screen
// pixels on a 2^zoom pitch, the window background showing through as the
// grid (or of the whole pitch, with the grid hidden). Only cells that differ from imageCopy are sent, batched by pixel
// value so that one XFillRectangles carries up to 50 squares of a colour.
#include "canvas/magnified_paint.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"

namespace {

constexpr int BATCH_COUNT = 256;
constexpr int BATCH_SIZE = 50;
constexpr size_t ROW_QUEUE_SIZE = 4084;

// One batch of squares per pixel value. The buffers are allocated at first
// use and kept for the life of the process.
struct Batch {
    XRectangle* rects;
    int count;
};
Batch batches[BATCH_COUNT];

void fill_squares(Window win, unsigned long pixel, const XRectangle* rects, int count)
{
    if (count <= 0)
        return;
    Display* dpy = app().display;
    GC gc = app().gcs[GC_COPY];
    XGCValues v;
    v.line_width = 1;
    v.fill_style = FillSolid;
    v.foreground = pixel;
    XChangeGC(dpy, gc, GCLineWidth | GCFillStyle | GCForeground, &v);
    XFillRectangles(dpy, win, gc, const_cast<XRectangle*>(rects), count);
}

void flush_batch(Window win, int pixel)
{
    Batch& b = batches[pixel];
    fill_squares(win, static_cast<unsigned long>(pixel), b.rects, b.count);
    b.count = 0;
}

void flush_all(Window win)
{
    for (int p = 0; p < BATCH_COUNT; p++)
        if (batches[p].count)
            flush_batch(win, p);
}

void queue_square(Window win, unsigned long pixel, short sx, short sy, unsigned short size)
{
    if (pixel >= BATCH_COUNT) {
        // Only an unexpected visual has such pixels; paint them on their own.
        XRectangle r{sx, sy, size, size};
        fill_squares(win, pixel, &r, 1);
        return;
    }
    Batch& b = batches[pixel];
    if (!b.rects) {
        b.rects = static_cast<XRectangle*>(std::calloc(BATCH_SIZE, sizeof(XRectangle)));
        if (!b.rects) {
            XRectangle r{sx, sy, size, size};
            fill_squares(win, pixel, &r, 1);
            return;
        }
    }
    b.rects[b.count++] = XRectangle{sx, sy, size, size};
    if (b.count == BATCH_SIZE)
        flush_batch(win, static_cast<int>(pixel));
}

XImage* fetch(Drawing* d, int x, int y, int w, int h)
{
    unsigned long planes = d->depth == 1 ? 1UL : AllPlanes;
    return XGetImage(app().display, d->image, x, y, static_cast<unsigned>(w),
                     static_cast<unsigned>(h), planes, ZPixmap);
}

bool copy_matches(Drawing* d)
{
    return d->imageCopy && d->imageCopy->width == d->width && d->imageCopy->height == d->height;
}

Window magnified_window(Drawing* d)
{
    return d->zoomedArea ? XtWindow(d->zoomedArea) : None;
}

// The side of a cell's square: one short of the pitch leaves the grid line.
unsigned short cell_side(const Drawing* d, int zoom)
{
    return static_cast<unsigned short>((1 << zoom) - (d->gridShown ? 1 : 0));
}

}  // namespace

void retake_image_copy(Drawing* d)
{
    if (d->imageCopy) {
        XDestroyImage(d->imageCopy);
        d->imageCopy = nullptr;
    }
    if (!d->image || d->width == 0 || d->height == 0)
        return;
    d->imageCopy = fetch(d, 0, 0, d->width, d->height);
}

void magnified_paint(Drawing* d, int x, int y, int w, int h, bool force)
{
    if (!d || !d->image || d->zoom <= 0)
        return;
    if (x < 0) {
        w += x;
        x = 0;
    }
    if (y < 0) {
        h += y;
        y = 0;
    }
    if (x >= d->width || y >= d->height || w < 1 || h < 1)
        return;
    if (w > d->width - x)
        w = d->width - x;
    if (h > d->height - y)
        h = d->height - y;
    if (!copy_matches(d)) {
        // Without a copy to compare with, everything counts as changed.
        retake_image_copy(d);
        force = true;
        if (!d->imageCopy)
            return;
    }
    ImagePtr fresh(fetch(d, x, y, w, h));
    if (!fresh)
        return;

    Window win = magnified_window(d);
    int zoom = std::min(d->zoom, MAX_ZOOM);
    unsigned short size = cell_side(d, zoom);
    bool bitmap = d->depth == 1;
    unsigned long black = app().blackPixel, white = app().whitePixel;
    XImage* copy = d->imageCopy;
    bool bytes = !bitmap && fresh->bits_per_pixel == 8 && copy->bits_per_pixel == 8;

    for (int row = 0; row < h; row++) {
        int iy = y + row;
        for (int col = 0; col < w; col++) {
            int ix = x + col;
            unsigned long now, before;
            if (bytes) {
                now = static_cast<unsigned char>(fresh->data[row * fresh->bytes_per_line + col]);
                before = static_cast<unsigned char>(copy->data[iy * copy->bytes_per_line + ix]);
            } else {
                now = XGetPixel(fresh.get(), col, row);
                before = XGetPixel(copy, ix, iy);
            }
            if (now == before && !force)
                continue;
            if (win != None) {
                unsigned long pixel = bitmap ? (now ? black : white) : now;
                queue_square(win, pixel, static_cast<short>(ix << zoom),
                             static_cast<short>(iy << zoom), size);
            }
            if (now != before) {
                if (bytes)
                    copy->data[iy * copy->bytes_per_line + ix] = static_cast<char>(now);
                else
                    XPutPixel(copy, ix, iy, now);
            }
        }
    }
    if (win != None)
        flush_all(win);
}

void magnified_paint_rows(Drawing* d, int y, int n)
{
    if (!d || !d->image || d->zoom <= 0 || d->depth != 1)
        return;
    if (y < 0) {
        n += y;
        y = 0;
    }
    if (y >= d->height || n < 1)
        return;
    if (n > d->height - y)
        n = d->height - y;
    if (!copy_matches(d)) {
        magnified_paint(d, 0, y, d->width, n, true);
        return;
    }
    ImagePtr fresh(fetch(d, 0, y, d->width, n));
    if (!fresh)
        return;
    XImage* copy = d->imageCopy;
    if (fresh->bytes_per_line != copy->bytes_per_line || fresh->bitmap_unit != copy->bitmap_unit) {
        magnified_paint(d, 0, y, d->width, n, false);
        return;
    }
    Window win = magnified_window(d);
    int zoom = std::min(d->zoom, MAX_ZOOM);
    unsigned short size = cell_side(d, zoom);
    // The bytes of one bitmap unit may be stored in either order, so a
    // changed byte is examined pixel by pixel over its whole unit.
    int unitBytes = fresh->bitmap_unit >= 8 ? fresh->bitmap_unit / 8 : 1;
    int rowBytes = fresh->bytes_per_line;
    std::vector<XRectangle> toBlack, toWhite;
    toBlack.reserve(ROW_QUEUE_SIZE);
    toWhite.reserve(ROW_QUEUE_SIZE);
    auto flush = [&](std::vector<XRectangle>& q, GC gc) {
        if (!q.empty() && win != None)
            XFillRectangles(app().display, win, gc, q.data(), static_cast<int>(q.size()));
        q.clear();
    };
    GC blackGC = app().gcs[GC_BLACK], whiteGC = app().gcs[GC_WHITE];

    for (int row = 0; row < n; row++) {
        int iy = y + row;
        char* now = fresh->data + row * rowBytes;
        char* before = copy->data + iy * rowBytes;
        if (std::memcmp(now, before, static_cast<size_t>(rowBytes)) == 0)
            continue;
        for (int b = 0; b < rowBytes; b++) {
            if (now[b] == before[b])
                continue;
            int unitStart = (b / unitBytes) * unitBytes;
            int x0 = unitStart * 8, x1 = x0 + unitBytes * 8;
            if (x1 > d->width)
                x1 = d->width;
            for (int ix = x0; ix < x1; ix++) {
                unsigned long p = XGetPixel(fresh.get(), ix, row);
                if (p == XGetPixel(copy, ix, iy))
                    continue;
                XRectangle r{static_cast<short>(ix << zoom), static_cast<short>(iy << zoom), size,
                             size};
                std::vector<XRectangle>& q = p ? toBlack : toWhite;
                q.push_back(r);
                if (q.size() == ROW_QUEUE_SIZE)
                    flush(q, p ? blackGC : whiteGC);
            }
            // The rest of the unit is settled; copy it whole and skip it.
            std::memcpy(before + unitStart, now + unitStart,
                        static_cast<size_t>(std::min(unitBytes, rowBytes - unitStart)));
            b = unitStart + unitBytes - 1;
        }
    }
    flush(toBlack, blackGC);
    flush(toWhite, whiteGC);
}

void show_grid(Drawing* d, bool on)
{
    if (!d)
        return;
    d->gridShown = on;
    // Cleared to the window background (the grid's colour) and exposed, so
    // every cell is painted again at its new size.
    Window win = magnified_window(d);
    if (d->zoom > 0 && win != None)
        XClearArea(app().display, win, 0, 0, 0, 0, True);
}
