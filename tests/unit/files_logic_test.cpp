// The checks of the image reader on a file's size and first bytes (the rest of the reader is checked against the X
// server).
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "files/image_header.h"

using namespace std::string_literals;

// The values line decides before libXpm allocates: a few bytes claiming fifty million colours would keep it busy for
// seconds, so a header in any form libXpm reads (XPM 1 defines, "XPM2" natural, C and Lisp, past comments) is judged,
// at the string libXpm takes: the first one outside a comment after the header's words, even one within the header's
// own "/* XPM */", even one that never ends.
TEST(ImageHeader, XpmValuesLine)
{
    using V = XpmHeaderVerdict;
    const struct {
        std::string text;
        V verdict;
    } cases[] = {
        {"/* XPM */\nstatic char *a[] = {\n\"512 720 2 1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n\"4 4 2 1 -1 -1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n/* width height ncolors cpp */\n\"4 4 2 1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n/* \"values\" */\n\"4 4 2 1\",\n", V::Acceptable},
        {"/* XPM */\n\"4 4 2 8\"", V::Acceptable},
        {"/* XPM */\n\"4\n4\v2\f1\r\"", V::Acceptable},
        {"! XPM2\n! note\n6 2 2 1\n", V::Acceptable},
        {"! XPM2 C\n\"6 2 2 1\"\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n\"513 1 2 1\"", V::Refuse},
        {"/* XPM */\nstatic char *a[] = {\n\"0 1 2 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 0 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 99999999 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 2 0\"", V::Refuse},
        {"/* XPM */\n\"4 4 2 9\"", V::Refuse},
        {"/* XPM */\n\"4 4 2 18446744073709551617\"", V::Refuse},
        {"! XPM2\n600 2 2 1\n", V::Refuse},
        {"/* XPM */\nstatic char *a[] = {\n/* \"1 1 1 1\" */\n\"2 2 50000000 1\",\n", V::Refuse},
        {"/* XPM */\n\"2 2\v50000000\t1", V::Refuse},   // never closed: libXpm reads to the end
        {"xx XPM\n\"2 2 50000000 1\"\n", V::Refuse},
        {"! XPM2 C\n\"2 2 50000000 1\"\n", V::Refuse},
        {"/* XPM2 C */\n\"2 2 50000000 1\"\n", V::Refuse},
        {"! XPM2 Lisp\n; \"1 1 1 1\"\n\"2 2 50000000 1\"\n", V::Refuse},
        {"! XPM2 Lisp\n/* \"2 2 50000000 1\" */\n\"1 1 1 1\"\n", V::Refuse},   // no such comment in Lisp
        {"! XPM2 Li\n\"2 2 50000000 1\"\n", V::Refuse},                          // any start of "Lisp"
        {"! XPM2 C\0junk\n\"2 2 50000000 1\"\n"s, V::Refuse},                     // a NUL ends the type
        {"! XPM2\n2 2 50000000 1", V::Refuse},                                   // the last line, unended
        {"#define a_format 1\n#define a_width 2\n#define a_height 2\n#define a_ncolors 50000000\n", V::Refuse},
        {"#define a_format 1\n#define a_width 20000\n", V::Refuse},
        {"#define a_format 1\n#define a_chars_per_pixel 0\n", V::Refuse},
        {"#define a_format 1\n#define a_chars_per_pixel 9\n", V::Refuse},
        // The string within the header comment is the values line: the later one is a colour.
        {"/* XPM \"1 1 1 1\" */\n\"2 2 50000000 1\"\n", V::Acceptable},
        {"", V::Unknown},
        {"\x7f" "ELF\x02\x01", V::Unknown},
        {"/* XPM */\n\"4 4", V::Unknown},
        {"/* XPM */\n\"4 4 2x 1\"", V::Unknown},   // libXpm wants words of digits only
        {"\n/* XPM */\n\"2 2 50000000 1\"", V::Unknown},   // not an XPM: the words must open the first line
        {"! XPM2 Lispy\n\"2 2 50000000 1\"\n", V::Unknown},
        // An XPM 1 file within the limits is left to libXpm; strings after its defines are colours.
        {"#define a_format 1\n#define a_width 4\n#define a_height 4\n#define a_ncolors 2\n#define a_chars_per_pixel 1\n"
         "static char * a_colors[] = {\n\"9999 9999 9 9\"\n",
         V::Unknown},
    };
    for (const auto& c : cases)
        EXPECT_EQ(check_xpm_header(c.text), c.verdict) << c.text;
}

