// Resource converters that turn picture file names (and XPM data compiled
// into the program) into pixmaps, bitmaps and icon records, with a built-in
// frowning face for pictures that cannot be found.
#include "colour/converters.h"

#include <X11/xpm.h>
#include <Xm/Xm.h>
#include <cstring>

#include "colour/color_list.h"
#include "colour/pixmap_name.h"
#include "core/app_state.h"
#include "core/install_paths.h"

// Motif's converter registration entry points; libXm exports them but its
// public headers do not declare them.
extern "C" void XmRegisterConverters(void);
extern "C" void _XmRegisterPixmapConverters(void);

namespace {

char* searchPath = nullptr;   // the remembered pixmapPath

// The picture shown for a name that cannot be found.
const char* const frowningFace[] = {
    "16 16 3 1",
    "   m white  c None",
    ".  m black  c black s black",
    "X  m white  c white s white",
    "                ",
    "      ....      ",
    "    ..XXXX..    ",
    "   .XXXXXXXX.   ",
    "  .XXXXXXXXXX.  ",
    " .XXX.XXXX.XXX. ",
    " .XXXXXXXXXXXX. ",
    " .XXXXXXXXXXXX. ",
    " .XXXX....XXXX. ",
    " .XXX.XXXX.XXX. ",
    " .XX.XXXXXX.XX. ",
    "  .XXXXXXXXXX.  ",
    "   .XXXXXXXX.   ",
    "    ..XXXX..    ",
    "      ....      ",
    "                ",
};

Icon builtinIcon{};   // made once, on first need

XtConvertArgRec widgetArg[] = {
    {XtWidgetBaseOffset, (XtPointer)0, sizeof(Widget)},
};

Widget widget_arg(XrmValuePtr args, Cardinal* numArgs)
{
    if (!args || !numArgs || *numArgs != 1 || !args[0].addr)
        return nullptr;
    return *reinterpret_cast<Widget*>(args[0].addr);
}

Drawable drawable_of(Widget w)
{
    if (w && XtIsWidget(w) && XtIsRealized(w))
        return XtWindow(w);
    return w ? RootWindowOfScreen(XtScreen(w)) : app().root;
}

// Stores a converter's result the way Xt expects: into the caller's
// buffer when it gives one (failing when it is too small), else into
// static storage that Xt copies at once.
template <typename T>
Boolean done(XrmValuePtr to, T value)
{
    if (to->addr) {
        if (to->size < sizeof(T)) {
            to->size = sizeof(T);
            return False;
        }
        *reinterpret_cast<T*>(to->addr) = value;
    } else {
        static T store;
        store = value;
        to->addr = reinterpret_cast<XPointer>(&store);
    }
    to->size = sizeof(T);
    return True;
}

// The value of a String resource as a C string, or null.
const char* string_of(XrmValuePtr from)
{
    return (from && from->addr) ? reinterpret_cast<const char*>(from->addr) : nullptr;
}

// Cuts the value at its first blank and looks it up along the remembered
// path, then in the program's own picture directory.
// Returns an XtMalloc'd path, or null.
char* resolve_picture(Display* dpy, const char* value)
{
    if (!value)
        return nullptr;
    char* name = XtNewString(value);
    cut_at_blank(name);
    char* found = nullptr;
    if (!is_unspecified_name(name)) {
        // A null path would make Xt use XFILESEARCHPATH, which is for
        // resource files, not pictures.
        found = XtResolvePathname(dpy, "pixmaps", name, nullptr, searchPath ? searchPath : "%N%S",
                                  nullptr, 0, nullptr);
        if (!found) {
            // The installation's own pictures (the source tree's in a build tree).
            static const std::string own = own_picture_dir();
            const char* const dirs[] = {own.c_str()};
            std::string fallback = directory_search_path(dirs, 1);
            if (!fallback.empty())
                found = XtResolvePathname(dpy, "pixmaps", name, nullptr, fallback.c_str(), nullptr, 0,
                                          nullptr);
        }
    }
    XtFree(name);
    return found;
}

// What libXpm needs to read one of our pictures: the screen's visual,
// colormap and depth, the symbolic colours (with `transparent` for the
// transparent ones when given), and on a second try the monochrome key, for
// when the colour cells cannot be had.
XpmAttributes icon_attributes(Widget w, Screen* screen, const Pixel* transparent, bool mono)
{
    XpmAttributes attrs{};
    int count = 0;
    attrs.colorsymbols = symbolic_colors(w ? w : app().topLevel, transparent, &count);
    attrs.numsymbols = attrs.colorsymbols ? static_cast<unsigned>(count) : 0;
    attrs.visual = DefaultVisualOfScreen(screen);
    attrs.colormap = DefaultColormapOfScreen(screen);
    attrs.depth = DefaultDepthOfScreen(screen);
    attrs.valuemask = XpmColorSymbols | XpmReturnPixels | XpmVisual | XpmColormap | XpmDepth;
    if (mono) {
        attrs.color_key = XPM_MONO;
        attrs.valuemask |= XpmColorKey;
    }
    return attrs;
}

// Reads an XPM file with the symbolic colours, retrying with the
// monochrome key when the colour one cannot be had. On success fills the
// icon's pixmap, mask, size and (copied) pixels.
bool read_xpm_icon(Widget w, const char* path, const Pixel* transparent, Icon* icon)
{
    Display* dpy = w ? XtDisplay(w) : app().display;
    Screen* screen = w ? XtScreen(w) : ScreenOfDisplay(dpy, app().screen);
    for (int attempt = 0; attempt < 2; attempt++) {
        XpmAttributes attrs = icon_attributes(w, screen, transparent, attempt == 1);
        Pixmap pixmap = None, mask = None;
        int status = XpmReadFileToPixmap(dpy, RootWindowOfScreen(screen), const_cast<char*>(path), &pixmap,
                                         &mask, &attrs);
        if (status == XpmSuccess || (status > 0 && pixmap)) {
            icon->display = dpy;
            icon->colormap = attrs.colormap;
            icon->pixmap = pixmap;
            icon->mask = mask;
            icon->width = attrs.width;
            icon->height = attrs.height;
            icon->npixels = static_cast<int>(attrs.npixels);
            icon->pixels = nullptr;
            if (attrs.npixels > 0 && attrs.pixels) {
                icon->pixels = reinterpret_cast<Pixel*>(XtMalloc(sizeof(Pixel) * attrs.npixels));
                memcpy(icon->pixels, attrs.pixels, sizeof(Pixel) * attrs.npixels);
            }
            XpmFreeAttributes(&attrs);
            return true;
        }
        XpmFreeAttributes(&attrs);
    }
    return false;
}

const Icon* builtin_icon(Widget w)
{
    if (builtinIcon.pixmap)
        return &builtinIcon;
    Display* dpy = w ? XtDisplay(w) : app().display;
    if (!dpy)
        return nullptr;
    Screen* screen = w ? XtScreen(w) : ScreenOfDisplay(dpy, app().screen);
    XpmAttributes attrs{};
    int count = 0;
    attrs.colorsymbols = symbolic_colors(w ? w : app().topLevel, nullptr, &count);
    attrs.numsymbols = attrs.colorsymbols ? static_cast<unsigned>(count) : 0;
    attrs.visual = DefaultVisualOfScreen(screen);
    attrs.colormap = DefaultColormapOfScreen(screen);
    attrs.depth = DefaultDepthOfScreen(screen);
    attrs.valuemask = XpmColorSymbols | XpmVisual | XpmColormap | XpmDepth;
    Pixmap pixmap = None, mask = None;
    if (XpmCreatePixmapFromData(dpy, RootWindowOfScreen(screen), const_cast<char**>(frowningFace), &pixmap,
                                &mask, &attrs) < 0 || !pixmap) {
        XpmFreeAttributes(&attrs);
        return nullptr;
    }
    builtinIcon = Icon{dpy, attrs.colormap, pixmap, mask, nullptr, 0, attrs.width, attrs.height};
    XpmFreeAttributes(&attrs);
    return &builtinIcon;
}

Boolean string_to_motif_pixmap(Display* dpy, XrmValuePtr args, Cardinal* numArgs, XrmValuePtr from,
                               XrmValuePtr to, XtPointer*) noexcept
{
    Widget w = widget_arg(args, numArgs);
    const char* value = string_of(from);
    Pixmap result = XmUNSPECIFIED_PIXMAP;
    if (char* path = resolve_picture(dpy, value)) {
        Pixel fg = BlackPixel(dpy, DefaultScreen(dpy)), bg = WhitePixel(dpy, DefaultScreen(dpy));
        if (w)
            XtVaGetValues(w, XmNforeground, &fg, XmNbackground, &bg, nullptr);
        Screen* screen = w ? XtScreen(w) : DefaultScreenOfDisplay(dpy);
        result = XmGetPixmap(screen, path, fg, bg);
        if (result == XmUNSPECIFIED_PIXMAP) {
            Icon icon{};
            if (read_xpm_icon(w, path, nullptr, &icon)) {
                result = icon.pixmap;
                XtFree(reinterpret_cast<char*>(icon.pixels));
            }
        }
        XtFree(path);
    }
    if (result == XmUNSPECIFIED_PIXMAP || result == None) {
        XtStringConversionWarning(value ? value : "", XtRPixmap);
        const Icon* face = builtin_icon(w);
        result = face ? face->pixmap : XmUNSPECIFIED_PIXMAP;
    }
    return done(to, result);
}

Boolean string_to_bitmap(Display* dpy, XrmValuePtr args, Cardinal* numArgs, XrmValuePtr from,
                         XrmValuePtr to, XtPointer*) noexcept
{
    Widget w = widget_arg(args, numArgs);
    const char* value = string_of(from);
    Pixmap result = None;
    char* path = resolve_picture(dpy, value);
    if (path) {
        unsigned width = 0, height = 0;
        int hx = 0, hy = 0;
        Drawable where = w ? drawable_of(w) : DefaultRootWindow(dpy);
        if (XReadBitmapFile(dpy, where, path, &width, &height, &result, &hx, &hy) != BitmapSuccess) {
            result = None;
            XtStringConversionWarning(value, XtRBitmap);
        }
        XtFree(path);
    } else {
        XtStringConversionWarning(value ? value : "", XtRPixmap);
    }
    return done(to, result);
}

Boolean string_to_icon(Display* dpy, XrmValuePtr args, Cardinal* numArgs, XrmValuePtr from,
                       XrmValuePtr to, XtPointer*) noexcept
{
    Widget w = widget_arg(args, numArgs);
    const char* value = string_of(from);
    Icon* result = nullptr;
    if (char* path = resolve_picture(dpy, value)) {
        Icon icon{};
        if (read_xpm_icon(w, path, nullptr, &icon)) {
            result = reinterpret_cast<Icon*>(XtMalloc(sizeof(Icon)));
            *result = icon;
        }
        XtFree(path);
    }
    if (!result) {
        XtStringConversionWarning(value ? value : "", "Icon");
        // The built-in record is shared: free_icon never frees it.
        result = const_cast<Icon*>(builtin_icon(w));
    }
    return done(to, result);
}

Boolean bits_to_pixmap(Display* dpy, XrmValuePtr args, Cardinal* numArgs, XrmValuePtr from,
                       XrmValuePtr to, XtPointer*) noexcept
{
    Widget w = widget_arg(args, numArgs);
    char** data = (from && from->addr) ? reinterpret_cast<char**>(from->addr) : nullptr;
    Pixmap result = XmUNSPECIFIED_PIXMAP;
    Screen* screen = w ? XtScreen(w) : DefaultScreenOfDisplay(dpy);
    for (int attempt = 0; data && attempt < 2 && result == XmUNSPECIFIED_PIXMAP; attempt++) {
        XpmAttributes attrs = icon_attributes(w, screen, nullptr, attempt == 1);
        Pixmap pixmap = None, mask = None;
        if (XpmCreatePixmapFromData(dpy, RootWindowOfScreen(screen), data, &pixmap, &mask, &attrs) >= 0 &&
            pixmap) {
            result = pixmap;
            if (mask)
                XFreePixmap(dpy, mask);
        }
        XpmFreeAttributes(&attrs);
    }
    if (result == XmUNSPECIFIED_PIXMAP)
        XtStringConversionWarning("Bits", XtRPixmap);
    return done(to, result);
}

GC icon_gc(Display* dpy, Drawable d)
{
    static GC gc = nullptr;
    if (!gc)
        gc = XCreateGC(dpy, d, 0, nullptr);
    return gc;
}

}  // namespace

