// The pointer readout's wording. It follows the size text beside it
// ("Width - %d, Height - %d") and writes colours the way XPM files do.
#include "app/pointer_text.h"

#include <cstdio>

namespace {

unsigned to_byte(unsigned short v)
{
    return (static_cast<unsigned>(v) * 255u + 32767u) / 65535u;
}

std::string position(int x, int y)
{
    char text[48];
    std::snprintf(text, sizeof text, "X - %d, Y - %d  ", x, y);
    return text;
}

}  // namespace

std::string rgb_hex(unsigned short red, unsigned short green, unsigned short blue)
{
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", to_byte(red), to_byte(green), to_byte(blue));
    return text;
}

std::string pointer_text(const PointerSample& s)
{
    std::string text = position(s.x, s.y);
    text += s.transparent ? std::string("None") : rgb_hex(s.red, s.green, s.blue);
    if (s.name && *s.name) {
        text += ' ';
        text += s.name;
    }
    return text;
}

std::string selection_text(int width, int height)
{
    char text[48];
    std::snprintf(text, sizeof text, "Selection - %d x %d", width, height);
    return text;
}
