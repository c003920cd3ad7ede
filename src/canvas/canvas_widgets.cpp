// The canvas of a drawing window: the frame, the scrolled window and its two
// drawing areas (actual size and magnified), their expose handling, the
// per-drawing GCs, and zooming between the two areas.
#include <Xm/DrawingA.h>
#include <Xm/Frame.h>
#include <Xm/ScrolledW.h>
#include <Xm/Xm.h>

#include <algorithm>

#include "canvas/image_store.h"
#include "canvas/input.h"
#include "canvas/magnified_paint.h"
#include "canvas/views.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "core/x_owned.h"

namespace {

constexpr int MIN_VIEW = 64, MAX_VIEW_WIDTH = 640, MAX_VIEW_HEIGHT = 560;
constexpr int VIEW_MARGIN = 8;   // the scrolled window's shadow and spacing


Widget make_area(Widget parent, Drawing* d, Dimension width, Dimension height)
{
    Arg args[6];
    Cardinal n = 0;
    XtSetArg(args[n], XmNwidth, width), n++;
    XtSetArg(args[n], XmNheight, height), n++;
    XtSetArg(args[n], XmNmarginWidth, 0), n++;
    XtSetArg(args[n], XmNmarginHeight, 0), n++;
    XtSetArg(args[n], XmNresizePolicy, XmRESIZE_NONE), n++;
    Widget area = XmCreateDrawingArea(parent, const_cast<char*>("drawArea"), args, n);
    attach_canvas_handlers(area, d);
    return area;
}

Dimension scaled(int size, int zoom)
{
    long v = static_cast<long>(size) << (zoom < 0 ? 0 : zoom);
    return static_cast<Dimension>(v < 1 ? 1 : (v > 32767 ? 32767 : v));
}

unsigned modifier_state(const XEvent* ev)
{
    if (!ev)
        return 0;
    switch (ev->type) {
    case KeyPress:
    case KeyRelease:
        return ev->xkey.state;
    case ButtonPress:
    case ButtonRelease:
        return ev->xbutton.state;
    case MotionNotify:
        return ev->xmotion.state;
    default:
        return 0;
    }
}

// Own GCs of the drawing's depth: made on the root window for colour, on a
// throw-away depth-1 pixmap for bitmaps.
GC own_gc(Drawing* d, unsigned long foreground, unsigned long background)
{
    Display* dpy = app().display;
    XGCValues v;
    v.function = GXcopy;
    v.foreground = foreground;
    v.background = background;
    v.graphics_exposures = False;
    unsigned long mask = GCFunction | GCForeground | GCBackground | GCGraphicsExposures;
    if (d->depth == 1) {
        ScratchPixmap p(dpy, XCreatePixmap(dpy, app().root, 1, 1, 1));
        return XCreateGC(dpy, p.get(), mask, &v);
    }
    return XCreateGC(dpy, app().root, mask, &v);
}

// Show the whole canvas when it is small, a screenful of it when not; the
// window manager and the user can resize from there.
void view_size(Drawing* d, Dimension* width, Dimension* height)
{
    Dimension viewW = scaled(d->width, d->zoom), viewH = scaled(d->height, d->zoom);
    *width = static_cast<Dimension>(std::clamp<int>(viewW, MIN_VIEW, MAX_VIEW_WIDTH) + VIEW_MARGIN);
    *height = static_cast<Dimension>(std::clamp<int>(viewH, MIN_VIEW, MAX_VIEW_HEIGHT) + VIEW_MARGIN);
}

}  // namespace

