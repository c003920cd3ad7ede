// The HSV mode of the colour editor: a value scale beside a wheel of 28
// coloured sectors picking hue and saturation. The wheel is painted with
// read/write cells of its own, restored for each value, and the edited
// colour is written straight into the entry's cell.
#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Scale.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cstdio>

#include "colour/color_editor.h"
#include "colour/hsv.h"
#include "core/app_state.h"
#include "core/error_trap.h"

namespace {

HsvState* state = nullptr;

constexpr int WHEEL_SIZE = 160;
constexpr int MARKER_BOX = 9;

// The edited cell may come from a file whose cells are not ours to write;
// a refused store must not end the program.
void store_trapped(HsvState* s, XColor* colours, int count)
{
    ErrorTrap trap(s->display);
    XStoreColors(s->display, s->colormap, colours, count);
}

XColor to_xcolor(Pixel pixel, Rgb c)
{
    XColor x{};
    x.pixel = pixel;
    x.red = static_cast<unsigned short>(c.red * 257);
    x.green = static_cast<unsigned short>(c.green * 257);
    x.blue = static_cast<unsigned short>(c.blue * 257);
    x.flags = DoRed | DoGreen | DoBlue;
    return x;
}

void store_edited_colour(HsvState* s)
{
    Rgb c = hsv_to_rgb({s->hue, s->saturation, s->value});
    s->red = c.red;
    s->green = c.green;
    s->blue = c.blue;
    if (!s->live)
        return;
    XColor x = to_xcolor(s->editedPixel, c);
    store_trapped(s, &x, 1);
}

void store_wheel_colours(HsvState* s)
{
    if (!s->haveCells)
        return;
    XColor colours[WHEEL_CELLS];
    for (int i = 0; i < WHEEL_CELLS; i++)
        colours[i] = to_xcolor(s->hueSatCells[i], hsv_to_rgb(wheel_cell_colour(i, s->value)));
    XStoreColors(s->display, s->colormap, colours, WHEEL_CELLS);
}

void area_size(HsvState* s, int* width, int* height)
{
    Dimension w = 0, h = 0;
    XtVaGetValues(s->hueSat, XmNwidth, &w, XmNheight, &h, nullptr);
    *width = w;
    *height = h;
}

short clamp16(int v)
{
    return static_cast<short>(std::clamp(v, -32768, 32767));
}

// Paints the wheel, clipped to `clip` (which is cleared first) or over the
// whole window. The window's background is the edited colour, so the area
// round the wheel shows it too.
void draw_wheel(HsvState* s, const XRectangle* clip)
{
    if (!s->haveCells || !XtIsRealized(s->hueSat))
        return;
    Window w = XtWindow(s->hueSat);
    XSetWindowBackground(s->display, w, s->editedPixel);
    if (clip) {
        XClearArea(s->display, w, clip->x, clip->y, clip->width, clip->height, False);
        XSetClipRectangles(s->display, s->gc, 0, 0, const_cast<XRectangle*>(clip), 1, Unsorted);
    } else {
        XClearWindow(s->display, w);
        XSetClipMask(s->display, s->gc, None);
    }
    int width = 0, height = 0;
    area_size(s, &width, &height);
    for (int ring = 0; ring < WHEEL_RINGS; ring++) {
        WheelArc a = wheel_ring(width, height, ring);
        for (int j = 0; j < WHEEL_SECTORS; j++) {
            XSetForeground(s->display, s->gc, s->hueSatCells[WHEEL_SECTORS * ring + j]);
            XFillArc(s->display, w, s->gc, a.x, a.y, a.diameter, a.diameter, 40 * j * 64, 40 * 64);
        }
    }
    WheelArc centre = wheel_ring(width, height, WHEEL_RINGS);
    XSetForeground(s->display, s->gc, s->hueSatCells[WHEEL_CELLS - 1]);
    XFillArc(s->display, w, s->gc, centre.x, centre.y, centre.diameter, centre.diameter, 0, 360 * 64);
    XSetClipMask(s->display, s->gc, None);
}

void draw_marker(HsvState* s, int x, int y)
{
    if (s->haveCells && XtIsRealized(s->hueSat)) {
        XRectangle old{clamp16(s->markerX - MARKER_BOX / 2), clamp16(s->markerY - MARKER_BOX / 2),
                       MARKER_BOX, MARKER_BOX};
        draw_wheel(s, &old);
        Window w = XtWindow(s->hueSat);
        XSetForeground(s->display, s->gc, app().blackPixel);
        XFillArc(s->display, w, s->gc, clamp16(x - 4), clamp16(y - 4), 8, 8, 0, 360 * 64);
        XSetForeground(s->display, s->gc, app().whitePixel);
        XFillArc(s->display, w, s->gc, clamp16(x - 2), clamp16(y - 2), 4, 4, 0, 360 * 64);
    }
    s->markerX = x;
    s->markerY = y;
}

void pick(HsvState* s, int x, int y)
{
    int width = 0, height = 0;
    area_size(s, &width, &height);
    Hsv picked = wheel_pick(x, y, width, height);
    s->hue = picked.hue;
    s->saturation = picked.saturation;
    store_edited_colour(s);
}

void value_cb(Widget, XtPointer, XtPointer callData) noexcept
{
    auto* cb = static_cast<XmScaleCallbackStruct*>(callData);
    if (!state || !cb)
        return;
    state->value = std::clamp(cb->value, 0, 255);
    store_wheel_colours(state);
    store_edited_colour(state);
    if (cb->reason == XmCR_VALUE_CHANGED)
        notify_colour_edited();
}

void hue_sat_input_cb(Widget, XtPointer, XtPointer callData) noexcept
{
    auto* cb = static_cast<XmDrawingAreaCallbackStruct*>(callData);
    if (!state || !cb || !cb->event)
        return;
    XEvent* ev = cb->event;
    if (ev->type != ButtonPress && ev->type != ButtonRelease)
        return;
    pick(state, ev->xbutton.x, ev->xbutton.y);
    // While the button is down only the colour follows; the marker lands
    // where the button comes up.
    if (ev->type == ButtonRelease) {
        draw_marker(state, ev->xbutton.x, ev->xbutton.y);
        notify_colour_edited();
    }
}

void hue_sat_motion_eh(Widget, XtPointer, XEvent* ev, Boolean*) noexcept
{
    if (state && ev && ev->type == MotionNotify && (ev->xmotion.state & Button1Mask))
        pick(state, ev->xmotion.x, ev->xmotion.y);
}

void hue_sat_expose_cb(Widget, XtPointer, XtPointer callData) noexcept
{
    auto* cb = static_cast<XmDrawingAreaCallbackStruct*>(callData);
    if (!state)
        return;
    if (cb && cb->event && cb->event->type == Expose) {
        const XExposeEvent& e = cb->event->xexpose;
        XRectangle r{clamp16(e.x), clamp16(e.y), static_cast<unsigned short>(std::min(e.width, 65535)),
                     static_cast<unsigned short>(std::min(e.height, 65535))};
        draw_wheel(state, &r);
    } else {
        draw_wheel(state, nullptr);
    }
    draw_marker(state, state->markerX, state->markerY);
}

// The wheel keeps its geometry from the window's size at each paint.
void hue_sat_resize_cb(Widget, XtPointer, XtPointer) noexcept {}

}  // namespace

