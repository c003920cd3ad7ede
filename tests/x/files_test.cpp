// Reading and writing image files against a real X server. Every fixture is generated here.
#include <gtest/gtest.h>

#include <X11/xpm.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <set>

#include "colour/color_list.h"
#include "core/message.h"
#include "core/server_layout.h"
#include "core/x_owned.h"
#include "files/image_header.h"
#include "files/image_io.h"
#include "app/new_close.h"
#include "app/open_save.h"
#include "files_support.h"
#include "x_env.h"
#include "files/read_status.h"
#include "files/write_drawing.h"

using namespace filetest;

namespace {

struct ReadResult {
    int status = 99;
    int width = 0, height = 0, depth = 0;
    Pixmap pixmap = None;
    int hx = 0, hy = 0;
    DrawingXpmInfo info{};
};

// A read that succeeds hands over its picture, from which the drawing's copy
// is made: that copy must be the pixmap as the server gives it back, layout
// and every pixel.
ReadResult read(const std::string& path)
{
    ReadResult r;
    init_xpm_info(&r.info);
    XImage* handed = nullptr;
    r.status = read_image_file(path.c_str(), &r.width, &r.height, &r.depth, &r.pixmap, &r.hx, &r.hy, &r.info,
                               nullptr, &handed);
    bool handedOver = handed != nullptr;
    ImagePtr picture(handed ? server_layout_copy(app().display, handed) : nullptr);
    if (handed)
        XDestroyImage(handed);
    if (r.status != 0) {
        EXPECT_FALSE(handedOver) << path;
        return r;
    }
    ImagePtr back(XGetImage(app().display, r.pixmap, 0, 0, static_cast<unsigned>(r.width),
                            static_cast<unsigned>(r.height), AllPlanes, ZPixmap));
    EXPECT_TRUE(handedOver) << path;
    if (!picture || !back)
        return r;
    const XImage *p = picture.get(), *s = back.get();
    EXPECT_TRUE(p->width == s->width && p->height == s->height && p->format == s->format && p->depth == s->depth &&
                p->bits_per_pixel == s->bits_per_pixel && p->bytes_per_line == s->bytes_per_line &&
                p->byte_order == s->byte_order && p->bitmap_unit == s->bitmap_unit &&
                p->bitmap_bit_order == s->bitmap_bit_order && p->bitmap_pad == s->bitmap_pad && p->xoffset == s->xoffset)
        << path << ": the picture is not laid out as the pixmap reads back";
    int differ = 0;
    for (int y = 0; y < r.height; y++)
        for (int x = 0; x < r.width; x++)
            differ += XGetPixel(picture.get(), x, y) != XGetPixel(back.get(), x, y);
    EXPECT_EQ(differ, 0) << path << ": pixels of the picture differ from the pixmap's";
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
}

// Opens a file as the program does; the test fails when no drawing comes of it.
Drawing* open_drawing(const std::string& path)
{
    EXPECT_EQ(open_file(path.c_str()), 0) << path;
    pump();
    Drawing* d = drawing_named(path);
    EXPECT_NE(d, nullptr) << path;
    return d;
}

bool is_transparent_spec(const std::string& c) { return c == "None" || c == "none" || c == "#Transparent"; }

// The drawing shows each file colour with its RGB and transparent pixels as the colour list's transparent pixel.
void expect_drawing_matches(Drawing* d, const TestXpm& x)
{
    ColorList* list = color_list_of(d);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(d->width, x.width);
    ASSERT_EQ(d->height, x.height);
    for (int y = 0; y < x.height; y++)
        for (int px = 0; px < x.width; px++) {
            const std::string& c = x.colours[static_cast<size_t>(x.pixels[static_cast<size_t>(y * x.width + px)])].c;
            unsigned long p = image_pixel(d, px, y);
            if (is_transparent_spec(c))
                ASSERT_EQ(p, list->transparentPixel) << "transparent at " << px << "," << y;
            else
                ASSERT_EQ(rgb_of_pixel(p), rgb_of_spec(c)) << "colour at " << px << "," << y;
        }
}

// libXpm reads the written file back with the original's size, hotspot, RGB and transparency per pixel, and the
// monochrome keys: black -> black, white or absent -> white, "None" for the transparent colour.
void expect_file_matches(const std::string& path, const TestXpm& x)
{
    XpmImage image{};
    XpmInfo info{};
    info.valuemask = XpmReturnInfos;
    ASSERT_EQ(XpmReadFileToXpmImage(const_cast<char*>(path.c_str()), &image, &info), XpmSuccess);
    EXPECT_EQ(image.width, static_cast<unsigned>(x.width));
    EXPECT_EQ(image.height, static_cast<unsigned>(x.height));
    bool hot = (info.valuemask & XpmHotspot) != 0;
    EXPECT_EQ(hot ? static_cast<int>(info.x_hotspot) : -1, x.hotspotX);
    EXPECT_EQ(hot ? static_cast<int>(info.y_hotspot) : -1, x.hotspotY);
    for (unsigned i = 0; i < image.width * image.height && i < x.pixels.size(); i++) {
        const XpmColor& got = image.colorTable[image.data[i]];
        const TestColour& want = x.colours[static_cast<size_t>(x.pixels[i])];
        std::string c = got.c_color ? got.c_color : "", m = got.m_color ? got.m_color : "";
        if (!is_transparent_spec(want.c))
            c = std::to_string(rgb_of_spec(c));
        ASSERT_EQ(c + "/" + m, is_transparent_spec(want.c) ? "None/None"
                                   : std::to_string(rgb_of_spec(want.c)) + (want.m == "black" ? "/black" : "/white"))
            << "pixel " << i << " colour " << want.c;
    }
    XpmFreeXpmImage(&image);
    XpmFreeXpmInfo(&info);
}

}  // namespace

