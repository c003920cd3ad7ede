// Formatting user-supplied printf formats (they come from resources) without
// letting a wrong conversion read arguments that are not there. Pure.
#pragma once

#include <string>

// The conversions a format holds, in order: 'd' for integer ones (d, i, u,
// x, X, o, c), 's' for strings, '?' for anything else. "%%" is no conversion.
std::string format_conversions(const char* format);

// Formats with one integer / one string argument when the format's
// conversions are exactly what is given (or none); otherwise formats
// `fallback` the same way.
std::string format_int(const char* format, int value, const char* fallback);
std::string format_int2(const char* format, int a, int b, const char* fallback);
std::string format_str(const char* format, const char* value, const char* fallback);
// The same with a string and then three integers.
std::string format_str_int3(const char* format, const char* value, int a, int b, int c,
                            const char* fallback);
