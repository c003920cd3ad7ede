// The X side of the selection transforms: read the selection's pixmap into
// a buffer, run the pure transform, write a new pixmap of the result.
#include "imageops/selection_transforms.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdlib>
#include <new>

#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"
#include "imageops/pixel_ops.h"
#include "imageops/pixmap_pixels.h"
#include "tools/selection.h"

namespace {

// Replaces the selection's pixels with those of `buf`; the top-left stays.
int replace_pixels(Drawing* d, Selection* s, const PixelBuffer& buf)
{
    Pixmap p = write_pixels(d, buf);
    if (!p)
        return 1;
    XFreePixmap(app().display, s->pixels);
    s->pixels = p;
    set_rect(s->current, s->current.x, s->current.y, buf.width, buf.height);
    return 0;
}

using BufferTransform = PixelBuffer (*)(const PixelBuffer&);

int transform(Drawing* d, Selection* s, BufferTransform t)
{
    // A buffer holds a long per pixel: a large pasted selection may not
    // fit in memory, and then it simply stays as it is.
    try {
        PixelBuffer src;
        if (!s || !read_pixels(d, s->pixels, s->current.width, s->current.height, &src))
            return 1;
        return replace_pixels(d, s, t(src));
    } catch (const std::bad_alloc&) {
        return 1;
    }
}

int nudge(Drawing* d, int dx, int dy)
{
    nudge_selection(d, dx, dy);
    return 0;
}

}  // namespace

int rotate_selection(Drawing* d, Selection* s)
{
    return transform(d, s, rotate_quarter);
}

int flip_selection_horizontal(Drawing* d, Selection* s)
{
    return transform(d, s, flip_horizontal);
}

int flip_selection_vertical(Drawing* d, Selection* s)
{
    return transform(d, s, flip_vertical);
}

int invert_selection(Drawing* d, Selection* s)
{
    // Only a bitmap has black and white to swap; inverting the lowest
    // plane of colour pixels would give arbitrary colours.
    if (d->depth != 1)
        return 1;
    try {
        PixelBuffer buf;
        if (!s || !read_pixels(d, s->pixels, s->current.width, s->current.height, &buf))
            return 1;
        invert_bits(buf);
        return replace_pixels(d, s, buf);
    } catch (const std::bad_alloc&) {
        return 1;
    }
}

int trim_selection(Drawing* d, Selection* s)
{
    PixelBuffer buf;
    try {
        if (!s || !read_pixels(d, s->pixels, s->current.width, s->current.height, &buf))
            return 1;
    } catch (const std::bad_alloc&) {
        return 1;   // too large to scan: left untrimmed
    }
    XGCValues v;
    XGetGCValues(app().display, d->backgroundGC, GCForeground, &v);
    Box b = trim_box(buf, d->depth == 1 ? (v.foreground & 1) : v.foreground);
    if (b.width < 1 || b.height < 1)
        return 0;
    Display* dpy = app().display;
    Pixmap p = XCreatePixmap(dpy, app().root, static_cast<unsigned>(b.width),
                             static_cast<unsigned>(b.height), static_cast<unsigned>(d->depth));
    if (!p)
        return 1;
    XCopyArea(dpy, s->pixels, p, d->copyGC, b.x, b.y, static_cast<unsigned>(b.width),
              static_cast<unsigned>(b.height), 0, 0);
    XFreePixmap(dpy, s->pixels);
    s->pixels = p;
    set_rect(s->current, long{s->current.x} + b.x, long{s->current.y} + b.y, b.width, b.height);
    return 0;
}

int cmd_rotate(Drawing* d, XEvent*, Boolean)
{
    return selection_exists(d) ? apply_to_selection(d, rotate_selection) : 0;
}

int cmd_flip_horizontal(Drawing* d, XEvent*, Boolean)
{
    return selection_exists(d) ? apply_to_selection(d, flip_selection_horizontal) : 0;
}

int cmd_flip_vertical(Drawing* d, XEvent*, Boolean)
{
    return selection_exists(d) ? apply_to_selection(d, flip_selection_vertical) : 0;
}

int cmd_invert(Drawing* d, XEvent*, Boolean)
{
    if (!d || d->depth != 1)
        return 0;
    return selection_exists(d) ? apply_to_selection(d, invert_selection) : 0;
}

int cmd_nudge_up(Drawing* d, XEvent*, Boolean) { return nudge(d, 0, -1); }
int cmd_nudge_right(Drawing* d, XEvent*, Boolean) { return nudge(d, 1, 0); }
int cmd_nudge_down(Drawing* d, XEvent*, Boolean) { return nudge(d, 0, 1); }
int cmd_nudge_left(Drawing* d, XEvent*, Boolean) { return nudge(d, -1, 0); }