// An XBM opens as a depth-1 drawing with its hotspot, and is written back with the same bits and hotspot (none stays
// none), readable whatever characters its name holds.
TEST(FilesRead, XbmRoundTripWithAndWithoutHotspot)
{
    ScratchDir dir;
    for (bool withHotspot : {true, false}) {
        TestXbm b = pattern_xbm(13, 9);
        b.hotspotX = b.hotspotY = withHotspot ? 5 : -1;
        // The name's suffix decides nothing.
        Drawing* d = open_drawing(dir.file(withHotspot ? "hot.xpm" : "plain.xbm", xbm_text(b)));
        // A blank in the name must not make the file unreadable.
        std::string target = dir.path(withHotspot ? "out1.xbm" : "out 2.xbm");
        ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
        XbmBack back = read_xbm(target);
        ASSERT_EQ(back.status, BitmapSuccess);
        EXPECT_EQ(back.width, 13u);
        EXPECT_EQ(back.hx, b.hotspotX);
        EXPECT_EQ(back.hy, b.hotspotY);
        EXPECT_EQ(back.bits, b.bits);
        EXPECT_NE(read_file(target).find(withHotspot ? "out1_width" : "out_2_width"), std::string::npos)
            << "identifiers come from the target's base name";
    }
}

// XPMs with "None", "none" or "#Transparent" (first, in the middle, last or the only colour), black/white/absent
// monochrome keys, an unused colour and a hotspot, at one and two characters a pixel: the drawing shows them, the
// written file carries them back and reopens unchanged, and closing the drawings gives every cell back.
TEST(FilesRead, XpmRoundTripTransparencyMonoKeysHotspot)
{
    ScratchDir dir, other;
    make_drawing(10, 10);   // another drawing stays open meanwhile
    std::vector<int> spread;
    for (int i = 0; i < 35; i++)
        spread.push_back((i * 4 + i / 7) % 5);
    const std::vector<TestColour> five = {{"None", ""}, {"#102030", "black"}, {"#F0E0D0", "white"},
                                          {"#808000", ""}, {"#00FF7F", "black"}};
    std::vector<TestXpm> cases = {
        {.width = 7, .height = 5, .cpp = 1, .colours = five, .pixels = spread, .hotspotX = 3, .hotspotY = 4},
        {.width = 7, .height = 5, .cpp = 2, .colours = five, .pixels = spread, .hotspotX = 3, .hotspotY = 4},
        {.width = 3, .height = 2, .colours = {{"None", ""}}, .pixels = {0, 0, 0, 0, 0, 0}},
        {.width = 3, .height = 2, .colours = {{"#102030", "black"}, {"#Transparent", ""}, {"#F0E0D0", "white"},
                                              {"#405060", "black"}, {"#ABCDEF", "black"}},   // the last one unused
         .pixels = {0, 1, 2, 3, 1, 0}},
        {.width = 3, .height = 1, .colours = {{"#FFFFFF", "white"}, {"#000000", "black"}, {"none", ""}},
         .pixels = {0, 1, 2}},
    };
    cases[1].colours[0].c = "#Transparent";
    for (size_t i = 0; i < cases.size(); i++) {
        SCOPED_TRACE(i);
        int freeBefore = free_cells();
        Drawing* d = open_drawing(dir.file("in" + std::to_string(i) + ".xpm", xpm_text(cases[i])));
        expect_drawing_matches(d, cases[i]);
        std::string name = "out" + std::to_string(i) + ".px", target = dir.path(name), again = other.path(name);
        ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
        expect_file_matches(target, cases[i]);
        finish_close(nullptr, d, nullptr);
        pump();
        // What the program wrote opens again and writes out identically.
        Drawing* e = open_drawing(target);
        expect_drawing_matches(e, cases[i]);
        ASSERT_EQ(write_drawing(e, again.c_str(), false), 0);
        EXPECT_EQ(read_file(again), read_file(target));
        finish_close(nullptr, e, nullptr);
        pump();
        EXPECT_EQ(free_cells(), freeBefore) << "cells left behind";
    }
}

