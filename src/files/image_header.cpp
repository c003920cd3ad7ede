// The checks mirror the readers (Xlib's XBM reader, libXpm's parser)
// closely enough that whatever they let through, the readers could only
// fail on, never over-allocate or spend long for; and whatever they refuse
// for its first bytes, the readers would refuse too, save a header that
// lies past the bytes looked at.
#include "files/image_header.h"

#include <cstdio>
#include <algorithm>
#include <cstring>
#include <string>

void XbmHeaderScan::feed(const char* line)
{
    if (state != Reading || !line)
        return;
    if (std::strlen(line) == XBM_LINE_BUFFER - 1) {
        state = NotXbm;   // Xlib gives up on an over-long line
        return;
    }
    // The same scans Xlib makes, so both see the same numbers.
    char name[XBM_LINE_BUFFER + 1];
    int value = 0;
    if (std::sscanf(line, "#define %255s %d", name, &value) == 2) {
        const char* type = std::strrchr(name, '_');
        type = type ? type + 1 : name;
        if (!std::strcmp(type, "width"))
            width = static_cast<unsigned>(value);
        else if (!std::strcmp(type, "height"))
            height = static_cast<unsigned>(value);
        return;
    }
    if (std::sscanf(line, "static short %255s = {", name) != 1 &&
        std::sscanf(line, "static unsigned char %255s = {", name) != 1 &&
        std::sscanf(line, "static char %255s = {", name) != 1)
        return;
    const char* type = std::strrchr(name, '_');
    type = type ? type + 1 : name;
    if (std::strcmp(type, "bits[]"))
        return;
    if (!width || !height)
        state = NotXbm;
    else if (width > MAX_IMAGE_WIDTH || height > MAX_IMAGE_HEIGHT)
        state = Refuse;
    else
        state = Accept;
}

void XbmHeaderScan::finish()
{
    if (state == Reading)
        state = NotXbm;
}

