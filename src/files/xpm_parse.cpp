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

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "files/image_header.h"

namespace {

// Longer lines are left to libXpm, which reads words into buffers of its own size.
constexpr size_t LONGEST_WORDS_LINE = 1024;

// The text as it comes from its source, a part at a time: only what the
// parse has not yet passed over is kept, so a large picture's text is never
// held whole beside its pixels. Offsets are from the start of the text.
class Text {
public:
    explicit Text(const XpmSource& source) : source_(source) {}

    size_t at = 0;   // where the parse is

    // True when the text goes on to `end` (read as far as that if need be).
    bool has(size_t end)
    {
        while (base_ + buffer_.size() < end)
            if (!read_more())
                return false;
        return true;
    }
    // The byte at `i`, which has(i + 1) has made sure of.
    char operator[](size_t i) const { return buffer_[i - base_]; }
    // The `n` bytes from `i`, which has(i + n) has made sure of.
    std::string_view view(size_t i, size_t n) const { return std::string_view(buffer_).substr(i - base_, n); }

    // The first `what` at or after `from`; npos when the text ends first.
    size_t find(std::string_view what, size_t from)
    {
        return search(from, what.size() - 1,
                      [what](std::string_view here, size_t at) { return here.find(what, at); });
    }

    // The first byte of `set` at or after `from`; npos when the text ends first.
    size_t find_first_of(std::string_view set, size_t from)
    {
        return search(from, 0, [set](std::string_view here, size_t at) { return here.find_first_of(set, at); });
    }

    // What lies before the parse will not be looked at again.
    void pass()
    {
        size_t done = at - base_;
        if (done >= PART) {
            buffer_.erase(0, done);
            base_ = at;
        }
    }

private:
    static constexpr size_t PART = 16384;

    // `locate` over what is held, from `from` on, reading more until it
    // finds or the text ends; a match may straddle what is held and what
    // comes next by up to `overlap` bytes.
    template <typename Locate>
    size_t search(size_t from, size_t overlap, Locate locate)
    {
        for (;;) {
            size_t found = locate(std::string_view(buffer_), from > base_ ? from - base_ : 0);
            if (found != std::string_view::npos)
                return base_ + found;
            from = std::max(from, base_ + buffer_.size() - std::min(buffer_.size(), overlap));
            if (!read_more())
                return std::string_view::npos;
        }
    }

    bool read_more()
    {
        if (ended_)
            return false;
        size_t old = buffer_.size();
        buffer_.resize(old + PART);
        size_t got = source_.read(source_.data, buffer_.data() + old, PART);
        buffer_.resize(old + got);
        ended_ = got == 0;
        return got > 0;
    }

