// The header checks mirror the readers closely enough that whatever they
// let through, the readers could only fail on, never over-allocate for.
#include "files/image_header.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
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

// Parses up to four unsigned numbers; returns how many were found.
int parse_values(std::string_view text, unsigned long out[4])
{
    std::string s(text);
    const char* p = s.c_str();
    int n = 0;
    while (n < 4) {
        while (*p == ' ' || *p == '\t')
            p++;
        if (!std::isdigit(static_cast<unsigned char>(*p)))
            break;
        char* end = nullptr;
        out[n++] = std::strtoul(p, &end, 10);
        p = end;
    }
    return n;
}

XpmHeaderVerdict judge(std::string_view values)
{
    unsigned long v[4] = {0, 0, 0, 0};
    if (parse_values(values, v) < 4)
        return XpmHeaderVerdict::Unknown;   // libXpm will refuse it itself
    if (v[0] == 0 || v[1] == 0 || v[0] > MAX_IMAGE_WIDTH || v[1] > MAX_IMAGE_HEIGHT)
        return XpmHeaderVerdict::Refuse;
    if (v[2] == 0 || v[2] > MAX_XPM_COLOURS || v[3] == 0)
        return XpmHeaderVerdict::Refuse;
    return XpmHeaderVerdict::Acceptable;
}

}  // namespace

namespace {

constexpr size_t npos = std::string_view::npos;

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// The next blank-separated word at or after `at`; `at` moves past it.
std::string_view next_word(std::string_view s, size_t* at)
{
    size_t i = *at;
    while (i < s.size() && blank(s[i]))
        i++;
    size_t start = i;
    while (i < s.size() && !blank(s[i]))
        i++;
    *at = i;
    return s.substr(start, i - start);
}

// Combines what two looks found: a refusal wins, then an acceptable
// values line; anything else is unknown.
XpmHeaderVerdict worse(XpmHeaderVerdict a, XpmHeaderVerdict b)
{
    if (a == XpmHeaderVerdict::Refuse || b == XpmHeaderVerdict::Refuse)
        return XpmHeaderVerdict::Refuse;
    if (a == XpmHeaderVerdict::Acceptable || b == XpmHeaderVerdict::Acceptable)
        return XpmHeaderVerdict::Acceptable;
    return XpmHeaderVerdict::Unknown;
}

// Quoted-string forms (XPM 3, "XPM2 C", "XPM2 Lisp"): the values are the
// first string outside a comment. Strings inside comments before it are
// judged too, but only a values line there can refuse the file: a comment
// that holds an impossible size can only belong to a file we refuse anyway,
// and guessing wrong about which string libXpm takes must never let a
// gigantic colour count through.
XpmHeaderVerdict judge_quoted(std::string_view s, size_t at, bool lisp, bool inComment)
{
    XpmHeaderVerdict seen = XpmHeaderVerdict::Unknown;
    while (at < s.size()) {
        if (!inComment && s.compare(at, 2, "/*") == 0) {
            inComment = true;
            at += 2;
        } else if (inComment && s.compare(at, 2, "*/") == 0) {
            inComment = false;
            at += 2;
        } else if (!inComment && lisp && s[at] == ';') {
            size_t eol = s.find('\n', at);
            at = eol == npos ? s.size() : eol + 1;
        } else if (s[at] == '"') {
            size_t close = s.find('"', at + 1);
            if (close == npos)
                return seen;   // cut short: libXpm refuses it
            XpmHeaderVerdict v = judge(s.substr(at + 1, close - at - 1));
            if (inComment) {
                if (v == XpmHeaderVerdict::Refuse)
                    return v;
            } else {
                return worse(seen, v);
            }
            at = close + 1;
        } else {
            at++;
        }
    }
    return seen;
}

// Natural XPM 2: the values are the first line after the header line that
// is not a '!' comment.
XpmHeaderVerdict judge_natural(std::string_view s, size_t at)
{
    size_t eol = s.find('\n', at);
    while (eol != npos) {
        std::string_view line = s.substr(eol + 1);
        size_t next = line.find('\n');
        if (!line.empty() && line[0] == '!') {
            eol = next == npos ? npos : eol + 1 + next;
            continue;
        }
        if (next == npos)
            return XpmHeaderVerdict::Unknown;
        return judge(line.substr(0, next));
    }
    return XpmHeaderVerdict::Unknown;
}

// XPM 1: "#define name_width 4" and its kin, one value a line. Each value
// is judged on its own; the reader still needs all four to accept.
XpmHeaderVerdict judge_defines(std::string_view s)
{
    static const struct {
        const char* suffix;
        unsigned long max;
    } fields[] = {
        {"_width", MAX_IMAGE_WIDTH},
        {"_height", MAX_IMAGE_HEIGHT},
        {"_ncolors", MAX_XPM_COLOURS},
        {"_chars_per_pixel", 0},   // any count but 0
    };
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
                if (v[0] == 0 || (f.max && v[0] > f.max))
                    return XpmHeaderVerdict::Refuse;
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
    return XpmHeaderVerdict::Unknown;
}

}  // namespace

// libXpm tells the forms apart by the first two words: "#define" opens an
// XPM 1 file; otherwise the second word is "XPM" (XPM 3) or "XPM2", which
// is followed by "C", "Lisp" or nothing (natural). The first word itself
// ("/*", "!") is skipped unread.
XpmHeaderVerdict check_xpm_header(std::string_view head)
{
    size_t at = 0;
    std::string_view first = next_word(head, &at);
    if (first.empty())
        return XpmHeaderVerdict::Unknown;
    if (first == "#define")
        return judge_defines(head);
    std::string_view second = next_word(head, &at);
    // The usual "/* XPM */" header is itself a comment: a string before its
    // end is not the values line.
    bool inHeaderComment = first.substr(0, 2) == "/*" && first.find("*/") == npos;
    if (second == "XPM")
        return judge_quoted(head, at, false, inHeaderComment);
    if (second != "XPM2")
        return XpmHeaderVerdict::Unknown;
    size_t afterType = at;
    std::string_view type = next_word(head, &afterType);
    size_t eol = head.find('\n', at);
    bool typeOnHeaderLine = eol == npos || afterType <= eol;
    if (typeOnHeaderLine && (type == "C" || type == "Lisp"))
        return judge_quoted(head, afterType, type == "Lisp", inHeaderComment);
    return judge_natural(head, at);
}

bool hotspot_inside(long x, long y, unsigned width, unsigned height)
{
    return x >= 0 && y >= 0 && x < static_cast<long>(width) && y < static_cast<long>(height);
}
