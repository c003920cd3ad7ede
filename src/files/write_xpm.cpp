// Writing a colour drawing as an XPM file: the image's pixels through
// libXpm, the transparent pixel as the "None" colour, each colour's
// black-and-white meaning as its monochrome key, and what the file it was
// read from carried besides: symbolic names and extensions.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/xpm.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "colour/color_list.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/x_owned.h"
#include "files/image_io.h"
#include "files/mono_names.h"
#include "files/written_check.h"

namespace {

// The depth-1 shape: 1 where the image is not the transparent pixel.
ImagePtr make_shape(Display* dpy, XImage* picture, unsigned w, unsigned h, Pixel transparent)
{
    char* data = static_cast<char*>(std::calloc(static_cast<size_t>(w) * h, 1));
    if (!data)
        return nullptr;
    XImage* shape = XCreateImage(dpy, app().visual, 1, ZPixmap, 0, data, w, h, 8, 0);
    if (!shape) {
        std::free(data);
        return nullptr;
    }
    for (unsigned y = 0; y < h; y++)
        for (unsigned x = 0; x < w; x++) {
            unsigned long p = XGetPixel(picture, static_cast<int>(x), static_cast<int>(y));
            XPutPixel(shape, static_cast<int>(x), static_cast<int>(y), p != transparent ? 1 : 0);
        }
    return ImagePtr(shape);
}

// Gives the first colour of the table whose colour string is `key` the
// monochrome key `mono`.
void set_mono_key(XpmImage& xpm, const char* key, const char* mono)
{
    for (unsigned i = 0; i < xpm.ncolors; i++) {
        XpmColor& c = xpm.colorTable[i];
        if (c.c_color && !std::strcmp(c.c_color, key)) {
            XpmFree(c.m_color);
            c.m_color = strdup(mono);
            return;
        }
    }
}

void write_mono_keys(Display* dpy, XpmImage& xpm, const ColorList* list)
{
    if (!list || !list->anchor)
        return;
    App& a = app();
    unsigned long count = list->anchor->pixel;
    const ColorEntry* e = list->anchor;
    for (unsigned long i = 0; e && i <= count; i++, e = e->next) {
        bool anchor = i == 0;
        char key[32];
        if (anchor || e->pixel == list->transparentPixel) {
            std::snprintf(key, sizeof key, "None");
        } else {
            XColor c{};
            c.pixel = e->pixel;
            XQueryColor(dpy, a.colormap, &c);
            // The form libXpm's image conversion gives each colour.
            std::snprintf(key, sizeof key, "#%04X%04X%04X", c.red, c.green, c.blue);
        }
        const char* mono = written_mono_name(anchor, e->mapsTo == a.whitePixel,
                                             e->mapsTo == a.blackPixel);
        set_mono_key(xpm, key, mono);
    }
}

// Gives each colour of the table the symbolic name the drawing's file gave
// the cell it is in. A colour edited in place keeps its cell, and so its
// name; a colour added in the program has a cell of its own and no name.
void write_symbolic_names(XpmImage& xpm, XImage* picture, const DrawingXpmInfo* info, Pixel transparent)
{
    if (!info || (!info->symbolicNames && !info->transparentName))
        return;
    std::vector<bool> seen(xpm.ncolors, false);
    unsigned left = xpm.ncolors;
    for (unsigned y = 0; y < xpm.height && left > 0; y++)
        for (unsigned x = 0; x < xpm.width && left > 0; x++) {
            unsigned k = xpm.data[static_cast<size_t>(y) * xpm.width + x];
            if (k >= xpm.ncolors || seen[k])
                continue;
            seen[k] = true;
            left--;
            unsigned long p = XGetPixel(picture, static_cast<int>(x), static_cast<int>(y));
            if (const char* name = symbolic_name_of(info, p, transparent)) {
                XpmFree(xpm.colorTable[k].symbolic);
                xpm.colorTable[k].symbolic = strdup(name);
            }
        }
}

}  // namespace

int write_xpm_file(Drawing* d, const char* fileName)
{
    if (!d || !fileName || !d->image || d->width == 0 || d->height == 0)
        return XpmOpenFailed;
    App& a = app();
    Display* dpy = a.display;
    unsigned w = d->width, h = d->height;
    const ColorList* list = d->colourList ? color_list_of_dialog(d->colourList) : nullptr;
    Pixel transparent = list ? list->transparentPixel : res().background;

    // Read the image itself: the client-side copy is only kept current
    // while the drawing is magnified.
    ImagePtr picture(XGetImage(dpy, d->image, 0, 0, w, h, AllPlanes, ZPixmap));
    if (!picture)
        return XpmNoMemory;
    ImagePtr shape = make_shape(dpy, picture.get(), w, h, transparent);
    if (!shape)
        return XpmNoMemory;

    XpmImage xpm{};
    XpmAttributes attrs{};
    attrs.valuemask = XpmVisual | XpmColormap | XpmDepth;
    attrs.visual = a.visual;
    attrs.colormap = a.colormap;
    attrs.depth = static_cast<unsigned>(d->depth);
    int status = XpmCreateXpmImageFromImage(dpy, picture.get(), shape.get(), &xpm, &attrs);
    if (status != XpmSuccess)
        return status;
    for (unsigned i = 0; i < xpm.ncolors; i++)
        if (!xpm.colorTable[i].c_color)
            xpm.colorTable[i].c_color = strdup("None");

    write_mono_keys(dpy, xpm, list);
    write_symbolic_names(xpm, picture.get(), d->xpmAttributes, transparent);

    // The hotspot is written even when there is none: such a file carries
    // -1 -1 on its values line, which reads back as no hotspot. libXpm's
    // detour through data lines (XpmCreateDataFromXpmImage and
    // XpmWriteFileFromData) would drop a negative hotspot on re-parsing, so
    // the image goes to the file directly; the lines written are the same.
    XpmInfo info{};
    info.valuemask = XpmHotspot | XpmColorTable | XpmVisual | XpmColormap | XpmDepth | XpmExtensions;
    info.x_hotspot = static_cast<unsigned>(d->hotspotX);
    info.y_hotspot = static_cast<unsigned>(d->hotspotY);
    // The file's extensions go back as they came; libXpm writes none when
    // there are none.
    const DrawingXpmInfo* kept = d->xpmAttributes;
    info.extensions = kept ? kept->extensions : nullptr;
    info.nextensions = kept && kept->extensions ? kept->extensionCount : 0;
    status = XpmWriteFileFromXpmImage(const_cast<char*>(fileName), &xpm, &info);
    // A full disk still gives XpmSuccess: only the file read back tells.
    if (status == XpmSuccess)
        status = check_written_xpm(fileName, xpm, d->hotspotX, d->hotspotY, info.extensions,
                                   info.nextensions);
    XpmFreeXpmImage(&xpm);
    return status;
}