// More colours than the colormap holds can never be read on this display: said before the parse, in every form,
// also from a comment that may be the values line; within it, a table is acceptable.
TEST(ImageHeader, XpmColoursBeyondTheColormap)
{
    using V = XpmHeaderVerdict;
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4 256 2\"", 256), V::Acceptable);
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4 257 2\"", 256), V::TooManyColours);
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4 65536 3\"", 256), V::TooManyColours);
    EXPECT_EQ(check_xpm_header("/* XPM */\n\"4 4 65537 3\"", 256), V::Refuse);
    EXPECT_EQ(check_xpm_header("! XPM2\n4 4 300 2\n", 256), V::TooManyColours);
    EXPECT_EQ(check_xpm_header("#define a_format 1\n#define a_ncolors 300\n#define a_width 4\n", 256),
              V::TooManyColours);
    EXPECT_EQ(check_xpm_header("#define a_format 1\n#define a_ncolors 300\n#define a_width 4000\n", 256), V::Refuse)
        << "a refusal wins";
    EXPECT_EQ(check_xpm_header("/* XPM */\n/* \"4 4 300 2\" */\n\"4 4 2 1\"", 256), V::TooManyColours);
}

// The words libXpm needs before anything else, as it reads them: on the first line, the second one "XPM" or "XPM2",
// or "#define" and a name; a first word longer than 8192 characters goes on as the second.
TEST(ImageHeader, XpmHeaderWords)
{
    const struct {
        std::string text;
        bool xpm;
    } cases[] = {
        {"/* XPM */\n", true},
        {"   /* XPM */\n", true},
        {"x XPM\n", true},
        {"\t/*\tXPM\t*/\n", true},
        {"/*\vXPM */\n", true},
        {"/*\0 XPM */\n"s, true},
        {std::string(8192, 'x') + "XPM\n", true},
        {"! XPM2 C\n", true},
        {"! XPM2\n", true},
        {"#define a_format 1\n", true},
        {"  #define a_form 1\n", true},
        {"\n/* XPM */\n", false},
        {"XPM\n", false},
        {std::string(8191, 'x') + "XPM\n", false},
        {std::string(8193, 'x') + "XPM\n", false},
        {"/* XPMx */\n", false},
        {"/* xpm */\n", false},
        {"/*\nXPM */\n", false},
        {"#define aformat 1\n", false},
        {"", false},
        {std::string(20000, '\0'), false},
        {std::string(20000, ' '), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(xpm_header_words(c.text), c.xpm) << c.text.substr(0, 40);
}

// An XBM is judged as Xlib reads it, in fgets' pieces of 254 bytes: the defines and the line that opens the bits lie in
// the first bytes, a piece of 254 bytes (a NUL ends it sooner) makes no XBM, and a file larger than the largest bitmap's
// is none either.
TEST(ImageHeader, XbmFile)
{
    using V = XbmFileVerdict;
    const std::string header = "#define a_width 8\n#define a_height 2\nstatic char a_bits[] = {\n";
    const std::string whole = header + "0x01, 0x02};\n";
    auto check = [](const std::string& head, unsigned long long size) {
        return check_xbm_file(std::string_view(head).substr(0, IMAGE_HEAD_BYTES), size);
    };
    EXPECT_EQ(check(whole, whole.size()), V::Acceptable);
    EXPECT_EQ(check(header, 4000), V::Acceptable) << "the rest is the reader's";
    EXPECT_EQ(check("/* a comment */\n" + whole, whole.size() + 16), V::Acceptable);
    EXPECT_EQ(check("#define a_width 8\n#define a_height 2\n", 38), V::NotXbm) << "no bits";
    EXPECT_EQ(check("#define a_width 8\n#define a_height 2\nstatic char a_bits[] = {", 4000), V::NotXbm)
        << "the bits line cut short by the end of the head";
    EXPECT_EQ(check("#define a_width 513\n#define a_height 2\nstatic char a_bits[] = {\n", 4000), V::Refuse);
    EXPECT_EQ(check("#define a_width -1\n#define a_height 2\nstatic char a_bits[] = {\n", 4000), V::Refuse);
    EXPECT_EQ(check("#define a_width 0\n#define a_height 2\nstatic char a_bits[] = {\n", 4000), V::NotXbm);
    EXPECT_EQ(check(std::string(253, ' ') + "\n" + whole, 5000), V::NotXbm) << "a line of 254 bytes";
    EXPECT_EQ(check(std::string(252, ' ') + "\n" + whole, 5000), V::Acceptable);
    EXPECT_EQ(check("\0"s + std::string(300, ' ') + "\n" + whole, 5000), V::Acceptable) << "a NUL ends a line";
    std::string longComment;
    while (longComment.size() < IMAGE_HEAD_BYTES)
        longComment += "/* a line of a comment */\n";
    EXPECT_EQ(check(longComment + whole, longComment.size() + whole.size()), V::NotXbm) << "no header in the head";
    EXPECT_EQ(check(whole, MAX_XBM_FILE_BYTES), V::Acceptable);
    EXPECT_EQ(check(whole, MAX_XBM_FILE_BYTES + 1), V::NotXbm);
    EXPECT_EQ(check(std::string(IMAGE_HEAD_BYTES, '\0'), 1ull << 30), V::NotXbm);
}

// An XPM is read only when its first line says XPM, its values fit and it is no larger than the largest file of a
// table the colormap can hold: one byte more is refused. Past its first line it is the values' business.
TEST(ImageHeader, XpmFile)
{
    using V = XpmFileVerdict;
    const std::string head = "/* XPM */\nstatic char *a[] = {\n\"4 4 2 1\",\n";
    const unsigned long long bound = max_xpm_file_bytes(256);
    EXPECT_EQ(check_xpm_file(head, head.size(), 256), V::Read);
    EXPECT_EQ(check_xpm_file(head, bound, 256), V::Read);
    EXPECT_EQ(check_xpm_file(head, bound + 1, 256), V::Refuse);
    EXPECT_EQ(check_xpm_file(head, max_xpm_file_bytes(4096), 4096), V::Read) << "a larger colormap, a larger file";
    EXPECT_EQ(check_xpm_file(head, max_xpm_file_bytes(MAX_XPM_COLOURS) + 1, 1ul << 30), V::Refuse);
    EXPECT_EQ(check_xpm_file("/* XPM */\n\"4 4 300 1\"", 20, 256), V::TooManyColours);
    EXPECT_EQ(check_xpm_file("/* XPM */\n\"4 4 300 1\"", 20, 512), V::Read);
    EXPECT_EQ(check_xpm_file("/* XPM */\n\"4000 4 2 1\"", 20, 256), V::Refuse);
    EXPECT_EQ(check_xpm_file("/* XPM */\n/* no values in the head yet */", 100000, 256), V::Read);
    EXPECT_EQ(check_xpm_file(std::string(IMAGE_HEAD_BYTES, ' '), 1000000, 256), V::Refuse);
    EXPECT_EQ(check_xpm_file(std::string(IMAGE_HEAD_BYTES, '\0'), 1000000, 256), V::Refuse);
    EXPECT_EQ(check_xpm_file("", 0, 256), V::Refuse);
}

namespace {

std::string colour_key(unsigned i, unsigned cpp)
{
    std::string key;
    for (unsigned k = 0; k < cpp; k++, i /= 92)
        key += static_cast<char>('#' + i % 92);
    return key;
}

// The largest XPM a writer makes of a drawing: every colour line with all five keys and long names, every pixel
// at `cpp` characters, a line of comment at each part.
std::string largest_xpm(unsigned colours, unsigned cpp)
{
    std::string s = "/* XPM */\nstatic char * a_drawing_with_a_long_name[] = {\n/* columns rows colors chars */\n\"" +
                    std::to_string(MAX_IMAGE_WIDTH) + " " + std::to_string(MAX_IMAGE_HEIGHT) + " " +
                    std::to_string(colours) + " " + std::to_string(cpp) + " 511 719 XPMEXT\",\n/* colors */\n";
    const std::string name(40, 'n');
    for (unsigned i = 0; i < colours; i++)
        s += "\t\"" + colour_key(i, cpp) + " m " + name + " s " + name + " g4 " + name + " g " + name + " c " + name +
             "\",\r\n";
    s += "/* pixels */\n";
    for (unsigned y = 0; y < MAX_IMAGE_HEIGHT; y++) {
        s += "\t\"";
        for (unsigned x = 0; x < MAX_IMAGE_WIDTH; x++)
            s += colour_key((x + y) % colours, cpp);
        s += "\",\r\n";
    }
    return s + "\"XPMEXT a note\",\n\"XPMENDEXT\"\n};\n";
}

// The largest XBM: every byte as Xlib writes it, or every short of an X10 bitmap, each on a line of its own.
std::string largest_xbm(bool shorts)
{
    std::string s = "/* the largest bitmap */\n#define a_bitmap_width 512\n#define a_bitmap_height 720\n"
                    "#define a_bitmap_x_hot 511\n#define a_bitmap_y_hot 719\nstatic " +
                    std::string(shorts ? "short" : "unsigned char") + " a_bitmap_bits[] = {\n";
    unsigned units = shorts ? 512 / 16 * 720 : 512 / 8 * 720;
    for (unsigned i = 0; i < units; i++)
        s += shorts ? "   0xffff,\n" : "   0xff,\n";
    return s + "};\n";
}

}  // namespace

// The size bounds refuse no file a writer makes of a drawing within the limits: the largest XPM of a table the
// colormap can hold, at most characters a pixel, with every key of every colour, and the largest XBM.
TEST(ImageHeader, LargestFilesWithinTheBounds)
{
    for (unsigned colours : {256u, 4096u}) {
        std::string xpm = largest_xpm(colours, MAX_CHARS_PER_PIXEL);
        EXPECT_LE(xpm.size(), max_xpm_file_bytes(colours)) << colours << " colours";
        EXPECT_EQ(check_xpm_file(std::string_view(xpm).substr(0, IMAGE_HEAD_BYTES), xpm.size(), colours),
                  XpmFileVerdict::Read)
            << colours << " colours";
    }
    for (bool shorts : {false, true}) {
        std::string xbm = largest_xbm(shorts);
        EXPECT_LE(xbm.size(), MAX_XBM_FILE_BYTES) << (shorts ? "X10" : "X11");
        EXPECT_EQ(check_xbm_file(std::string_view(xbm).substr(0, IMAGE_HEAD_BYTES), xbm.size()),
                  XbmFileVerdict::Acceptable);
    }
}