void install_converters(const char* pixmapPath)
{
    XmRegisterConverters();
    _XmRegisterPixmapConverters();
    XtFree(searchPath);
    searchPath = pixmapPath ? XtNewString(pixmapPath) : nullptr;
    // Registered after Motif's own so that ours win for these types.
    XtSetTypeConverter(XtRString, XmRPrimForegroundPixmap, string_to_motif_pixmap, widgetArg, 1, XtCacheAll,
                       nullptr);
    XtSetTypeConverter(XtRString, XmRDynamicPixmap, string_to_motif_pixmap, widgetArg, 1, XtCacheAll, nullptr);
    XtSetTypeConverter(XtRString, XtRBitmap, string_to_bitmap, widgetArg, 1, XtCacheAll, nullptr);
    XtSetTypeConverter(XtRString, "Icon", string_to_icon, widgetArg, 1, XtCacheAll, nullptr);
    XtSetTypeConverter("Bits", XtRPixmap, bits_to_pixmap, widgetArg, 1, XtCacheAll, nullptr);
}

Pixmap builtin_icon_pixmap(Widget w)
{
    const Icon* icon = builtin_icon(w);
    return icon ? icon->pixmap : None;
}

Icon* make_icon_from_file(Widget w, const char* file, Pixel foreground, Pixel background)
{
    if (!w || !file)
        return nullptr;
    Display* dpy = XtDisplay(w);
    char* resolved = resolve_picture(dpy, file);
    const char* path = resolved ? resolved : file;
    Icon* icon = reinterpret_cast<Icon*>(XtCalloc(1, sizeof(Icon)));
    icon->display = dpy;
    icon->colormap = DefaultColormapOfScreen(XtScreen(w));

    Window root = RootWindowOfScreen(XtScreen(w));
    unsigned width = 0, height = 0;
    int hx = 0, hy = 0;
    Pixmap bits = None;
    bool ok = false;
    if (XReadBitmapFile(dpy, root, path, &width, &height, &bits, &hx, &hy) == BitmapSuccess) {
        int depth = 0;
        XtVaGetValues(w, XtNdepth, &depth, nullptr);
        if (depth <= 0)
            depth = DefaultDepthOfScreen(XtScreen(w));
        icon->pixmap = XCreatePixmap(dpy, root, width, height, static_cast<unsigned>(depth));
        GC gc = icon_gc(dpy, icon->pixmap);
        XSetForeground(dpy, gc, foreground);
        XSetBackground(dpy, gc, background);
        XCopyPlane(dpy, bits, icon->pixmap, gc, 0, 0, width, height, 0, 0, 1);
        XFreePixmap(dpy, bits);
        icon->width = width;
        icon->height = height;
        ok = true;
    } else {
        ok = read_xpm_icon(w, path, &background, icon);
    }
    XtFree(resolved);
    if (!ok) {
        XtFree(reinterpret_cast<char*>(icon));
        return nullptr;
    }
    return icon;
}

void free_icon(Icon* icon)
{
    if (!icon || icon == &builtinIcon)
        return;
    Display* dpy = icon->display;
    if (dpy) {
        if (icon->pixmap)
            XFreePixmap(dpy, icon->pixmap);
        if (icon->mask)
            XFreePixmap(dpy, icon->mask);
        // Pixels that are symbolic colours belong to the desktop scheme.
        int count = 0;
        const XpmColorSymbol* symbols = app().topLevel ? symbolic_colors(app().topLevel, nullptr, &count) : nullptr;
        for (int i = 0; i < icon->npixels && icon->pixels; i++) {
            bool scheme = false;
            for (int s = 0; symbols && s < count && !scheme; s++)
                scheme = symbols[s].pixel == icon->pixels[i];
            if (!scheme)
                XFreeColors(dpy, icon->colormap, &icon->pixels[i], 1, 0);
        }
    }
    XtFree(reinterpret_cast<char*>(icon->pixels));
    XtFree(reinterpret_cast<char*>(icon));
}
