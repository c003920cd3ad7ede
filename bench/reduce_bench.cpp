// Figures for colour reduction: the mean colour error (the mean Euclidean
// distance in 8-bit RGB between each opaque pixel and its reduced colour)
// of the program's reduction of an XPM's table, beside ImageMagick's
// "convert -colors N" with and without its dithering, on the same files:
// photo-like generated pictures and, when the system has it, python3.xpm.
// Lower is better. Also the median time of the program's reduction.
#include <X11/Xlib.h>
#include <X11/xpm.h>
#include <strings.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "bench_support.h"
#include "core/app_state.h"
#include "files/colour_fit.h"
#include "imageops/colour_reduce.h"

namespace {

constexpr int RUNS = 5;

// Each pixel's colour, or none for a transparent one; false when the file
// does not read or names a colour the server does not know.
bool pixels_of(Display* dpy, const XpmImage& img, std::vector<Rgb8>* rgb, std::vector<bool>* clear)
{
    std::vector<Rgb8> table(img.ncolors);
    std::vector<bool> none(img.ncolors, false);
    for (unsigned i = 0; i < img.ncolors; i++) {
        const char* c = img.colorTable[i].c_color;
        if (!c || !strcasecmp(c, "None")) {
            none[i] = true;
            continue;
        }
        XColor x{};
        if (!XParseColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), c, &x))
            return false;
        table[i] = {uint8_t(x.red >> 8), uint8_t(x.green >> 8), uint8_t(x.blue >> 8)};
    }
    size_t n = size_t(img.width) * img.height;
    rgb->resize(n);
    clear->resize(n);
    for (size_t i = 0; i < n; i++) {
        (*rgb)[i] = table[img.data[i]];
        (*clear)[i] = none[img.data[i]];
    }
    return true;
}

bool read_pixels(Display* dpy, const std::string& path, std::vector<Rgb8>* rgb, std::vector<bool>* clear)
{
    XpmImage img{};
    if (XpmReadFileToXpmImage(const_cast<char*>(path.c_str()), &img, nullptr) != XpmSuccess)
        return false;
    bool ok = pixels_of(dpy, img, rgb, clear);
    XpmFreeXpmImage(&img);
    return ok;
}

// Mean error over the pixels opaque in the original; -1 when the sizes differ.
double error_of(const std::vector<Rgb8>& a, const std::vector<bool>& clear, const std::vector<Rgb8>& b)
{
    if (a.size() != b.size())
        return -1;
    std::vector<Rgb8> x, y;
    for (size_t i = 0; i < a.size(); i++)
        if (!clear[i]) {
            x.push_back(a[i]);
            y.push_back(b[i]);
        }
    return mean_colour_error(x, y);
}

// A photo-like picture: smooth blends with a little texture, every colour
// its own table entry, written at two or three characters a pixel.
std::string photo_xpm(int w, int h, int seed)
{
    std::vector<unsigned> colours;
    std::vector<int> index(size_t(w) * h);
    std::vector<std::pair<unsigned, int>> seen;
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++) {
            double u = double(x) / w, v = double(y) / h;
            double t = std::sin((x * 0.37 + y * 0.23) * (seed + 1)) * 6;
            int r = int(120 + 100 * std::sin(3 * u + seed) * v + t);
            int g = int(90 + 80 * std::cos(2 * v - seed) + 40 * u - t);
            int b = int(60 + 150 * u * u * (1 - v) + 20 * seed + t);
            auto clamp = [](int c) { return unsigned(c < 0 ? 0 : c > 255 ? 255 : c); };
            unsigned rgb = clamp(r) << 16 | clamp(g) << 8 | clamp(b);
            size_t k = 0;
            for (; k < colours.size() && colours[k] != rgb; k++) {
            }
            if (k == colours.size())
                colours.push_back(rgb);
            index[size_t(y) * w + x] = int(k);
        }
    const std::string chars = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    int cpp = colours.size() <= chars.size() * chars.size() ? 2 : 3;
    auto key = [&](size_t i) {
        std::string k;
        for (int c = 0; c < cpp; c++, i /= chars.size())
            k += chars[i % chars.size()];
        return k;
    };
    std::string s = "/* XPM */\nstatic char *photo[] = {\n\"" + std::to_string(w) + " " + std::to_string(h) + " " +
                    std::to_string(colours.size()) + " " + std::to_string(cpp) + "\",\n";
    for (size_t i = 0; i < colours.size(); i++) {
        char spec[16];
        std::snprintf(spec, sizeof spec, "#%06X", colours[i]);
        s += "\"" + key(i) + " c " + spec + "\",\n";
    }
    for (int y = 0; y < h; y++) {
        s += '"';
        for (int x = 0; x < w; x++)
            s += key(size_t(index[size_t(y) * w + x]));
        s += y + 1 < h ? "\",\n" : "\"};\n";
    }
    return s;
}

