// What the image reader sees of a file before any reader opens it: what
// kind of path it is, its size and first bytes, and the same of the file
// libXpm would read for the name (decompressed, when it is compressed).
// No X here; the judgement itself is image_header's.
#pragma once

#include <string>

#include "files/image_header.h"

// Whether a name may be handed to the readers at all: neither it nor a
// compressed file libXpm would try in its place is a FIFO or a device,
// which would block or never end.
bool openable(const char* fileName);

// A file's size and its first IMAGE_HEAD_BYTES bytes; `seen` is false for
// anything but a readable regular file.
struct FileLook {
    bool seen = false;
    bool kept = true;   // a decompressed stream written out whole (see below)
    unsigned long long size = 0;
    std::string head;
};
FileLook look_at(const std::string& path);

// Judges, as an XPM on a display whose colormap has `colormapEntries`
// cells, the file libXpm would read for `fileName`, before it reads any of
// it. `plain` is what was seen of `fileName` itself. A gzip file judged
// readable has been decompressed whole to judge it: when `stream` is given
// it receives a descriptor of that stream (the caller closes it), to be
// read in place of the file, and -1 otherwise.
XpmFileVerdict xpm_file_verdict(const char* fileName, const FileLook& plain, unsigned long colormapEntries,
                                int* stream = nullptr);

// The name under which libXpm reads a descriptor's file as plain text.
std::string descriptor_path(int fd);