// Two to a hundred colours survive the round trip, each in a private cell of its own, even two colours of one RGB
// (which libXpm gives one shared cell); no hotspot is written as -1 -1, which reads back as none.
TEST(FilesRead, TwoToHundredColoursRoundTrip)
{
    ScratchDir dir;
    for (int count : {2, 100}) {
        TestXpm x = pattern_xpm(40, 30, count, 2);
        std::string name = "c" + std::to_string(count);
        Drawing* d = open_drawing(dir.file(name + ".xpm", xpm_text(x)));
        expect_drawing_matches(d, x);
        ASSERT_EQ(d->xpmAttributes->tableCount, static_cast<unsigned>(count));
        EXPECT_EQ(std::set<Pixel>(d->xpmAttributes->pixels, d->xpmAttributes->pixels + count).size(),
                  static_cast<size_t>(count)) << "one cell per colour";
        std::string target = dir.path(name + ".px");
        ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
        expect_file_matches(target, x);
        std::string text = read_file(target);   // the values line is the first string
        EXPECT_EQ(text.find(" -1 -1\","), text.find("\",") - 6) << text.substr(0, 80);
    }
    TestXpm same{.width = 3, .height = 1, .colours = {{"#FF0000", ""}, {"#FF0000", "black"}, {"#0000FF", ""}},
                 .pixels = {0, 1, 2}};
    Drawing* d = open_drawing(dir.file("same.xpm", xpm_text(same)));
    expect_drawing_matches(d, same);
    EXPECT_NE(d->xpmAttributes->pixels[0], d->xpmAttributes->pixels[1]) << "one RGB, two colours, two cells";
}

