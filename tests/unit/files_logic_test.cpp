// Pure logic of the image reader and writer: header checks, monochrome keys and names, and the pair table that
// gives each colour a private cell.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "colour/mono_key.h"
#include "files/cell_remap.h"
#include "files/image_header.h"
#include "files/mono_names.h"

using Names = std::vector<std::string>;

// An XBM header is judged as Xlib reads it: sizes up to 512 x 720 pass, a larger, negative (a huge unsigned to
// Xlib) or zero size never reaches Xlib's allocation, and a file without a bits array is not an XBM at all.
TEST(ImageHeader, XbmSizes)
{
    using S = XbmHeaderScan;
    const std::string bits = "static char a_bits[] = {\n";
    const struct {
        Names lines;
        S::State state;
    } cases[] = {
        {{"#define a_width 512\n", "#define a_height 720\n", "static unsigned char a_bits[] = {\n"}, S::Accept},
        {{"#define a_width 513\n", "#define a_height 2\n", bits}, S::Refuse},
        {{"#define a_width 100000\n", "#define a_height 100000\n", bits}, S::Refuse},
        {{"#define a_width -1\n", "#define a_height 4\n", bits}, S::Refuse},
        {{"#define a_width 0\n", "#define a_height 4\n", bits}, S::NotXbm},
        {{"#define a_width 8\n", "#define a_height 8\n"}, S::NotXbm},
        {{"/* XPM */\n", "static char *x[] = {\n"}, S::NotXbm},
        {{"#define a_width 8\n", "#define a_height 8\n", "#define a_width 9000\n", bits}, S::Refuse},   // last counts
        {{std::string(XBM_LINE_BUFFER - 1, 'x')}, S::NotXbm},   // Xlib gives up on a line this long
    };
    for (const auto& c : cases) {
        S scan;
        for (const std::string& l : c.lines)
            scan.feed(l.c_str());
        scan.finish();
        EXPECT_EQ(scan.state, c.state) << c.lines[0];
    }
}

// The values line of an XPM file decides before libXpm allocates. libXpm finds it past comments and in every form
// it reads (XPM 1 defines, "XPM2" natural and C, any first word before "XPM"); a header hidden in any of them must
// still be judged, since a few hundred bytes claiming fifty million colours keep libXpm busy for many seconds.
TEST(ImageHeader, XpmValuesLine)
{
    using V = XpmHeaderVerdict;
    const struct {
        const char* text;
        V verdict;
    } cases[] = {
        {"/* XPM */\nstatic char *a[] = {\n\"512 720 2 1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n\"4 4 2 1 -1 -1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n/* width height ncolors cpp */\n\"4 4 2 1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n/* \"values\" */\n\"4 4 2 1\",\n", V::Acceptable},
        {"! XPM2\n! note\n6 2 2 1\n", V::Acceptable},
        {"! XPM2 C\n\"6 2 2 1\"\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n\"100000 100000 2 1\",\n", V::Refuse},
        {"/* XPM */\nstatic char *a[] = {\n\"513 1 2 1\"", V::Refuse},
        {"/* XPM */\nstatic char *a[] = {\n\"0 1 2 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 0 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 99999999 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 2 0\"", V::Refuse},
        {"! XPM2\n600 2 2 1\n", V::Refuse},
        {"/* XPM */\nstatic char *a[] = {\n/* \"1 1 1 1\" */\n\"2 2 50000000 1\",\n", V::Refuse},
        {"/* XPM \"1 1 1 1\" */\n\"2 2 50000000 1\"\n", V::Refuse},
        {"/* XPM */ /* \"1 1 1 1\" */ \"2 2 50000000 1\"\n", V::Refuse},
        {"xx XPM\n\"2 2 50000000 1\"\n", V::Refuse},
        {"! XPM2\n! a comment\n2 2 50000000 1\n", V::Refuse},
        {"! XPM2 C\n\"2 2 50000000 1\"\n", V::Refuse},
        {"/* XPM2 C */\n\"2 2 50000000 1\"\n", V::Refuse},
        {"! XPM2 Lisp\n; \"1 1 1 1\"\n\"2 2 50000000 1\"\n", V::Refuse},
        {"#define a_format 1\n#define a_width 2\n#define a_height 2\n#define a_ncolors 50000000\n", V::Refuse},
        {"#define a_format 1\n#define a_width 20000\n", V::Refuse},
        {"#define a_format 1\n#define a_chars_per_pixel 0\n", V::Refuse},
        {"/* XPM */\n/* \"1 1 1 1\" */\n\"20000 20000 1 1\"\n", V::Refuse},
        {"", V::Unknown},
        {"\x7f" "ELF\x02\x01", V::Unknown},
        {"/* XPM */\n\"4 4", V::Unknown},   // cut short: libXpm refuses it
        // An XPM 1 file within the limits is left to libXpm; strings after its defines are colours.
        {"#define a_format 1\n#define a_width 4\n#define a_height 4\n#define a_ncolors 2\n#define a_chars_per_pixel 1\n"
         "static char * a_colors[] = {\n\"9999 9999 9 9\"\n", V::Unknown},
    };
    for (const auto& c : cases)
        EXPECT_EQ(check_xpm_header(c.text), c.verdict) << c.text;
}

