// Deriving and writing the monochrome names of XPM colours.
#include "files/mono_names.h"

#include <cstring>
#include <strings.h>

const char* mono_name_of(const char* monoString, const char* previous)
{
    if (!monoString)
        return "w";
    if (std::strstr(monoString, "None"))
        return "None";
    if (std::strstr(monoString, "black"))
        return "b";
    if (std::strstr(monoString, "white"))
        return "w";
    return previous;
}

// libXpm takes any case of "None" as the transparent colour; the table
// counts as having one when a colour string merely contains "None".
bool transparent_colour(const char* c)
{
    return c && (std::strstr(c, "None") || !strcasecmp(c, "None"));
}

MonoNaming mono_names_of_table(const std::vector<const char*>& mono,
                               const std::vector<const char*>& colour)
{
    MonoNaming out;
    size_t n = mono.size();
    out.names.assign(n, nullptr);
    if (n == 0)
        return out;

    // The first colour with a name we do not know has no previous name to
    // keep; it reads as absent.
    const char* name = "w";
    std::vector<const char*> all(n);
    std::vector<bool> clear(n, false);
    for (size_t i = 0; i < n; i++) {
        name = mono_name_of(mono[i], name);
        all[i] = name;
        clear[i] = transparent_colour(i < colour.size() ? colour[i] : nullptr);
        if (clear[i])
            out.hasTransparent = true;
    }

    if (!out.hasTransparent) {
        out.names = all;
        out.colourCount = static_cast<unsigned>(n);
        return out;
    }
    // libXpm's pixel list leaves the transparent colours out, wherever they
    // sit in the table, so the names close up over them to stay beside
    // their pixels. With the transparent colour first (as this program and
    // libXpm write it) that is every name one record early.
    size_t kept = 0;
    for (size_t i = 0; i < n; i++)
        if (!clear[i])
            out.names[kept++] = all[i];
    out.colourCount = static_cast<unsigned>(kept);
    return out;
}

const char* written_mono_name(bool anchor, bool mapsToWhite, bool mapsToBlack)
{
    if (anchor)
        return "None";
    if (mapsToWhite)
        return "white";
    if (mapsToBlack)
        return "black";
    return "None";
}
