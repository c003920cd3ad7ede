// Reading and writing image files, the file dialog's Open / Save / Save As, the New dialog and the confirm-close
// dialog, against a real X server. Every fixture is generated here.
#include <gtest/gtest.h>

#include <X11/xpm.h>
#include <Xm/FileSB.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <random>

#include "app/message.h"
#include "colour/color_list.h"
#include "files/file_dialog.h"
#include "files/image_io.h"
#include "files/new_close.h"
#include "files/open_save.h"
#include "files/suffix_rule.h"
#include "files_support.h"
#include "x_env.h"

using namespace filetest;

namespace {

struct ReadResult {
    int status = 99;
    int width = 0, height = 0, depth = 0;
    Pixmap pixmap = None;
    int hx = 0, hy = 0;
    DrawingXpmInfo info{};
};

ReadResult read(const std::string& path)
{
    ReadResult r;
    init_xpm_info(&r.info);
    r.status = read_image_file(path.c_str(), &r.width, &r.height, &r.depth, &r.pixmap, &r.hx, &r.hy, &r.info);
    return r;
}

// Gives back what a read took: pixmap, private cells and transparent cell.
void undo_read(ReadResult& r, Pixel oldBackground)
{
    Display* dpy = app().display;
    if (r.pixmap)
        XFreePixmap(dpy, r.pixmap);
    for (unsigned i = 0; i < r.info.tableCount; i++)
        if (r.info.pixels[i] != res().background)
            XFreeColors(dpy, app().colormap, &r.info.pixels[i], 1, 0);
    if (r.status == 0 && r.depth != 1 && res().background != oldBackground) {
        Pixel bg = res().background;
        XFreeColors(dpy, app().colormap, &bg, 1, 0);
        res().background = oldBackground;
    }
    release_xpm_info(&r.info);
    r.pixmap = None;
}

Drawing* open_drawing(const std::string& path)
{
    int status = open_file(path.c_str());
    pump();
    EXPECT_EQ(status, 0) << path;
    return drawing_named(path);
}

// What libXpm reads back from a file: the colour key of every pixel.
struct XpmBack {
    int status = 99;
    unsigned width = 0, height = 0;
    bool hasHotspot = false;
    int hx = -1, hy = -1;
    std::vector<std::string> pixelColour;   // "c" key per pixel
    std::vector<std::string> pixelMono;     // "m" key per pixel ("" when absent)
};

XpmBack read_back(const std::string& path)
{
    XpmBack b;
    XpmImage image{};
    XpmInfo info{};
    info.valuemask = XpmReturnInfos;
    b.status = XpmReadFileToXpmImage(const_cast<char*>(path.c_str()), &image, &info);
    if (b.status != XpmSuccess)
        return b;
    b.width = image.width;
    b.height = image.height;
    b.hasHotspot = (info.valuemask & XpmHotspot) != 0;
    if (b.hasHotspot) {
        b.hx = static_cast<int>(info.x_hotspot);
        b.hy = static_cast<int>(info.y_hotspot);
    }
    for (unsigned i = 0; i < image.width * image.height; i++) {
        const XpmColor& c = image.colorTable[image.data[i]];
        b.pixelColour.push_back(c.c_color ? c.c_color : "");
        b.pixelMono.push_back(c.m_color ? c.m_color : "");
    }
    XpmFreeXpmImage(&image);
    XpmFreeXpmInfo(&info);
    return b;
}

bool is_transparent_spec(const std::string& c) { return c == "None" || c == "#Transparent"; }

// The drawing shows each file colour with its RGB and transparent pixels
// as the colour list's transparent pixel.
void expect_drawing_matches(Drawing* d, const TestXpm& x)
{
    ColorList* list = color_list_of(d);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(d->width, x.width);
    ASSERT_EQ(d->height, x.height);
    XImage* im = XGetImage(app().display, d->image, 0, 0, d->width, d->height, AllPlanes, ZPixmap);
    ASSERT_NE(im, nullptr);
    for (int y = 0; y < x.height; y++)
        for (int px = 0; px < x.width; px++) {
            const TestColour& c = x.colours[static_cast<size_t>(x.pixels[static_cast<size_t>(y * x.width + px)])];
            unsigned long p = XGetPixel(im, px, y);
            if (is_transparent_spec(c.c)) {
                ASSERT_EQ(p, list->transparentPixel) << "transparent at " << px << "," << y;
            } else {
                ASSERT_NE(p, list->transparentPixel) << px << "," << y;
                ASSERT_EQ(rgb_of_pixel(p), rgb_of_spec(c.c)) << "colour at " << px << "," << y;
            }
        }
    XDestroyImage(im);
}

// The written file has the original's size, RGB and transparency per pixel, and the monochrome keys: black ->
// black, white or absent -> white, and "None" for the transparent colour.
void expect_file_matches(const std::string& path, const TestXpm& x)
{
    XpmBack b = read_back(path);
    ASSERT_EQ(b.status, XpmSuccess);
    ASSERT_EQ(b.width, static_cast<unsigned>(x.width));
    ASSERT_EQ(b.height, static_cast<unsigned>(x.height));
    EXPECT_TRUE(b.hasHotspot ? x.hotspotX >= 0 : x.hotspotX < 0);
    EXPECT_EQ(b.hx, x.hotspotX);
    EXPECT_EQ(b.hy, x.hotspotY);
    for (size_t i = 0; i < b.pixelColour.size(); i++) {
        const TestColour& c = x.colours[static_cast<size_t>(x.pixels[i])];
        if (is_transparent_spec(c.c)) {
            ASSERT_EQ(b.pixelColour[i], "None") << "pixel " << i;
            ASSERT_EQ(b.pixelMono[i], "None") << "pixel " << i;
        } else {
            ASSERT_EQ(rgb_of_spec(b.pixelColour[i]), rgb_of_spec(c.c)) << "pixel " << i;
            std::string mono = c.m == "black" ? "black" : "white";
            ASSERT_EQ(b.pixelMono[i], mono) << "pixel " << i << " colour " << c.c;
        }
    }
}

std::string values_line(const std::string& path)
{
    std::string text = read_file(path);
    size_t q = text.find('"');
    return q == std::string::npos ? "" : text.substr(q + 1, text.find('"', q + 1) - q - 1);
}

}  // namespace