// A colour's monochrome key, as the colour list reads it, is told by its first character alone ("b"/"w" and the
// full names alike; a missing key is black), case-sensitively; anything else falls to the caller's default.
TEST(MonoNames, KeysAndNames)
{
    const struct {
        const char* key;
        MonoKey kind;
    } keys[] = {{nullptr, MonoKey::Black}, {"b", MonoKey::Black}, {"blue", MonoKey::Black},
                {"w", MonoKey::White}, {"wheat", MonoKey::White}, {"None", MonoKey::Other},
                {"Black", MonoKey::Other}, {"", MonoKey::Other}, {"#Transparent", MonoKey::Other}};
    for (const auto& k : keys)
        EXPECT_EQ(classify_mono_key(k.key), k.kind) << (k.key ? k.key : "(none)");

    // Read from a file: "black"/"white"/"None" give "b"/"w"/"None", a missing key "w", an unknown one keeps the
    // name before it.
    EXPECT_STREQ(mono_name_of(nullptr, "b"), "w");
    EXPECT_STREQ(mono_name_of("black", "w"), "b");
    EXPECT_STREQ(mono_name_of("white", "b"), "w");
    EXPECT_STREQ(mono_name_of("None", "b"), "None");
    EXPECT_STREQ(mono_name_of("gray50", "b"), "b");

    // Written: the anchor (transparent colour) is always "None"; white wins over black; neither is "None".
    EXPECT_STREQ(written_mono_name(true, true, false), "None");
    EXPECT_STREQ(written_mono_name(false, true, true), "white");
    EXPECT_STREQ(written_mono_name(false, false, true), "black");
    EXPECT_STREQ(written_mono_name(false, false, false), "None");
}

// Without a transparent colour every record gets its own colour's name. libXpm's pixel list skips the transparent
// colour wherever the file puts it (and in any case of "None"), so the names close up over it, one colour fewer
// counts, and a null name ("-") is left at the end.
TEST(MonoNames, TableWithAndWithoutTransparentColour)
{
    const struct {
        std::vector<const char*> mono, colour;
        bool transparent;
        unsigned count;
        Names names;
    } cases[] = {
        {{"black", "white", nullptr}, {"#000", "#FFF", "#F00"}, false, 3, {"b", "w", "w"}},
        {{"None", "black", "white"}, {"None", "#000", "#FFF"}, true, 2, {"b", "w", "-"}},
        {{"black", nullptr, "white", "black"}, {"#102030", "None", "#F0E0D0", "#000"}, true, 3, {"b", "w", "b", "-"}},
        {{"white", "black", "None"}, {"#FFF", "#000", "None"}, true, 2, {"w", "b", "-"}},
        {{nullptr, "black"}, {"none", "#000"}, true, 1, {"b", "-"}},
        {{nullptr, "black", nullptr}, {"None", "#000", "None"}, true, 1, {"b", "-", "-"}},
    };
    for (const auto& c : cases) {
        MonoNaming m = mono_names_of_table(c.mono, c.colour);
        Names got;
        for (const char* n : m.names)
            got.push_back(n ? n : "-");
        EXPECT_EQ(m.hasTransparent, c.transparent) << c.colour[0];
        EXPECT_EQ(m.colourCount, c.count) << c.colour[0];
        EXPECT_EQ(got, c.names) << c.colour[0];
    }
}

namespace {

struct FakeCells {
    unsigned long next = 100;
    int left = 1000;
};

bool fake_alloc(unsigned long, unsigned long* fresh, void* data)
{
    auto* cells = static_cast<FakeCells*>(data);
    if (cells->left-- <= 0)
        return false;
    *fresh = cells->next++;
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
// pixels taking the last; the transparent fill keeps its value except as the very first pixel. A colour never used
// finds no pair; a failed allocation is reported.
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
    std::vector<unsigned long> table = {5, 7, 7};
    EXPECT_TRUE(r.rewrite_pixels(table).empty());
    EXPECT_EQ(table, (std::vector<unsigned long>{101, 102, 103}));
    EXPECT_EQ(r.stray_cells(), (std::vector<unsigned long>{100}));

    CellRemap unused({5, 6});
    EXPECT_EQ(map1(unused, 5, cells), 104u);
    table = {5, 6};
    EXPECT_EQ(unused.rewrite_pixels(table), (std::vector<size_t>{1}));
    EXPECT_EQ(table, (std::vector<unsigned long>{104, 6}));

    FakeCells scarce;
    scarce.left = 1;
    CellRemap s({1, 2});
    unsigned long out = 0;
    EXPECT_TRUE(s.map(1, &out, fake_alloc, &scarce));
    EXPECT_FALSE(s.map(2, &out, fake_alloc, &scarce));
    EXPECT_EQ(s.pairs().size(), 1u);
}
