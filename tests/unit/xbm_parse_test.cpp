// The XBM reader against Xlib's own: every text, well-formed or not, must
// give the same verdict, size, hotspot and bits as XReadBitmapFileData.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "files/xbm_parse.h"

namespace {

// `head`, then `count` numbers written as `format` does, each followed by
// `sep`, twelve to a line.
std::string xbm_text(const std::string& head, int count, const char* format, const char* sep, unsigned seed)
{
    std::string s = head;
    unsigned v = seed;
    char number[32];
    for (int i = 0; i < count; i++) {
        v = v * 1103515245u + 12345u;
        std::snprintf(number, sizeof number, format, (v >> 8) & 0xffff);
        s += number;
        s += i % 12 == 11 ? std::string(sep) + "\n" : std::string(sep) + " ";
    }
    return s + "};\n";
}

std::string defines(int w, int h, const std::string& extra = "")
{
    return "#define t_width " + std::to_string(w) + "\n#define t_height " + std::to_string(h) + "\n" + extra;
}

struct Case {
    const char* what;
    std::string text;
};

std::vector<Case> cases()
{
    std::vector<Case> c;
    const std::string chars = "static unsigned char t_bits[] = {\n";
    for (int w : {1, 8, 13, 37, 511})
        c.push_back({"bytes", xbm_text(defines(w, 7), (w + 7) / 8 * 7, "0x%02x", ",", static_cast<unsigned>(w))});
    // Old-style 16-bit words, with and without a padding byte in each row.
    for (int w : {3, 8, 9, 13, 16, 25, 31, 40})
        c.push_back({"words", xbm_text(defines(w, 5) + "static short t_bits[] = {\n", ((w + 15) / 16) * 5,
                                       "0x%04x", ",", static_cast<unsigned>(w))});
    c.push_back({"static char, hotspots", xbm_text(defines(16, 3, "#define t_x_hot 4\n#define t_y_hot 2\n") +
                                                       "static char t_bits[] = {\n", 6, "0x%02x", ",", 1)});
    c.push_back({"short hot names", xbm_text(defines(8, 2, "#define x_hot 3\n#define _hot 5\n#define hot 1\n") + chars,
                                             2, "0x%02x", ",", 2)});
    c.push_back({"no width", "#define t_height 2\n" + chars + "0x01, 0x02 };\n"});
    c.push_back({"negative width", defines(-3, 2) + chars + "0x01, 0x02 };\n"});
    c.push_back({"bits before the size", chars + "0x01, 0x02 };\n" + defines(8, 2)});
    c.push_back({"cut short", defines(8, 4) + chars + "0x01, 0x02, 0x03"});
    c.push_back({"last number at the end", defines(8, 2) + chars + "0x01, 0x02"});
    c.push_back({"last number then a brace", defines(8, 2) + chars + "0x01, 0x02}"});
    c.push_back({"overflowing number", defines(8, 2) + chars + "0x123456789abc, 0x1234567, 0x02 };\n"});
    c.push_back({"number that is negative as an int", defines(8, 2) + chars + "0x01, 0x89abcdef, 0x02 };\n"});
    c.push_back({"odd digits and separators", defines(8, 6) + chars + "0XfF,\t0x1g2,\r\n 0x-3 ;0x4}5,0x\xe9\x37,\n"});
    c.push_back({"numbers on the opening line", defines(8, 2) + "static char t_bits[] = { 0x11, 0x22,\n0x33, 0x44 };\n"});
    c.push_back({"no final newline", defines(8, 1) + chars + "0x7f,"});
    c.push_back({"a line of 253 characters", std::string(253, '/') + "\n" + defines(8, 1) + chars + "0x01,\n"});
    c.push_back({"a line of 254 characters", std::string(254, '/') + "\n" + defines(8, 1) + chars + "0x01,\n"});
    c.push_back({"a line of 400 characters", std::string(400, '/') + "\n" + defines(8, 1) + chars + "0x01,\n"});
    c.push_back({"a NUL in a line", defines(8, 1) + std::string("#define t_width 16\0x", 20) + "\n" + chars +
                                        "0x01, 0x02,\n"});
    c.push_back({"other names first", defines(8, 1) + "static char t_mask[] = {\n0x01,\n};\n" + chars + "0x05,\n"});
    c.push_back({"spaces and a CR in the header", "#define  t_width\t8\r\n#define t_height 1\n" + chars + "9,\n"});
    c.push_back({"empty", ""});
    c.push_back({"an XPM", "/* XPM */\nstatic char * t[] = {\n\"1 1 1 1\",\n};\n"});
    return c;
}

}  // namespace

TEST(XbmParse, SameAsXlib)
{
    char dir[] = "/tmp/pictrel-xbm-test-XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    std::string path = std::string(dir) + "/t.xbm";
    int accepted = 0;
    for (const Case& c : cases()) {
        std::ofstream(path, std::ios::binary) << c.text;
        unsigned w = 0, h = 0;
        unsigned char* data = nullptr;
        int hx = -2, hy = -2;
        bool xlib = XReadBitmapFileData(path.c_str(), &w, &h, &data, &hx, &hy) == BitmapSuccess;
        XbmBits ours;
        EXPECT_EQ(parse_xbm(c.text, &ours), xlib) << c.what;
        if (xlib) {
            accepted++;
            EXPECT_EQ(ours.width, w) << c.what;
            EXPECT_EQ(ours.height, h) << c.what;
            EXPECT_EQ(ours.hotX, hx) << c.what;
            EXPECT_EQ(ours.hotY, hy) << c.what;
            std::vector<unsigned char> theirs(data, data + (w + 7) / 8 * h);
            EXPECT_EQ(ours.rows, theirs) << c.what;
            XFree(data);
        }
    }
    EXPECT_GT(accepted, 15) << "the cases must mostly be bitmaps";
    unlink(path.c_str());
    rmdir(dir);
}
