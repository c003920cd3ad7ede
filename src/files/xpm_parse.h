// An XPM file's text turned into libXpm's XpmImage, read exactly as
// XpmReadFileToXpmImage reads it, for the form nearly every XPM file takes:
// version 3, one or two characters a pixel, a values line with or without a
// hotspot and no extensions, colour lines of printable text. libXpm takes a
// large picture one getc at a time, which costs more than the rest of
// opening it; here the pixels are looked up in a table over the text in
// memory. Anything else is declined and left to libXpm.
#pragma once

#include <X11/xpm.h>

#include <string_view>

struct XpmParsed {
    bool hotspot = false;   // the values line gave one
    unsigned hotX = 0;
    unsigned hotY = 0;
};

// True when `text` is of the form read here; `image` then holds what
// XpmReadFileToXpmImage would have returned for it, allocated as libXpm
// allocates it (XpmFreeXpmImage frees it), and `info` the hotspot. False
// leaves `image` empty: libXpm must read the file, successfully or not.
bool parse_xpm_text(std::string_view text, XpmImage* image, XpmParsed* info);
