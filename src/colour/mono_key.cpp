// The black-and-white meaning of an XPM monochrome key. Only the first
// character counts, so "b", "black" and "bright" are all black; a colour
// without a key is black, which is how a bitmap shows unknown colours.
#include "colour/mono_key.h"

MonoKey classify_mono_key(const char* key)
{
    if (!key || key[0] == 'b')
        return MonoKey::Black;
    if (key[0] == 'w')
        return MonoKey::White;
    return MonoKey::Other;
}
