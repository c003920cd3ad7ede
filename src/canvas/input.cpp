// Pointer and key input on the canvas areas: presses and releases go to the
// current tool's input handler in image coordinates, with the GC of the
// pressed button chosen; motion is compressed to at most one call per image
// pixel; a Shift-press decides whether the drag is held horizontal or
// vertical.
#include "canvas/input.h"

#include <Xm/DrawingA.h>
#include <Xm/Xm.h>
#include <sys/select.h>

#include <climits>
#include <cstdio>

#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/geometry.h"
#include "tools/palettes.h"
#include "tools/tool_table.h"

namespace {

// Xlib matches a MotionNotify against ButtonMotionMask only through the
// per-button masks, so ask for all of them.
constexpr long MOTION_MASK = Button1MotionMask | Button2MotionMask | Button3MotionMask |
                             ButtonMotionMask;

bool any_button_down(Display* dpy, Window w)
{
    Window root, child;
    int rx, ry, wx, wy;
    unsigned mask = 0;
    if (!XQueryPointer(dpy, w, &root, &child, &rx, &ry, &wx, &wy, &mask))
        return false;
    return (mask & (Button1Mask | Button2Mask | Button3Mask)) != 0;
}

// Polls the display, outside the Xt loop, until the pointer has moved more
// than 5 window pixels from the press or the button is released. The
// deciding event is put back so the tool still sees it.
DragConstraint detect_constraint(Display* dpy, Window w, int x0, int y0)
{
    constexpr long mask = MOTION_MASK | ButtonReleaseMask;
    for (;;) {
        XEvent ev;
        bool got = XCheckMaskEvent(dpy, mask, &ev);
        if (!got && !any_button_down(dpy, w)) {
            // A release that never reaches us (or a synthetic press with no
            // button really held) must not leave us polling forever; what
            // was sent before the pointer query is queued after a sync.
            XSync(dpy, False);
            got = XCheckMaskEvent(dpy, mask, &ev);
            if (!got)
                return DragConstraint::Free;
        }
        if (!got) {
            int fd = ConnectionNumber(dpy);
            fd_set fds;
            FD_ZERO(&fds);
            FD_SET(fd, &fds);
            timeval tv{0, 20000};
            select(fd + 1, &fds, nullptr, nullptr, &tv);
            continue;
        }
        if (ev.type == ButtonRelease) {
            XPutBackEvent(dpy, &ev);
            return DragConstraint::Free;
        }
        if (ev.type != MotionNotify)
            continue;
        DragConstraint c = drag_constraint(x0, y0, ev.xmotion.x, ev.xmotion.y);
        if (c != DragConstraint::Free) {
            XPutBackEvent(dpy, &ev);
            return c;
        }
        // Small moves are consumed.
    }
}

bool on_image(const Drawing* d, int x, int y)
{
    return x >= 0 && y >= 0 && x < d->width && y < d->height;
}

// Makes a press undoable the way the tool's row says, before the tool sees
// it: the image is committed (copied to savedImage, the drawing marked
// modified) while it still holds the picture from before the press.
// Returns whether the press changes the drawing, so that its release
// offers undo. (x, y) are image pixels.
bool capture_undo(Drawing* d, const ToolRow& row, int x, int y)
{
    switch (row.capture) {
    case UndoCapture::ByTool:
        return false;
    case UndoCapture::Commit:
        commit(d);
        return true;
    case UndoCapture::CommitOnImage:
        // Beside the image there is no pixel to change.
        if (!on_image(d, x, y))
            return false;
        commit(d);
        return true;
    case UndoCapture::OnImage:
        return on_image(d, x, y);
    }
    return false;
}

void to_image_coordinates(Drawing* d, Widget w, int* x, int* y, int* xRoot, int* yRoot)
{
    if (w != d->zoomedArea || d->zoom <= 0)
        return;
    // Handlers that need the window position find it in the root fields.
    *xRoot = *x;
    *yRoot = *y;
    *x >>= d->zoom;   // arithmetic: positions left of the area stay negative
    *y >>= d->zoom;
}

}  // namespace

void take_every_button(Widget area)
{
    // Motif's drawing area binds Control + button 1 to keyboard traversal
    // alone (c<Btn1Down>: ManagerGadgetTraverseCurrent()), so that press
    // never reached the input callback and the tools never saw a
    // Control-click of button 1; every other button and modifier already
    // goes through DrawingAreaInput(). The traversal is kept so that the
    // press still takes the keyboard focus, as a plain press does.
    static XtTranslations controlButton1 = nullptr;
    if (!area)
        return;
    if (!controlButton1)
        controlButton1 = XtParseTranslationTable(
            "c<Btn1Down>: DrawingAreaInput() ManagerGadgetTraverseCurrent()");
    XtOverrideTranslations(area, controlButton1);
}

