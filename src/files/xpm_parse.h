// An XPM file's text turned into libXpm's XpmImage, read exactly as
// XpmReadFileToXpmImage reads it, for the form nearly every XPM file takes:
// version 3, one or two characters a pixel, a values line with or without a
// hotspot and no extensions, colour lines of printable text. libXpm takes a
// large picture one getc at a time, which costs more than the rest of
// opening it; here the pixels are looked up in a table over the text in
// memory. Anything else is declined and left to libXpm.
#pragma once

#include <X11/xpm.h>

#include <cstddef>
#include <string_view>

struct XpmParsed {
    bool hotspot = false;   // the values line gave one
    unsigned hotX = 0;
    unsigned hotY = 0;
};

// Where the text comes from: up to `n` more bytes into `into`, 0 at the
// end (or on an error, which ends the text there).
struct XpmSource {
    size_t (*read)(void* data, char* into, size_t n);
    void* data;
};

// True when the text is of the form read here; `image` then holds what
// XpmReadFileToXpmImage would have returned for it, allocated as libXpm
// allocates it (XpmFreeXpmImage frees it), and `info` the hotspot. False
// leaves `image` empty: libXpm must read the file, successfully or not.
// Only a part of the text is held at a time, never the whole of a large one.
bool parse_xpm(const XpmSource& source, XpmImage* image, XpmParsed* info);

// The same over a text in memory, handed over `part` bytes at a time (all
// at once for 0).
bool parse_xpm_text(std::string_view text, XpmImage* image, XpmParsed* info, size_t part = 0);
