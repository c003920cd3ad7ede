// Pasted pixels come from cells of another drawing (or another program):
// left as they are, editing a colour there would change the paste here, and
// this drawing's list and saved file would not know the colour. So each
// foreign colour takes a cell of this drawing.
#include "colour/paste_colours.h"

#include <X11/StringDefs.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <unordered_map>

#include "colour/color_list.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"

namespace {

bool same_rgb(const XColor& a, const XColor& b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

bool is_other_transparent(Pixel v)
{
    const Registry& r = registry();
    for (Drawing* other : r.slots)
        if (other && drawing_is_open(other))
            if (ColorList* l = color_list_of(other))
                if (l->transparentPixel != 0 && l->transparentPixel == v)
                    return true;
    return false;
}

// The pixel of this drawing that stands for foreign pixel v.
Pixel cell_for(ColorList* list, Pixel v, int* added)
{
    Display* dpy = app().display;
    Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    for (ColorEntry* e = list->anchor->next; e; e = e->next)
        if (e->pixel == v)
            return v;
    if (list->transparentPixel != 0 && v == list->transparentPixel)
        return v;
    if (is_other_transparent(v) && list->transparentPixel != 0)
        return list->transparentPixel;
    // The list takes the widgets' own background as its transparent
    // colour; a paste of it (a picked window's face) stays a shared cell.
    Pixel face = 0;
    if (list->entryBox)
        XtVaGetValues(list->entryBox, XtNbackground, &face, nullptr);
    if (list->entryBox && v == face)
        return v;
    XColor want{};
    want.pixel = v;
    XQueryColor(dpy, cmap, &want);
    for (ColorEntry* e = list->anchor->next; e; e = e->next) {
        XColor have{};
        have.pixel = e->pixel;
        XQueryColor(dpy, cmap, &have);
        if (same_rgb(want, have))
            return e->pixel;
    }
    // Dark colours turn black in the black-and-white view, light ones white.
    unsigned long light = (30UL * want.red + 59UL * want.green + 11UL * want.blue) / 100;
    Pixel bw = light < 0x8000 ? app().blackPixel : app().whitePixel;
    ColorEntry* e = add_color(list, v, bw, 1);
    if (!e)
        return v;
    ++*added;
    return e->pixel;
}

}  // namespace

int remap_pasted_colours(Drawing* d, Pixmap pixmap, unsigned width, unsigned height)
{
    if (!d || d->depth == 1 || !pixmap || width == 0 || height == 0)
        return 0;
    ColorList* list = color_list_of(d);
    if (!list || !list->anchor)
        return 0;
    Display* dpy = app().display;
    ImagePtr img(
        XGetImage(dpy, pixmap, 0, 0, width, height, AllPlanes, ZPixmap));
    if (!img)
        return 0;
    std::unordered_map<Pixel, Pixel> map;
    int added = 0;
    bool changed = false;
    for (unsigned y = 0; y < height; y++)
        for (unsigned x = 0; x < width; x++) {
            Pixel v = XGetPixel(img.get(), static_cast<int>(x), static_cast<int>(y));
            auto it = map.find(v);
            if (it == map.end())
                it = map.emplace(v, cell_for(list, v, &added)).first;
            if (it->second != v) {
                XPutPixel(img.get(), static_cast<int>(x), static_cast<int>(y), it->second);
                changed = true;
            }
        }
    if (changed)
        XPutImage(dpy, pixmap, d->copyGC, img.get(), 0, 0, 0, 0, width, height);
    return added;
}