HsvState* hsv_state()
{
    return state;
}

Widget hsv_create(Widget frame)
{
    if (!state) {
        state = reinterpret_cast<HsvState*>(XtMalloc(sizeof(HsvState)));
        *state = HsvState{};
        state->display = XtDisplay(frame);
        state->colormap = DefaultColormap(state->display, DefaultScreen(state->display));
        state->value = 255;
        state->gc = XCreateGC(state->display, RootWindow(state->display, DefaultScreen(state->display)),
                              0, nullptr);
    }
    Widget form = XtVaCreateWidget("HSV", xmFormWidgetClass, frame, nullptr);
    Widget scale = XtVaCreateManagedWidget(
        "Value", xmScaleWidgetClass, form, XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment,
        XmATTACH_FORM, XmNorientation, XmVERTICAL, XmNscaleWidth, 10, XmNscaleHeight, WHEEL_SIZE,
        XmNminimum, 0, XmNmaximum, 255, XmNvalue, 255, XmNshowValue, True, nullptr);
    XtAddCallback(scale, XmNvalueChangedCallback, value_cb, nullptr);
    XtAddCallback(scale, XmNdragCallback, value_cb, nullptr);
    Widget wheelFrame = XtVaCreateManagedWidget(
        "HueSatFrame", xmFrameWidgetClass, form, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget,
        scale, XmNleftOffset, 10, XmNtopAttachment, XmATTACH_FORM, nullptr);
    Widget area = XtVaCreateManagedWidget("HueSat", xmDrawingAreaWidgetClass, wheelFrame, XmNwidth,
                                          WHEEL_SIZE, XmNheight, WHEEL_SIZE, XmNresizePolicy,
                                          XmRESIZE_NONE, nullptr);
    XtAddCallback(area, XmNinputCallback, hue_sat_input_cb, nullptr);
    XtAddCallback(area, XmNexposeCallback, hue_sat_expose_cb, nullptr);
    XtAddCallback(area, XmNresizeCallback, hue_sat_resize_cb, nullptr);
    XtAddEventHandler(area, Button1MotionMask, False, hue_sat_motion_eh, nullptr);
    state->hueSat = area;
    state->valueScale = scale;
    return form;
}

void hsv_set(Pixel pixel)
{
    HsvState* s = state;
    if (!s)
        return;
    XColor c{};
    c.pixel = pixel;
    XQueryColor(s->display, s->colormap, &c);
    s->red = c.red / 257;
    s->green = c.green / 257;
    s->blue = c.blue / 257;
    Hsv hsv = rgb_to_hsv({s->red, s->green, s->blue});
    s->hue = hsv.hue;
    s->saturation = hsv.saturation;
    s->value = hsv.value;
    XmScaleSetValue(s->valueScale, s->value);
    int width = 0, height = 0;
    area_size(s, &width, &height);
    Point marker = wheel_marker(s->hue, s->saturation, width);
    store_wheel_colours(s);
    draw_wheel(s, nullptr);
    draw_marker(s, marker.x, marker.y);
}

void hsv_show(Pixel pixel)
{
    HsvState* s = state;
    if (!s)
        return;
    if (!s->haveCells) {
        unsigned long planes[1];
        if (!XAllocColorCells(s->display, s->colormap, False, planes, 0, s->hueSatCells, 36)) {
            std::printf("couldn't allocate colors");
            std::fflush(stdout);
            return;
        }
        s->haveCells = True;
    }
    s->editedPixel = pixel;
    s->live = True;
    hsv_set(pixel);
    XtManageChild(XtParent(s->valueScale));
}

void hsv_release_cell()
{
    if (state)
        state->live = False;
}