// DrawingXpmInfo starts with the comment strings, copies deeply and releases to nothing. The monochrome names read
// from a file: "black" -> "b", "white" -> "w", absent -> "w"; "#transparent" in another case is not transparent.
TEST(FilesRead, XpmInfoLifecycleAndMonochromeNames)
{
    DrawingXpmInfo* a = new_xpm_info();
    EXPECT_STREQ(a->hintsCmt, "hints");
    EXPECT_EQ(a->colours, nullptr);

    ScratchDir dir;
    TestXpm x = pattern_xpm(4, 3, 3, 1);
    x.colours[0].m = "black";
    x.colours[1].m = "white";
    Pixel before = res().background;
    ReadResult r = read(dir.file("a.xpm", xpm_text(x)));
    ASSERT_EQ(r.status, 0);
    copy_xpm_info(a, &r.info);
    ASSERT_EQ(a->tableCount, 3u);
    EXPECT_EQ(a->colourCount, 3u);
    EXPECT_NE(a->colours, r.info.colours);
    EXPECT_NE(a->colours[0], r.info.colours[0]);
    EXPECT_STREQ(a->colours[0]->c_color, x.colours[0].c.c_str());
    EXPECT_EQ(a->pixels[2], r.info.pixels[2]);
    undo_read(r, before);
    const char* mono[] = {"b", "w", "w"};
    for (int i = 0; i < 3; i++)
        EXPECT_STREQ(a->colours[i]->m_color, mono[i]) << i << ": the copy outlives the original";
    release_xpm_info(a);
    EXPECT_EQ(a->colours, nullptr);
    EXPECT_EQ(a->pixels, nullptr);
    EXPECT_EQ(a->hintsCmt, nullptr);
    XtFree(reinterpret_cast<char*>(a));

    x.colours[2].c = "#transparent";
    ReadResult lower = read(dir.file("t.xpm", xpm_text(x)));
    EXPECT_EQ(lower.status, -1) << "not a colour name libXpm knows";
    undo_read(lower, before);
}

