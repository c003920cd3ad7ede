// The private staging directory a file is written into before it is copied
// onto its target. The staged file is named after the target's base name,
// because libXpm and Xlib form the C identifiers inside the file from it.
#pragma once

#include <string>

// The last path component cut at its first '.' ("/a/b.c.px" gives "b"),
// with every character that cannot be in a C identifier made '_' ("my
// pic.xbm" gives "my_pic"); "image" when nothing is left.
std::string staging_base_name(const std::string& target);

struct Staging {
    std::string directory;   // made with mkdtemp, mode 0700
    std::string file;        // directory + "/" + base name
};

// Makes a fresh directory under `parent` (default "/tmp"), first sweeping
// away the ones that killed saves left there; false on failure.
bool make_staging(const std::string& target, Staging* staging, const char* parent = "/tmp");
// Removes the staged file and the directory.
void remove_staging(const Staging& staging);
