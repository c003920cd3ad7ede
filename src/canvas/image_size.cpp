// Changing the size of a drawing's picture. The new picture goes in through
// the same steps as a file opened into a reused window (size the canvas
// areas, remake the pixmaps from a source, tell the status line), and the
// old one is kept whole for Undo: savedImage cannot hold it, being the new
// picture's size.
#include "canvas/image_size.h"

#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "tools/tool_table.h"

namespace {

int put_picture(Drawing* d, Pixmap picture, int width, int height, int hx, int hy)
{
    d->width = static_cast<uint16_t>(width);
    d->height = static_cast<uint16_t>(height);
    d->hotspotX = d->hotspotUndoX = hx;
    d->hotspotY = d->hotspotUndoY = hy;
    size_canvas(d);
    fit_view(d);
    int status = create_image(d, picture);
    // The views that shrank are not exposed again: paint them all.
    if (status == 0)
        refresh_rect(d, 0, 0, width, height);
    tell_size_changed(d);
    return status;
}

Pixmap copy_of_image(Drawing* d)
{
    Display* dpy = app().display;
    Pixmap p = XCreatePixmap(dpy, app().root, d->width, d->height, static_cast<unsigned>(d->depth));
    if (p)
        XCopyArea(dpy, d->image, p, d->copyGC, 0, 0, d->width, d->height, 0, 0);
    return p;
}

}  // namespace

int change_image_size(Drawing* d, Pixmap picture, int width, int height, int hx, int hy)
{
    if (!d || !d->image || !picture || width <= 0 || height <= 0)
        return 1;
    SizeUndo before{copy_of_image(d), d->width, d->height, d->hotspotX, d->hotspotY};
    if (!before.image)
        return 1;
    if (put_picture(d, picture, width, height, hx, hy) != 0) {
        put_picture(d, before.image, before.width, before.height, before.hotspotX, before.hotspotY);
        XFreePixmap(app().display, before.image);
        return 1;
    }
    d->modified = 1;
    set_undo_available(d, true);   // drops any older record first
    d->sizeUndo = new SizeUndo(before);
    return 0;
}

bool undo_image_size(Drawing* d)
{
    if (!d || !d->sizeUndo)
        return false;
    SizeUndo before = *d->sizeUndo;
    delete d->sizeUndo;
    d->sizeUndo = nullptr;
    // The tool lets go of what it holds on the picture (the hotspot's
    // marker, a caret) and takes up the old one afresh.
    send_tool_event(d, d->activeArea, TOOL_DESELECTED);
    put_picture(d, before.image, before.width, before.height, before.hotspotX, before.hotspotY);
    XFreePixmap(app().display, before.image);
    send_tool_event(d, d->activeArea, TOOL_SELECTED);
    set_undo_available(d, false);
    return true;
}

void drop_size_undo(Drawing* d)
{
    if (!d || !d->sizeUndo)
        return;
    if (d->sizeUndo->image)
        XFreePixmap(app().display, d->sizeUndo->image);
    delete d->sizeUndo;
    d->sizeUndo = nullptr;
}
