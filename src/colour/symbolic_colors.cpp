// The XPM colour symbols that the program's own pictures are read with, so
// an icon can name colours of the desktop scheme ("orvBackground",
// "topShadow", ...) instead of fixed ones. Filled once, from the first
// widget that asks.
#include <Xm/Xm.h>

#include <cstring>

#include "colour/color_list.h"
#include "core/app_state.h"

namespace {

constexpr Pixel UNFILLED = 9999;
constexpr int SYMBOL_COUNT = 18;

char* str(const char* s) { return const_cast<char*>(s); }

}  // namespace

XpmColorSymbol symbolicColors[SYMBOL_COUNT] = {
    {str("orvBackground"), nullptr, UNFILLED},
    {str("orvForeground"), nullptr, 0},
    {str("orvTopShadow"), nullptr, 0},
    {str("orvActiveBackground"), nullptr, 0},
    {str("orvActiveForeground"), nullptr, 0},
    {str("orvActiveTopShadow"), nullptr, 0},
    {str("orvAltBackground"), nullptr, 0},
    {str("orvHighlight"), nullptr, 0},
    {str("background"), nullptr, 0},
    {str("foreground"), nullptr, 0},
    {str("transparent"), nullptr, 0},
    {str("topShadow"), nullptr, 0},
    {str("bottomShadow"), nullptr, 0},
    {str("urgent"), nullptr, 0},
    {str("white"), nullptr, 0},
    {str("black"), nullptr, 0},
    {nullptr, str("none"), 0},
    {nullptr, str("#Transparent"), 0},
};

namespace {

// Converts a colour name through the toolkit. Names the colour database
// does not know are skipped quietly: the scheme names are optional, and the
// toolkit's warning for each of them at every start would only alarm.
bool convert_colour(Widget w, const char* name, Pixel* out)
{
    XColor exact, screen;
    Display* dpy = XtDisplay(w);
    if (!XLookupColor(dpy, DefaultColormapOfScreen(XtScreen(w)), name, &exact, &screen))
        return false;
    XrmValue from{unsigned(strlen(name) + 1), const_cast<char*>(name)};
    Pixel pixel = 0;
    XrmValue to{sizeof(Pixel), reinterpret_cast<XPointer>(&pixel)};
    if (!XtConvertAndStore(w, XtRString, &from, XtRPixel, &to))
        return false;
    *out = pixel;
    return true;
}

void fill_symbols(Widget w)
{
    Pixel background = 0, foreground = 0, top = 0, bottom = 0;
    XtVaGetValues(w, XmNbackground, &background, XmNforeground, &foreground,
                  XmNtopShadowColor, &top, XmNbottomShadowColor, &bottom, nullptr);
    symbolicColors[8].pixel = background;
    symbolicColors[9].pixel = foreground;
    symbolicColors[10].pixel = background;
    symbolicColors[11].pixel = top;
    symbolicColors[12].pixel = bottom;
    symbolicColors[16].pixel = background;
    symbolicColors[17].pixel = background;
    // "urgent" is the scheme's highlight; without one, the foreground
    // stands out from the background just as well.
    if (!convert_colour(w, "orvHighlight", &symbolicColors[13].pixel))
        symbolicColors[13].pixel = foreground;
    symbolicColors[14].pixel = WhitePixelOfScreen(XtScreen(w));
    symbolicColors[15].pixel = BlackPixelOfScreen(XtScreen(w));

    // Without a desktop scheme in the colour database each scheme name
    // takes the widget's colour of the same role. This also ends the
    // unfilled state of entry 0, so the table is filled only once.
    const Pixel roles[8] = {background, foreground, top, background,
                            foreground, top,        background, symbolicColors[13].pixel};
    for (int i = 0; i < 8; i++)
        if (!convert_colour(w, symbolicColors[i].name, &symbolicColors[i].pixel))
            symbolicColors[i].pixel = roles[i];
}

}  // namespace

XpmColorSymbol* symbolic_colors(Widget w, const Pixel* transparent, int* count)
{
    if (count)
        *count = SYMBOL_COUNT;
    if (symbolicColors[0].pixel == UNFILLED && w)
        fill_symbols(w);
    if (transparent) {
        symbolicColors[8].pixel = *transparent;
        symbolicColors[10].pixel = *transparent;
        symbolicColors[16].pixel = *transparent;
        symbolicColors[17].pixel = *transparent;
    }
    return symbolicColors;
}