void canvas_expose_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept
{
    auto* d = static_cast<Drawing*>(clientData);
    auto* cbs = static_cast<XmDrawingAreaCallbackStruct*>(callData);
    if (!d || !cbs || !cbs->event || !d->image || !XtIsRealized(w))
        return;
    const XEvent* ev = cbs->event;
    int x, y, width, height;
    if (ev->type == Expose) {
        x = ev->xexpose.x, y = ev->xexpose.y;
        width = ev->xexpose.width, height = ev->xexpose.height;
    } else if (ev->type == GraphicsExpose) {
        x = ev->xgraphicsexpose.x, y = ev->xgraphicsexpose.y;
        width = ev->xgraphicsexpose.width, height = ev->xgraphicsexpose.height;
    } else {
        return;
    }
    if (w == d->zoomedArea) {
        if (d->zoom <= 0)
            return;
        // The +2 takes in the cells that the exposed rectangle only grazes.
        magnified_paint(d, x >> d->zoom, y >> d->zoom, (width >> d->zoom) + 2,
                        (height >> d->zoom) + 2, true);
        return;
    }
    // Actual size (the canvas at zoom 0 and the small view).
    if (x >= d->width || y >= d->height)
        return;
    if (width > d->width - x)
        width = d->width - x;
    if (height > d->height - y)
        height = d->height - y;
    Display* dpy = XtDisplay(w);
    unsigned uw = static_cast<unsigned>(width), uh = static_cast<unsigned>(height);
    if (d->depth == 1)
        XCopyPlane(dpy, d->image, XtWindow(w), app().gcs[GC_PLANE], x, y, uw, uh, x, y, 1);
    else
        XCopyArea(dpy, d->image, XtWindow(w), app().gcs[GC_COPY], x, y, uw, uh, x, y);
}

void attach_canvas_handlers(Widget area, Drawing* d)
{
    XtAddCallback(area, XmNexposeCallback, canvas_expose_cb, d);
    XtAddCallback(area, XmNinputCallback, canvas_input_cb, d);
    take_every_button(area);
    XtAddEventHandler(area, Button1MotionMask | Button2MotionMask | Button3MotionMask, False,
                      canvas_motion_eh, d);
    XtAddEventHandler(area, KeyPressMask, False, canvas_key_eh, d);
}

Widget create_canvas(Widget form, Drawing* d)
{
    if (!form || !d)
        return nullptr;
    Widget frame = XmCreateFrame(form, const_cast<char*>("drawFrame"), nullptr, 0);
    Dimension viewW, viewH;
    view_size(d, &viewW, &viewH);
    Arg args[4];
    Cardinal n = 0;
    XtSetArg(args[n], XmNscrollingPolicy, XmAUTOMATIC), n++;
    // The canvas takes no toolkit drops, so nothing dragged over it needs
    // it to scroll; enabled, the scrolled window registers as a drop site,
    // which reads and rewrites the display's table of drag targets.
    XtSetArg(args[n], XmNautoDragModel, XmAUTO_DRAG_DISABLED), n++;
    XtSetArg(args[n], XmNwidth, viewW), n++;
    XtSetArg(args[n], XmNheight, viewH), n++;
    Widget scroll = XmCreateScrolledWindow(frame, const_cast<char*>("scrollWin"), args, n);
    d->frame = frame;
    d->scrolledWindow = scroll;
    d->actualArea = make_area(scroll, d, scaled(d->width, 0), scaled(d->height, 0));
    d->zoomedArea = make_area(scroll, d, scaled(d->width, d->zoom), scaled(d->height, d->zoom));
    Widget chosen = d->zoom != 0 ? d->zoomedArea : d->actualArea;
    XtVaSetValues(scroll, XmNworkWindow, chosen, nullptr);
    XtManageChild(chosen);
    d->activeArea = chosen;
    XtManageChild(scroll);
    XtManageChild(frame);
    return frame;
}

