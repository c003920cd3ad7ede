// The header checks mirror the readers closely enough that whatever they
// let through, the readers could only fail on, never over-allocate for.
#include "files/image_header.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
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

XpmHeaderVerdict check_xpm_header(std::string_view head)
{
    size_t start = head.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos)
        return XpmHeaderVerdict::Unknown;
    head.remove_prefix(start);

    if (head.substr(0, 6) == "! XPM2") {
        size_t eol = head.find('\n');
        if (eol == std::string_view::npos)
            return XpmHeaderVerdict::Unknown;
        std::string_view rest = head.substr(eol + 1);
        return judge(rest.substr(0, rest.find('\n')));
    }
    // XPM 3: the first comment names the format, the first string holds
    // the values.
    if (head.substr(0, 2) != "/*")
        return XpmHeaderVerdict::Unknown;
    size_t close = head.find("*/");
    if (close == std::string_view::npos || head.substr(0, close).find("XPM") == std::string_view::npos)
        return XpmHeaderVerdict::Unknown;
    size_t quote = head.find('"', close);
    if (quote == std::string_view::npos)
        return XpmHeaderVerdict::Unknown;
    size_t end = head.find('"', quote + 1);
    if (end == std::string_view::npos)
        return XpmHeaderVerdict::Unknown;
    return judge(head.substr(quote + 1, end - quote - 1));
}

bool hotspot_inside(long x, long y, unsigned width, unsigned height)
{
    return x >= 0 && y >= 0 && x < static_cast<long>(width) && y < static_cast<long>(height);
}
