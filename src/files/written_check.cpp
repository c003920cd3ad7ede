// Reading a staged file back with the same libraries the program and every
// other X program read it with, and comparing it with what was written.
#include "files/written_check.h"

#include <X11/Xutil.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <memory>

#include "core/x_owned.h"

namespace {

bool same_string(const char* a, const char* b)
{
    if (!a || !b)
        return a == b;
    return std::strcmp(a, b) == 0;
}

bool same_xpm(const XpmImage& a, const XpmImage& b)
{
    if (a.width != b.width || a.height != b.height || a.ncolors != b.ncolors)
        return false;
    for (unsigned i = 0; i < a.ncolors; i++) {
        const XpmColor& x = a.colorTable[i];
        const XpmColor& y = b.colorTable[i];
        if (!same_string(x.c_color, y.c_color) || !same_string(x.m_color, y.m_color) ||
            !same_string(x.symbolic, y.symbolic))
            return false;
    }
    size_t count = static_cast<size_t>(a.width) * a.height;
    return count == 0 || std::memcmp(a.data, b.data, count * sizeof a.data[0]) == 0;
}

bool same_extensions(const XpmExtension* a, unsigned na, const XpmInfo& back)
{
    unsigned nb = (back.valuemask & XpmExtensions) && back.extensions ? back.nextensions : 0;
    if (!a)
        na = 0;
    if (na != nb)
        return false;
    for (unsigned i = 0; i < na; i++) {
        const XpmExtension& x = a[i];
        const XpmExtension& y = back.extensions[i];
        if (!same_string(x.name, y.name) || x.nlines != y.nlines)
            return false;
        for (unsigned l = 0; l < x.nlines; l++)
            if (!same_string(x.lines[l], y.lines[l]))
                return false;
    }
    return true;
}

}  // namespace

int check_written_xbm(Display* dpy, const char* path, Pixmap bits, unsigned width,
                      unsigned height, int hotspotX, int hotspotY)
{
    unsigned w = 0, h = 0;
    unsigned char* data = nullptr;
    int hx = -1, hy = -1;
    if (XReadBitmapFileData(path, &w, &h, &data, &hx, &hy) != BitmapSuccess)
        return XpmFileInvalid;
    std::unique_ptr<unsigned char, int (*)(void*)> owned(data, XFree);
    if (w != width || h != height || hx != hotspotX || hy != hotspotY)
        return XpmFileInvalid;
    ImagePtr image(
        XGetImage(dpy, bits, 0, 0, width, height, 1, XYPixmap));
    if (!image)
        return XpmNoMemory;
    for (unsigned y = 0; y < height; y++)
        for (unsigned x = 0; x < width; x++) {
            int expected = XGetPixel(image.get(), static_cast<int>(x), static_cast<int>(y)) & 1;
            if (xbm_data_bit(data, width, x, y) != static_cast<int>(expected))
                return XpmFileInvalid;
        }
    return 0;
}

int check_written_xpm(const char* path, const XpmImage& written, int hotspotX, int hotspotY,
                      const XpmExtension* extensions, unsigned extensionCount)
{
    XpmImage back{};
    XpmInfo info{};
    info.valuemask = XpmReturnInfos | XpmReturnExtensions;
    if (XpmReadFileToXpmImage(const_cast<char*>(path), &back, &info) != XpmSuccess)
        return XpmFileInvalid;
    bool same = same_xpm(written, back) && same_extensions(extensions, extensionCount, info);
    if (hotspotX != -1)
        same = same && (info.valuemask & XpmHotspot) &&
               static_cast<int>(info.x_hotspot) == hotspotX &&
               static_cast<int>(info.y_hotspot) == hotspotY;
    XpmFreeXpmInfo(&info);
    XpmFreeXpmImage(&back);
    return same ? 0 : XpmFileInvalid;
}

int check_compressed_copy(const char* plain, const char* compressed, int hotspotX, int hotspotY)
{
    XpmImage original{};
    XpmInfo info{};
    info.valuemask = XpmReturnExtensions;
    if (XpmReadFileToXpmImage(const_cast<char*>(plain), &original, &info) != XpmSuccess)
        return XpmFileInvalid;
    bool have = (info.valuemask & XpmExtensions) != 0;
    int status = check_written_xpm(compressed, original, hotspotX, hotspotY,
                                   have ? info.extensions : nullptr, have ? info.nextensions : 0);
    XpmFreeXpmInfo(&info);
    XpmFreeXpmImage(&original);
    return status;
}

int sync_file(const char* path)
{
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return XpmOpenFailed;
    bool ok = fsync(fd) == 0;
    ok = close(fd) == 0 && ok;
    return ok ? 0 : XpmOpenFailed;
}
