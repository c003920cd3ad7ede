// An XBM file's text turned into its bits, read exactly as Xlib's
// XReadBitmapFileData reads it (the same lines, the same numbers, the same
// refusals), but from memory: Xlib takes the bits one getc at a time,
// which for a large bitmap costs more than the rest of opening it.
#pragma once

#include <string_view>
#include <vector>

struct XbmBits {
    unsigned width = 0;
    unsigned height = 0;
    int hotX = -1;
    int hotY = -1;
    // (width + 7) / 8 bytes a row, least significant bit leftmost, as
    // XCreateBitmapFromData takes them (fewer only for a size so large
    // that Xlib's count of bytes overflows).
    std::vector<unsigned char> rows;
};

// True when Xlib would read `text` as an XBM; `out` then holds what it
// would return.
bool parse_xbm(std::string_view text, XbmBits* out);
