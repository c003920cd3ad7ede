// Figures for files that cannot be an image: the median time from asking to
// open one to the moment its message is up. Huge files of zeros (sparse),
// of spaces, a comment and a line that never end, junk after an XBM header;
// and the worst files just under the size bounds, which the readers do
// parse. The files are made in a private temporary directory, removed
// at the end. The target is well under half a second for each.
#include <X11/Intrinsic.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/draw.h"
#include "bench_support.h"
#include "app/open_save.h"
#include "core/app_state.h"
#include "files/image_header.h"
#include "files/read_status.h"

namespace {

constexpr int RUNS = 3;
constexpr unsigned long long GIGABYTE = 1ull << 30;

// A file of `size` bytes: `head`, then `fill` repeated (cut to fit), then
// `tail`. An empty fill leaves a hole: the file is sparse, all zeros.
bool make_file(const std::string& path, const std::string& head, const std::string& fill,
               const std::string& tail, unsigned long long size)
{
    int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (fd < 0)
        return false;
    bool ok = write(fd, head.data(), head.size()) == static_cast<ssize_t>(head.size());
    unsigned long long body = size - head.size() - tail.size();
    if (fill.empty()) {
        ok = ok && ftruncate(fd, static_cast<off_t>(size - tail.size())) == 0 &&
             lseek(fd, 0, SEEK_END) >= 0;
    } else {
        std::string chunk;
        while (chunk.size() < (1u << 20))
            chunk += fill;
        chunk.resize((1u << 20) / fill.size() * fill.size());
        while (ok && body > 0) {
            size_t n = static_cast<size_t>(std::min<unsigned long long>(body, chunk.size()));
            ok = write(fd, chunk.data(), n) == static_cast<ssize_t>(n);
            body -= n;
        }
    }
    ok = ok && write(fd, tail.data(), tail.size()) == static_cast<ssize_t>(tail.size());
    return close(fd) == 0 && ok;
}

struct Case {
    const char* what;
    const char* name;
    std::string head, fill, tail;
    unsigned long long size;
    bool gzipped = false;   // made under its name without ".gz", then compressed
};

void measure(const std::string& dir, const Case& c)
{
    std::string path = dir + "/" + c.name;
    std::string made = c.gzipped ? path.substr(0, path.size() - 3) : path;
    bool ok = make_file(made, c.head, c.fill, c.tail, c.size);
    if (ok && c.gzipped)
        ok = std::system(("gzip -f '" + made + "'").c_str()) == 0;
    if (!ok) {
        std::printf("%-50s could not be made\n", c.what);
        unlink(path.c_str());
        return;
    }
    std::vector<double> times;
    int status = 0;
    for (int run = 0; run < RUNS; run++) {
        double t0 = now_ms();
        status = open_file(path.c_str());
        if (status != 0)
            report_read_status(app().topLevel, status, path.c_str());
        bench_pump();
        times.push_back(now_ms() - t0);
    }
    unlink(path.c_str());
    std::printf("%-50s %9.1f ms  status %d  (median of %d)\n", c.what, median(times), status, RUNS);
    std::fflush(stdout);
}

std::string key_of(unsigned colour, unsigned cpp)
{
    std::string key(cpp, 'a');
    for (unsigned k = 0, v = colour; k < cpp && v; k++, v /= 26)
        key[k] = static_cast<char>('a' + v % 26);
    return key;
}

// Colour lines of `count` colours at `cpp` characters a key.
std::string many_colours(unsigned count, unsigned cpp)
{
    std::string s;
    for (unsigned i = 0; i < count; i++) {
        std::string key = key_of(i, cpp);
        char spec[16];
        std::snprintf(spec, sizeof spec, "#%02X%02X%02X", i & 0xFF, (i >> 8) & 0xFF, (i * 7) & 0xFF);
        s += "\"" + key + " c " + spec + " m white\",\n";
    }
    return s;
}

}  // namespace

int main()
{
    if (!bench_start("refusal_bench"))
        return 1;
    const std::string dir = bench_scratch_dir("refusal");
    if (dir.empty())
        return 1;
    // A drawing stays open, as it would in the program.
    new_untitled_drawing(nullptr, 16, 16);
    bench_pump();

    const std::string xpmHead = "/* XPM */\nstatic char *a[] = {\n\"4 4 1 1\",\n\"a c #000000\",\n";
    const std::string xbmHead = "#define a_width 512\n#define a_height 720\nstatic char a_bits[] = {\n";
    const unsigned long long xpmBound = max_xpm_file_bytes(static_cast<unsigned long>(app().visual->map_entries));
    std::printf("size bounds on this display: XPM %llu bytes, XBM %llu bytes\n", xpmBound, MAX_XBM_FILE_BYTES);
    // Every pixel row of the largest drawing at 8 characters a pixel, in
    // all 256 colours, but the last one is cut short: libXpm parses it all.
    const std::string fullHead = "/* XPM */\nstatic char *a[] = {\n\"512 720 256 8\",\n" + many_colours(256, 8);
    std::string fullRow = "\"";
    for (unsigned x = 0; x < 512; x++)
        fullRow += key_of(x % 256, 8);
    fullRow += "\",\n";
    const Case cases[] = {
        {"1 GB of zeros (sparse), .xpm", "zeros.xpm", "", "", "", GIGABYTE},
        {"1 GB of zeros (sparse), .xpm.gz", "zeros.xpm.gz", "", "", "", GIGABYTE},
        {"1 GB of spaces", "spaces.xpm", "", " ", "", GIGABYTE},
        {"XPM header, then a 1 GB comment", "comment.xpm", xpmHead + "/*", "a line of comment\n", "*/\n};\n",
         GIGABYTE},
        {"XPM header, then a 1 GB line", "line.xpm", xpmHead + "\"", "aaaaaaaa", "\"\n};\n", GIGABYTE},
        {"XBM header, then 1 GB of junk", "junk.xbm", xbmHead, "junk ", "};\n", GIGABYTE},
        // The largest files that still reach a reader.
        {"spaces up to the XPM bound", "spaces-bound.xpm", "", " ", "", xpmBound},
        {"XPM header, comment up to the XPM bound", "comment-bound.xpm", xpmHead + "/*", "a line of comment\n",
         "*/\n};\n", xpmBound},
        {"XPM header, compressed comment up to the bound", "comment-bound.xpm.gz", xpmHead + "/*",
         "a line of comment\n", "*/\n};\n", xpmBound, true},
        {"512x720, 256 colours at 8 a pixel, last row cut", "cut.xpm", fullHead, fullRow, "\"aaaa\"};\n",
         fullHead.size() + 719 * fullRow.size() + 8},
        {"65536 colours at 8 a pixel", "colours.xpm",
         "/* XPM */\nstatic char *a[] = {\n\"512 720 65536 8\",\n" + many_colours(65536, 8), "\"aaaaaaaa\",\n",
         "};\n", xpmBound},
        {"XBM header, junk up to the XBM bound", "junk-bound.xbm", xbmHead, "junk ", "};\n", MAX_XBM_FILE_BYTES},
    };
    for (const Case& c : cases)
        measure(dir, c);
    rmdir(dir.c_str());
    return 0;
}
