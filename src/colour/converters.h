// Resource converters for pictures named in resources, and the icon records
// they make.
#pragma once

#include <X11/Intrinsic.h>

void install_converters(const char* pixmapPath);

// Cuts a resource value at its first blank or tab. Pure.
void cut_at_blank(char* name);

// The frowning face shown for a picture that cannot be found.
Pixmap builtin_icon_pixmap(Widget w);

struct Icon {
    Display* display;
    Colormap colormap;
    Pixmap pixmap;
    Pixmap mask;
    Pixel* pixels;
    int npixels;
    unsigned width, height;
};
Icon* make_icon_from_file(Widget w, const char* file, Pixel foreground, Pixel background);
void free_icon(Icon* icon);
