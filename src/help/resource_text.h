// How the widget-tree browser writes a resource's value: from the name of
// the resource's type and the raw bytes XtGetValues left in a buffer of the
// resource's size. Nothing here asks the server; what needs it (a pixel's
// colour, a window's widget) is done by the caller with rgb_text and
// value_kind.
#pragma once

#include <cstddef>
#include <string>

enum class ValueKind {
    String,     // a char pointer, may be null
    WideString, // a wchar_t pointer, may be null
    Signed,     // Int, Short, Position and their kin
    Unsigned,   // Dimension, Cardinal and their kin
    Boolean,    // Boolean (a char) or Bool (an int)
    Float,
    Pixel,      // a colour cell
    Widget,     // a widget pointer
    Window,     // a window id
    Callback,   // a callback list ended by a null entry
    XmString,   // a compound string, may be null
    Other,      // pixmaps, fonts, pointers, enumerations
};

ValueKind value_kind(const char* type);

// "#rrggbb" of a colour given as 16-bit channels, as an XColor holds them.
std::string rgb_text(unsigned short red, unsigned short green, unsigned short blue);

// A text shown between double quotes, its newlines, tabs, quotes and other
// unprintable bytes escaped, cut after `limit` bytes with "..."; "(null)"
// for a null pointer.
std::string quoted_text(const char* text, size_t limit = 160);
// The same for a wide string, in the locale's multibyte encoding.
std::string quoted_wide_text(const wchar_t* text, size_t limit = 160);

// The value held in `raw` (`size` bytes) as text: strings quoted, numbers
// in decimal, Booleans True or False, callback lists by their count of
// entries ("2 callbacks"), pointers and ids in hex ("0x1c00007", "None").
// Pixels, widgets, windows and compound strings come out as their raw
// number; the caller names them where it can.
std::string value_text(const char* type, const void* raw, size_t size);
