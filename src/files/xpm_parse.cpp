// libXpm reads an XPM 3 file as a C array of strings: it passes over
// whatever lies between the strings, comments included, takes the values
// line and each colour line a word at a time, and each pixel row a
// character at a time. The steps here are libXpm's, in its order, with its
// own quirks where they decide the outcome (which words are colour keys, a
// word after a key always being its value, the later of two colours with one
// key winning). Where a file would lead libXpm into a corner this does not
// copy (extensions, a values line of another shape, bytes whose classing
// depends on the locale, comments that do not plainly end at their first
// "*/", a pixel that names no colour), the parse declines and libXpm decides.
#include "files/xpm_parse.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// Longer lines are left to libXpm, which reads words into buffers of its own size.
constexpr size_t LONGEST_WORDS_LINE = 1024;
constexpr unsigned LARGEST_SIDE = 65535;

struct Text {
    std::string_view t;
    size_t at = 0;
};

// xpmNextWord's separators: isspace, for the bytes let through here.
bool is_space(unsigned char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// Passes over the text before the next string, as xpmNextString does: up
// to and past the next quote, skipping comments, which end at the first
// "*/". Comments libXpm may end elsewhere ("/*/", or "*/" followed by '*')
// are declined, as is the end of the text.
bool to_string_start(Text& s)
{
    const size_t n = s.t.size();
    while (s.at < n) {
        char c = s.t[s.at++];
        if (c == '"')
            return true;
        if (c == '/' && s.at < n && s.t[s.at] == '*') {
            size_t end = s.t.find("*/", s.at + 1);
            if (end == std::string_view::npos || s.t[s.at + 1] == '/' || end + 2 >= n || s.t[end + 2] == '*')
                return false;
            s.at = end + 2;
        }
    }
    return false;
}

// From within a string, past its closing quote and into the next string.
bool next_string(Text& s)
{
    size_t q = s.t.find('"', s.at);
    if (q == std::string_view::npos)
        return false;
    s.at = q + 1;
    return to_string_start(s);
}

// The words of the current string up to its closing quote, where the text
// is left. False for a string libXpm could read differently: one without
// an end, a long one, or one with bytes other than printable ASCII and
// the separators.
bool words_of_string(Text& s, std::vector<std::string_view>* words)
{
    size_t q = s.t.find('"', s.at);
    if (q == std::string_view::npos || q - s.at > LONGEST_WORDS_LINE)
        return false;
    words->clear();
    size_t i = s.at;
    while (i < q) {
        unsigned char c = static_cast<unsigned char>(s.t[i]);
        if (c >= 0x7f || (c < 0x20 && !is_space(c)))
            return false;
        if (is_space(c)) {
            i++;
            continue;
        }
        size_t start = i;
        while (i < q && !is_space(static_cast<unsigned char>(s.t[i]))) {
            unsigned char d = static_cast<unsigned char>(s.t[i]);
            if (d >= 0x7f || d < 0x20)
                return false;
            i++;
        }
        words->push_back(s.t.substr(start, i - start));
    }
    s.at = q;
    return true;
}

// A word all of decimal digits, short enough not to wrap as xpmatoui would.
bool number(std::string_view w, unsigned* value)
{
    if (w.empty() || w.size() > 9)
        return false;
    unsigned v = 0;
    for (char c : w) {
        if (c < '0' || c > '9')
            return false;
        v = v * 10 + static_cast<unsigned>(c - '0');
    }
    *value = v;
    return true;
}

char* copy_of(std::string_view s)
{
    auto* p = static_cast<char*>(std::malloc(s.size() + 1));
    if (p) {
        std::memcpy(p, s.data(), s.size());
        p[s.size()] = '\0';
    }
    return p;
}

// One colour line after its key: libXpm's keys and values. A word that
// follows a key is its value whatever it says; a later word is a key again
// if it is one, else joined to the value with a space.
bool parse_colour_words(const std::vector<std::string_view>& words, XpmColor* colour)
{
    static const char* const keys[] = {"s", "m", "g4", "g", "c"};
    constexpr int keyCount = 5;
    // The slots in libXpm's order: symbolic, m, g4, g, c follow the key string.
    char** slots[keyCount + 1] = {nullptr, &colour->symbolic, &colour->m_color, &colour->g4_color,
                                  &colour->g_color, &colour->c_color};
    std::string value;
    int current = 0;
    bool lastWasKey = false;
    auto flush = [&]() {
        char* copy = copy_of(value);
        if (!copy)
            return false;
        std::free(*slots[current]);
        *slots[current] = copy;
        return true;
    };
    for (std::string_view w : words) {
        int key = keyCount;
        if (!lastWasKey)
            for (key = 0; key < keyCount && w != keys[key]; key++) {
            }
        if (!lastWasKey && key < keyCount) {
            if (current && !flush())
                return false;
            current = key + 1;
            value.clear();
            lastWasKey = true;
        } else {
            if (!current)
                return false;   // a value before any key: libXpm refuses the file
            if (!lastWasKey)
                value += ' ';
            value += w;
            lastWasKey = false;
        }
    }
    return current && flush();
}

void release(XpmImage* image, XpmColor* table, unsigned count)
{
    for (unsigned i = 0; i < count; i++) {
        std::free(table[i].string);
        std::free(table[i].symbolic);
        std::free(table[i].m_color);
        std::free(table[i].g4_color);
        std::free(table[i].g_color);
        std::free(table[i].c_color);
    }
    std::free(table);
    std::free(image->data);
    *image = XpmImage{};
}

}  // namespace

