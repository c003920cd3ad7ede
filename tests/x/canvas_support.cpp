// Helpers of the canvas and tool tests (see canvas_support.h).
#include "canvas_support.h"

#include <Xm/DrawingA.h>
#include <Xm/Xm.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <sstream>

#include "app/commands.h"
#include "app/menus.h"
#include "canvas/image_store.h"
#include "canvas/input.h"
#include "canvas/magnified_paint.h"

namespace {

int grabDepth;

}  // namespace

void area_button(Drawing* d, int type, unsigned button, int wx, int wy, unsigned state)
{
    XEvent ev = pointer_event(XtWindow(d->activeArea), type, button, wx, wy, state);
    XmDrawingAreaCallbackStruct cbs{XmCR_INPUT, &ev, ev.xbutton.window};
    canvas_input_cb(d->activeArea, d, &cbs);
}

void area_motion(Drawing* d, int wx, int wy, unsigned state)
{
    XEvent ev = pointer_event(XtWindow(d->activeArea), MotionNotify, 0, wx, wy, state);
    Boolean cont = True;
    canvas_motion_eh(d->activeArea, d, &ev, &cont);
}

int cell_centre(Drawing* d, int v) { return d->zoom > 0 ? (v << d->zoom) + ((1 << d->zoom) - 1) / 2 : v; }

void stroke(Drawing* d, unsigned button, std::initializer_list<ImagePoint> points, unsigned state)
{
    unsigned held = state | (Button1Mask << (button - 1));
    const ImagePoint* p = points.begin();
    area_button(d, ButtonPress, button, cell_centre(d, p->x), cell_centre(d, p->y), state);
    for (++p; p != points.end(); ++p)
        area_motion(d, cell_centre(d, p->x), cell_centre(d, p->y), held);
    const ImagePoint& last = *(points.end() - 1);
    area_button(d, ButtonRelease, button, cell_centre(d, last.x), cell_centre(d, last.y), held);
    pump();
}

std::string pixels_are(Drawing* d, unsigned long want, const std::vector<ImagePoint>& points)
{
    for (const ImagePoint& p : points)
        if (unsigned long got = image_pixel(d, p.x, p.y); got != want)
            return "(" + std::to_string(p.x) + "," + std::to_string(p.y) + ") is " + std::to_string(got);
    return "";
}

bool wait_for(const std::function<bool()>& done)
{
    auto until = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (std::chrono::steady_clock::now() < until && !done()) {
        pump();
        while (XtAppPending(app().context) & XtIMTimer)
            XtAppProcessEvent(app().context, XtIMTimer);
        usleep(10000);
    }
    return done();
}

void set_zoom(Drawing* d, int zoom)
{
    // imageCopy is not kept at actual size; zoom_in retakes it the same way.
    if (d->zoom == 0 && zoom != 0)
        retake_image_copy(d);
    d->zoom = zoom;
    layout_canvas(d);
    pump();
}

void put_pixels(Drawing* d, unsigned long v, int x, int y, int w, int h)
{
    GC gc = XCreateGC(app().display, d->image, 0, nullptr);
    XSetForeground(app().display, gc, v);
    XFillRectangle(app().display, d->image, gc, x, y, static_cast<unsigned>(w), static_cast<unsigned>(h));
    XFreeGC(app().display, gc);
}

void paint_test_picture(Drawing* d)
{
    unsigned long values = d->depth == 1 ? 2 : 200;
    for (int y = 0; y < d->height; y++)
        for (int x = 0; x < d->width; x++) {
            unsigned long v = static_cast<unsigned long>((x * 7 + y * 13 + (x * y) % 5) % values);
            put_pixels(d, v + (d->depth != 1 ? 20 : 0), x, y);   // keep clear of the few pixels the server uses
        }
    refresh_rect(d, 0, 0, d->width, d->height);
    pump();
}

