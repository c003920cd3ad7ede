// One line on standard error per step of the help exchange, under HELPTRACE.
#include "help/help_trace.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

void help_trace(const char* format, ...)
{
    // Read each time: cheap, and a test or a debugger may set it late.
    if (!std::getenv("HELPTRACE"))
        return;
    std::va_list args;
    va_start(args, format);
    std::fputs("helptrace: ", stderr);
    std::vfprintf(stderr, format, args);
    std::fputc('\n', stderr);
    va_end(args);
}