void create_drawing_gcs(Drawing* d)
{
    if (!d)
        return;
    Display* dpy = app().display;
    const GC* gcs = app().gcs;
    bool bitmap = d->depth == 1;
    d->copyGC = gcs[bitmap ? GC_BIT_COPY : GC_COPY];
    d->planeGC = gcs[bitmap ? GC_BIT_PLANE : GC_PLANE];
    d->whiteGC = gcs[bitmap ? GC_BIT_CLEAR : GC_WHITE];
    d->blackGC = gcs[bitmap ? GC_BIT_SET : GC_BLACK];
    // A reused record may change depth, so its own GCs are made afresh.
    for (GC* own : {&d->foregroundGC, &d->backgroundGC, &d->scratchGC}) {
        if (*own)
            XFreeGC(dpy, *own);
        *own = nullptr;
    }
    unsigned long black = bitmap ? 1 : app().blackPixel;
    unsigned long white = bitmap ? 0 : app().whitePixel;
    d->foregroundGC = own_gc(d, black, white);
    d->backgroundGC = own_gc(d, white, white);
    d->scratchGC = own_gc(d, white, white);
    d->chosenGC = d->foregroundGC;
}

void size_canvas(Drawing* d)
{
    if (!d)
        return;
    if (d->actualArea)
        XtVaSetValues(d->actualArea, XmNwidth, scaled(d->width, 0), XmNheight,
                      scaled(d->height, 0), nullptr);
    if (d->zoomedArea && d->zoom != 0)
        XtVaSetValues(d->zoomedArea, XmNwidth, scaled(d->width, d->zoom), XmNheight,
                      scaled(d->height, d->zoom), nullptr);
    if (d->smallArea)
        XtVaSetValues(d->smallArea, XmNwidth, scaled(d->width, 0), XmNheight,
                      scaled(d->height, 0), nullptr);
    if (d->bwArea && d->depth != 1)
        XtVaSetValues(d->bwArea, XmNwidth, scaled(d->width, 0), XmNheight,
                      scaled(d->height, 0), nullptr);
    layout_canvas(d);
}

void layout_canvas(Drawing* d)
{
    if (!d)
        return;
    if (d->zoom < 0)
        d->zoom = 0;
    if (d->zoom > MAX_ZOOM)
        d->zoom = MAX_ZOOM;
    if (d->actualArea && d->zoomedArea && d->scrolledWindow) {
        Widget chosen;
        if (d->zoom != 0) {
            XtUnmanageChild(d->actualArea);
            XtUnmanageChild(d->zoomedArea);
            XtVaSetValues(d->zoomedArea, XmNwidth, scaled(d->width, d->zoom), XmNheight,
                          scaled(d->height, d->zoom), nullptr);
            chosen = d->zoomedArea;
        } else {
            XtUnmanageChild(d->zoomedArea);
            chosen = d->actualArea;
        }
        XtVaSetValues(d->scrolledWindow, XmNworkWindow, chosen, nullptr);
        XtManageChild(chosen);
        d->activeArea = chosen;
        d->activeWindow = XtWindow(chosen);
    }
    tell_zoom_changed(d);
}

void zoom_in(Drawing* d, XEvent* event)
{
    if (!d || d->zoom >= MAX_ZOOM)
        return;
    if (d->zoom == 0) {
        // imageCopy is not kept at actual size; take it now. The extra
        // step makes the first zoom in from actual size land on 2.
        retake_image_copy(d);
        d->zoom = 1;
    }
    if (modifier_state(event) & ShiftMask)
        d->zoom = MAX_ZOOM;
    else
        d->zoom++;
    layout_canvas(d);
}

void zoom_out(Drawing* d, XEvent* event)
{
    if (!d || d->zoom <= 0)
        return;
    // From 2 straight to actual size, mirroring zoom in.
    if ((modifier_state(event) & ShiftMask) || d->zoom == 2)
        d->zoom = 0;
    else
        d->zoom--;
    // The canvas itself is actual size now: the small view has no use.
    if (d->zoom == 0)
        hide_small_view(d);
    layout_canvas(d);
}

void fit_view(Drawing* d)
{
    if (!d || !d->scrolledWindow)
        return;
    Dimension w, h;
    view_size(d, &w, &h);
    XtVaSetValues(d->scrolledWindow, XmNwidth, w, XmNheight, h, nullptr);
}
