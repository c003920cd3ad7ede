// A fixed corpus of XPM and XBM files, opened and saved exactly as a user
// would, must give exactly what it gave when the corpus was recorded: the
// status and message, size, depth and hotspot, the colour list's cells in
// order with their RGB and black-and-white mapping, the XPM record kept with
// the drawing, every pixel of the image, and the bytes of the file Save
// writes. Whatever the reader does to go faster, none of this may move.
//
// Colour cells are named by where they stood among the free cells just
// before the open ("f0" is the lowest free cell then), so the record holds
// on any fresh 8-bit server. Run with PICTREL_RECORD_READ_IDENTITY=1 to
// write the record anew (only after a change that is meant to alter it).
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <Xm/MessageB.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "app/draw.h"
#include "app/new_close.h"
#include "colour/color_list.h"
#include "core/drawing.h"
#include "core/message.h"
#include "files/image_io.h"
#include "files/write_drawing.h"
#include "x_env.h"

namespace {

struct CorpusFile {
    const char* name;
    std::string text;
};

// 100 colours at two characters a pixel in a pattern that uses them all,
// with a hotspot, two colours of one RGB and monochrome keys of each kind.
std::string many_colours()
{
    const char* chars = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    auto key = [&](int i) { return std::string{chars[i % 62], chars[(i / 62) % 62]}; };
    std::ostringstream s;
    s << "/* XPM */\nstatic char *many[] = {\n\"50 40 100 2 7 9\",\n";
    for (int i = 0; i < 100; i++) {
        char rgb[8];
        std::snprintf(rgb, sizeof rgb, "%02X%02X%02X", (i * 37) & 255, (i * 91 + 17) & 255, (i * 53 + 5) & 255);
        const char* mono = i % 3 == 0 ? "" : i % 3 == 1 ? " m black" : " m white";
        s << "\"" << key(i) << " c " << (i == 99 ? "#254A6A" : std::string("#") + rgb) << mono << "\",\n";
    }
    for (int y = 0; y < 40; y++) {
        s << "\"";
        for (int x = 0; x < 50; x++)
            s << key((x * 7 + y * 13 + (x * y) % 11) % 100);
        s << (y == 39 ? "\"\n" : "\",\n");
    }
    s << "};\n";
    return s.str();
}

const std::vector<CorpusFile>& corpus()
{
    static const std::vector<CorpusFile> files = {
        {"hotspot.xpm",
         "/* XPM */\nstatic char *hot[] = {\n\"6 4 3 1 2 3\",\n"
         "\". c #FF0000 m black\",\n\"# c #00FF00 m white\",\n\"+ c #0000FF\",\n"
         "\"..##++\",\n\"#..##+\",\n\"+#..##\",\n\"++#..#\"};\n"},
        {"transparent_first.xpm",
         "/* XPM */\nstatic char *t[] = {\n\"5 3 4 1\",\n"
         "\"  c None\",\n\"a c #102030 m black\",\n\"b c #F0E0D0 m white\",\n\"c c #808000 m None\",\n"
         "\" abc \",\n\"ab cb\",\n\"c  ab\"};\n"},
        {"transparent_middle_2cpp.xpm",
         "/* XPM */\nstatic char *t2[] = {\n\"4 3 4 2 1 1\",\n"
         "\"aa c #123456 m white\",\n\"  c none\",\n\"bb c #654321 m black\",\n\"cc c #FFFFFF\",\n"
         "\"aa  bbcc\",\n\"  aacc  \",\n\"bbccaa  \"};\n"},
        {"hash_transparent_hotspot.xpm",
         "/* XPM */\nstatic char *ht[] = {\n\"3 3 3 1 1 0\",\n"
         "\"x c #Transparent\",\n\"y c #336699 m black\",\n\"z c #996633 m white\",\n"
         "\"xyz\",\n\"zyx\",\n\"yxz\"};\n"},
        {"two_transparent.xpm",
         "/* XPM */\nstatic char *tt[] = {\n\"3 2 4 1\",\n"
         "\"a c None\",\n\"b c #010203\",\n\"c c none\",\n\"d c #F0F0F0 m white\",\n"
         "\"abc\",\n\"dca\"};\n"},
        {"names_no_mono.xpm",
         "/* XPM */\n/* a comment */\nstatic char *names[] = {\n\"4 2 4 1\",\n"
         "\"r c red\",\n\"s c SkyBlue\",\n\"g g #808080\",\n\"w c white\",\n"
         "/* rows */\n\"rsgw\",\n\"wgsr\"};\n"},
        {"shared_rgb_unused.xpm",
         "/* XPM */\nstatic char *sh[] = {\n\"4 2 4 1 -1 -1\",\n"
         "\"a c #102030\",\n\"b c #102030 m white\",\n\"c c #ABCDEF m black\",\n\"d c #405060\",\n"
         "\"abab\",\n\"baba\"};\n"},
        {"hotspot_outside.xpm",
         "/* XPM */\nstatic char *ho[] = {\n\"2 2 2 1 5 5\",\n\"a c #000000\",\n\"b c #FFFFFF\",\n\"ab\",\n\"ba\"};\n"},
        {"only_none.xpm", "/* XPM */\nstatic char *on[] = {\n\"2 1 1 1\",\n\". c None\",\n\"..\"};\n"},
        {"xpm2.xpm", "! XPM2\n3 2 2 1\n. c #00FFFF\n# c #FF00FF m black\n.#.\n#.#\n"},
        {"unknown_colour.xpm",
         "/* XPM */\nstatic char *u[] = {\n\"2 1 2 1 0 0\",\n\"a c nosuchcolourname\",\n\"b c #FFFFFF\",\n\"ab\"};\n"},
        {"many.xpm", many_colours()},
        {"hot_gz.xpm", ""},   // written compressed below, from hotspot.xpm with its own hotspot
        {"bitmap_hotspot.xbm",
         "#define b_width 10\n#define b_height 3\n#define b_x_hot 4\n#define b_y_hot 1\n"
         "static unsigned char b_bits[] = {\n   0x0f, 0x02, 0xf0, 0x01, 0x55, 0x03};\n"},
        {"bitmap_plain.xbm",
         "#define p_width 8\n#define p_height 2\nstatic char p_bits[] = {\n   0x81, 0x7e};\n"},
        {"neither.txt", "this is not an image\n"},
    };
    return files;
}

// The free cells of the default colormap, lowest first.
std::vector<Pixel> free_cell_census()
{
    Display* dpy = app().display;
    std::vector<Pixel> cells;
    Pixel cell;
    while (XAllocColorCells(dpy, app().colormap, False, nullptr, 0, &cell, 1))
        cells.push_back(cell);
    if (!cells.empty())
        XFreeColors(dpy, app().colormap, cells.data(), static_cast<int>(cells.size()), 0);
    std::sort(cells.begin(), cells.end());
    return cells;
}

struct Namer {
    std::vector<Pixel> census;
    Pixel backgroundBefore = 0;

