// Checks of a staged file before it may replace anything. Xlib's and
// libXpm's writers do not report a short write (a full disk gives a
// truncated or empty file and a success status), so a file counts as
// written only once it is on disk and reads back as exactly the picture
// that was written.
#pragma once

#include <X11/Xlib.h>
#include <X11/xpm.h>

#include <cstddef>

// Status 0 when the XBM at `path` holds `bits` (a depth-1 pixmap) at its
// size with the hotspot given (-1 for none); XpmFileInvalid otherwise.
int check_written_xbm(Display* dpy, const char* path, Pixmap bits, unsigned width,
                      unsigned height, int hotspotX, int hotspotY);

// Status 0 when the XPM at `path` (decompressed by libXpm when its name
// says so) has the size, colours (with their symbolic names), pixels and
// extensions of `written` and, when hotspotX is not -1, that hotspot;
// XpmFileInvalid otherwise.
int check_written_xpm(const char* path, const XpmImage& written, int hotspotX, int hotspotY,
                      const XpmExtension* extensions = nullptr, unsigned extensionCount = 0);

// Status 0 when the compressed file reads back as the same picture as the
// plain one it was made from (already checked against what was written).
int check_compressed_copy(const char* plain, const char* compressed, int hotspotX, int hotspotY);

// fsync of the file at `path`: its data are on disk, or the disk said why
// not. 0 on success.
int sync_file(const char* path);

// The bit for pixel (x, y) of XBM data as Xlib reads it: rows padded to
// whole bytes, the leftmost pixel in the lowest bit.
inline int xbm_data_bit(const unsigned char* data, unsigned width, unsigned x, unsigned y)
{
    size_t row = (width + 7) / 8;
    return (data[y * row + x / 8] >> (x % 8)) & 1;
}
