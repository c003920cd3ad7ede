// Figures for files: the median time to open and to save a 511 x 719 XPM of
// 100 colours at two characters a pixel, and a 511 x 719 XBM. Opening
// counts the read and the making of the drawing window; saving counts the
// staged write and the copy onto the target. Fixtures are generated in a
// private directory under /tmp; bench/fixture.awk writes the same two files
// for the side-by-side bench, so a change here belongs there too.
#include <X11/Intrinsic.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "app/draw.h"
#include "bench_support.h"
#include "app/open_save.h"
#include "core/app_state.h"
#include "files/write_drawing.h"

namespace {

constexpr int RUNS = 7;
constexpr int WIDTH = 511;
constexpr int HEIGHT = 719;

std::string xpm_fixture()
{
    const char chars[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJ";
    auto code = [&](int i) { return std::string{chars[i % 10], chars[i / 10]}; };
    std::ostringstream s;
    s << "/* XPM */\nstatic char *bench[] = {\n\"" << WIDTH << ' ' << HEIGHT << " 100 2\",\n";
    for (int i = 0; i < 100; i++) {
        char spec[8];
        std::snprintf(spec, sizeof spec, "%02X%02X%02X", (i * 37 + 11) & 0xFF, (i * 89 + 3) & 0xFF,
                      (i * 7 + 200) & 0xFF);
        s << '"' << code(i) << " c #" << spec << (i % 3 ? " m white" : " m black") << "\",\n";
    }
    for (int y = 0; y < HEIGHT; y++) {
        s << '"';
        for (int x = 0; x < WIDTH; x++)
            s << code((x / 16 + y / 24 * 7 + (x * y) % 3) % 100);
        s << '"' << (y + 1 < HEIGHT ? ",\n" : "};\n");
    }
    return s.str();
}

std::string xbm_fixture()
{
    std::ostringstream s;
    s << "#define bench_width " << WIDTH << "\n#define bench_height " << HEIGHT
      << "\nstatic unsigned char bench_bits[] = {\n";
    int bytes = (WIDTH + 7) / 8 * HEIGHT;
    for (int i = 0; i < bytes; i++) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "0x%02x", (i * 131 + i / 64) & 0xFF);
        s << hex << (i + 1 < bytes ? (i % 12 == 11 ? ",\n" : ", ") : "};\n");
    }
    return s.str();
}

void measure(const char* what, const std::string& path, const std::string& saveDir, const char* suffix)
{
    std::vector<double> opens, saves;
    for (int run = 0; run < RUNS; run++) {
        double t0 = now_ms();
        int status = open_file(path.c_str());
        bench_pump();
        double t1 = now_ms();
        Drawing* d = nullptr;
        for (Drawing* s : registry().slots)
            if (s && drawing_is_open(s) && s->name == path)
                d = s;
        if (status != 0 || !d) {
            std::printf("%s: open failed with status %d\n", what, status);
            return;
        }
        opens.push_back(t1 - t0);
        std::string target = saveDir + "/saved" + suffix;
        double t2 = now_ms();
        int written = write_drawing(d, target.c_str(), false);
        XSync(app().display, False);
        double t3 = now_ms();
        if (written != 0) {
            std::printf("%s: save failed with status %d\n", what, written);
            return;
        }
        saves.push_back(t3 - t2);
        // Back to the first state: the next open reads the fixture again.
        close_drawing(d);
        bench_pump();
    }
    std::printf("%-34s open %8.1f ms   save %8.1f ms   (median of %d)\n", what, median(opens),
                median(saves), RUNS);
}

}  // namespace

int main()
{
    if (!bench_start("files_bench"))
        return 1;
    std::string dir = bench_scratch_dir("bench");
    if (dir.empty())
        return 1;
    std::string xpm = dir + "/bench.xpm", xbm = dir + "/bench.xbm";
    std::ofstream(xpm) << xpm_fixture();
    std::ofstream(xbm) << xbm_fixture();

    // One drawing stays open throughout, so that closing a measured one
    // never ends the program.
    new_untitled_drawing(nullptr, 16, 16);
    bench_pump();

    measure("511x719 XPM, 100 colours, 2 cpp", xpm, dir, ".px");
    measure("511x719 XBM", xbm, dir, ".xbm");

    std::system(("rm -rf '" + dir + "'").c_str());
    return 0;
}