// An XBM opens as a depth-1 drawing with its bits and hotspot, and is written back with the same bits and hotspot
// (none stays none), readable whatever characters its name holds.
TEST(FilesRead, XbmRoundTripWithAndWithoutHotspot)
{
    ScratchDir dir;
    for (bool withHotspot : {true, false}) {
        TestXbm b = pattern_xbm(13, 9);
        if (withHotspot) {
            b.hotspotX = 5;
            b.hotspotY = 7;
        }
        std::string name = withHotspot ? "hot.xpm" : "plain.xbm";   // the name decides nothing
        Drawing* d = open_drawing(dir.file(name, xbm_text(b)));
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(d->depth, 1);
        EXPECT_EQ(d->width, 13);
        EXPECT_EQ(d->height, 9);
        EXPECT_EQ(d->hotspotX, b.hotspotX);
        EXPECT_EQ(d->hotspotY, b.hotspotY);
        for (int y = 0; y < 9; y++)
            for (int x = 0; x < 13; x++)
                ASSERT_EQ(image_pixel(d, x, y), static_cast<unsigned long>(b.bits[static_cast<size_t>(y * 13 + x)]));

        // A blank in the name must not make the file unreadable.
        std::string target = dir.path(withHotspot ? "out1.xbm" : "out 2.xbm");
        ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
        XbmBack back = read_xbm(target);
        ASSERT_EQ(back.status, BitmapSuccess);
        EXPECT_EQ(back.width, 13u);
        EXPECT_EQ(back.height, 9u);
        EXPECT_EQ(back.hx, b.hotspotX);
        EXPECT_EQ(back.hy, b.hotspotY);
        EXPECT_EQ(back.bits, b.bits);
        std::string text = read_file(target);
        EXPECT_NE(text.find(withHotspot ? "out1_width" : "out_2_width"), std::string::npos)
            << "identifiers come from the target's base name";
        EXPECT_EQ(text.find("_x_hot") != std::string::npos, withHotspot);
    }
}

// An XPM with "None", "#Transparent", black/white/absent monochrome keys and a hotspot, at one and two characters a
// pixel: the drawing shows its colours and transparency, and the written file carries them back.
TEST(FilesRead, XpmRoundTripTransparencyMonoKeysHotspot)
{
    ScratchDir dir;
    for (int cpp : {1, 2}) {
        TestXpm x;
        x.width = 7;
        x.height = 5;
        x.cpp = cpp;
        // libXpm lists the transparent colour first, as the program writes it.
        x.colours = {{cpp == 1 ? "None" : "#Transparent", ""}, {"#102030", "black"}, {"#F0E0D0", "white"},
                     {"#808000", ""}, {"#00FF7F", "black"}};
        for (int i = 0; i < 35; i++)
            x.pixels.push_back((i * 4 + i / 7) % 5);
        x.hotspotX = 3;
        x.hotspotY = 4;
        std::string path = dir.file("pic" + std::to_string(cpp) + ".xpm", xpm_text(x));
        Drawing* d = open_drawing(path);
        ASSERT_NE(d, nullptr);
        EXPECT_NE(d->depth, 1);
        EXPECT_EQ(d->hotspotX, 3);
        EXPECT_EQ(d->hotspotY, 4);
        expect_drawing_matches(d, x);

        std::string target = dir.path("out" + std::to_string(cpp) + ".px");
        ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
        expect_file_matches(target, x);
    }
}