namespace {

constexpr size_t npos = std::string_view::npos;

// The blanks of C's isspace in the C locale, which both readers use.
bool c_space(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// libXpm reads the header's words only within the first line and at most
// BUFSIZ (8192) characters each: the rest of a longer word is the next one.
constexpr size_t XPM_WORD_MAX = 8192;

std::string_view header_word(std::string_view s, size_t* at)
{
    size_t i = *at;
    while (i < s.size() && c_space(s[i]) && s[i] != '\n')
        i++;
    size_t start = i;
    while (i < s.size() && !c_space(s[i]) && i - start < XPM_WORD_MAX)
        i++;
    *at = i;
    return s.substr(start, i - start);
}

// The next blank-separated word at or after `at`, across lines; `at` moves
// past it.
std::string_view next_word(std::string_view s, size_t* at)
{
    size_t i = *at;
    while (i < s.size() && c_space(s[i]))
        i++;
    size_t start = i;
    while (i < s.size() && !c_space(s[i]))
        i++;
    *at = i;
    return s.substr(start, i - start);
}

// Up to four unsigned numbers, each a word of digits as libXpm wants them
// (a larger number than fits stays as large); returns how many were found.
int parse_values(std::string_view text, unsigned long out[4])
{
    size_t at = 0;
    int n = 0;
    while (n < 4) {
        std::string_view word = next_word(text, &at);
        if (word.empty() || word.find_first_not_of("0123456789") != npos)
            break;
        unsigned long v = 0;
        for (char c : word) {
            unsigned long digit = static_cast<unsigned long>(c - '0');
            v = v > (~0ul - digit) / 10 ? ~0ul : v * 10 + digit;
        }
        out[n++] = v;
    }
    return n;
}

// A colour count: none or more than any colormap holds can never be read;
// more than this colormap holds cannot be read here.
XpmHeaderVerdict judge_colours(unsigned long colours, unsigned long colourLimit)
{
    if (colours == 0 || colours > MAX_XPM_COLOURS)
        return XpmHeaderVerdict::Refuse;
    if (colours > colourLimit)
        return XpmHeaderVerdict::TooManyColours;
    return XpmHeaderVerdict::Acceptable;
}

bool chars_per_pixel_fit(unsigned long cpp) { return cpp > 0 && cpp <= MAX_CHARS_PER_PIXEL; }

// A values line: "width height colours chars-per-pixel", then whatever.
XpmHeaderVerdict judge(std::string_view values, unsigned long colourLimit)
{
    unsigned long v[4] = {0, 0, 0, 0};
    if (parse_values(values, v) < 4)
        return XpmHeaderVerdict::Unknown;   // libXpm will refuse it itself
    if (v[0] == 0 || v[1] == 0 || v[0] > MAX_IMAGE_WIDTH || v[1] > MAX_IMAGE_HEIGHT)
        return XpmHeaderVerdict::Refuse;
    if (!chars_per_pixel_fit(v[3]))
        return XpmHeaderVerdict::Refuse;
    return judge_colours(v[2], colourLimit);
}

// Combines what two looks found: a refusal wins, then too many colours,
// then an acceptable values line; anything else is unknown.
XpmHeaderVerdict worse(XpmHeaderVerdict a, XpmHeaderVerdict b)
{
    for (XpmHeaderVerdict v : {XpmHeaderVerdict::Refuse, XpmHeaderVerdict::TooManyColours,
                               XpmHeaderVerdict::Acceptable})
        if (a == v || b == v)
            return v;
    return XpmHeaderVerdict::Unknown;
}

// Quoted-string forms (XPM 3, "XPM2 C", "XPM2 Lisp"): after the header's
// words libXpm takes the first string outside a comment ("/* */" in C,
// ";" to the end of the line in Lisp) as the values, up to the next quote
// or, when there is none, to the end. Nothing else is a comment: strings
// within the usual "/* XPM */" after its second word are values too.
// Strings inside comments before the values are judged as well, and only
// a refusal or too many colours there counts: guessing wrong about which
// string libXpm takes must never let a gigantic colour count through.
XpmHeaderVerdict judge_quoted(std::string_view s, size_t at, bool lisp, unsigned long colourLimit)
{
    XpmHeaderVerdict seen = XpmHeaderVerdict::Unknown;
    bool inComment = false;
    const char* end = lisp ? "\n" : "*/";
    while (at < s.size()) {
        if (!inComment && (lisp ? s[at] == ';' : s.compare(at, 2, "/*") == 0)) {
            inComment = true;
            at += lisp ? 1 : 2;
        } else if (inComment && s.compare(at, std::strlen(end), end) == 0) {
            inComment = false;
            at += std::strlen(end);
        } else if (s[at] == '"') {
            size_t close = s.find('"', at + 1);
            std::string_view string = s.substr(at + 1, close == npos ? npos : close - at - 1);
            XpmHeaderVerdict v = judge(string, colourLimit);
            if (!inComment)
                return worse(seen, v);
            if (v != XpmHeaderVerdict::Acceptable)
                seen = worse(seen, v);
            if (close == npos)
                break;
            at = close + 1;
        } else {
            at++;
        }
    }
    return seen;
}

// Natural XPM 2: the values are the first line after the header line that
// is not a '!' comment, up to its end or the end of the file.
XpmHeaderVerdict judge_natural(std::string_view s, size_t at, unsigned long colourLimit)
{
    size_t eol = s.find('\n', at);
    while (eol != npos) {
        std::string_view line = s.substr(eol + 1);
        size_t next = line.find('\n');
        if (!line.empty() && line[0] == '!') {
            eol = next == npos ? npos : eol + 1 + next;
            continue;
        }
        return judge(line.substr(0, next), colourLimit);
    }
    return XpmHeaderVerdict::Unknown;
}

// XPM 1: "#define name_width 4" and its kin, one value a line. Each value
// is judged on its own; the reader still needs all four to accept.
XpmHeaderVerdict judge_defines(std::string_view s, unsigned long colourLimit)
{
    static const struct {
        const char* suffix;
        unsigned long max;
        bool colours;
    } fields[] = {
        {"_width", MAX_IMAGE_WIDTH, false},
        {"_height", MAX_IMAGE_HEIGHT, false},
        {"_ncolors", MAX_XPM_COLOURS, true},
        {"_chars_per_pixel", MAX_CHARS_PER_PIXEL, false},
    };
    XpmHeaderVerdict seen = XpmHeaderVerdict::Unknown;
    size_t at = 0;
    while (at < s.size()) {
        size_t lineStart = at;
        std::string_view word = next_word(s, &at);
        if (word.empty())
            break;
        if (word == "#define") {
            std::string_view name = next_word(s, &at);
            std::string_view value = next_word(s, &at);
            for (const auto& f : fields) {
                std::string_view suffix(f.suffix);
                if (name.size() <= suffix.size() || name.substr(name.size() - suffix.size()) != suffix)
                    continue;
                unsigned long v[4] = {0, 0, 0, 0};
                if (parse_values(value, v) < 1)
                    break;
                if (v[0] == 0 || v[0] > f.max)
                    return XpmHeaderVerdict::Refuse;
                if (f.colours && v[0] > colourLimit)
                    seen = XpmHeaderVerdict::TooManyColours;
                break;
            }
        } else if (word.substr(0, 6) == "static") {
            break;   // the colours begin; no more values
        }
        size_t eol = s.find('\n', lineStart);
        if (eol == npos)
            break;
        at = std::max(at, eol + 1);
    }
    return seen;
}

// The type word of "XPM2": libXpm compares it with strncmp over its own
// length, so any start of "Lisp" is Lisp, and a NUL ends the comparison.
enum class Xpm2Type { Natural, C, Lisp, None };

Xpm2Type xpm2_type(std::string_view word)
{
    if (word.empty() || word[0] == '\0')
        return Xpm2Type::Natural;
    size_t nul = word.find('\0');
    std::string_view cut = word.substr(0, nul);
    auto is = [&](std::string_view name) {
        return nul != npos ? cut == name : name.substr(0, word.size()) == word;
    };
    if (is("C"))
        return Xpm2Type::C;
    if (is("Lisp"))
        return Xpm2Type::Lisp;
    return Xpm2Type::None;
}

}  // namespace

// libXpm tells the forms apart by the words of the first line: "#define"
// opens an XPM 1 file; otherwise the second word is "XPM" (XPM 3) or
// "XPM2", which is followed by "C", "Lisp" or nothing (natural). The first
// word itself ("/*", "!") is skipped unread.
XpmHeaderVerdict check_xpm_header(std::string_view head, unsigned long colourLimit)
{
    size_t at = 0;
    std::string_view first = header_word(head, &at);
    if (first == "#define")
        return judge_defines(head, colourLimit);
    std::string_view second = header_word(head, &at);
    if (second == "XPM")
        return judge_quoted(head, at, false, colourLimit);
    if (second != "XPM2")
        return XpmHeaderVerdict::Unknown;
    size_t afterType = at;
    switch (xpm2_type(header_word(head, &afterType))) {
    case Xpm2Type::Natural:
        return judge_natural(head, at, colourLimit);
    case Xpm2Type::C:
        return judge_quoted(head, afterType, false, colourLimit);
    case Xpm2Type::Lisp:
        return judge_quoted(head, afterType, true, colourLimit);
    case Xpm2Type::None:
        break;
    }
    return XpmHeaderVerdict::Unknown;
}

// Looser than libXpm where that is simpler (any "XPM2" type, any name with
// an underline after "#define"): a file let through here is still bounded
// by its size; one refused here must be one libXpm refuses.
bool xpm_header_words(std::string_view head)
{
    size_t at = 0;
    std::string_view first = header_word(head, &at);
    std::string_view second = header_word(head, &at);
    if (first == "#define")
        return second.find('_') != npos;
    return second == "XPM" || second == "XPM2";
}

// Xlib reads an XBM with fgets into a buffer of XBM_LINE_BUFFER bytes: the
// head is cut into the same pieces. The defines and the line that opens the
// bits must all lie in the head; a piece cut short by the end of the head
// (not of the file) is not looked at.
XbmFileVerdict check_xbm_file(std::string_view head, unsigned long long size)
{
    if (size > MAX_XBM_FILE_BYTES)
        return XbmFileVerdict::NotXbm;
    bool whole = head.size() >= size;
    constexpr size_t piece = XBM_LINE_BUFFER - 1;
    XbmHeaderScan scan;
    std::string line;
    size_t at = 0;
    while (scan.state == XbmHeaderScan::Reading && at < head.size()) {
        size_t n = std::min(head.size() - at, piece);
        size_t eol = head.find('\n', at);
        if (eol != npos && eol - at < n)
            n = eol - at + 1;
        else if (n < piece && !whole)
            break;
        line.assign(head.substr(at, n));
        scan.feed(line.c_str());   // a NUL ends the line for Xlib too
        at += n;
    }
    if (whole)
        scan.finish();
    if (scan.state == XbmHeaderScan::Accept)
        return XbmFileVerdict::Acceptable;
    if (scan.state == XbmHeaderScan::Refuse)
        return XbmFileVerdict::Refuse;
    return XbmFileVerdict::NotXbm;
}

XpmFileVerdict check_xpm_file(std::string_view head, unsigned long long size, unsigned long colormapEntries)
{
    unsigned long limit = std::clamp(colormapEntries, 1ul, MAX_XPM_COLOURS);
    if (size > max_xpm_file_bytes(limit) || !xpm_header_words(head))
        return XpmFileVerdict::Refuse;
    switch (check_xpm_header(head, limit)) {
    case XpmHeaderVerdict::Refuse:
        return XpmFileVerdict::Refuse;
    case XpmHeaderVerdict::TooManyColours:
        return XpmFileVerdict::TooManyColours;
    default:
        return XpmFileVerdict::Read;
    }
}

bool hotspot_inside(long x, long y, unsigned width, unsigned height)
{
    return x >= 0 && y >= 0 && x < static_cast<long>(width) && y < static_cast<long>(height);
}
