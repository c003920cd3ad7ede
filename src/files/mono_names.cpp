// Deriving and writing the monochrome names of XPM colours.
#include "files/mono_names.h"

#include <cstring>

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
    const char* held = nullptr;
    for (size_t i = 0; i < n; i++) {
        name = mono_name_of(mono[i], name);
        if (i == 0)
            held = name;
        else
            out.names[i - 1] = name;
        const char* c = i < colour.size() ? colour[i] : nullptr;
        if (c && std::strstr(c, "None"))
            out.hasTransparent = true;
    }

    if (!out.hasTransparent) {
        for (size_t i = n - 1; i >= 1; i--)
            out.names[i] = out.names[i - 1];
        out.names[0] = held;
        out.colourCount = static_cast<unsigned>(n);
    } else {
        // The transparent colour has no pixel in libXpm's list, so the
        // names stay aligned with the pixels that follow it.
        out.colourCount = static_cast<unsigned>(n - 1);
    }
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