// A file written by the program opens again and writes out identically.
TEST(FilesRead, WrittenFileOpensAgainUnchanged)
{
    ScratchDir one, two;
    TestXpm x = pattern_xpm(16, 11, 12, 2);
    x.colours[0] = {"None", ""};
    x.colours[3].m = "black";
    x.hotspotX = 15;
    x.hotspotY = 0;
    Drawing* d = open_drawing(one.file("src.xpm", xpm_text(x)));
    ASSERT_NE(d, nullptr);
    std::string first = one.path("pic.px"), second = two.path("pic.px");
    ASSERT_EQ(write_drawing(d, first.c_str(), false), 0);
    Drawing* e = open_drawing(first);
    ASSERT_NE(e, nullptr);
    expect_drawing_matches(e, x);
    ASSERT_EQ(write_drawing(e, second.c_str(), false), 0);
    EXPECT_EQ(read_file(first), read_file(second));
}

// A hundred colours at two characters a pixel survive the round trip, each in a private cell of its own; no hotspot
// is written as -1 -1, which reads back as none.
TEST(FilesRead, HundredColoursRoundTrip)
{
    ScratchDir dir;
    TestXpm x = pattern_xpm(40, 30, 100, 2);
    std::string path = dir.file("many.xpm", xpm_text(x));
    Drawing* d = open_drawing(path);
    ASSERT_NE(d, nullptr);
    expect_drawing_matches(d, x);
    ASSERT_EQ(d->xpmAttributes->tableCount, 100u);
    std::vector<Pixel> cells(d->xpmAttributes->pixels, d->xpmAttributes->pixels + 100);
    std::sort(cells.begin(), cells.end());
    EXPECT_EQ(std::unique(cells.begin(), cells.end()), cells.end()) << "one cell per colour";
    EXPECT_EQ(d->hotspotX, -1);
    std::string target = dir.path("many.px");
    ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
    expect_file_matches(target, x);
    std::string values = values_line(target);
    ASSERT_GE(values.size(), 5u);
    EXPECT_EQ(values.substr(values.size() - 5), "-1 -1") << values;
}

// Two file colours of one RGB (one shared libXpm cell) become two private cells; the read takes exactly one cell
// per colour plus the transparent one, and makes that the program's transparent pixel.
TEST(FilesRead, PrivateCellsAndTheirCount)
{
    ScratchDir dir;
    TestXpm x;
    x.width = 4;
    x.height = 2;
    x.colours = {{"#FF0000", ""}, {"#FF0000", "black"}, {"#0000FF", ""}};
    x.pixels = {0, 0, 1, 1, 2, 2, 1, 0};
    Pixel before = res().background;
    int freeBefore = free_cells();
    ReadResult r = read(dir.file("s.xpm", xpm_text(x)));
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(free_cells(), freeBefore - 4);
    EXPECT_NE(res().background, before);
    EXPECT_NE(r.info.pixels[0], r.info.pixels[1]) << "shared cell split in two";
    EXPECT_EQ(rgb_of_pixel(r.info.pixels[0]), 0xFF0000u);
    EXPECT_EQ(rgb_of_pixel(r.info.pixels[1]), 0xFF0000u);
    XColor probe{};
    probe.pixel = r.info.pixels[0];
    probe.red = 0x1234;
    probe.flags = DoRed;
    XStoreColor(app().display, app().colormap, &probe);   // a private cell takes a store
    XSync(app().display, False);
    undo_read(r, before);
    EXPECT_EQ(free_cells(), freeBefore);
}

