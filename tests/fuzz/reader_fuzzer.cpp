// Fuzzes the program's own read of an image file, read_image_file, against
// the X server in DISPLAY, with the toolkit started as the program starts
// it. Each input is a whole file, handed over by path. Built twice, for the
// XPM and the XBM reader: the two differ only in their seeds.
//
// Whatever the file holds, the read gives 0, -1 or 1; a drawing read stays
// within the limits, with its hotspot inside it or none; a failed read
// leaves no pixmap and the transparent pixel as it was; and once what a
// successful read kept is given back, every colour cell that was free
// before is free again.
#include <X11/Intrinsic.h>
#include <X11/Xlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/startup.h"
#include "core/app_state.h"
#include "core/message.h"
#include "files/image_header.h"
#include "files/image_io.h"

namespace {

int inputFd = -1;
std::string inputPath;
int freeCells = 0;   // read/write cells free before any read

[[noreturn]] void fail(const char* what, long a = 0, long b = 0)
{
    std::fprintf(stderr, "reader fuzzer: %s (%ld, %ld)\n", what, a, b);
    std::abort();
}

void pump()
{
    for (int r = 0; r < 2; r++) {
        XSync(app().display, False);
        while (XtAppPending(app().context))
            XtAppProcessEvent(app().context, XtIMAll);
    }
}

// Whether `n` read/write cells can be had at once right now.
bool cells_free(int n)
{
    if (n <= 0)
        return true;
    std::vector<unsigned long> cells(static_cast<size_t>(n));
    if (!XAllocColorCells(app().display, app().colormap, False, nullptr, 0, cells.data(),
                          static_cast<unsigned>(n)))
        return false;
    XFreeColors(app().display, app().colormap, cells.data(), n, 0);
    return true;
}

int count_free_cells()
{
    int n = 0;
    while (cells_free(n + 1))
        n++;
    return n;
}

// Gives back what a successful read kept: the pixmap, the private cells of
// its colours and its transparent cell, which becomes the old one again.
void give_back(Pixmap pixmap, int depth, const DrawingXpmInfo& info, Pixel oldBackground)
{
    Display* dpy = app().display;
    XFreePixmap(dpy, pixmap);
    if (depth == 1)
        return;
    for (unsigned i = 0; i < info.tableCount; i++) {
        Pixel p = info.pixels[i];
        if (p != res().background)
            XFreeColors(dpy, app().colormap, &p, 1, 0);
    }
    Pixel bg = res().background;
    if (bg != oldBackground) {
        XFreeColors(dpy, app().colormap, &bg, 1, 0);
        res().background = oldBackground;
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("XFILESEARCHPATH", PICTREL_RESOURCE_DIR "/%N", 0);
    static char arg0[] = "pictrel";
    static char* argv[] = {arg0, nullptr};
    int argc = 1;
    if (!std::getenv("DISPLAY") || startup(&argc, argv) != 0) {
        std::fprintf(stderr, "reader fuzzer: needs an 8-bit PseudoColor display in DISPLAY\n");
        std::exit(1);
    }
    // The input lives in memory, never in a file of /tmp or the tree.
    inputFd = memfd_create("pictrel-fuzz-input", MFD_CLOEXEC);
    if (inputFd < 0) {
        std::perror("reader fuzzer: memfd_create");
        std::exit(1);
    }
    inputPath = "/proc/self/fd/" + std::to_string(inputFd);
    // The message dialog takes its colours when it is first made: make it
    // now, so that the count below already has them taken.
    show_message(nullptr, "fuzzing", 0, nullptr, nullptr);
    pump();
    freeCells = count_free_cells();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (ftruncate(inputFd, 0) != 0 ||
        pwrite(inputFd, data, size, 0) != static_cast<ssize_t>(size))
        fail("cannot write the input");

    Pixel background = res().background;
    DrawingXpmInfo info;
    init_xpm_info(&info);
    int width = -5, height = -5, depth = -5, hx = -5, hy = -5;
    Pixmap pixmap = None;
    int status = read_image_file(inputPath.c_str(), &width, &height, &depth, &pixmap, &hx, &hy, &info);

    if (status != 0 && status != -1 && status != 1)
        fail("status", status);
    if (status == 0) {
        if (width < 1 || width > static_cast<int>(MAX_IMAGE_WIDTH) || height < 1 ||
            height > static_cast<int>(MAX_IMAGE_HEIGHT))
            fail("size out of the limits", width, height);
        if (pixmap == None)
            fail("no pixmap");
        if (depth != 1 && depth != app().screenDepth)
            fail("depth", depth);
        if (!(hx == -1 && hy == -1) && !(hx >= 0 && hx < width && hy >= 0 && hy < height))
            fail("hotspot", hx, hy);
        if (depth != 1 && (info.tableCount == 0 || info.colourCount > info.tableCount || !info.pixels))
            fail("colour table", info.tableCount, info.colourCount);
        give_back(pixmap, depth, info, background);
    } else {
        if (pixmap != None)
            fail("a failed read left a pixmap");
        if (res().background != background)
            fail("a failed read moved the transparent pixel");
    }
    release_xpm_info(&info);
    pump();
    if (!cells_free(freeCells) || cells_free(freeCells + 1))
        fail("colour cells taken or given back", freeCells, count_free_cells());
    return 0;
}
