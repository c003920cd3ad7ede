// The "-help" option: whether it was asked for, and the summary it prints.
// Pure: no X headers.
#pragma once

#include <string>

// True when an argument is "-help" and is not the value of an option before
// it: an option of ours or of the toolkit that takes the next argument as
// its value, written in full or as an abbreviation the toolkit accepts.
bool help_requested(int argc, const char* const* argv);

// The usage summary: the five options, file arguments and where to read more.
std::string usage_text(const char* programName);
