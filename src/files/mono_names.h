// The black-and-white names of an XPM colour table, as read from and written
// to the file's monochrome ("m") keys. Pure logic.
#pragma once

#include <vector>

// The name one monochrome string gives: absent "w", containing "None"
// "None", "black" "b", "white" "w"; anything else keeps `previous`.
const char* mono_name_of(const char* monoString, const char* previous);

// Whether a colour string makes its colour the transparent one (libXpm's
// pixel list leaves such colours out).
bool transparent_colour(const char* c);

struct MonoNaming {
    std::vector<const char*> names;   // per colour record; null where none is stored
    unsigned colourCount = 0;         // records that count
    bool hasTransparent = false;
};

// Names for a colour table (monochrome and colour strings per colour, either
// may be null). Without a transparent colour record i gets colour i's name
// and every colour counts. With one, the names of the other colours close
// up over the transparent ones (which have no pixel in libXpm's list), so
// that each name sits beside its colour's pixel: a transparent colour first
// puts every name one record early; the records left at the end have none,
// and only the colours with a pixel count.
MonoNaming mono_names_of_table(const std::vector<const char*>& mono,
                               const std::vector<const char*>& colour);

// The monochrome key written for a colour: the anchor (which stands for the
// transparent colour) is always "None"; otherwise white is tested first.
const char* written_mono_name(bool anchor, bool mapsToWhite, bool mapsToBlack);