// Every colour whose cell is the transparent pixel is written under the key "None", not only the colour list's
// anchor: the black-and-white mapping given to the drawing's transparent colour lands on the file's transparent
// colour.
TEST(FilesWrite, TransparentCellsAreWrittenAsNone)
{
    ScratchDir dir;
    TestXpm x{.width = 3, .height = 1, .colours = {{"None", ""}, {"#102030", "black"}, {"#F0E0D0", "white"}},
              .pixels = {0, 1, 2}};
    Drawing* d = open_drawing(dir.file("in.xpm", xpm_text(x)));
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    ASSERT_NE(list, nullptr);
    ColorEntry* transparent = list->anchor->next;
    ASSERT_TRUE(transparent && transparent->pixel == list->transparentPixel);
    transparent->mapsTo = app().whitePixel;   // as the colour editor's White sample sets it

    std::string target = dir.path("out.xpm");
    ASSERT_EQ(write_drawing(d, target.c_str(), false), 0);
    XpmImage image{};
    ASSERT_EQ(XpmReadFileToXpmImage(const_cast<char*>(target.c_str()), &image, nullptr), XpmSuccess);
    std::map<std::string, std::string> monoOf;
    for (unsigned i = 0; i < image.ncolors; i++) {
        const XpmColor& c = image.colorTable[i];
        std::string key = c.c_color ? c.c_color : "";
        monoOf[key == "None" ? key : std::to_string(rgb_of_spec(key))] = c.m_color ? c.m_color : "";
    }
    XpmFreeXpmImage(&image);
    EXPECT_EQ(monoOf["None"], "white") << "the transparent colour's own mapping";
    EXPECT_EQ(monoOf[std::to_string(rgb_of_spec("#102030"))], "black");
    EXPECT_EQ(monoOf[std::to_string(rgb_of_spec("#F0E0D0"))], "white");
}

// A compressed XPM is read through libXpm's own decompression (also behind its name without ".gz"), and saved
// under its own name it stays compressed, so it opens again.
TEST(FilesRead, CompressedXpm)
{
    ScratchDir dir;
    TestXpm x = pattern_xpm(9, 8, 5, 1);
    std::string path = dir.file("z.xpm", xpm_text(x));
    ASSERT_EQ(std::system(("gzip -f '" + path + "'").c_str()), 0);
    Drawing* d = open_drawing(path + ".gz");
    expect_drawing_matches(d, x);
    Drawing* e = open_drawing(path);
    expect_drawing_matches(e, x);

    ASSERT_EQ(write_drawing(d, d->name.c_str(), false), 0);
    EXPECT_EQ(read_file(path + ".gz").substr(0, 2), "\x1f\x8b");
    Drawing* again = open_drawing(path + ".gz");
    expect_drawing_matches(again, x);
}

namespace {

// Answers No to the question about reducing a file's colours, when it is up.
void answer_no_cb(XtPointer, XtIntervalId*)
{
    Widget question = message_dialog(2);
    if (question && XtIsManaged(question))
        XtCallCallbacks(XtNameToWidget(question, "No"), XmNactivateCallback, nullptr);
}

}  // namespace

