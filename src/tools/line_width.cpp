// The line-width palette: five widths shown as pictures made here, a plain
// bar and, for the chosen width, the bar with a small triangle beside it.
#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <list>
#include <string>
#include <vector>

#include "canvas/input.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/cached_bits.h"
#include "tools/geometry.h"
#include "tools/palette_tips.h"
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

// The picture of a width as bits (1 the bar's colour, 0 the background),
// rows of whole bytes, least significant bit leftmost: exactly what a wide
// horizontal line from (6, mid) to the right edge and, when marked, a
// filled triangle beside it give on the server. A pixel is inside a shape
// when its centre is, a centre on a top or left edge counting as inside
// and one on a bottom or right edge not.
std::vector<unsigned char> width_picture_bits(unsigned width, bool marked)
{
    WidthPicture g = width_picture(width);
    int rowBytes = (g.width + 7) / 8;
    std::vector<unsigned char> bits(static_cast<size_t>(rowBytes * g.height));
    int w = static_cast<int>(std::min(width, 64u));
    for (int y = 0; y < g.height; y++)
        for (int x = 0; x < g.width; x++) {
            bool bar = x >= 6 && 2 * y >= 2 * g.mid - w && 2 * y < 2 * g.mid + w;
            int fromTip = y - g.triangleY;
            bool triangle = marked && y >= g.triangleY - 3 && y < g.triangleY + 3 && x >= 1 &&
                            x < 4 - (fromTip < 0 ? -fromTip : fromTip);
            if (bar || triangle)
                bits[static_cast<size_t>(y * rowBytes + x / 8)] |= static_cast<unsigned char>(1 << (x % 8));
        }
    return bits;
}

// The picture from Motif's pixmap cache, which knows its size (a toggle
// given a pixmap of its own would ask the server) and shares it between
// the drawings of one palette colouring.
Pixmap width_pixmap(unsigned width, bool marked, Pixel fg, Pixel bg)
{
    Display* dpy = app().display;
    char name[48];
    std::snprintf(name, sizeof name, "pictrel line width %u%s", width, marked ? " marked" : "");
    // The cache keeps the image, and the image points into these bits, for
    // the life of the program: a list, so that the bits never move.
    static std::vector<std::string> installed;
    static std::list<std::vector<unsigned char>> keptBits;
    if (std::find(installed.begin(), installed.end(), name) == installed.end()) {
        WidthPicture g = width_picture(width);
        std::vector<unsigned char>& data = keptBits.emplace_back(width_picture_bits(width, marked));
        if (!install_cached_bits(name, data.data(), g.width, g.height)) {
            keptBits.pop_back();
            return None;
        }
        installed.push_back(name);
    }
    Pixmap p = XmGetPixmapByDepth(ScreenOfDisplay(dpy, app().screen), name, fg, bg, DefaultDepth(dpy, app().screen));
    return p == XmUNSPECIFIED_PIXMAP ? None : p;
}

Widget make_width_toggle(Widget box, unsigned width)
{
    Pixel fg = app().blackPixel, bg = app().whitePixel;
    XtVaGetValues(box, XmNforeground, &fg, XmNbackground, &bg, nullptr);
    Pixmap pictures[2] = {width_pixmap(width, false, fg, bg), width_pixmap(width, true, fg, bg)};
    Arg args[5];
    Cardinal n = 0;
    XtSetArg(args[n], XmNlabelType, XmPIXMAP), n++;
    XtSetArg(args[n], XmNlabelPixmap, pictures[0]), n++;
    XtSetArg(args[n], XmNselectPixmap, pictures[1]), n++;
    XtSetArg(args[n], XmNindicatorOn, False), n++;
    no_tip_yet(&args[n]), n++;
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
    tips_on_first_entry(box);
    XmToggleButtonSetState(first, True, False);
    if (!d)
        d = find_drawing_of_widget(form);
    if (d) {
        d->lineWidthBox = box;
        d->lineWidth = lineWidths[0];
    }
    return box;
}