// A compressed XPM is read through libXpm's own decompression, and written
// back compressed.
TEST(FilesRead, CompressedXpm)
{
    if (access("/bin/gzip", X_OK) != 0 && access("/usr/bin/gzip", X_OK) != 0)
        GTEST_SKIP() << "no gzip";
    ScratchDir dir;
    TestXpm x = pattern_xpm(9, 8, 5, 1);
    std::string path = dir.file("z.xpm", xpm_text(x));
    ASSERT_EQ(std::system(("gzip -f '" + path + "'").c_str()), 0);
    Drawing* d = open_drawing(path + ".gz");
    ASSERT_NE(d, nullptr);
    expect_drawing_matches(d, x);
    Drawing* e = open_drawing(path);   // gone: libXpm reads path.gz instead
    ASSERT_NE(e, nullptr);
    expect_drawing_matches(e, x);

    // Saved under its own name it stays compressed, so it opens again.
    ASSERT_EQ(write_drawing(d, d->name.c_str(), false), 0);
    EXPECT_EQ(read_file(path + ".gz").substr(0, 2), "\x1f\x8b");
    XpmBack back = read_back(path + ".gz");
    ASSERT_EQ(back.status, XpmSuccess);
    EXPECT_EQ(back.width, 9u);
    Drawing* again = open_drawing(path + ".gz");
    ASSERT_NE(again, nullptr);
    expect_drawing_matches(again, x);
}

// A compressed file of a few kilobytes that unfolds into a huge image, or into more data than any drawing's file
// holds, is refused before libXpm parses it, at once and without taking the memory; also behind a name without its
// ".gz".
TEST(FilesBadInput, CompressedBombRefusedUnread)
{
    if (access("/bin/gzip", X_OK) != 0)
        GTEST_SKIP() << "no gzip";
    ScratchDir dir;
    auto compressed = [&](const std::string& name, const std::string& header, int rows, int columns) {
        std::string path = dir.path(name);
        FILE* gz = popen(("gzip -c > '" + path + "'").c_str(), "w");
        std::fputs(header.c_str(), gz);
        std::string row = "\"" + std::string(static_cast<size_t>(columns), 'a') + "\",\n";
        for (int i = 0; i < rows; i++)
            std::fputs(row.c_str(), gz);
        std::fputs("};\n", gz);
        pclose(gz);
        return path;
    };
    const char* head = "/* XPM */\nstatic char *a[] = {\n\"%d %d 1 1\",\n\"a c #000000\",\n";
    char big[200], small[200];
    std::snprintf(big, sizeof big, head, 6000, 6000);
    std::snprintf(small, sizeof small, head, 4, 4);
    std::string huge = compressed("huge.xpm.gz", big, 6000, 6000);
    std::string longTail = compressed("tail.xpm.gz", small, 6000, 6000);   // 4 x 4, then 36 MB
    compressed("behind.xpm.gz", big, 6000, 6000);

    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    auto start = std::chrono::steady_clock::now();
    for (const std::string& path : {huge, longTail, dir.path("behind.xpm")}) {
        ReadResult r = read(path);
        EXPECT_EQ(r.status, -1) << path;
        EXPECT_EQ(r.pixmap, None) << path;
        release_xpm_info(&r.info);
    }
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024) << "kilobytes taken";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

