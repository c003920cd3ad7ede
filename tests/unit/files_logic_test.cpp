// Pure logic of the image reader and writer: header checks, monochrome
// names, and the pair table that gives each colour a private cell.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "files/cell_remap.h"
#include "files/image_header.h"
#include "files/mono_names.h"

namespace {

XbmHeaderScan::State scan_xbm(std::initializer_list<const char*> lines)
{
    XbmHeaderScan scan;
    for (const char* l : lines)
        scan.feed(l);
    scan.finish();
    return scan.state;
}

// The names of a table, a null name as "-".
std::vector<std::string> names(const MonoNaming& m)
{
    std::vector<std::string> out;
    for (const char* n : m.names)
        out.push_back(n ? n : "-");
    return out;
}
using Names = std::vector<std::string>;

}  // namespace

// An XBM header is judged as Xlib reads it: sizes up to 512 x 720 pass, a larger or zero size never reaches Xlib's
// allocation, and a file without a bits array is not an XBM at all.
TEST(ImageHeader, XbmSizes)
{
    using S = XbmHeaderScan;
    EXPECT_EQ(scan_xbm({"#define a_width 512\n", "#define a_height 720\n",
                        "static unsigned char a_bits[] = {\n"}), S::Accept);
    EXPECT_EQ(scan_xbm({"#define a_width 513\n", "#define a_height 2\n", "static char a_bits[] = {\n"}),
              S::Refuse);
    EXPECT_EQ(scan_xbm({"#define a_width 100000\n", "#define a_height 100000\n",
                        "static char a_bits[] = {\n"}), S::Refuse);
    EXPECT_EQ(scan_xbm({"#define a_width -1\n", "#define a_height 4\n", "static char a_bits[] = {\n"}),
              S::Refuse) << "a negative size is a huge unsigned one to Xlib";
    EXPECT_EQ(scan_xbm({"#define a_width 0\n", "#define a_height 4\n", "static char a_bits[] = {\n"}),
              S::NotXbm);
    EXPECT_EQ(scan_xbm({"#define a_width 8\n", "#define a_height 8\n"}), S::NotXbm) << "no bits";
    EXPECT_EQ(scan_xbm({"/* XPM */\n", "static char *x[] = {\n"}), S::NotXbm);
    EXPECT_EQ(scan_xbm({"#define a_width 8\n", "#define a_height 8\n", "#define a_width 9000\n",
                        "static short a_bits[] = {\n"}), S::Refuse) << "the last definition counts";
    std::string longLine(XBM_LINE_BUFFER - 1, 'x');
    EXPECT_EQ(scan_xbm({longLine.c_str()}), S::NotXbm) << "Xlib gives up on a line this long";
}

// The values line of an XPM file decides before libXpm allocates.
TEST(ImageHeader, XpmValuesLine)
{
    using V = XpmHeaderVerdict;
    EXPECT_EQ(check_xpm_header("/* XPM */\nstatic char *a[] = {\n\"512 720 2 1\",\n"), V::Acceptable);
    EXPECT_EQ(check_xpm_header("/* XPM */\nstatic char *a[] = {\n\"4 4 2 1 -1 -1\",\n"), V::Acceptable);
    EXPECT_EQ(check_xpm_header("/* XPM */\nstatic char *a[] = {\n\"100000 100000 2 1\",\n"), V::Refuse);
    EXPECT_EQ(check_xpm_header("/* XPM */\nstatic char *a[] = {\n\"513 1 2 1\""), V::Refuse);
    EXPECT_EQ(check_xpm_header("/* XPM */\nstatic char *a[] = {\n\"0 1 2 1\""), V::Refuse);
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4 0 1\""), V::Refuse) << "no colours";
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4 99999999 1\""), V::Refuse);
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4 2 0\""), V::Refuse) << "no characters per pixel";
    EXPECT_EQ(check_xpm_header("! XPM2\n600 2 2 1\n"), V::Refuse);
    EXPECT_EQ(check_xpm_header("! XPM2\n6 2 2 1\n"), V::Acceptable);
    EXPECT_EQ(check_xpm_header(""), V::Unknown);
    EXPECT_EQ(check_xpm_header("\x7f" "ELF\x02\x01"), V::Unknown);
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4"), V::Unknown) << "cut short: libXpm refuses it";
}

