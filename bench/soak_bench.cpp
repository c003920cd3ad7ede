// Soak: opens and closes the same XPM drawing 1000 times in one process,
// through the program's own Open and Close, and prints what stays behind:
// the growth of the resident set per cycle after a warm-up (cycle 100 to
// cycle 1000; the target is under 0.1 KB a cycle), and the server
// resources the client holds (pixmaps, GCs, windows, from the X-Resource
// extension) and the free read/write cells of the colormap, before the
// first cycle and after the last. It prints figures and never fails.
#include <X11/Intrinsic.h>
#include <X11/Xatom.h>
#include <X11/extensions/XRes.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "app/draw.h"
#include "bench_support.h"
#include "core/app_state.h"
#include "app/new_close.h"

namespace {

constexpr int WARM_UP = 100;

// A 64 x 48 picture of 24 colours at two characters a pixel, one of them
// transparent, with a hotspot: every part of the XPM reader takes part.
std::string fixture()
{
    const int width = 64, height = 48, colours = 24;
    const char chars[] = "abcdefghijklmnopqrstuvwxyz";
    auto code = [&](int i) { return std::string{chars[i % 6], chars[i / 6]}; };
    std::ostringstream s;
    s << "/* XPM */\nstatic char *soak[] = {\n\"" << width << ' ' << height << ' ' << colours
      << " 2 5 7\",\n";
    for (int i = 0; i < colours; i++) {
        if (i == 0) {
            s << '"' << code(i) << " c None\",\n";
            continue;
        }
        char spec[8];
        std::snprintf(spec, sizeof spec, "%02X%02X%02X", (i * 41 + 7) & 0xFF, (i * 97 + 13) & 0xFF,
                      (i * 13 + 150) & 0xFF);
        s << '"' << code(i) << " c #" << spec << (i % 2 ? " m white" : " m black") << "\",\n";
    }
    for (int y = 0; y < height; y++) {
        s << '"';
        for (int x = 0; x < width; x++)
            s << code((x / 4 + y / 4 * 5) % colours);
        s << '"' << (y + 1 < height ? ",\n" : "};\n");
    }
    return s.str();
}

long resident_kb()
{
    long size = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &size, &resident) != 2)
            resident = 0;
        std::fclose(f);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// Bytes handed out by malloc and not freed: unlike the resident set, it
// does not move with the allocator's page-sized bookkeeping.
long heap_in_use()
{
    return static_cast<long>(mallinfo2().uordblks);
}

// Free read/write cells of the colormap, found by taking them one by one.
int free_cells()
{
    std::vector<unsigned long> taken;
    unsigned long cell = 0;
    while (taken.size() < 4096 &&
           XAllocColorCells(app().display, app().colormap, False, nullptr, 0, &cell, 1))
        taken.push_back(cell);
    if (!taken.empty())
        XFreeColors(app().display, app().colormap, taken.data(), static_cast<int>(taken.size()), 0);
    return static_cast<int>(taken.size());
}

struct ServerCount {
    bool known = false;
    long pixmaps = 0, gcs = 0, windows = 0, total = 0;
    int freeCells = 0;
};

// What the server holds for this client. The client is the one whose
// range of resource ids holds a window of ours.
ServerCount server_count(Window ours)
{
    ServerCount c;
    c.freeCells = free_cells();
    Display* dpy = app().display;
    int event = 0, error = 0;
    if (!XResQueryExtension(dpy, &event, &error))
        return c;
    int nclients = 0;
    XResClient* clients = nullptr;
    if (!XResQueryClients(dpy, &nclients, &clients))
        return c;
    XID base = 0;
    bool found = false;
    for (int i = 0; i < nclients; i++) {
        if ((ours & ~clients[i].resource_mask) == clients[i].resource_base) {
            base = clients[i].resource_base;
            found = true;
        }
    }
    XFree(clients);
    if (!found)
        return c;
    int ntypes = 0;
    XResType* types = nullptr;
    if (!XResQueryClientResources(dpy, base, &ntypes, &types))
        return c;
    Atom pixmap = XInternAtom(dpy, "PIXMAP", False), gc = XInternAtom(dpy, "GC", False),
         window = XInternAtom(dpy, "WINDOW", False);
    for (int i = 0; i < ntypes; i++) {
        c.total += types[i].count;
        if (types[i].resource_type == pixmap)
            c.pixmaps = types[i].count;
        else if (types[i].resource_type == gc)
            c.gcs = types[i].count;
        else if (types[i].resource_type == window)
            c.windows = types[i].count;
    }
    XFree(types);
    c.known = true;
    return c;
}

