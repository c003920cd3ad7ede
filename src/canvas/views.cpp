// The auxiliary views of a drawing: an actual-size view to paint in while
// the canvas is magnified, and a view of the image as black and white,
// kept in a depth-1 pixmap that Save As black-and-white writes too. Both
// are dialogs built once per slot, when first shown, and only managed and
// unmanaged after. Until then the drawing's dialog and area are null.
#include "canvas/views.h"

#include <X11/Xutil.h>
#include <Xm/DrawingA.h>
#include <Xm/Protocols.h>
#include <Xm/ScrolledW.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "canvas/image_store.h"
#include "colour/color_list.h"
#include "core/app_state.h"
#include "core/dialog_titles.h"
#include "core/drawing.h"
#include "core/template_dialog.h"
#include "core/window_hooks.h"
#include "core/window_place.h"
#include "core/x_owned.h"
#include "tools/tool_table.h"

namespace {

constexpr int VIEW_MARGIN = 4;   // the scrolled window's shadow on both sides

// The template dialog's fill function gets only the form: the drawing
// being built travels beside it.
Drawing* building = nullptr;

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

bool shown(Widget dialog)
{
    return dialog && XtIsManaged(dialog);
}

bool realized(Widget w)
{
    return w && XtIsRealized(w);
}

// Turns a rectangle of `image` into black and white in the drawing's
// depth-1 pixmap. The rectangle has been cut to the image.
void convert_rect(Drawing* d, int x, int y, int w, int h)
{
    Display* dpy = app().display;
    unsigned uw = static_cast<unsigned>(w), uh = static_cast<unsigned>(h);
    ImagePtr colour(XGetImage(dpy, d->image, x, y, uw, uh, AllPlanes, ZPixmap));
    if (!colour)
        return;
    ImagePtr bits(XCreateImage(dpy, app().visual, 1, XYBitmap, 0, nullptr, uw, uh, 8, 0));
    if (!bits)
        return;
    bits->data = static_cast<char*>(calloc(static_cast<size_t>(bits->bytes_per_line) * uh, 1));
    if (!bits->data)
        return;
    ColorList* list = color_list_of(d);
    // Pixels of a PseudoColor image are small: map each value once.
    std::array<signed char, 256> cache;
    cache.fill(-1);
    for (int row = 0; row < h; row++)
        for (int col = 0; col < w; col++) {
            Pixel p = XGetPixel(colour.get(), col, row);
            int v;
            if (p < cache.size()) {
                if (cache[p] < 0)
                    cache[p] = static_cast<signed char>(map_pixel(p, list));
                v = cache[p];
            } else {
                v = map_pixel(p, list);
            }
            if (v)
                XPutPixel(bits.get(), col, row, 1);
        }
    XPutImage(dpy, d->bwPixmap, app().gcs[GC_BIT_PLANE], bits.get(), 0, 0, x, y, uw, uh);
}

// The pixmap goes with the image (a new image frees it): make and fill it
// when missing.
bool ensure_bw_pixmap(Drawing* d)
{
    if (d->bwPixmap)
        return true;
    return render_bw_pixmap(d) != None;
}

void copy_bw_to_window(Drawing* d, int x, int y, int w, int h)
{
    if (!realized(d->bwArea) || !d->bwPixmap || w <= 0 || h <= 0)
        return;
    // Set bits are black, clear ones white, on the screen-depth window.
    XCopyPlane(app().display, d->bwPixmap, XtWindow(d->bwArea), app().gcs[GC_PLANE], x, y,
               static_cast<unsigned>(w), static_cast<unsigned>(h), x, y, 1);
}

void bw_expose_cb(Widget, XtPointer client, XtPointer call) noexcept
{
    auto* d = static_cast<Drawing*>(client);
    auto* cbs = static_cast<XmDrawingAreaCallbackStruct*>(call);
    if (!d || !cbs || !cbs->event || cbs->event->type != Expose || !d->image || d->depth == 1)
        return;
    const XExposeEvent& e = cbs->event->xexpose;
    if (!ensure_bw_pixmap(d))
        return;
    int w = std::min(e.width, d->width - e.x), h = std::min(e.height, d->height - e.y);
    copy_bw_to_window(d, e.x, e.y, w, h);
}

Widget make_view_area(Widget form, Drawing* d)
{
    Arg args[8];
    Cardinal n = 0;
    // The resources size the visible area; the dialog grows around it.
    XtSetArg(args[n], XmNwidth, static_cast<Dimension>(std::max(res().smallViewWidth, 1) + VIEW_MARGIN)), n++;
    XtSetArg(args[n], XmNheight, static_cast<Dimension>(std::max(res().smallViewHeight, 1) + VIEW_MARGIN)), n++;
    XtSetArg(args[n], XmNscrollingPolicy, XmAUTOMATIC), n++;
    XtSetArg(args[n], XmNtopAttachment, XmATTACH_FORM), n++;
    XtSetArg(args[n], XmNbottomAttachment, XmATTACH_FORM), n++;
    XtSetArg(args[n], XmNleftAttachment, XmATTACH_FORM), n++;
    XtSetArg(args[n], XmNrightAttachment, XmATTACH_FORM), n++;
    Widget scroll = XmCreateScrolledWindow(form, const_cast<char*>("scrollWin"), args, n);
    n = 0;
    XtSetArg(args[n], XmNwidth, std::max<Dimension>(d->width, 1)), n++;
    XtSetArg(args[n], XmNheight, std::max<Dimension>(d->height, 1)), n++;
    XtSetArg(args[n], XmNmarginWidth, 0), n++;
    XtSetArg(args[n], XmNmarginHeight, 0), n++;
    XtSetArg(args[n], XmNresizePolicy, XmRESIZE_NONE), n++;
    Widget area = XmCreateDrawingArea(scroll, const_cast<char*>("smallDrawArea"), args, n);
    XtManageChild(area);
    XtVaSetValues(scroll, XmNworkWindow, area, nullptr);
    XtManageChild(scroll);
    return area;
}

void fill_small_view(Widget form)
{
    Drawing* d = building;
    if (!d)
        return;
    // The same input as the actual-size canvas, so either scale paints.
    Widget area = make_view_area(form, d);
    attach_canvas_handlers(area, d);
    d->smallArea = area;
    tell_view_area_made(d, area);
}

void fill_bw_view(Widget form)
{
    Drawing* d = building;
    if (!d)
        return;
    Widget area = make_view_area(form, d);
    XtAddCallback(area, XmNexposeCallback, bw_expose_cb, d);
    d->bwArea = area;
}

void close_small_cb(Widget, XtPointer client, XtPointer) noexcept
{
    if (auto* d = static_cast<Drawing*>(client))
        hide_small_view(d);
}

void hide_bw_view(Drawing* d)
{
    if (d->bwDialog)
        XtUnmanageChild(d->bwDialog);
    tell_toggle_changed(d, WindowToggle::BwView, false);
}

void close_bw_cb(Widget, XtPointer client, XtPointer) noexcept
{
    if (auto* d = static_cast<Drawing*>(client))
        hide_bw_view(d);
}

// The dialogs hide themselves through their Close button, the window
// manager's close included, so the View toggles always tell the truth.
// Both are titled with the drawing's name and what they show (`role`),
// and open beside the drawing's window, where they cover neither its
// palettes nor each other.
Widget make_view_dialog(Widget parent, Drawing* d, const char* name, const char* role, void (*fill)(Widget),
                        XtCallbackProc close)
{
    const DialogButton buttons[] = {
        {"Close", close, d},
        {nullptr, nullptr, nullptr},
    };
    Arg args[3];
    Cardinal n = 0;
    XtSetArg(args[n], XmNautoUnmanage, False), n++;
    // The view keeps its size when a drawing of another size takes the slot.
    XtSetArg(args[n], XmNresizePolicy, XmRESIZE_GROW), n++;
    XtSetArg(args[n], XmNdefaultPosition, False), n++;
    building = d;
    Widget dialog = template_dialog(parent, name, fill, args, n, buttons);
    building = nullptr;
    if (!dialog)
        return nullptr;
    remember_dialog_role(dialog, role);
    title_dialog_for(dialog, d->name);
    if (Widget main = XtNameToWidget(dialog, "main"))
        XtVaSetValues(main, XmNtopAttachment, XmATTACH_FORM, nullptr);
    Widget shell = XtParent(dialog);
    XtVaSetValues(shell, XmNdeleteResponse, XmDO_NOTHING, nullptr);
    Atom del = XmInternAtom(XtDisplay(shell), const_cast<char*>("WM_DELETE_WINDOW"), False);
    XmAddWMProtocolCallback(shell, del, close, d);
    XtAddCallback(shell, XmNpopupCallback, beside_drawing_cb, d);
    return dialog;
}

}  // namespace