// The program's reduction of the file's table to `target`, as the reader
// does it; the error and the median milliseconds.
bool ours(Display* dpy, const std::string& path, unsigned target, const std::vector<Rgb8>& original,
          const std::vector<bool>& clear, double* error, double* ms)
{
    std::vector<double> times;
    std::vector<Rgb8> reduced;
    std::vector<bool> clearAfter;
    for (int run = 0; run < RUNS; run++) {
        XpmImage img{};
        if (XpmReadFileToXpmImage(const_cast<char*>(path.c_str()), &img, nullptr) != XpmSuccess)
            return false;
        double t0 = now_ms();
        int status = reduce_xpm_colours(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), img, target);
        times.push_back(now_ms() - t0);
        bool ok = status == 0 && pixels_of(dpy, img, &reduced, &clearAfter);
        XpmFreeXpmImage(&img);
        if (!ok)
            return false;
    }
    *error = error_of(original, clear, reduced);
    *ms = median(times);
    return true;
}

double imagemagick(Display* dpy, const std::string& path, const std::string& dir, unsigned target, bool dither,
                   const std::vector<Rgb8>& original, const std::vector<bool>& clear)
{
    std::string out = dir + "/im.xpm";
    std::string command = "convert '" + path + "'" + (dither ? "" : " -dither None") + " -colors " +
                          std::to_string(target) + " '" + out + "' 2>/dev/null";
    if (std::system(command.c_str()) != 0)
        return -1;
    std::vector<Rgb8> reduced;
    std::vector<bool> clearAfter;
    if (!read_pixels(dpy, out, &reduced, &clearAfter))
        return -1;
    return error_of(original, clear, reduced);
}

void measure(Display* dpy, const char* what, const std::string& path, const std::string& dir, unsigned target)
{
    std::vector<Rgb8> original;
    std::vector<bool> clear;
    if (!read_pixels(dpy, path, &original, &clear)) {
        std::printf("%s: does not read\n", what);
        return;
    }
    double error = 0, ms = 0;
    if (!ours(dpy, path, target, original, clear, &error, &ms)) {
        std::printf("%s: reduction failed\n", what);
        return;
    }
    double plain = imagemagick(dpy, path, dir, target, false, original, clear);
    double dithered = imagemagick(dpy, path, dir, target, true, original, clear);
    std::printf("%-22s to %3u colours: mean error %6.2f (%.1f ms); ImageMagick -dither None %6.2f, "
                "dithered %6.2f\n",
                what, target, error, ms, plain, dithered);
}

}  // namespace

int main()
{
    Display* dpy = XOpenDisplay(nullptr);
    if (!dpy) {
        std::printf("no display\n");
        return 1;
    }
    std::string dir = bench_scratch_dir("reduce_bench");
    if (dir.empty())
        return 1;
    if (std::system("command -v convert >/dev/null 2>&1") != 0)
        std::printf("(ImageMagick's convert is missing: its columns read -1)\n");
    for (int seed = 0; seed < 3; seed++) {
        std::string path = dir + "/photo" + std::to_string(seed) + ".xpm";
        std::ofstream(path) << photo_xpm(seed == 2 ? 160 : 96, seed == 2 ? 120 : 72, seed);
        for (unsigned target : {32u, 158u})
            measure(dpy, ("photo " + std::to_string(seed)).c_str(), path, dir, target);
    }
    const char* python = "/usr/share/pixmaps/python3.xpm";
    if (std::ifstream(python).good())
        for (unsigned target : {32u, 158u})
            measure(dpy, "python3.xpm", python, dir, target);
    else
        std::printf("python3.xpm: not on this system\n");
    std::system(("rm -rf '" + dir + "'").c_str());
    XCloseDisplay(dpy);
    return 0;
}
