#include "core/window_place.h"

#include <Xm/Xm.h>

#include <vector>

#include "core/drawing.h"

bool shown_box(Widget shell, WindowBox* box)
{
    if (!shell || !XtIsRealized(shell))
        return false;
    Display* dpy = XtDisplay(shell);
    XWindowAttributes attr;
    if (!XGetWindowAttributes(dpy, XtWindow(shell), &attr) || attr.map_state != IsViewable)
        return false;
    // Under a window manager the shell's parent is its frame: ask the root.
    int x = 0, y = 0;
    Window child;
    XTranslateCoordinates(dpy, XtWindow(shell), RootWindowOfScreen(XtScreen(shell)), 0, 0, &x, &y, &child);
    *box = {x - attr.border_width, y - attr.border_width, attr.width + 2 * attr.border_width,
            attr.height + 2 * attr.border_width};
    return true;
}

void outer_size(Widget shell, int* width, int* height)
{
    Dimension w = 0, h = 0, border = 0;
    XtVaGetValues(shell, XmNwidth, &w, XmNheight, &h, XmNborderWidth, &border, nullptr);
    if (w <= 1 || h <= 1) {
        WidgetList kids = nullptr;
        Cardinal n = 0;
        XtVaGetValues(shell, XmNchildren, &kids, XmNnumChildren, &n, nullptr);
        for (Cardinal i = 0; i < n; i++)
            if (XtIsManaged(kids[i])) {
                Dimension kidBorder = 0;
                XtVaGetValues(kids[i], XmNwidth, &w, XmNheight, &h, XmNborderWidth, &kidBorder, nullptr);
                w = static_cast<Dimension>(w + 2 * kidBorder);
                h = static_cast<Dimension>(h + 2 * kidBorder);
                break;
            }
    }
    *width = w + 2 * border;
    *height = h + 2 * border;
}

void screen_size(Widget w, int* width, int* height)
{
    *width = WidthOfScreen(XtScreen(w));
    *height = HeightOfScreen(XtScreen(w));
}

void move_shell(Widget shell, Origin origin)
{
    XtVaSetValues(shell, XmNx, static_cast<Position>(origin.x), XmNy, static_cast<Position>(origin.y), nullptr);
}

void keep_shell_on_screen(Widget shell)
{
    if (!shell)
        return;
    Position x = 0, y = 0;
    XtVaGetValues(shell, XmNx, &x, XmNy, &y, nullptr);
    int w = 0, h = 0, sw = 0, sh = 0;
    outer_size(shell, &w, &h);
    screen_size(shell, &sw, &sh);
    Origin o = clamped_on_screen(x, y, w, h, sw, sh);
    if (o.x != x || o.y != y)
        move_shell(shell, o);
}

void place_beside_drawing(Widget shell, Drawing* d)
{
    WindowBox owner;
    if (!shell || !d || !shown_box(d->shell, &owner))
        return;
    std::vector<WindowBox> taken;
    for (Widget dialog : {d->smallViewDialog, d->bwDialog, d->colourList}) {
        WindowBox b;
        if (dialog && XtParent(dialog) != shell && shown_box(XtParent(dialog), &b))
            taken.push_back(b);
    }
    int w = 0, h = 0, sw = 0, sh = 0;
    outer_size(shell, &w, &h);
    screen_size(shell, &sw, &sh);
    move_shell(shell, beside_owner(owner, taken, w, h, sw, sh));
}

void beside_drawing_cb(Widget shell, XtPointer drawing, XtPointer) noexcept
{
    place_beside_drawing(shell, static_cast<Drawing*>(drawing));
}
