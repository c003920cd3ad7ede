// Safe formatting of the program's message and name formats.
#include "app/safe_format.h"

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
        while (*p && strchr("-+ #0123456789.", *p))
            p++;
        while (*p && strchr("hlLqjzt", *p))
            p++;
        if (!*p) {
            out += '?';
            break;
        }
        if (strchr("diuxXoc", *p))
            out += 'd';
        else if (*p == 's')
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

#pragma GCC diagnostic pop