// libXpm finds the values past comments and in every form it reads (XPM 1 defines, "XPM2" natural and C, any first
// word before "XPM"); a header hidden in any of them must still be judged, since a few hundred bytes claiming fifty
// million colours keep libXpm busy for many seconds.
TEST(ImageHeader, HiddenValuesLines)
{
    using V = XpmHeaderVerdict;
    const char* refused[] = {
        "/* XPM */\nstatic char *a[] = {\n/* \"1 1 1 1\" */\n\"2 2 50000000 1\",\n",
        "/* XPM \"1 1 1 1\" */\n\"2 2 50000000 1\"\n",
        "/* XPM */ /* \"1 1 1 1\" */ \"2 2 50000000 1\"\n",
        "xx XPM\n\"2 2 50000000 1\"\n",
        "! XPM2\n! a comment\n2 2 50000000 1\n",
        "! XPM2 C\n\"2 2 50000000 1\"\n",
        "/* XPM2 C */\n\"2 2 50000000 1\"\n",
        "! XPM2 Lisp\n; \"1 1 1 1\"\n\"2 2 50000000 1\"\n",
        "#define a_format 1\n#define a_width 2\n#define a_height 2\n#define a_ncolors 50000000\n",
        "#define a_format 1\n#define a_width 20000\n",
        "#define a_format 1\n#define a_chars_per_pixel 0\n",
        "/* XPM */\n/* \"1 1 1 1\" */\n\"20000 20000 1 1\"\n",
    };
    for (const char* text : refused)
        EXPECT_EQ(check_xpm_header(text), V::Refuse) << text;
    const char* acceptable[] = {
        "/* XPM */\nstatic char *a[] = {\n/* width height ncolors cpp */\n\"4 4 2 1\",\n",
        "/* XPM */\nstatic char *a[] = {\n/* \"values\" */\n\"4 4 2 1\",\n",
        "! XPM2\n! note\n6 2 2 1\n",
        "! XPM2 C\n\"6 2 2 1\"\n",
    };
    for (const char* text : acceptable)
        EXPECT_EQ(check_xpm_header(text), V::Acceptable) << text;
    EXPECT_EQ(check_xpm_header("#define a_format 1\n#define a_width 4\n#define a_height 4\n"
                               "#define a_ncolors 2\n#define a_chars_per_pixel 1\n"
                               "static char * a_colors[] = {\n\"9999 9999 9 9\"\n"),
              V::Unknown)
        << "an XPM 1 file within the limits is left to libXpm; strings after its defines are colours";
}

TEST(ImageHeader, HotspotInside)
{
    EXPECT_TRUE(hotspot_inside(0, 0, 4, 4) && hotspot_inside(3, 3, 4, 4));
    EXPECT_FALSE(hotspot_inside(4, 0, 4, 4) || hotspot_inside(-1, -1, 4, 4));
}

// Monochrome keys "black"/"white"/"None" read as "b"/"w"/"None", a missing
// key as "w", and an unknown one keeps the name before it.
TEST(MonoNames, NamesOfOneKey)
{
    EXPECT_STREQ(mono_name_of(nullptr, "b"), "w");
    EXPECT_STREQ(mono_name_of("black", "w"), "b");
    EXPECT_STREQ(mono_name_of("white", "b"), "w");
    EXPECT_STREQ(mono_name_of("None", "b"), "None");
    EXPECT_STREQ(mono_name_of("gray50", "b"), "b");
    EXPECT_STREQ(mono_name_of("#000000", "None"), "None");
}

// Without a transparent colour every record gets its own colour's name; with one the names sit one record early
// (aligned with libXpm's pixel list, which skips the transparent colour) and one colour fewer counts.
TEST(MonoNames, TableWithAndWithoutTransparentColour)
{
    MonoNaming plain = mono_names_of_table({"black", "white", nullptr}, {"#000", "#FFF", "#F00"});
    EXPECT_FALSE(plain.hasTransparent);
    EXPECT_EQ(plain.colourCount, 3u);
    EXPECT_EQ(names(plain), (Names{"b", "w", "w"}));

    MonoNaming clear = mono_names_of_table({"None", "black", "white"}, {"None", "#000", "#FFF"});
    EXPECT_TRUE(clear.hasTransparent);
    EXPECT_EQ(clear.colourCount, 2u);
    EXPECT_EQ(names(clear), (Names{"b", "w", "-"}));
    EXPECT_EQ(names(mono_names_of_table({"gray", "gray"}, {"#111", "#222"})), (Names{"w", "w"}));

    EXPECT_TRUE(mono_names_of_table({nullptr}, {"a None b"}).hasTransparent)
        << "any colour string containing None marks the table";
    EXPECT_EQ(mono_names_of_table({}, {}).colourCount, 0u);
}

