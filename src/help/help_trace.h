// HELPTRACE: with the variable set (to anything) the help client writes each
// step of its exchange with the help server to standard error, one line each.
#pragma once

void help_trace(const char* format, ...) __attribute__((format(printf, 1, 2)));