void create_small_view(Widget parent, Drawing* d)
{
    if (!parent || !d || d->smallViewDialog)
        return;
    d->smallViewDialog = make_view_dialog(parent, d, "SmallView Dialog", "Actual Size", fill_small_view, close_small_cb);
}

void create_bw_view(Widget parent, Drawing* d)
{
    if (!parent || !d || d->bwDialog)
        return;
    d->bwDialog = make_view_dialog(parent, d, "BWView Dialog", "Black and White", fill_bw_view, close_bw_cb);
}

void small_view_update(Drawing* d, int x, int y, int width, int height)
{
    if (!d || !d->image || !shown(d->smallViewDialog) || !realized(d->smallArea))
        return;
    x = std::max(x, 0);
    y = std::max(y, 0);
    width = std::min(width, d->width - x);
    height = std::min(height, d->height - y);
    if (width <= 0 || height <= 0)
        return;
    Display* dpy = app().display;
    Window win = XtWindow(d->smallArea);
    unsigned w = static_cast<unsigned>(width), h = static_cast<unsigned>(height);
    if (d->depth == 1)
        XCopyPlane(dpy, d->image, win, app().gcs[GC_PLANE], x, y, w, h, x, y, 1);
    else
        XCopyArea(dpy, d->image, win, app().gcs[GC_COPY], x, y, w, h, x, y);
}

