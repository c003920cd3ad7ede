// The image pixmaps of a drawing, the commit and restore operations that
// undo and the rubber bands rely on, and the refresh operations that bring
// every view up to date after a tool has drawn into `image`.
#include "canvas/image_store.h"

#include <Xm/Xm.h>

#include <algorithm>

#include "canvas/magnified_paint.h"
#include "canvas/views.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/server_layout.h"
#include "tools/geometry.h"
#include "tools/regions.h"

namespace {

Box image_box(Drawing* d, int x, int y, int w, int h)
{
    return clip_box(Box{x, y, w, h}, d->width, d->height);
}

bool managed(Widget w)
{
    return w && XtIsManaged(w);
}

void free_pixmap(Pixmap* p)
{
    if (*p) {
        XFreePixmap(app().display, *p);
        *p = None;
    }
}

// Actual-size copy of part of the image to a window: plane 1 through the
// black-on-white GC for bitmaps, a straight copy for colour.
void copy_to_window(Drawing* d, Window win, GC gc, Box b)
{
    Display* dpy = app().display;
    unsigned w = static_cast<unsigned>(b.width), h = static_cast<unsigned>(b.height);
    if (d->depth == 1)
        XCopyPlane(dpy, d->image, win, gc, b.x, b.y, w, h, b.x, b.y, 1);
    else
        XCopyArea(dpy, d->image, win, gc, b.x, b.y, w, h, b.x, b.y);
}

void update_views(Drawing* d, Box b)
{
    if (managed(d->smallViewDialog))
        small_view_update(d, b.x, b.y, b.width, b.height);
    if (d->depth != 1 && managed(d->bwDialog))
        bw_view_update(d, b.x, b.y, b.width, b.height);
}

Window actual_window(Drawing* d)
{
    return d->actualArea ? XtWindow(d->actualArea) : None;
}

GC actual_gc(Drawing* d)
{
    return d->depth == 1 ? app().gcs[GC_PLANE] : app().gcs[GC_COPY];
}

}  // namespace

int create_image(Drawing* d, Pixmap source, ImagePtr sourceCopy)
{
    if (!d)
        return 1;
    Display* dpy = app().display;
    free_pixmap(&d->image);
    free_pixmap(&d->savedImage);
    free_pixmap(&d->colourWork);
    free_pixmap(&d->bwPixmap);   // its size follows the image's
    if (d->imageCopy) {
        XDestroyImage(d->imageCopy);
        d->imageCopy = nullptr;
    }
    if (d->width == 0 || d->height == 0 || d->depth <= 0)
        return 1;
    unsigned w = d->width, h = d->height, depth = static_cast<unsigned>(d->depth);
    d->image = XCreatePixmap(dpy, app().root, w, h, depth);
    d->savedImage = XCreatePixmap(dpy, app().root, w, h, depth);
    if (depth != 1)
        d->colourWork = XCreatePixmap(dpy, app().root, w, h, depth);
    if (!d->image || !d->savedImage)
        return 1;

    // A new colour image is all transparent; a new bitmap all clear.
    XGCValues old;
    XGetGCValues(dpy, d->scratchGC, GCForeground, &old);
    XSetForeground(dpy, d->scratchGC, depth == 1 ? 0 : res().background);
    XFillRectangle(dpy, d->image, d->scratchGC, 0, 0, w, h);
    XSetForeground(dpy, d->scratchGC, old.foreground);

    bool copyFits = false;
    if (source) {
        Window root;
        int sx, sy;
        unsigned sw, sh, border, sdepth;
        if (XGetGeometry(dpy, source, &root, &sx, &sy, &sw, &sh, &border, &sdepth)) {
            unsigned cw = std::min(sw, w), ch = std::min(sh, h);
            copyFits = sourceCopy && sw == w && sh == h && sdepth == depth && sourceCopy->width == static_cast<int>(w) &&
                       sourceCopy->height == static_cast<int>(h) && sourceCopy->depth == static_cast<int>(depth);
            if (sdepth == depth)
                XCopyArea(dpy, source, d->image, d->copyGC, 0, 0, cw, ch, 0, 0);
            else if (sdepth == 1)
                XCopyPlane(dpy, source, d->image, d->planeGC, 0, 0, cw, ch, 0, 0, 1);
        }
    }
    XCopyArea(dpy, d->image, d->savedImage, d->copyGC, 0, 0, w, h, 0, 0);
    // The image is the whole source: the picture it was made from saves
    // reading it all back from the server.
    if (copyFits)
        d->imageCopy = server_layout_copy(dpy, sourceCopy.get());
    if (!d->imageCopy)
        retake_image_copy(d);

    // A reused window still shows the previous picture: repaint it all.
    if (d->activeArea && XtIsRealized(d->activeArea))
        XClearArea(dpy, XtWindow(d->activeArea), 0, 0, 0, 0, True);
    if (d->depth != 1 && managed(d->bwDialog))
        bw_view_update(d, 0, 0, d->width, d->height);
    return 0;
}

