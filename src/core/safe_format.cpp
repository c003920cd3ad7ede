// Safe formatting of the program's message and name formats.
#include "core/safe_format.h"

#include <cstdio>
#include <cstring>
#include <vector>

std::string format_conversions(const char* format)
{
    std::string out;
    if (!format)
        return out;
    for (const char* p = format; *p; p++) {
        if (*p != '%')
            continue;
        p++;
        if (*p == '%')
            continue;
        // Flags, width, precision: '*' would take an argument of its own.
        // A width or precision of four digits or more would make a text
        // too long to show (or to allocate), so it counts as wrong.
        int digits = 0;
        bool huge = false;
        while (*p && strchr("-+ #0123456789.", *p)) {
            digits = (*p >= '0' && *p <= '9') ? digits + 1 : 0;
            huge = huge || digits > 3;
            p++;
        }
        const char* length = p;
        while (*p && strchr("hlLqjzt", *p))
            p++;
        bool sized = p != length;
        if (!*p) {
            out += '?';
            break;
        }
        // "%ls" would read our narrow string as a wide one.
        if (huge)
            out += '?';
        else if (strchr("diuxXoc", *p))
            out += 'd';
        else if (*p == 's' && !sized)
            out += 's';
        else
            out += '?';
    }
    return out;
}

namespace {

bool fits(const char* format, const char* want)
{
    std::string c = format_conversions(format);
    return c.empty() || c == want;
}

template <typename... A>
std::string run(const char* format, A... args)
{
    int n = snprintf(nullptr, 0, format, args...);
    if (n < 0)
        return std::string();
    std::vector<char> buf(static_cast<size_t>(n) + 1);
    snprintf(buf.data(), buf.size(), format, args...);
    return std::string(buf.data(), static_cast<size_t>(n));
}

}  // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

std::string format_int(const char* format, int value, const char* fallback)
{
    const char* f = (format && fits(format, "d")) ? format : fallback;
    return run(f, value);
}

std::string format_int2(const char* format, int a, int b, const char* fallback)
{
    std::string c = format ? format_conversions(format) : "?";
    const char* f = (c.empty() || c == "d" || c == "dd") ? format : fallback;
    return run(f, a, b);
}

std::string format_str(const char* format, const char* value, const char* fallback)
{
    const char* f = (format && fits(format, "s")) ? format : fallback;
    return run(f, value ? value : "");
}

std::string format_str_int3(const char* format, const char* value, int a, int b, int c,
                            const char* fallback)
{
    const char* f = (format && fits(format, "sddd")) ? format : fallback;
    return run(f, value ? value : "", a, b, c);
}

#pragma GCC diagnostic pop