// libXpm's pixel list skips the transparent colour wherever the file puts it (and in any case of "None"), so the
// names must close up over it there too: a black colour before a middle "None" stays black.
TEST(MonoNames, TransparentColourAnywhereInTheTable)
{
    MonoNaming middle = mono_names_of_table({"black", nullptr, "white", "black"},
                                            {"#102030", "None", "#F0E0D0", "#000"});
    EXPECT_TRUE(middle.hasTransparent);
    EXPECT_EQ(middle.colourCount, 3u);
    EXPECT_EQ(names(middle), (Names{"b", "w", "b", "-"}));

    MonoNaming last = mono_names_of_table({"white", "black", "None"}, {"#FFF", "#000", "None"});
    EXPECT_EQ(last.colourCount, 2u);
    EXPECT_EQ(names(last), (Names{"w", "b", "-"}));

    MonoNaming lower = mono_names_of_table({nullptr, "black"}, {"none", "#000"});
    EXPECT_TRUE(lower.hasTransparent) << "libXpm reads \"none\" as transparent";
    EXPECT_EQ(lower.colourCount, 1u);
    EXPECT_EQ(names(lower), (Names{"b", "-"}));

    MonoNaming two = mono_names_of_table({nullptr, "black", nullptr}, {"None", "#000", "None"});
    EXPECT_EQ(two.colourCount, 1u) << "only colours with a pixel count";
    EXPECT_EQ(names(two)[0], "b");
}

// The anchor (transparent colour) is always written "None"; white wins
// over black; a colour mapped to neither is "None".
TEST(MonoNames, WrittenNames)
{
    EXPECT_STREQ(written_mono_name(true, true, false), "None");
    EXPECT_STREQ(written_mono_name(false, true, true), "white");
    EXPECT_STREQ(written_mono_name(false, false, true), "black");
    EXPECT_STREQ(written_mono_name(false, false, false), "None");
}

namespace {

struct FakeCells {
    unsigned long next = 100;
    int left = 1000;
    std::map<unsigned long, unsigned long> source;   // new cell -> old pixel
};

bool fake_alloc(unsigned long old, unsigned long* fresh, void* data)
{
    auto* cells = static_cast<FakeCells*>(data);
    if (cells->left-- <= 0)
        return false;
    *fresh = cells->next++;
    cells->source[*fresh] = old;
    return true;
}

unsigned long map1(CellRemap& r, unsigned long p, FakeCells& cells)
{
    unsigned long out = 0;
    EXPECT_TRUE(r.map(p, &out, fake_alloc, &cells));
    return out;
}

}  // namespace

// A pixel libXpm gave once gets one private cell; a pixel given twice (two file colours of one RGB) gets two, later
// pixels taking the last; the transparent fill keeps its value except as the very first pixel.
TEST(CellRemap, OneCellPerFileColour)
{
    FakeCells cells;
    CellRemap r({5, 7, 7});
    EXPECT_EQ(map1(r, 0, cells), 100u) << "the first pixel always gets a cell";
    EXPECT_EQ(map1(r, 0, cells), 0u) << "the transparent fill keeps its value afterwards";
    EXPECT_EQ(map1(r, 5, cells), 101u);
    EXPECT_EQ(map1(r, 5, cells), 101u);
    EXPECT_EQ(map1(r, 7, cells), 102u);
    EXPECT_EQ(map1(r, 7, cells), 103u) << "second colour sharing pixel 7";
    EXPECT_EQ(map1(r, 7, cells), 103u) << "later pixels take the last cell";
    EXPECT_EQ(r.pairs().size(), 4u);

    std::vector<unsigned long> table = {5, 7, 7};
    EXPECT_TRUE(r.rewrite_pixels(table).empty());
    EXPECT_EQ(table, (std::vector<unsigned long>{101, 102, 103}));
    EXPECT_EQ(r.stray_cells(), (std::vector<unsigned long>{100}));
}

// A colour listed but never used in the image finds no pair; a failed
// allocation is reported and leaves the table as it was.
TEST(CellRemap, UnusedColourAndExhaustion)
{
    FakeCells cells;
    CellRemap r({5, 6});
    EXPECT_EQ(map1(r, 5, cells), 100u);
    std::vector<unsigned long> table = {5, 6};
    EXPECT_EQ(r.rewrite_pixels(table), (std::vector<size_t>{1}));
    EXPECT_EQ(table[0], 100u);
    EXPECT_EQ(table[1], 6u);

    FakeCells scarce;
    scarce.left = 1;
    CellRemap s({1, 2});
    unsigned long out = 0;
    EXPECT_TRUE(s.map(1, &out, fake_alloc, &scarce));
    EXPECT_FALSE(s.map(2, &out, fake_alloc, &scarce));
    EXPECT_EQ(s.pairs().size(), 1u);
}