// Bad input never crashes: each file gives its status, makes no drawing, takes no colour cell and leaves the
// transparent pixel alone. (The header checks' verdicts on every form of header are unit.ImageHeader's; here one
// file a verdict.) A few kilobytes compressed that unfold into a huge image or more data than any drawing's
// file are refused without taking the memory. Running out of colour cells, or a table larger than the colormap, is
// told as "Unable to allocate color." and leaves the open drawing working.
TEST(FilesBadInput, StatusAndNothingLeft)
{
    ScratchDir dir;
    std::string good = xpm_text(pattern_xpm(8, 8, 4, 2));
    std::string wrong = xpm_text(pattern_xpm(8, 8, 4, 1));
    wrong.replace(wrong.find("8 8 4 1"), 7, "8 8 4 2");
    mkfifo(dir.path("fifo").c_str(), 0600);
    mkdir(dir.path("adir").c_str(), 0700);
    auto gz = [&](const std::string& name, int width, int height) {
        std::string path = dir.path(name);
        FILE* out = popen(("gzip -c > '" + path + "'").c_str(), "w");
        std::fprintf(out, "/* XPM */\nstatic char *a[] = {\n\"%d %d 1 1\",\n\"a c #000000\",\n", width, height);
        std::string row = "\"" + std::string(6000, 'a') + "\",\n";
        for (int i = 0; i < 6000; i++)
            std::fputs(row.c_str(), out);
        pclose(out);
        return path;
    };
    gz("behind.xpm.gz", 6000, 6000);
    auto xbm = [](const std::string& w, const std::string& h) {
        return "#define a_width " + w + "\n#define a_height " + h + "\nstatic char a_bits[] = {\n0x00};\n";
    };

    struct Case {
        const char* what;
        std::string path;
        int status;
    } cases[] = {
        {"truncated", dir.file("trunc.xpm", good.substr(0, good.size() / 2)), -1},
        {"empty", dir.file("empty.xpm", ""), -1},
        {"huge XPM header", dir.file("huge.xpm", "/* XPM */\nstatic char *a[] = {\n\"100000 100000 1 1\",\n"), -1},
        {"huge XBM header", dir.file("huge.xbm", xbm("100000", "100000")), -1},
        {"zero XBM width", dir.file("zero.xbm", xbm("0", "4")), -1},
        {"XBM size redefined",
         dir.file("redef.xbm", "#define a_width 8\n#define a_height 8\n" + xbm("90000", "90000")), -1},
        {"just too wide", dir.file("wide.xbm", xbm_text(pattern_xbm(513, 2))), -1},
        {"just too tall", dir.file("tall.xpm", xpm_text(pattern_xpm(2, 721, 2, 1))), -1},
        {"wrong chars per pixel", dir.file("cpp.xpm", wrong), -1},
        {"not an image", dir.file("text.xpm", "Dear diary,\nnothing to see here.\n"), -1},
        {"missing", dir.path("missing.xpm"), -1},
        {"directory", dir.path("adir"), -1},
        {"fifo", dir.path("fifo"), -1},
        {"compressed huge image", gz("huge.xpm.gz", 6000, 6000), -1},
        {"compressed 4 x 4 then 36 MB", gz("tail.xpm.gz", 4, 4), -1},
        {"compressed behind its plain name", dir.path("behind.xpm"), -1},
        {"more colours than the colormap has", dir.file("many.xpm", xpm_text(pattern_xpm(20, 20, 300, 2))), 1},
        {"more colours than free cells", "", 1},
    };
    Drawing* keep = make_drawing(10, 10);   // another drawing stays open and working meanwhile
    int count = open_count();
    Pixel background = res().background;
    int freeBefore = free_cells();
    // A table the colormap could hold, one colour more than it has free (the transparent cell is one more).
    ASSERT_TRUE(freeBefore > 0 && freeBefore < 256) << freeBefore;
    cases[std::size(cases) - 1].path = dir.file("more.xpm", xpm_text(pattern_xpm(20, 20, freeBefore, 2)));
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    for (const Case& c : cases) {
        ReadResult r = read(c.path);
        EXPECT_EQ(r.status, c.status) << c.what;
        EXPECT_EQ(r.pixmap, None) << c.what;
        EXPECT_EQ(res().background, background) << c.what;
        EXPECT_EQ(free_cells(), freeBefore) << c.what << ": cells leaked";
        release_xpm_info(&r.info);
        // More colours than free cells ask first; No is the refusal.
        XtAppAddTimeOut(app().context, 0, answer_no_cb, nullptr);
        EXPECT_EQ(open_file(c.path.c_str()), c.status) << c.what;
        pump();
        EXPECT_EQ(open_count(), count) << c.what;
    }
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024) << "kilobytes taken";
    EXPECT_EQ(dialog_message(message_dialog(0)), "Unable to allocate color.") << "after running out of cells";
    XFillRectangle(app().display, keep->image, keep->foregroundGC, 2, 2, 3, 3);
    EXPECT_EQ(rgb_of_pixel(image_pixel(keep, 3, 3)), 0u) << "black stays black";
}

