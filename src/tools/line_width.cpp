// The line-width palette: five widths shown as pictures drawn here, a plain
// bar and, for the chosen width, the bar with a small triangle beside it.
#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>
#include <Xm/Xm.h>

#include <cstdint>

#include "canvas/input.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"
#include "tools/geometry.h"
#include "tools/palettes.h"

const unsigned lineWidths[5] = {1, 2, 4, 6, 9};

namespace {

void line_width_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept
{
    // Called for the toggle going off as well; the radio box unsets the old
    // one first, so the width that stays is the new one.
    if (Drawing* d = find_drawing_of_widget(w))
        d->lineWidth = static_cast<unsigned>(reinterpret_cast<uintptr_t>(clientData));
}

Widget make_width_toggle(Widget box, unsigned width)
{
    Display* dpy = app().display;
    Pixel fg = app().blackPixel, bg = app().whitePixel;
    XtVaGetValues(box, XmNforeground, &fg, XmNbackground, &bg, nullptr);
    XGCValues v;
    v.foreground = v.background = fg;
    ScratchGC fgScratch(dpy, XCreateGC(dpy, app().root, GCForeground | GCBackground, &v));
    v.foreground = v.background = bg;
    ScratchGC bgScratch(dpy, XCreateGC(dpy, app().root, GCForeground | GCBackground, &v));
    GC fgGC = fgScratch.get(), bgGC = bgScratch.get();

    WidthPicture g = width_picture(width);
    unsigned depth = static_cast<unsigned>(DefaultDepth(dpy, app().screen));
    unsigned pw = static_cast<unsigned>(g.width), ph = static_cast<unsigned>(g.height);
    Pixmap pictures[2];
    for (int marked = 0; marked < 2; marked++) {
        Pixmap p = XCreatePixmap(dpy, app().root, pw, ph, depth);
        XFillRectangle(dpy, p, bgGC, 0, 0, pw, ph);
        set_line_width(fgGC, width);
        XDrawLine(dpy, p, fgGC, 6, g.mid, g.width, g.mid);
        if (marked) {
            set_line_width(fgGC, 1);
            XPoint tri[3] = {{4, static_cast<short>(g.triangleY)},
                             {1, static_cast<short>(g.triangleY - 3)},
                             {1, static_cast<short>(g.triangleY + 3)}};
            XFillPolygon(dpy, p, fgGC, tri, 3, Convex, CoordModeOrigin);
        }
        pictures[marked] = p;
    }
    Arg args[4];
    Cardinal n = 0;
    XtSetArg(args[n], XmNlabelType, XmPIXMAP), n++;
    XtSetArg(args[n], XmNlabelPixmap, pictures[0]), n++;
    XtSetArg(args[n], XmNselectPixmap, pictures[1]), n++;
    XtSetArg(args[n], XmNindicatorOn, False), n++;
    Widget tb = XmCreateToggleButton(box, const_cast<char*>("lineWidth"), args, n);
    XtManageChild(tb);
    XtAddCallback(tb, XmNvalueChangedCallback, line_width_cb,
                  reinterpret_cast<XtPointer>(static_cast<uintptr_t>(width)));
    return tb;
}

}  // namespace

Widget create_line_width_box(Widget form, Drawing* d)
{
    if (!form)
        return nullptr;
    Widget box = XmCreateRadioBox(form, const_cast<char*>("lineWidthRC"), nullptr, 0);
    XtManageChild(box);
    Widget first = nullptr;
    for (unsigned w : lineWidths) {
        Widget tb = make_width_toggle(box, w);
        if (!first)
            first = tb;
    }
    XmToggleButtonSetState(first, True, False);
    if (!d)
        d = find_drawing_of_widget(form);
    if (d) {
        d->lineWidthBox = box;
        d->lineWidth = lineWidths[0];
    }
    return box;
}
