// The window icon: resources/icons/pictrel.xpm, compiled in, drawn with the
// colours of the program's scheme (its symbolic colours) and made once.
#include "app/window_icon.h"

#include <X11/xpm.h>
#include <Xm/Xm.h>

#include "icons/pictrel.xpm"

namespace {

Pixmap iconPixmap = None;
Pixmap iconMask = None;
bool iconTried = false;   // a failed icon is not retried for every window

void make_icon(Widget w)
{
    Display* dpy = XtDisplay(w);
    Screen* screen = XtScreen(w);
    Pixel fg = BlackPixelOfScreen(screen), bg = WhitePixelOfScreen(screen), top = bg, bottom = fg;
    XtVaGetValues(w, XmNforeground, &fg, XmNbackground, &bg, XmNtopShadowColor, &top, XmNbottomShadowColor,
                  &bottom, nullptr);
    XpmColorSymbol symbols[] = {
        {const_cast<char*>("black"), nullptr, BlackPixelOfScreen(screen)},
        {const_cast<char*>("white"), nullptr, WhitePixelOfScreen(screen)},
        {const_cast<char*>("background"), nullptr, bg},
        {const_cast<char*>("foreground"), nullptr, fg},
        {const_cast<char*>("topShadow"), nullptr, top},
        {const_cast<char*>("bottomShadow"), nullptr, bottom},
    };
    XpmAttributes attrs{};
    attrs.visual = DefaultVisualOfScreen(screen);
    attrs.colormap = DefaultColormapOfScreen(screen);
    attrs.depth = static_cast<unsigned>(DefaultDepthOfScreen(screen));
    attrs.colorsymbols = symbols;
    attrs.numsymbols = XtNumber(symbols);
    attrs.valuemask = XpmVisual | XpmColormap | XpmDepth | XpmColorSymbols;
    if (XpmCreatePixmapFromData(dpy, RootWindowOfScreen(screen), const_cast<char**>(pictrel_icon), &iconPixmap,
                                &iconMask, &attrs) != XpmSuccess)
        iconPixmap = iconMask = None;
    XpmFreeAttributes(&attrs);
}

}  // namespace

void set_window_icon(Widget shell, Widget colours)
{
    if (!iconTried) {
        iconTried = true;
        make_icon(colours);
    }
    if (iconPixmap)
        XtVaSetValues(shell, XmNiconPixmap, iconPixmap, XmNiconMask, iconMask, nullptr);
}
