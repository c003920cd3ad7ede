// Names of pictures given in resources, before they are looked up on disk.
// Pure: no X headers.
#pragma once

#include <string>

// Cuts a resource value at its first blank or tab, so that a value with a
// trailing comment names the file alone. A null name is left alone.
void cut_at_blank(char* name);

// True when the name stands for "no picture": null, empty, or Motif's
// "unspecified_pixmap".
bool is_unspecified_name(const char* name);

// A search path (for XtResolvePathname) that tries each of the given
// directories in turn; empty or null directories, and directories that
// hold a ':' or a '%' (which the path syntax cannot carry), are skipped.
std::string directory_search_path(const char* const* dirs, int count);
