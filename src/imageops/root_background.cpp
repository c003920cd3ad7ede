// Setting the root window's background from a drawing, and picking a
// window on the screen to take its picture. Foreign windows may vanish at
// any moment, so every request on them runs under an error trap.
#include "imageops/root_background.h"

#include <Xm/Xm.h>

#include "canvas/image_store.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/error_trap.h"
#include "tools/hotspot.h"
#include "tools/palettes.h"
#include "tools/selection.h"
#include "tools/text.h"
#include "tools/tool_table.h"

namespace {

void tile_root(Display* dpy, Pixmap tile)
{
    XSetWindowBackgroundPixmap(dpy, app().root, tile);
    XClearWindow(dpy, app().root);
    // The server keeps its own reference for the background.
    XFreePixmap(dpy, tile);
    XFlush(dpy);
}

}  // namespace

int root_background_from_drawable(Drawable drawable)
{
    Display* dpy = app().display;
    Pixmap snap = None;
    {
        ErrorTrap trap(dpy);
        snap = snapshot_drawable(dpy, drawable, app().gcs[GC_COPY], nullptr, nullptr, nullptr);
    }
    if (!snap)
        return 1;
    tile_root(dpy, snap);
    return 0;
}

int set_root_background(Drawing* d)
{
    if (!d || !d->image || !d->shell)
        return 1;
    Display* dpy = app().display;
    // The text caret and the blinking hotspot marker are drawn into the
    // image; the screen's background gets the picture without them, as a
    // saved file does.
    text_hide_caret(d);
    hotspot_hide_marker(d);
    Pixmap source = d->image;
    unsigned w = d->width, h = d->height;
    if (selection_exists(d) && d->selection->pixels) {
        source = d->selection->pixels;
        w = d->selection->current.width;
        h = d->selection->current.height;
    }
    int depth = 0;
    XtVaGetValues(d->shell, XmNdepth, &depth, nullptr);
    if (depth <= 0 || w == 0 || h == 0)
        return 1;
    Pixmap tile = XCreatePixmap(dpy, app().root, w, h, static_cast<unsigned>(depth));
    if (!tile)
        return 1;
    // A set bit becomes black and a clear one white.
    GC gc = app().gcs[GC_BLACK];
    if (d->depth == 1)
        XCopyPlane(dpy, source, tile, gc, 0, 0, w, h, 0, 0, 1);
    else
        XCopyArea(dpy, source, tile, gc, 0, 0, w, h, 0, 0);
    tile_root(dpy, tile);
    return 0;
}

Window window_at_point(Display* dpy, int x, int y)
{
    if (!dpy)
        return 0;
    ErrorTrap trap(dpy);
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    if (!XQueryTree(dpy, DefaultRootWindow(dpy), &root, &parent, &children, &count))
        return 0;
    Window found = 0;
    // Bottom to top: the last window containing the point is the topmost.
    for (unsigned i = 0; i < count; i++) {
        XWindowAttributes a;
        if (!XGetWindowAttributes(dpy, children[i], &a) || a.map_state != IsViewable)
            continue;
        if (x >= a.x && x <= a.x + a.width && y >= a.y && y <= a.y + a.height)
            found = children[i];
    }
    if (children)
        XFree(children);
    return found;
}

int grab_window(Drawing* d)
{
    if (!d || d->depth == 1)
        return 1;
    Display* dpy = app().display;
    if (XGrabPointer(dpy, app().root, False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None,
                     None, CurrentTime) != GrabSuccess)
        return 1;
    XEvent ev;
    for (;;) {
        XNextEvent(dpy, &ev);
        if (ev.type == ButtonPress)
            break;
        XtDispatchEvent(&ev);
    }
    int status = 1;
    if (Window w = window_at_point(dpy, ev.xbutton.x_root, ev.xbutton.y_root)) {
        Pixmap snap = None;
        {
            ErrorTrap trap(dpy);
            snap = snapshot_drawable(dpy, w, app().gcs[GC_COPY], nullptr, nullptr, nullptr);
        }
        if (snap) {
            status = paste_pixmap(d, snap);
            XFreePixmap(dpy, snap);
        }
    }
    if (d->currentTool != TOOL_SELECT)
        select_tool(d, TOOL_SELECT);
    XUngrabPointer(dpy, CurrentTime);
    XFlush(dpy);
    return status;
}

int cmd_set_root_window(Drawing* d, XEvent*, Boolean)
{
    return set_root_background(d);
}

int cmd_pick_window(Drawing* d, XEvent*, Boolean)
{
    return grab_window(d);
}