void print_count(const char* when, const ServerCount& c)
{
    if (!c.known) {
        std::printf("%-22s free colour cells %4d   (no X-Resource extension)\n", when, c.freeCells);
        return;
    }
    std::printf("%-22s pixmaps %5ld   GCs %5ld   windows %5ld   all resources %6ld   free colour cells %4d\n",
                when, c.pixmaps, c.gcs, c.windows, c.total, c.freeCells);
}

Drawing* drawing_named(const std::string& name)
{
    for (Drawing* d : registry().slots)
        if (d && drawing_is_open(d) && d->name == name)
            return d;
    return nullptr;
}

// One open and close; false when the drawing did not open.
bool cycle(const std::string& path)
{
    if (open_file(path.c_str()) != 0)
        return false;
    bench_pump();
    Drawing* d = drawing_named(path);
    if (!d)
        return false;
    cmd_close(d, nullptr, False);
    bench_pump();
    return !drawing_is_open(d);
}

}  // namespace

// The number of cycles may be given (at least 101; 1000 by default).
int main(int argc0, char** argv0)
{
    const int CYCLES = argc0 > 1 && std::atoi(argv0[1]) > WARM_UP ? std::atoi(argv0[1]) : 1000;
    if (!bench_start("soak_bench"))
        return 1;
    std::string dir = bench_scratch_dir("soak");
    if (dir.empty())
        return 1;
    std::string path = dir + "/soak.xpm";
    std::ofstream(path) << fixture();

    // Closing the last drawing would end the program: one stays open.
    Drawing* keep = new_untitled_drawing(nullptr, 16, 16);
    bench_pump();
    if (!keep) {
        std::fprintf(stderr, "soak_bench: no drawing\n");
        return 1;
    }
    Window ours = XtWindow(keep->shell);

    ServerCount before = server_count(ours), warm;
    long rssStart = resident_kb(), rssWarm = 0, heapWarm = 0;
    int done = 0;
    for (; done < CYCLES; done++) {
        if (!cycle(path)) {
            std::printf("soak: cycle %d failed to open or close the drawing\n", done + 1);
            break;
        }
        if (done + 1 == WARM_UP) {
            warm = server_count(ours);
            rssWarm = resident_kb();
            heapWarm = heap_in_use();
        }
    }
    long rssEnd = resident_kb(), heapEnd = heap_in_use();
    ServerCount after = server_count(ours);

    std::printf("open and close of a 64x48 XPM of 24 colours, %d cycles\n", done);
    std::printf("resident set: %ld KB at the start, %ld KB after cycle %d, %ld KB after cycle %d\n",
                rssStart, rssWarm, WARM_UP, rssEnd, done);
    if (done == CYCLES) {
        std::printf("growth after the warm-up: %.3f KB per cycle (target under 0.1)\n",
                    static_cast<double>(rssEnd - rssWarm) / (CYCLES - WARM_UP));
        std::printf("heap in use: %+.1f bytes per cycle after the warm-up\n",
                    static_cast<double>(heapEnd - heapWarm) / (CYCLES - WARM_UP));
    }
    // The first cycle builds the window of a second slot, which every
    // later cycle reuses: compare the warm-up with the end.
    print_count("server, before:", before);
    print_count("server, after warm-up:", warm);
    print_count("server, after:", after);

    std::system(("rm -rf '" + dir + "'").c_str());
    return 0;
}