void bw_view_update(Drawing* d, int x, int y, int width, int height)
{
    if (!d || !d->image || d->depth == 1 || d->width == 0 || d->height == 0)
        return;
    // A pixmap made now is converted whole: nothing more to convert.
    bool fresh = !d->bwPixmap;
    if (!ensure_bw_pixmap(d))
        return;
    // Left and top edges are clamped without shrinking the rectangle: it
    // converts a little more, never less.
    x = std::max(x, 0);
    y = std::max(y, 0);
    if (x >= d->width || y >= d->height)
        return;
    width = std::min(width, d->width - x);
    height = std::min(height, d->height - y);
    if (width <= 0 || height <= 0)
        return;
    if (!fresh)
        convert_rect(d, x, y, width, height);
    copy_bw_to_window(d, x, y, width, height);
}

int cmd_show_small_view(Drawing* d, XEvent*, Boolean set)
{
    if (!d)
        return 1;
    // At actual size the canvas is the small view (the item is
    // insensitive there); the toggle must not claim otherwise.
    if (d->zoom == 0) {
        tell_toggle_changed(d, WindowToggle::SmallView, shown(d->smallViewDialog));
        return 0;
    }
    if (!set) {
        hide_small_view(d);
        return 0;
    }
    create_small_view(d->shell, d);
    if (!d->smallViewDialog)
        return 1;
    // The name may have changed since the view was last shown (Save As).
    title_dialog_for(d->smallViewDialog, d->name);
    XtManageChild(d->smallViewDialog);
    tell_toggle_changed(d, WindowToggle::SmallView, true);
    // Its area is realised only now: give it the current tool's cursor.
    if (d->currentTool >= 0 && d->currentTool < toolCount)
        tell_cursor(d, toolTable[d->currentTool].cursor);
    // An area that was already mapped gets no new expose: paint it now.
    small_view_update(d, 0, 0, d->width, d->height);
    return 0;
}

int cmd_show_bw_view(Drawing* d, XEvent*, Boolean set)
{
    if (!d || d->depth == 1)
        return 1;
    if (!set) {
        hide_bw_view(d);
        return 0;
    }
    create_bw_view(d->shell, d);
    if (!d->bwDialog)
        return 1;
    title_dialog_for(d->bwDialog, d->name);
    XtManageChild(d->bwDialog);
    tell_toggle_changed(d, WindowToggle::BwView, true);
    // The rendering is not kept while the view is hidden: convert it all.
    render_bw_pixmap(d);
    copy_bw_to_window(d, 0, 0, d->width, d->height);
    return 0;
}

void hide_small_view(Drawing* d)
{
    if (!d)
        return;
    if (d->smallViewDialog)
        XtUnmanageChild(d->smallViewDialog);
    tell_toggle_changed(d, WindowToggle::SmallView, false);
}

void hide_views(Drawing* d)
{
    if (!d)
        return;
    hide_small_view(d);
    hide_bw_view(d);
}

Pixmap render_bw_pixmap(Drawing* d)
{
    if (!d || !d->image || d->width == 0 || d->height == 0)
        return None;
    Display* dpy = app().display;
    unsigned w = d->width, h = d->height;
    if (!d->bwPixmap)
        d->bwPixmap = XCreatePixmap(dpy, app().root, w, h, 1);
    if (d->depth == 1)
        XCopyArea(dpy, d->image, d->bwPixmap, app().gcs[GC_BIT_COPY], 0, 0, w, h, 0, 0);
    else
        convert_rect(d, 0, 0, d->width, d->height);
    return d->bwPixmap;
}
