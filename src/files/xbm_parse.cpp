// Xlib reads the header a line at a time with fgets into a 255-byte
// buffer and sscanf, and the bits after the line that opens them with a
// small hexadecimal scanner. The lines here go through the same buffer
// size and the same sscanf formats; only the scanner is rewritten, over
// the text in memory.
#include "files/xbm_parse.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t LINE_BUFFER = 255;

// One line as fgets(buffer, LINE_BUFFER) returns it: up to and with the
// newline, at most LINE_BUFFER - 1 bytes. False at the end of the text.
bool next_line(std::string_view text, size_t* at, char* line)
{
    if (*at >= text.size())
        return false;
    size_t n = 0;
    while (n < LINE_BUFFER - 1 && *at < text.size()) {
        char c = text[(*at)++];
        line[n++] = c;
        if (c == '\n')
            break;
    }
    line[n] = '\0';
    return true;
}

// What the scanner makes of each byte: a digit's value, a separator that
// ends a number (-1), or something passed over (-2).
struct HexTable {
    signed char of[256];
    constexpr HexTable() : of()
    {
        for (int i = 0; i < 256; i++)
            of[i] = -2;
        for (int i = 0; i < 10; i++)
            of['0' + i] = static_cast<signed char>(i);
        for (int i = 0; i < 6; i++) {
            of['a' + i] = static_cast<signed char>(10 + i);
            of['A' + i] = static_cast<signed char>(10 + i);
        }
        for (char c : {' ', ',', '}', '\n', '\t'})
            of[static_cast<unsigned char>(c)] = -1;
    }
};
constexpr HexTable hex;

// The next number: digits accumulate (overflowing as Xlib's int does) until
// a separator follows at least one of them; anything else is passed over,
// the "x" of "0x" included. -1 at the end of the text.
inline int next_int(std::string_view text, size_t* at)
{
    uint32_t value = 0;
    bool gotOne = false;
    const size_t n = text.size();
    const auto* t = reinterpret_cast<const unsigned char*>(text.data());
    size_t i = *at;
    // Everything before the first digit is passed over.
    while (i < n && hex.of[t[i]] < 0)
        i++;
    // Nearly every number is spelled "0x" and two digits: taken at once.
    if (n - i > 4 && t[i] == '0' && (t[i + 1] | 0x20) == 'x') {
        int high = hex.of[t[i + 2]];
        int low = hex.of[t[i + 3]];
        if ((high | low) >= 0 && hex.of[t[i + 4]] == -1) {
            *at = i + 5;
            return high << 4 | low;
        }
    }
    for (; i < n; i++) {
        int k = hex.of[t[i]];
        if (k >= 0) {
            value = (value << 4) + static_cast<uint32_t>(k);
            gotOne = true;
        } else if (k == -1 && gotOne) {
            *at = i + 1;
            return static_cast<int>(value);
        }
    }
    *at = n;
    return -1;
}

// The part of a name after its last underscore, or all of it.
const char* type_of(const char* name)
{
    const char* underscore = std::strrchr(name, '_');
    return underscore ? underscore + 1 : name;
}

}  // namespace

bool parse_xbm(std::string_view text, XbmBits* out)
{
    char line[LINE_BUFFER];
    char name[LINE_BUFFER];
    unsigned ww = 0, hh = 0;
    int hx = -1, hy = -1;
    size_t at = 0;
    while (next_line(text, &at, line)) {
        if (std::strlen(line) == LINE_BUFFER - 1)
            return false;
        int value = 0;
        if (std::sscanf(line, "#define %254s %d", name, &value) == 2) {
            const char* type = type_of(name);
            if (!std::strcmp(type, "width"))
                ww = static_cast<unsigned>(value);
            if (!std::strcmp(type, "height"))
                hh = static_cast<unsigned>(value);
            // "x_hot" and "y_hot" need two characters before the "hot".
            if (!std::strcmp(type, "hot") && type - name >= 2) {
                if (!std::strcmp(type - 2, "x_hot"))
                    hx = value;
                if (!std::strcmp(type - 2, "y_hot"))
                    hy = value;
            }
            continue;
        }
        bool shorts;
        if (std::sscanf(line, "static short %254s = {", name) == 1)
            shorts = true;
        else if (std::sscanf(line, "static unsigned char %254s = {", name) == 1 ||
                 std::sscanf(line, "static char %254s = {", name) == 1)
            shorts = false;
        else
            continue;
        if (std::strcmp(type_of(name), "bits[]"))
            continue;
        if (!ww || !hh)
            return false;

        // Old-style files hold 16-bit words; a row whose last word is half
        // used has a padding byte, which is dropped.
        bool padding = (ww % 16) && (ww % 16) < 9 && shorts;
        int bytesPerLine = static_cast<int>((ww + 7) / 8) + (padding ? 1 : 0);
        int size = static_cast<int>(static_cast<uint32_t>(bytesPerLine) * hh);
        // Every number takes at least a digit and a separator: bits that
        // cannot all be in the rest of the text are not there.
        if (size > 0 && static_cast<uint64_t>(size) > (text.size() - at) * (shorts ? 2 : 1))
            return false;
        std::vector<unsigned char> bits(size > 0 ? static_cast<size_t>(size) : 0);
        size_t ptr = 0;
        if (shorts) {
            for (int bytes = 0; bytes < size; bytes += 2) {
                int v = next_int(text, &at);
                if (v < 0)
                    return false;
                bits[ptr++] = static_cast<unsigned char>(v);
                if (!padding || (bytes + 2) % bytesPerLine)
                    bits[ptr++] = static_cast<unsigned char>(v >> 8);
            }
        } else {
            for (int bytes = 0; bytes < size; bytes++) {
                int v = next_int(text, &at);
                if (v < 0)
                    return false;
                bits[ptr++] = static_cast<unsigned char>(v);
            }
        }
        // Padding left unused bytes at the end; a size that overflowed
        // read none (the caller refuses such sizes).
        uint64_t rowBytes = static_cast<uint64_t>((ww + 7) / 8) * hh;
        if (rowBytes <= bits.size())
            bits.resize(static_cast<size_t>(rowBytes));
        out->width = ww;
        out->height = hh;
        out->hotX = hx;
        out->hotY = hy;
        out->rows = std::move(bits);
        return true;
    }
    return false;
}