std::string check_display(Drawing* d)
{
    Display* dpy = app().display;
    Widget area = d->activeArea;
    Window win = XtWindow(area);
    // Without a window manager others may lie on top: raise ours and keep them out while reading.
    ServerGrab grab;
    XRaiseWindow(dpy, XtWindow(d->shell));
    pump();
    // Only the part of the window inside the scrolled window's clip can be read back.
    Widget clip = XtParent(area);
    Position ax = 0, ay = 0;
    Dimension cw = 0, ch = 0;
    XtVaGetValues(area, XmNx, &ax, XmNy, &ay, nullptr);
    XtVaGetValues(clip, XmNwidth, &cw, XmNheight, &ch, nullptr);
    int x0 = ax < 0 ? -ax : 0, y0 = ay < 0 ? -ay : 0;
    int zoom = d->zoom;
    int areaW = d->width << zoom, areaH = d->height << zoom;
    int visW = std::min(areaW - x0, static_cast<int>(cw) - std::max<int>(ax, 0));
    int visH = std::min(areaH - y0, static_cast<int>(ch) - std::max<int>(ay, 0));
    if (visW <= 0 || visH <= 0)
        return "nothing visible";
    ImagePtr shown(
        XGetImage(dpy, win, x0, y0, static_cast<unsigned>(visW), static_cast<unsigned>(visH), AllPlanes, ZPixmap));
    ImagePtr image = image_of(d);
    if (!shown || !image)
        return "XGetImage failed";
    Pixel background = 0;
    XtVaGetValues(area, XmNbackground, &background, nullptr);
    int pitch = 1 << zoom;
    for (int wy = y0; wy < y0 + visH; wy++)
        for (int wx = x0; wx < x0 + visW; wx++) {
            int ix = wx >> zoom, iy = wy >> zoom;
            bool grid = zoom > 0 && ((wx % pitch) == pitch - 1 || (wy % pitch) == pitch - 1);
            unsigned long v = XGetPixel(image.get(), ix, iy);
            unsigned long want = grid ? background : d->depth != 1 ? v : v ? app().blackPixel : app().whitePixel;
            unsigned long got = XGetPixel(shown.get(), wx - x0, wy - y0);
            if (got != want) {
                std::ostringstream out;
                out << "window (" << wx << "," << wy << ") cell (" << ix << "," << iy << (grid ? ") grid" : ") square")
                    << ": got " << got << " want " << want << " at zoom " << zoom;
                return out.str();
            }
        }
    return "";
}

ImagePtr image_of(Drawing* d)
{
    return ImagePtr(XGetImage(app().display, d->image, 0, 0, d->width, d->height,
                              d->depth == 1 ? 1 : AllPlanes, ZPixmap));
}

std::string first_difference(const XImage* got, const XImage* want, int w, int h,
                             const std::function<unsigned long(unsigned long)>& shown)
{
    if (!got || !want)
        return "no image to compare";
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++) {
            unsigned long g = XGetPixel(const_cast<XImage*>(got), x, y);
            unsigned long v = XGetPixel(const_cast<XImage*>(want), x, y);
            if (g != (shown ? shown(v) : v))
                return "(" + std::to_string(x) + "," + std::to_string(y) + "): got " + std::to_string(g);
        }
    return "";
}

std::string check_image_copy(Drawing* d)
{
    return first_difference(d->imageCopy, image_of(d).get(), d->width, d->height);
}

bool item_sensitive(Drawing* d, int command)
{
    Widget w = menu_item(d, command);
    return w && XtIsSensitive(w);
}

bool undo_sensitive(Drawing* d) { return item_sensitive(d, CMD_UNDO); }

static unsigned long gc_foreground(GC gc)
{
    XGCValues v;
    XGetGCValues(app().display, gc, GCForeground, &v);
    return v.foreground;
}

unsigned long foreground_pixel(Drawing* d) { return gc_foreground(d->foregroundGC); }
unsigned long background_pixel(Drawing* d) { return gc_foreground(d->backgroundGC); }

ServerGrab::ServerGrab()
{
    if (grabDepth++ == 0) {
        XGrabServer(app().display);
        XSync(app().display, False);
    }
}

ServerGrab::~ServerGrab()
{
    if (--grabDepth == 0) {
        XUngrabServer(app().display);
        XSync(app().display, False);
    }
}
