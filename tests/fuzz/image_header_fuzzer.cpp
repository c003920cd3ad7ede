// Fuzzes the checks the reader makes on a file's size and first bytes, and
// holds them against the readers they stand in front of: Xlib's XBM reader
// and libXpm's parser, both reading the same bytes as a file (no display is
// needed for either). Each input is a whole file.
//
// - A file the checks pass over as no XBM is one Xlib does not read; an
//   XBM they accept, Xlib reads within the limits or not at all.
// - A file refused for its first line is one libXpm does not read; an XPM
//   they let through, libXpm reads within the limits or not at all, and
//   with more colours than the colormap exactly when they said so.
// - Any file beyond the size bounds is refused whatever it begins with.
// Files the checks refuse for their declared size are not handed to the
// readers: those would take the memory the checks are there to save.
// The program's own readers of the text in memory are held against the
// libraries' file readers: an XBM read from memory has Xlib's size, hotspot
// and bits; an XPM the quick parser takes, libXpm reads to the same image.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/xpm.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "files/image_header.h"
#include "files/xbm_parse.h"
#include "files/xpm_parse.h"

namespace {

// The colormap of the 8-bit displays the program runs on.
constexpr unsigned long COLORMAP = 256;

int inputFd = -1;
std::string inputPath;

[[noreturn]] void fail(const char* what, long a = 0, long b = 0)
{
    std::fprintf(stderr, "header fuzzer: %s (%ld, %ld)\n", what, a, b);
    std::abort();
}

bool same_text(const char* a, const char* b)
{
    return (!a && !b) || (a && b && !std::strcmp(a, b));
}

void check_xbm(std::string_view whole, std::string_view head, size_t size)
{
    XbmFileVerdict verdict = check_xbm_file(head, size);
    if (check_xbm_file(head, MAX_XBM_FILE_BYTES + 1) != XbmFileVerdict::NotXbm)
        fail("an XBM beyond the size bound");
    if (verdict == XbmFileVerdict::Refuse)
        return;
    unsigned width = 0, height = 0;
    unsigned char* bits = nullptr;
    int hx = -1, hy = -1;
    int status = XReadBitmapFileData(inputPath.c_str(), &width, &height, &bits, &hx, &hy);
    XbmBits mine;
    bool read = parse_xbm(whole, &mine);
    if (read != (status == BitmapSuccess))
        fail("the XBM reader and Xlib disagree on reading", read, status);
    if (read && (mine.width != width || mine.height != height || mine.hotX != hx || mine.hotY != hy ||
                 mine.rows.size() != static_cast<size_t>((width + 7) / 8) * height ||
                 std::memcmp(mine.rows.data(), bits, mine.rows.size())))
        fail("the XBM reader reads other bits than Xlib", width, height);
    if (bits)
        XFree(bits);
    if (status != BitmapSuccess)
        return;
    if (verdict == XbmFileVerdict::NotXbm)
        fail("Xlib reads an XBM the checks pass over", width, height);
    if (width == 0 || height == 0 || width > MAX_IMAGE_WIDTH || height > MAX_IMAGE_HEIGHT)
        fail("an accepted XBM out of the limits", width, height);
}

// When the quick parser takes the text, libXpm must read it to the same image.
void compare_quick_parse(std::string_view whole, int status, const XpmImage& theirs, const XpmInfo& info)
{
    XpmImage mine;
    XpmParsed hot;
    if (!parse_xpm_text(whole, &mine, &hot))
        return;
    if (status != XpmSuccess)
        fail("the quick parser takes an XPM libXpm refuses", status);
    if (mine.width != theirs.width || mine.height != theirs.height || mine.cpp != theirs.cpp ||
        mine.ncolors != theirs.ncolors)
        fail("the quick parser reads another size", mine.width, mine.height);
    bool theirHot = (info.valuemask & XpmHotspot) != 0;
    if (hot.hotspot != theirHot || (theirHot && (hot.hotX != info.x_hotspot || hot.hotY != info.y_hotspot)))
        fail("the quick parser reads another hotspot", hot.hotX, hot.hotY);
    for (unsigned i = 0; i < mine.ncolors; i++) {
        const XpmColor& a = mine.colorTable[i];
        const XpmColor& b = theirs.colorTable[i];
        if (!same_text(a.string, b.string) || !same_text(a.symbolic, b.symbolic) ||
            !same_text(a.m_color, b.m_color) || !same_text(a.g4_color, b.g4_color) ||
            !same_text(a.g_color, b.g_color) || !same_text(a.c_color, b.c_color))
            fail("the quick parser reads another colour", i);
    }
    if (std::memcmp(mine.data, theirs.data, sizeof(unsigned) * mine.width * mine.height))
        fail("the quick parser reads other pixels");
    XpmFreeXpmImage(&mine);
}

void check_xpm(std::string_view whole, std::string_view head, size_t size)
{
    XpmFileVerdict verdict = check_xpm_file(head, size, COLORMAP);
    if (check_xpm_file(head, max_xpm_file_bytes(COLORMAP) + 1, COLORMAP) != XpmFileVerdict::Refuse)
        fail("an XPM beyond the size bound");
    bool words = xpm_header_words(head);
    if (verdict == XpmFileVerdict::Refuse && words)
        return;   // refused for its values: see above
    XpmImage image{};
    XpmInfo info{};
    int status = XpmReadFileToXpmImage(const_cast<char*>(inputPath.c_str()), &image, &info);
    compare_quick_parse(whole, status, image, info);
    if (status == XpmSuccess) {
        unsigned w = image.width, h = image.height, n = image.ncolors, cpp = image.cpp;
        XpmFreeXpmImage(&image);
        XpmFreeXpmInfo(&info);
        if (!words)
            fail("libXpm reads a file whose first line the checks refuse");
        if (w > MAX_IMAGE_WIDTH || h > MAX_IMAGE_HEIGHT)
            fail("a passed XPM out of the limits", w, h);
        if (cpp > MAX_CHARS_PER_PIXEL)
            fail("a passed XPM with too many characters a pixel", cpp);
        if ((n > COLORMAP) != (verdict == XpmFileVerdict::TooManyColours))
            fail("the colour count misjudged", n, static_cast<long>(verdict));
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // The input lives in memory, never in a file of /tmp or the tree.
    inputFd = memfd_create("pictrel-fuzz-input", MFD_CLOEXEC);
    if (inputFd < 0) {
        std::perror("header fuzzer: memfd_create");
        std::exit(1);
    }
    inputPath = "/proc/self/fd/" + std::to_string(inputFd);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string_view whole(reinterpret_cast<const char*>(data), size);
    std::string_view head = whole.substr(0, std::min<size_t>(size, IMAGE_HEAD_BYTES));
    // The pure checks alone, with any colour limit.
    check_xpm_header(whole, 1);
    check_xpm_header(whole, MAX_XPM_COLOURS);
    if (ftruncate(inputFd, 0) != 0 || pwrite(inputFd, data, size, 0) != static_cast<ssize_t>(size))
        fail("cannot write the input");
    check_xbm(whole, head, size);
    check_xpm(whole, head, size);
    return 0;
}