    const XpmSource& source_;
    std::string buffer_;
    size_t base_ = 0;
    bool ended_ = false;
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
    for (;;) {
        size_t k = s.find_first_of("\"/", s.at);
        if (k == std::string_view::npos || !s.has(k + 2))
            return false;
        if (s[k] == '"') {
            s.at = k + 1;
            return true;
        }
        if (s[k + 1] != '*') {   // a lone '/'
            s.at = k + 1;
            continue;
        }
        size_t end = s.find("*/", k + 2);
        if (end == std::string_view::npos || !s.has(end + 3) || s[k + 2] == '/' || s[end + 2] == '*')
            return false;
        s.at = end + 2;
    }
}

// From within a string, past its closing quote and into the next string.
bool next_string(Text& s)
{
    size_t q = s.find("\"", s.at);
    if (q == std::string_view::npos)
        return false;
    s.at = q + 1;
    return to_string_start(s);
}

// The words of the current string up to its closing quote, where the text
// is left. False for a string libXpm could read differently: one without
// an end, a long one, or one with bytes other than printable ASCII and
// the separators. The words stay valid until the text is passed.
bool words_of_string(Text& s, std::vector<std::string_view>* words)
{
    if (!s.has(s.at))
        return false;
    size_t q = s.find("\"", s.at);
    if (q == std::string_view::npos || q - s.at > LONGEST_WORDS_LINE)
        return false;
    std::string_view line = s.view(s.at, q - s.at);
    words->clear();
    size_t i = 0;
    while (i < line.size()) {
        unsigned char c = static_cast<unsigned char>(line[i]);
        if (c >= 0x7f || (c < 0x20 && !is_space(c)))
            return false;
        if (is_space(c)) {
            i++;
            continue;
        }
        size_t start = i;
        while (i < line.size() && !is_space(static_cast<unsigned char>(line[i]))) {
            unsigned char d = static_cast<unsigned char>(line[i]);
            if (d >= 0x7f || d < 0x20)
                return false;
            i++;
        }
        words->push_back(line.substr(start, i - start));
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

bool parse_xpm(const XpmSource& source, XpmImage* image, XpmParsed* info)
{
    *image = XpmImage{};
    *info = XpmParsed{};
    Text s(source);
    // libXpm takes the first word as it comes and "XPM" as the second for
    // version 3; then everything up to the first string passes.
    static constexpr std::string_view head = "/* XPM */";
    if (!s.has(head.size()) || s.view(0, head.size()) != head)
        return false;
    s.at = 6;   // just after "XPM", where libXpm goes on
    std::vector<std::string_view> words;
    if (!to_string_start(s) || !words_of_string(s, &words))
        return false;
    // Four numbers, or six with the hotspot; no extensions.
    unsigned width, height, ncolors, cpp;
    if ((words.size() != 4 && words.size() != 6) || !number(words[0], &width) || !number(words[1], &height) ||
        !number(words[2], &ncolors) || !number(words[3], &cpp))
        return false;
    XpmParsed hot;
    if (words.size() == 6) {
        if (!number(words[4], &hot.hotX) || !number(words[5], &hot.hotY))
            return false;
        hot.hotspot = true;
    }
    // A picture larger than a drawing can be is refused before any read;
    // one that got this far anyway is libXpm's.
    if (width == 0 || height == 0 || width > MAX_IMAGE_WIDTH || height > MAX_IMAGE_HEIGHT || ncolors == 0 ||
        (cpp != 1 && cpp != 2) || (cpp == 1 && ncolors > 256) || ncolors > 65535)
        return false;

    auto* table = static_cast<XpmColor*>(std::calloc(ncolors, sizeof(XpmColor)));
    if (!table)
        return false;
    auto fail = [&]() {
        release(image, table, ncolors);
        return false;
    };
    // Which colour each key names, plus one (0: none); a later colour with
    // the same key wins, as in libXpm's own tables. Two-character keys are
    // looked up by their first character, then their second, with a block
    // of 256 only for the first characters in use: a flat table would take
    // 128 KB for a handful of colours.
    static const unsigned short noColours[256] = {};
    const unsigned short* blocks[256];
    std::fill(std::begin(blocks), std::end(blocks), noColours);
    std::vector<std::unique_ptr<unsigned short[]>> owned;
    unsigned short single[256] = {};
    auto slot_of = [&](unsigned char first, unsigned char second) -> unsigned short* {
        if (cpp == 1)
            return &single[first];
        if (blocks[first] == noColours) {
            owned.emplace_back(new unsigned short[256]());
            blocks[first] = owned.back().get();
        }
        return const_cast<unsigned short*>(&blocks[first][second]);
    };
    for (unsigned a = 0; a < ncolors; a++) {
        if (!next_string(s) || !s.has(s.at + cpp))
            return fail();
        unsigned char key[2] = {};
        for (unsigned b = 0; b < cpp; b++) {
            unsigned char c = static_cast<unsigned char>(s[s.at + b]);
            // libXpm would take any byte; a quote or a control character
            // as a key is left to it.
            if (c == '"' || c < 0x20 || c >= 0x7f)
                return fail();
            key[b] = c;
        }
        table[a].string = copy_of(s.view(s.at, cpp));
        s.at += cpp;
        if (!table[a].string || !words_of_string(s, &words) || !parse_colour_words(words, &table[a]))
            return fail();
        *slot_of(key[0], key[1]) = static_cast<unsigned short>(a + 1);
        s.pass();
    }

    const size_t rowChars = static_cast<size_t>(width) * cpp;
    image->data = static_cast<unsigned*>(std::malloc(static_cast<size_t>(width) * height * sizeof(unsigned)));
    if (!image->data)
        return fail();
    unsigned* out = image->data;
    for (unsigned y = 0; y < height; y++) {
        if (!next_string(s) || !s.has(s.at + rowChars))
            return fail();
        const auto* p = reinterpret_cast<const unsigned char*>(s.view(s.at, rowChars).data());
        // A pixel that names no colour is libXpm's to refuse (no key holds
        // a NUL, which libXpm never matches).
        unsigned allNamed = 1;
        if (cpp == 1) {
            for (unsigned x = 0; x < width; x++) {
                unsigned short c = single[p[x]];
                allNamed &= c != 0;
                out[x] = c - 1u;
            }
        } else {
            for (unsigned x = 0; x < width; x++) {
                unsigned short c = blocks[p[2 * x]][p[2 * x + 1]];
                allNamed &= c != 0;
                out[x] = c - 1u;
            }
        }
        if (!allNamed)
            return fail();
        out += width;
        s.at += rowChars;
        s.pass();
    }
    // What follows the pixels (the closing brace, more text) libXpm never reads.
    image->width = width;
    image->height = height;
    image->cpp = cpp;
    image->ncolors = ncolors;
    image->colorTable = table;
    *info = hot;
    return true;
}

bool parse_xpm_text(std::string_view text, XpmImage* image, XpmParsed* info, size_t part)
{
    struct Reader {
        std::string_view rest;
        size_t part;
    } reader{text, part ? part : text.size()};
    XpmSource source{[](void* data, char* into, size_t n) -> size_t {
                         auto* r = static_cast<Reader*>(data);
                         size_t k = std::min({n, r->part, r->rest.size()});
                         std::memcpy(into, r->rest.data(), k);
                         r->rest.remove_prefix(k);
                         return k;
                     },
                     &reader};
    return parse_xpm(source, image, info);
}