namespace {

// Bytes this process has read from files (and pipes) so far.
unsigned long long bytes_read()
{
    std::ifstream io("/proc/self/io");
    std::string key;
    unsigned long long value = 0;
    while (io >> key >> value)
        if (key == "rchar:")
            return value;
    return 0;
}

// `text`, then `fill` up to `size` bytes: a hole when the fill is a NUL, so that a gigabyte costs no disk.
std::string padded_file(const ScratchDir& dir, const std::string& name, const std::string& text, char fill,
                        unsigned long long size)
{
    std::string path = dir.file(name, text);
    if (fill == '\0') {
        EXPECT_EQ(truncate(path.c_str(), static_cast<off_t>(size)), 0) << name;
    } else {
        std::ofstream(path, std::ios::app) << std::string(size - text.size(), fill);
    }
    return path;
}

}  // namespace

// A file larger than any drawing's, or one whose first bytes show no header, is refused with the read's usual status
// before any reader goes through it: only its first bytes are read. So is a table with more colours than the colormap
// has, as running out of cells. The bounds are exact: a drawing padded up to one
// still opens, one byte more is refused. An XBM's header must lie within the first bytes looked at.
TEST(FilesBadInput, HugeOrHeaderlessFilesRefusedUnread)
{
    ScratchDir dir;
    const unsigned long long gigabyte = 1ull << 30;
    const std::string xpm = xpm_text(pattern_xpm(4, 3, 2, 1));
    const std::string xbm = xbm_text(pattern_xbm(9, 2));
    const unsigned long long xpmBound = max_xpm_file_bytes(static_cast<unsigned long>(app().visual->map_entries));
    std::string comment;
    while (comment.size() + 40 < IMAGE_HEAD_BYTES - xbm.size())
        comment += "/* a comment line before the header */\n";

    struct Case {
        const char* what;
        std::string path;
        int status;
    } cases[] = {
        {"a gigabyte of zeros", padded_file(dir, "zeros.xpm", "", '\0', gigabyte), -1},
        {"a gigabyte of zeros, compressed by name", padded_file(dir, "zeros.xpm.gz", "", '\0', gigabyte), -1},
        {"an XPM, then a gigabyte of zeros", padded_file(dir, "tail.xpm", xpm, '\0', gigabyte), -1},
        {"an XBM, then a gigabyte of zeros", padded_file(dir, "tail.xbm", xbm, '\0', gigabyte), -1},
        {"an XPM padded to the bound", padded_file(dir, "bound.xpm", xpm, ' ', xpmBound), 0},
        {"an XPM one byte over the bound", padded_file(dir, "over.xpm", xpm, ' ', xpmBound + 1), -1},
        {"an XBM padded to the bound", padded_file(dir, "bound.xbm", xbm, ' ', MAX_XBM_FILE_BYTES), 0},
        {"an XBM one byte over the bound", padded_file(dir, "over.xbm", xbm, ' ', MAX_XBM_FILE_BYTES + 1), -1},
        {"spaces only", padded_file(dir, "spaces.xpm", "", ' ', 1u << 20), -1},
        {"a table larger than the colormap", dir.file("many.xpm", xpm_text(pattern_xpm(200, 200, 300, 2))), 1},
        {"an XBM behind a comment within the head", dir.file("near.xbm", comment + xbm), 0},
        {"an XBM behind a comment past the head", dir.file("far.xbm", comment + comment + xbm), -1},
    };
    make_drawing(10, 10);   // a drawing stays open, as in the program
    Pixel background = res().background;
    for (const Case& c : cases) {
        unsigned long long before = bytes_read();
        ReadResult r = read(c.path);
        unsigned long long taken = bytes_read() - before;
        EXPECT_EQ(r.status, c.status) << c.what;
        if (c.status != 0) {
            EXPECT_LT(taken, 4 * IMAGE_HEAD_BYTES) << c.what << ": read through";
        }
        undo_read(r, background);
    }
    EXPECT_EQ(open_file(cases[0].path.c_str()), -1);
    report_read_status(nullptr, -1, cases[0].path.c_str());
    pump();
    EXPECT_EQ(dialog_message(message_dialog(0)), "Can't open the file " + cases[0].path + ".");
}