void refresh_rect(Drawing* d, int x, int y, int width, int height)
{
    if (!d || !d->image)
        return;
    Box b = image_box(d, x, y, width, height);
    if (b.width <= 0 || b.height <= 0)
        return;
    if (d->zoom != 0) {
        if (d->depth == 1 && b.x == 0 && b.width == d->width)
            magnified_paint_rows(d, b.y, b.height);
        else
            magnified_paint(d, b.x, b.y, b.width, b.height, false);
    } else if (Window win = actual_window(d)) {
        copy_to_window(d, win, actual_gc(d), b);
    }
    update_views(d, b);
}

void refresh_corners(Drawing* d, int x1, int y1, int x2, int y2)
{
    Box b = box_of(Point{x1, y1}, Point{x2, y2});
    refresh_rect(d, b.x, b.y, b.width, b.height);
}

void refresh_region(Drawing* d, Region region)
{
    if (!d || !d->image || !region || XEmptyRegion(region))
        return;
    XRectangle r;
    XClipBox(region, &r);
    Box b = image_box(d, r.x, r.y, r.width, r.height);
    if (b.width <= 0 || b.height <= 0)
        return;
    if (d->zoom != 0) {
        magnified_paint(d, b.x, b.y, b.width, b.height, false);
    } else if (Window win = actual_window(d)) {
        Display* dpy = app().display;
        GC gc = actual_gc(d);
        XSetRegion(dpy, gc, region);
        copy_to_window(d, win, gc, b);
        XSetClipMask(dpy, gc, None);
    }
    update_views(d, b);
}

void commit(Drawing* d)
{
    if (!d || !d->image || !d->savedImage)
        return;
    d->modified = 1;
    XCopyArea(app().display, d->image, d->savedImage, d->copyGC, 0, 0, d->width, d->height, 0, 0);
}

void restore_rect(Drawing* d, int x, int y, int width, int height)
{
    if (!d || !d->image || !d->savedImage)
        return;
    Box b = image_box(d, x, y, width, height);
    if (b.width <= 0 || b.height <= 0)
        return;
    XCopyArea(app().display, d->savedImage, d->image, d->copyGC, b.x, b.y,
              static_cast<unsigned>(b.width), static_cast<unsigned>(b.height), b.x, b.y);
}

void restore_corners(Drawing* d, int x1, int y1, int x2, int y2)
{
    Box b = box_of(Point{x1, y1}, Point{x2, y2});
    restore_rect(d, b.x, b.y, b.width, b.height);
}

void restore_region(Drawing* d, Region region)
{
    if (!d || !d->image || !d->savedImage)
        return;
    copy_region(app().display, d->savedImage, d->image, d->scratchGC, region);
}

Pixmap snapshot_drawable(Display* dpy, Drawable drawable, GC gc, unsigned* width,
                         unsigned* height, unsigned* depth)
{
    Window root;
    int x, y;
    unsigned w = 0, h = 0, border = 0, dep = 0;
    if (!dpy || !drawable || !gc || !XGetGeometry(dpy, drawable, &root, &x, &y, &w, &h, &border, &dep) ||
        w == 0 || h == 0)
        return None;
    Pixmap p = XCreatePixmap(dpy, drawable, w, h, dep);
    // Include the children of a window in the copy, then put the GC back.
    XGCValues old;
    XGetGCValues(dpy, gc, GCSubwindowMode, &old);
    XSetSubwindowMode(dpy, gc, IncludeInferiors);
    XCopyArea(dpy, drawable, p, gc, 0, 0, w, h, 0, 0);
    XSetSubwindowMode(dpy, gc, old.subwindow_mode);
    if (width)
        *width = w;
    if (height)
        *height = h;
    if (depth)
        *depth = dep;
    return p;
}