    std::string operator()(Pixel p) const
    {
        auto at = std::find(census.begin(), census.end(), p);
        if (at != census.end())
            return "f" + std::to_string(at - census.begin());
        if (p == backgroundBefore)
            return "bg";
        if (p == app().blackPixel)
            return "black";
        if (p == app().whitePixel)
            return "white";
        return "rgb" + rgb(p);
    }
    static std::string rgb(Pixel p)
    {
        XColor c{};
        c.pixel = p;
        XQueryColor(app().display, app().colormap, &c);
        char s[16];
        std::snprintf(s, sizeof s, "%04X%04X%04X", c.red, c.green, c.blue);
        return s;
    }
};

unsigned long long fnv(const std::string& bytes)
{
    unsigned long long h = 1469598103934665603ull;
    for (unsigned char c : bytes) {
        h ^= c;
        h *= 1099511628211ull;
    }
    return h;
}

std::string file_bytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

Drawing* drawing_named(const std::string& name)
{
    for (Drawing* d : registry().slots)
        if (d && drawing_is_open(d) && d->name == name)
            return d;
    return nullptr;
}

std::string str(const char* s) { return s ? std::string("\"") + s + "\"" : "null"; }

// The text of whichever message dialog is up, which is then taken down.
std::string messages_shown()
{
    std::string out;
    for (int set = 0; set <= 5; set++) {
        Widget w = message_dialog(set);
        if (!w || !XtIsManaged(w))
            continue;
        XmString xs = nullptr;
        XtVaGetValues(w, XmNmessageString, &xs, nullptr);
        char* text = xs ? static_cast<char*>(XmStringUnparse(xs, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT,
                                                             nullptr, 0, XmOUTPUT_ALL))
                        : nullptr;
        out += " message" + std::to_string(set) + "=" + str(text);
        XtFree(text);
        XmStringFree(xs);
        XtUnmanageChild(w);
    }
    return out;
}

// Everything a user and the files can see of one opened file.
std::string describe(const std::string& dir, const CorpusFile& f, int index)
{
    Namer name{free_cell_census(), res().background};
    std::string path = dir + "/" + f.name;
    if (std::string(f.name) == "hot_gz.xpm")
        path += ".gz";
    std::ostringstream o;
    o << "== " << f.name << "\n";
    int status = open_file(path.c_str());
    pump();
    o << "status " << status << messages_shown() << "\n";
    Drawing* d = status == 0 ? drawing_named(path) : nullptr;
    if (!d)
        return o.str();
    o << "size " << d->width << "x" << d->height << " depth " << (d->depth == 1 ? 1 : 8) << " hotspot "
      << d->hotspotX << "," << d->hotspotY << " background " << name(res().background) << "\n";

    if (d->depth != 1) {
        ColorList* list = color_list_of(d);
        o << "list transparent " << name(list->transparentPixel) << "\n";
        int i = 0;
        for (ColorEntry* e = list->anchor->next; e && i < static_cast<int>(list->anchor->pixel); e = e->next, i++)
            o << "  entry " << i << " " << name(e->pixel) << " rgb " << Namer::rgb(e->pixel) << " mapsTo "
              << name(e->mapsTo) << (e == list->foregroundEntry ? " fg" : "")
              << (e == list->backgroundEntry ? " bg" : "") << "\n";
        const DrawingXpmInfo* x = d->xpmAttributes;
        o << "xpm colourCount " << x->colourCount << " tableCount " << x->tableCount << "\n";
        for (unsigned c = 0; c < x->tableCount; c++)
            o << "  colour " << c << " c " << str(x->colours[c]->c_color) << " m " << str(x->colours[c]->m_color)
              << " pixel " << name(x->pixels[c]) << "\n";
    }

    // Every pixel, named as the cells are, and whether the magnified view's
    // copy holds the same.
    XImage* im = XGetImage(app().display, d->image, 0, 0, d->width, d->height, AllPlanes, ZPixmap);
    std::string pixels;
    // The copy is laid out as the read-back is, whether it was read back or
    // handed over by the reader.
    const XImage* c = d->imageCopy;
    bool copySame = c && c->format == im->format && c->depth == im->depth && c->bits_per_pixel == im->bits_per_pixel &&
                    c->bytes_per_line == im->bytes_per_line && c->byte_order == im->byte_order &&
                    c->bitmap_unit == im->bitmap_unit && c->bitmap_bit_order == im->bitmap_bit_order &&
                    c->bitmap_pad == im->bitmap_pad && c->xoffset == im->xoffset;
    for (int y = 0; y < d->height; y++)
        for (int x = 0; x < d->width; x++) {
            Pixel p = XGetPixel(im, x, y);
            pixels += (d->depth == 1 ? std::to_string(p & 1) : name(p)) + " ";
            if (copySame && XGetPixel(d->imageCopy, x, y) != p)
                copySame = false;
        }
    XDestroyImage(im);
    char hash[20];
    std::snprintf(hash, sizeof hash, "%016llx", fnv(pixels));
    o << "pixels " << hash << (copySame ? "" : " imageCopy differs") << "\n";
    if (d->width * d->height <= 30)
        o << "  " << pixels << "\n";

    std::string target = dir + "/saved" + std::to_string(index) + (d->depth == 1 ? ".xbm" : ".xpm");
    int written = write_drawing(d, target.c_str(), false);
    std::string bytes = file_bytes(target);
    std::snprintf(hash, sizeof hash, "%016llx", fnv(bytes));
    o << "save " << written << " bytes " << bytes.size() << " " << hash << "\n";
    if (bytes.size() <= 400)
        o << bytes;
    d->modified = 0;
    finish_close(nullptr, d, nullptr);
    pump();
    return o.str();
}

std::string record_path()
{
    // Beside the resources of the source tree, whatever the build folder.
    return PICTREL_RESOURCE_DIR "/../tests/data/read_identity.txt";
}

}  // namespace

