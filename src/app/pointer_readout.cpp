// The pointer readout. Motion is frequent, so the pixel comes from the
// copy of the image the magnified area keeps (a one-pixel read from the
// server only at actual size), its colour from a table of the colormap
// read once each time the pointer enters a canvas, and a burst of
// motions is handled as its last one.
#include "app/pointer_readout.h"

#include <X11/Xutil.h>
#include <Xm/Xm.h>

#include <climits>

#include "app/pointer_text.h"
#include "app/status.h"
#include "colour/color_list.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"
#include "files/image_io.h"
#include "tools/geometry.h"
#include "tools/selection.h"
#include "tools/tool_table.h"

namespace {

constexpr int CELL_COUNT = 256;
constexpr unsigned BUTTONS = Button1Mask | Button2Mask | Button3Mask;

// The colours of the colormap's cells as last read. A colour edited while
// the pointer stays on the canvas shows its old value until the pointer
// leaves and comes back; the editor and the grab are used elsewhere.
XColor cells[CELL_COUNT];
bool cellsRead = false;

void read_cells()
{
    int count = app().visual ? app().visual->map_entries : 0;
    if (count <= 0 || count > CELL_COUNT)
        count = CELL_COUNT;
    for (int i = 0; i < count; i++)
        cells[i].pixel = static_cast<unsigned long>(i);
    XQueryColors(app().display, app().colormap, cells, count);
    cellsRead = true;
}

XColor colour_of(Pixel p)
{
    if (p < CELL_COUNT) {
        if (!cellsRead)
            read_cells();
        return cells[p];
    }
    XColor c{};
    c.pixel = p;
    XQueryColor(app().display, app().colormap, &c);
    return c;
}

// The symbolic name the file gave the colour of this cell, if any: kept
// with the drawing's file record, which follows edits of the colour.
const char* symbolic_name(const Drawing* d, Pixel p)
{
    return symbolic_name_of(d->xpmAttributes, p, res().background);
}

// The image pixel at (x, y), which lies inside the image.
bool read_pixel(Drawing* d, Widget area, int x, int y, Pixel* p)
{
    const XImage* copy = d->imageCopy;
    // The copy is what the magnified area shows; at actual size it is not
    // kept up to date.
    if (area == d->zoomedArea && d->zoom > 0 && copy && copy->width == d->width && copy->height == d->height) {
        *p = XGetPixel(const_cast<XImage*>(copy), x, y);
        return true;
    }
    unsigned long planes = d->depth == 1 ? 1UL : AllPlanes;
    ImagePtr one(XGetImage(app().display, d->image, x, y, 1, 1, planes, ZPixmap));
    if (!one)
        return false;
    *p = XGetPixel(one.get(), 0, 0);
    return true;
}

PointerSample sample_at(Drawing* d, Pixel p, int x, int y)
{
    PointerSample s{x, y, false, 0, 0, 0, nullptr};
    if (d->depth == 1) {
        // A set bit shows black, a clear one white.
        s.red = s.green = s.blue = p ? 0 : 0xffff;
        return s;
    }
    const ColorList* list = color_list_of(d);
    s.transparent = p == res().background || (list && p == list->transparentPixel);
    if (!s.transparent) {
        XColor c = colour_of(p);
        s.red = c.red, s.green = c.green, s.blue = c.blue;
    }
    s.name = symbolic_name(d, p);
    return s;
}

// The select tool's rubber band, while a button marks it out.
bool marking_selection(Drawing* d, unsigned state)
{
    if (!(state & BUTTONS) || d->currentTool != TOOL_SELECT || !d->selection)
        return false;
    return d->selection->mode == 0;
}

// Drops the motions queued right behind this one for the same window with
// no button held; a motion behind anything else is left for its turn.
void skip_to_latest(Display* dpy, XMotionEvent* ev)
{
    while (XEventsQueued(dpy, QueuedAlready) > 0) {
        XEvent next;
        XPeekEvent(dpy, &next);
        if (next.type != MotionNotify || next.xmotion.window != ev->window || (next.xmotion.state & BUTTONS))
            return;
        XNextEvent(dpy, &next);
        *ev = next.xmotion;
    }
}

std::string readout(Drawing* d, Widget area, XMotionEvent ev)
{
    int x, y;
    const ToolRow* row = current_tool_row(d);
    if ((ev.state & BUTTONS) && row && row->motion && d->lastMotionX != INT_MIN) {
        // The tool's handler ran first and took the rest of the burst: the
        // place it drew at is the latest one.
        x = d->lastMotionX;
        y = d->lastMotionY;
    } else {
        if (!(ev.state & BUTTONS))
            skip_to_latest(XtDisplay(area), &ev);
        x = ev.x;
        y = ev.y;
        if (area == d->zoomedArea && d->zoom > 0) {
            x >>= d->zoom;   // arithmetic: left of the area stays negative
            y >>= d->zoom;
        }
    }
    if (marking_selection(d, ev.state)) {
        Box b = box_of(d->selection->anchor, d->selection->corner);
        return selection_text(b.width, b.height);
    }
    Pixel p = 0;
    if (!d->image || x < 0 || y < 0 || x >= d->width || y >= d->height || !read_pixel(d, area, x, y, &p))
        return std::string();
    return pointer_text(sample_at(d, p, x, y));
}

void readout_eh(Widget w, XtPointer clientData, XEvent* event, Boolean*) noexcept
{
    auto* d = static_cast<Drawing*>(clientData);
    if (!d || !event || !drawing_is_open(d))
        return;
    switch (event->type) {
    case EnterNotify:
        // Colours may have been edited since the pointer was last here.
        read_cells();
        break;
    case LeaveNotify:
        show_pointer_text(d, std::string());
        break;
    case MotionNotify:
        show_pointer_text(d, readout(d, w, event->xmotion));
        break;
    default:
        break;
    }
}

void follow(Widget area, Drawing* d)
{
    // After the canvas's own motion handler, so that a stroke's motion has
    // been drawn (and its burst taken) before the readout looks.
    if (area)
        XtInsertEventHandler(area, PointerMotionMask | EnterWindowMask | LeaveWindowMask, False, readout_eh, d,
                             XtListTail);
}

}  // namespace

void attach_pointer_readout(Drawing* d)
{
    if (!d)
        return;
    follow(d->actualArea, d);
    follow(d->zoomedArea, d);
    follow(d->smallArea, d);
}

void follow_pointer_in(Drawing* d, Widget area)
{
    if (d)
        follow(area, d);
}