bool parse_xpm_text(std::string_view text, XpmImage* image, XpmParsed* info)
{
    *image = XpmImage{};
    *info = XpmParsed{};
    // libXpm takes the first word as it comes and "XPM" as the second for
    // version 3; then everything up to the first string passes.
    static constexpr std::string_view head = "/* XPM */";
    if (text.substr(0, head.size()) != head)
        return false;
    Text s{text, 6};   // just after "XPM", where libXpm goes on
    std::vector<std::string_view> words;
    if (!to_string_start(s) || !words_of_string(s, &words))
        return false;
    // Four numbers, or six with the hotspot; no extensions.
    unsigned width, height, ncolors, cpp;
    if ((words.size() != 4 && words.size() != 6) || !number(words[0], &width) || !number(words[1], &height) ||
        !number(words[2], &ncolors) || !number(words[3], &cpp))
        return false;
    if (words.size() == 6) {
        if (!number(words[4], &info->hotX) || !number(words[5], &info->hotY))
            return false;
        info->hotspot = true;
    }
    if (width == 0 || height == 0 || width > LARGEST_SIDE || height > LARGEST_SIDE || ncolors == 0 ||
        (cpp != 1 && cpp != 2) || (cpp == 1 && ncolors > 256) || ncolors > 65535)
        return false;

    auto* table = static_cast<XpmColor*>(std::calloc(ncolors, sizeof(XpmColor)));
    if (!table)
        return false;
    // Which colour each key names, plus one (0: none); a later colour with
    // the same key wins, as in libXpm's own tables.
    std::vector<unsigned short> colourOf(cpp == 1 ? 256 : 65536, 0);
    for (unsigned a = 0; a < ncolors; a++) {
        if (!next_string(s) || s.t.size() - s.at < cpp) {
            release(image, table, ncolors);
            return false;
        }
        unsigned key = 0;
        for (unsigned b = 0; b < cpp; b++) {
            unsigned char c = static_cast<unsigned char>(s.t[s.at + b]);
            // libXpm would take any byte; a quote or a control character
            // as a key is left to it.
            if (c == '"' || c < 0x20 || c >= 0x7f) {
                release(image, table, ncolors);
                return false;
            }
            key = key << 8 | c;
        }
        table[a].string = copy_of(s.t.substr(s.at, cpp));
        s.at += cpp;
        if (!table[a].string || !words_of_string(s, &words) || !parse_colour_words(words, &table[a])) {
            release(image, table, ncolors);
            return false;
        }
        colourOf[key] = static_cast<unsigned short>(a + 1);
    }

    const size_t rowChars = static_cast<size_t>(width) * cpp;
    image->data = static_cast<unsigned*>(std::malloc(static_cast<size_t>(width) * height * sizeof(unsigned)));
    if (!image->data) {
        release(image, table, ncolors);
        return false;
    }
    unsigned* out = image->data;
    const unsigned short* colours = colourOf.data();
    for (unsigned y = 0; y < height; y++) {
        if (!next_string(s) || s.t.size() - s.at < rowChars) {
            release(image, table, ncolors);
            return false;
        }
        const auto* p = reinterpret_cast<const unsigned char*>(s.t.data() + s.at);
        // A pixel that names no colour is libXpm's to refuse (no key holds
        // a NUL, which libXpm never matches).
        unsigned allNamed = 1;
        if (cpp == 1) {
            for (unsigned x = 0; x < width; x++) {
                unsigned short c = colours[p[x]];
                allNamed &= c != 0;
                out[x] = c - 1u;
            }
        } else {
            for (unsigned x = 0; x < width; x++) {
                unsigned short c = colours[static_cast<unsigned>(p[2 * x]) << 8 | p[2 * x + 1]];
                allNamed &= c != 0;
                out[x] = c - 1u;
            }
        }
        if (!allNamed) {
            release(image, table, ncolors);
            return false;
        }
        out += width;
        s.at += rowChars;
    }
    // What follows the pixels (the closing brace, more text) libXpm never reads.
    image->width = width;
    image->height = height;
    image->cpp = cpp;
    image->ncolors = ncolors;
    image->colorTable = table;
    return true;
}