// Bad input never crashes or hangs: each file gives its status, makes no
// drawing, takes no colour cell and leaves the transparent pixel alone.
TEST(FilesBadInput, StatusAndNothingLeft)
{
    ScratchDir dir;
    std::string good = xpm_text(pattern_xpm(8, 8, 4, 2));
    TestXpm wrongCpp = pattern_xpm(8, 8, 4, 1);
    std::string wrong = xpm_text(wrongCpp);
    wrong.replace(wrong.find("8 8 4 1"), 7, "8 8 4 2");
    std::string binary;
    std::mt19937 rng(7);
    for (int i = 0; i < 5000; i++)
        binary += static_cast<char>(rng());
    TestXpm many = pattern_xpm(20, 20, 300, 2);
    mkfifo(dir.path("fifo").c_str(), 0600);
    mkdir(dir.path("adir").c_str(), 0700);

    struct Case {
        const char* what;
        std::string path;
        int status;
    } cases[] = {
        {"truncated", dir.file("trunc.xpm", good.substr(0, good.size() / 2)), -1},
        {"binary", dir.file("bin.xpm", binary), -1},
        {"empty", dir.file("empty.xpm", ""), -1},
        {"huge XPM header", dir.file("huge.xpm", "/* XPM */\nstatic char *a[] = {\n\"100000 100000 1 1\",\n\"a c #000000\",\n"), -1},
        {"colour count behind a comment", dir.file("hidden.xpm", "/* XPM */\nstatic char *a[] = {\n/* \"1 1 1 1\" */\n\"2 2 50000000 1\",\n\"a c #000000\",\n"), -1},
        {"XPM 1 colour count", dir.file("one.xpm", "#define a_format 1\n#define a_width 2\n#define a_height 2\n#define a_ncolors 50000000\n#define a_chars_per_pixel 1\n"), -1},
        {"XPM 2 colour count behind a comment line", dir.file("two.xpm", "! XPM2\n! note\n2 2 50000000 1\n"), -1},
        {"huge XBM header", dir.file("huge.xbm", "#define a_width 100000\n#define a_height 100000\nstatic char a_bits[] = {\n0x00};\n"), -1},
        {"zero XBM width", dir.file("zero.xbm", "#define a_width 0\n#define a_height 4\nstatic char a_bits[] = {\n0x00};\n"), -1},
        {"just too wide", dir.file("wide.xbm", xbm_text(pattern_xbm(513, 2))), -1},
        {"just too tall", dir.file("tall.xpm", xpm_text(pattern_xpm(2, 721, 2, 1))), -1},
        {"wrong chars per pixel", dir.file("cpp.xpm", wrong), -1},
        {"not an image", dir.file("text.xpm", "Dear diary,\nnothing to see here.\n"), -1},
        {"more colours than cells", dir.file("many.xpm", xpm_text(many)), 1},
        {"missing", dir.path("missing.xpm"), -1},
        {"directory", dir.path("adir"), -1},
        {"fifo", dir.path("fifo"), -1},
    };
    make_drawing(10, 10);   // another drawing stays open meanwhile
    int count = open_count();
    Pixel background = res().background;
    int freeBefore = free_cells();
    for (const Case& c : cases) {
        auto started = std::chrono::steady_clock::now();
        ReadResult r = read(c.path);
        EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(1))
            << c.what << ": a few bytes must not keep the reader busy";
        EXPECT_EQ(r.status, c.status) << c.what;
        EXPECT_EQ(r.pixmap, None) << c.what;
        EXPECT_EQ(r.width, 0) << c.what;
        EXPECT_EQ(res().background, background) << c.what;
        EXPECT_EQ(free_cells(), freeBefore) << c.what << ": cells leaked";
        release_xpm_info(&r.info);
        EXPECT_EQ(open_file(c.path.c_str()), c.status) << c.what;
        pump();
        EXPECT_EQ(open_count(), count) << c.what;
    }
}

// When the colour cells run out the user is told "Unable to allocate
// color.", no drawing is made and the open drawings keep working.
TEST(FilesBadInput, ColourCellsRunOut)
{
    ScratchDir dir;
    Drawing* keep = make_drawing(20, 20);
    ColorList* list = color_list_of(keep);
    ASSERT_NE(list, nullptr);
    int count = open_count();
    int freeBefore = free_cells();
    std::string path = dir.file("c200.xpm", xpm_text(pattern_xpm(20, 20, 200, 2)));
    EXPECT_EQ(open_file(path.c_str()), 1);
    pump();
    EXPECT_EQ(dialog_message(message_dialog(0)), "Unable to allocate color.");
    EXPECT_EQ(open_count(), count);
    EXPECT_EQ(free_cells(), freeBefore);
    XFillRectangle(app().display, keep->image, keep->foregroundGC, 2, 2, 3, 3);
    EXPECT_EQ(image_pixel(keep, 3, 3), list->foregroundEntry->pixel);
    EXPECT_EQ(rgb_of_pixel(list->foregroundEntry->pixel), 0u) << "black stays black";
}