void set_line_width(GC gc, unsigned width)
{
    if (!gc)
        return;
    XGCValues v;
    v.line_width = static_cast<int>(width);
    XChangeGC(app().display, gc, GCLineWidth, &v);
}

GC choose_gc(Drawing* d, unsigned button)
{
    if (!d)
        return nullptr;
    Display* dpy = app().display;
    // A pattern always paints in the two current colours.
    if (GC pattern = pattern_gc(d->currentPattern, 0)) {
        XGCValues fg, bg;
        XGetGCValues(dpy, d->foregroundGC, GCForeground, &fg);
        XGetGCValues(dpy, d->backgroundGC, GCForeground, &bg);
        XSetForeground(dpy, pattern, fg.foreground);
        XSetBackground(dpy, pattern, bg.foreground);
    }
    GC gc = d->foregroundGC;
    if (button == Button3)
        gc = d->backgroundGC;
    else if (button == Button2)
        if (GC pattern = pattern_gc(d->currentPattern, d->depth))
            gc = pattern;
    if (gc)
        set_line_width(gc, d->lineWidth);
    d->chosenGC = gc;
    return gc;
}

void canvas_input_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept
{
    auto* d = static_cast<Drawing*>(clientData);
    auto* cbs = static_cast<XmDrawingAreaCallbackStruct*>(callData);
    if (!d || !cbs || !cbs->event)
        return;
    XEvent ev = *cbs->event;
    // Keys come through the key handler; wheel buttons are not strokes.
    if (ev.type != ButtonPress && ev.type != ButtonRelease)
        return;
    if (ev.xbutton.button < Button1 || ev.xbutton.button > Button3)
        return;
    if (ev.type == ButtonPress) {
        choose_gc(d, ev.xbutton.button);
        d->constraint = (ev.xbutton.state & ShiftMask)
                            ? detect_constraint(XtDisplay(w), XtWindow(w), ev.xbutton.x,
                                                ev.xbutton.y)
                            : DragConstraint::Free;
        // A new stroke: its first motion is never "the same pixel".
        d->lastMotionX = d->lastMotionY = INT_MIN;
    }
    const ToolRow* row = current_tool_row(d);
    if (!row || !row->input)
        return;
    to_image_coordinates(d, w, &ev.xbutton.x, &ev.xbutton.y, &ev.xbutton.x_root,
                         &ev.xbutton.y_root);
    if (ev.type == ButtonPress)
        d->pressOffersUndo = capture_undo(d, *row, ev.xbutton.x, ev.xbutton.y);
    row->input(w, d, &ev);
    if (ev.type == ButtonRelease && d->pressOffersUndo) {
        d->pressOffersUndo = false;
        set_undo_available(d, true);
    }
}

void canvas_motion_eh(Widget w, XtPointer clientData, XEvent* event, Boolean* cont) noexcept
{
    auto* d = static_cast<Drawing*>(clientData);
    if (!d || !event || event->type != MotionNotify)
        return;
    // The areas also follow the pointer with no button held (for the
    // status line's readout); that is no stroke.
    if (!(event->xmotion.state & (Button1Mask | Button2Mask | Button3Mask)))
        return;
    const ToolRow* row = current_tool_row(d);
    if (!row || !row->motion)
        return;
    // Only the latest of a burst of motions matters.
    XEvent ev = *event;
    XEvent next;
    while (XCheckWindowEvent(XtDisplay(w), event->xmotion.window, MOTION_MASK, &next))
        ev = next;
    to_image_coordinates(d, w, &ev.xmotion.x, &ev.xmotion.y, &ev.xmotion.x_root,
                         &ev.xmotion.y_root);
    if (ev.xmotion.x == d->lastMotionX && ev.xmotion.y == d->lastMotionY)
        return;
    d->lastMotionX = ev.xmotion.x;
    d->lastMotionY = ev.xmotion.y;
    row->motion(w, d, &ev);
}

void canvas_key_eh(Widget w, XtPointer clientData, XEvent* event, Boolean* cont) noexcept
{
    auto* d = static_cast<Drawing*>(clientData);
    if (!d || !event || event->type != KeyPress)
        return;
    if (res().debug)
        std::fputs("key hit\n", stdout);
    const ToolRow* row = current_tool_row(d);
    if (row && row->input)
        row->input(w, d, event);
}