TEST(ReadIdentity, CorpusReadsAsRecorded)
{
    char dirTemplate[] = "/tmp/pictrel-identity-XXXXXX";
    ASSERT_NE(mkdtemp(dirTemplate), nullptr);
    std::string dir = dirTemplate;
    for (const CorpusFile& f : corpus()) {
        if (f.text.empty())
            continue;
        std::ofstream(dir + "/" + f.name, std::ios::binary) << f.text;
    }
    std::string gz = "sed 's/\"6 4 3 1 2 3\"/\"6 4 3 1 5 0\"/' " + dir + "/hotspot.xpm | gzip -n -c >" + dir +
                     "/hot_gz.xpm.gz";
    ASSERT_EQ(std::system(gz.c_str()), 0);

    make_drawing(8, 8);   // stays open, so that closing the others never ends the program
    std::string got;
    int index = 0;
    for (const CorpusFile& f : corpus())
        got += describe(dir, f, index++);
    std::system(("rm -rf " + dir).c_str());

    if (getenv("PICTREL_RECORD_READ_IDENTITY")) {
        std::ofstream(record_path(), std::ios::binary) << got;
        GTEST_SKIP() << "recorded " << record_path();
    }
    std::string want = file_bytes(record_path());
    ASSERT_FALSE(want.empty()) << "no record at " << record_path();
    // Compared file by file, so that a failure names the file that moved.
    auto split = [](const std::string& s) {
        std::vector<std::string> parts;
        size_t at = 0;
        while (at < s.size()) {
            size_t next = s.find("\n== ", at + 1);
            next = next == std::string::npos ? s.size() : next + 1;
            parts.push_back(s.substr(at, next - at));
            at = next;
        }
        return parts;
    };
    std::vector<std::string> g = split(got), w = split(want);
    ASSERT_EQ(g.size(), w.size());
    for (size_t i = 0; i < g.size(); i++)
        EXPECT_EQ(g[i], w[i]);
}