// Random mutations of valid XPM and XBM files, read for a few seconds:
// statuses are only 0, -1 or 1, and whatever reads stays within the limits.
TEST(FilesBadInput, MutationFuzz)
{
    ScratchDir dir;
    TestXpm x = pattern_xpm(12, 9, 6, 2);
    x.colours[0] = {"None", ""};
    x.colours[1].m = "black";
    x.hotspotX = 2;
    x.hotspotY = 3;
    TestXbm b = pattern_xbm(17, 6);
    b.hotspotX = 1;
    b.hotspotY = 1;
    const std::string seeds[] = {xpm_text(x), xbm_text(b)};
    std::mt19937 rng(20240531);
    const char interesting[] = "\"\n,{}0123456789-# /*XPMcmsNone_widthheight";
    Pixel background = res().background;
    auto stop = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    int runs = 0, accepted = 0;
    while (std::chrono::steady_clock::now() < stop) {
        std::string s = seeds[runs % 2];
        int edits = 1 + static_cast<int>(rng() % 6);
        for (int e = 0; e < edits && !s.empty(); e++) {
            size_t at = rng() % s.size();
            switch (rng() % 5) {
            case 0: s[at] = static_cast<char>(rng()); break;
            case 1: s[at] = interesting[rng() % (sizeof interesting - 1)]; break;
            case 2: s.erase(at, 1 + rng() % 8); break;
            case 3: s.insert(at, std::string(1 + rng() % 4, interesting[rng() % (sizeof interesting - 1)])); break;
            case 4: s.resize(at); break;
            }
        }
        ReadResult r = read(dir.file("fuzz", s));
        ASSERT_TRUE(r.status == 0 || r.status == -1 || r.status == 1) << "status " << r.status;
        if (r.status == 0) {
            accepted++;
            ASSERT_GT(r.width, 0);
            ASSERT_LE(r.width, 512);
            ASSERT_LE(r.height, 720);
            ASSERT_NE(r.pixmap, None);
            ASSERT_TRUE(r.hx == -1 || (r.hx >= 0 && r.hx < r.width));
        } else {
            ASSERT_EQ(r.pixmap, None);
            ASSERT_EQ(res().background, background);
        }
        undo_read(r, background);
        runs++;
    }
    XSync(app().display, False);
    RecordProperty("runs", runs);
    EXPECT_GT(runs, 50);
    EXPECT_GT(accepted, 0) << "some mutations still read";
}

// A file whose only colour is transparent, and one whose transparent colour sits between others, read, show and
// write back pixel for pixel with their monochrome keys, and closing such a drawing gives every cell back.
TEST(FilesRead, TransparentOnlyOrInTheMiddle)
{
    ScratchDir dir;
    make_drawing(10, 10);   // another drawing stays open meanwhile
    TestXpm only;
    only.width = 3;
    only.height = 2;
    only.colours = {{"None", ""}};
    only.pixels = {0, 0, 0, 0, 0, 0};
    TestXpm middle = only;
    middle.colours = {{"#102030", "black"}, {"#Transparent", ""}, {"#F0E0D0", "white"}, {"#405060", "black"}};
    middle.pixels = {0, 1, 2, 3, 1, 0};
    struct Case {
        const char* what;
        TestXpm xpm;
    } cases[] = {{"only", only}, {"middle", middle}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        int freeBefore = free_cells();
        Drawing* d = open_drawing(dir.file(std::string(c.what) + ".xpm", xpm_text(c.xpm)));
        ASSERT_NE(d, nullptr);
        expect_drawing_matches(d, c.xpm);
        std::string target = dir.path(std::string(c.what) + "_out.px");
        ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
        expect_file_matches(target, c.xpm);
        finish_close(nullptr, d, nullptr);
        pump();
        EXPECT_EQ(free_cells(), freeBefore) << "cells left behind";
    }
}

