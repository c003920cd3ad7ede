// The XPM reader against libXpm's own: whatever the text, when the reader
// takes it, libXpm must read it too and give the same image, colour by
// colour and pixel by pixel, and the same hotspot. The common forms must
// be taken (else every open would quietly go the slow way).
#include <gtest/gtest.h>

#include <X11/xpm.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "files/xpm_parse.h"

namespace {

std::string pixel_rows(int w, int h, const std::vector<std::string>& keys, const char* rowEnd = "\",\n")
{
    std::string s;
    unsigned v = 7;
    for (int y = 0; y < h; y++) {
        s += '"';
        for (int x = 0; x < w; x++) {
            v = v * 1103515245u + 12345u;
            s += keys[(v >> 16) % keys.size()];
        }
        s += rowEnd;
    }
    return s;
}

std::string xpm(const std::string& values, const std::string& colours, const std::string& rows,
                const std::string& between = "")
{
    return "/* XPM */\nstatic char *t[] = {\n" + between + "\"" + values + "\",\n" + colours + rows + "};\n";
}

bool same(const char* a, const char* b)
{
    return (!a && !b) || (a && b && !std::strcmp(a, b));
}

struct Verdict {
    bool taken = false;      // the reader here read it
    int libStatus = 0;       // libXpm's status
    std::string difference;  // empty when both read it alike
};

// Both readers over `text`, the file one from a temporary file.
Verdict both(const std::string& text)
{
    Verdict v;
    XpmImage mine;
    XpmParsed info;
    v.taken = parse_xpm_text(text, &mine, &info);

    char path[] = "/tmp/pictrel-xpm-parse-XXXXXX";
    int fd = mkstemp(path);
    EXPECT_GE(fd, 0);
    EXPECT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(fd);
    XpmImage theirs;
    XpmInfo theirInfo{};
    theirInfo.valuemask = XpmReturnInfos | XpmReturnExtensions;
    v.libStatus = XpmReadFileToXpmImage(path, &theirs, &theirInfo);
    unlink(path);

    auto differ = [&](const std::string& what) {
        if (v.difference.empty())
            v.difference = what;
    };
    // Handed over a byte or a few at a time, the text reads the same.
    for (size_t part : {1, 7}) {
        XpmImage piecewise;
        XpmParsed pieceInfo;
        bool taken = parse_xpm_text(text, &piecewise, &pieceInfo, part);
        if (taken != v.taken)
            differ("taken whole but not " + std::to_string(part) + " bytes at a time, or the other way");
        if (taken && v.taken) {
            if (piecewise.ncolors != mine.ncolors || pieceInfo.hotspot != info.hotspot ||
                std::memcmp(piecewise.data, mine.data, sizeof(unsigned) * mine.width * mine.height))
                differ("read otherwise " + std::to_string(part) + " bytes at a time");
            for (unsigned i = 0; i < mine.ncolors && i < piecewise.ncolors; i++)
                if (!same(piecewise.colorTable[i].c_color, mine.colorTable[i].c_color))
                    differ("colour " + std::to_string(i) + " read otherwise in parts");
        }
        if (taken)
            XpmFreeXpmImage(&piecewise);
    }
    if (v.taken) {
        if (v.libStatus != XpmSuccess) {
            differ("libXpm refused it: " + std::to_string(v.libStatus));
        } else {
            if (mine.width != theirs.width || mine.height != theirs.height || mine.cpp != theirs.cpp ||
                mine.ncolors != theirs.ncolors)
                differ("size, cpp or colour count");
            bool theirHot = (theirInfo.valuemask & XpmHotspot) != 0;
            if (info.hotspot != theirHot ||
                (theirHot && (info.hotX != theirInfo.x_hotspot || info.hotY != theirInfo.y_hotspot)))
                differ("hotspot");
            for (unsigned i = 0; v.difference.empty() && i < mine.ncolors; i++) {
                const XpmColor& a = mine.colorTable[i];
                const XpmColor& b = theirs.colorTable[i];
                if (!same(a.string, b.string) || !same(a.symbolic, b.symbolic) || !same(a.m_color, b.m_color) ||
                    !same(a.g4_color, b.g4_color) || !same(a.g_color, b.g_color) || !same(a.c_color, b.c_color))
                    differ("colour " + std::to_string(i));
            }
            if (v.difference.empty() &&
                std::memcmp(mine.data, theirs.data, sizeof(unsigned) * mine.width * mine.height))
                differ("pixels");
        }
        XpmFreeXpmImage(&mine);
    }
    if (v.libStatus == XpmSuccess) {
        XpmFreeXpmImage(&theirs);
        XpmFreeXpmInfo(&theirInfo);
    }
    return v;
}

const std::string colours2 = "\"  c None\",\n\".. c #FF0000\",\n\"#a c blue m white s edge\",\n"
                             "\"x. c light slate gray\",\n";
const std::vector<std::string> keys2 = {"  ", "..", "#a", "x."};
const std::string colours1 = "\"  c None\",\n\". c #FF0000 m black\",\n\"a c #00ff00\",\n";
const std::vector<std::string> keys1 = {" ", ".", "a"};

TEST(XpmParse, CommonFormsAreTakenAndReadAsLibXpmReadsThem)
{
    const std::vector<std::string> texts = {
        xpm("16 9 4 2", colours2, pixel_rows(16, 9, keys2)),
        xpm("16 9 3 1", colours1, pixel_rows(16, 9, keys1)),
        xpm("5 3 3 1 2 1", colours1, pixel_rows(5, 3, keys1)),
        // Comments and C text around the strings, a comment ending "**/".
        xpm("7 4 4 2", "/* colors */\n" + colours2, "/* pixels **/\n" + pixel_rows(7, 4, keys2),
            "/* values */\n"),
        // Windows line ends, no commas, rows longer than the width.
        xpm("6 2 3 1", colours1, pixel_rows(8, 2, keys1, "\"\r\n")),
        // Keys spelled out, several words to a colour, a key word as a value.
        xpm("2 2 2 1", "\"a s c c m\",\n\"b g4 #111 g #222 c dark  olive   green\",\n", "\"ab\",\n\"ba\",\n"),
        // Two colours with one key: libXpm's table keeps the later one.
        xpm("2 1 2 1", "\"a c red\",\n\"a c blue\",\n", "\"aa\"\n"),
        // A key with no value, and one repeated.
        xpm("1 1 1 1", "\"a c red c\",\n", "\"a\"\n"),
        xpm("1 1 1 1", "\"a c red m white c blue\",\n", "\"a\"\n"),
        // Tabs between the words.
        xpm("1 1\t1 1", "\"a\tc\t#123456\",\n", "\"a\"\n"),
    };
    for (size_t i = 0; i < texts.size(); i++) {
        Verdict v = both(texts[i]);
        EXPECT_TRUE(v.taken) << "case " << i << ":\n" << texts[i];
        EXPECT_EQ(v.libStatus, XpmSuccess) << "case " << i;
        EXPECT_EQ(v.difference, "") << "case " << i << ":\n" << texts[i];
    }
}

TEST(XpmParse, OddFormsAreLeftToLibXpmOrReadAlike)
{
    const std::string good = xpm("4 2 3 1", colours1, pixel_rows(4, 2, keys1));
    std::vector<std::string> texts = {
        // libXpm's comment ends at "/" after any "*", the opening's too.
        "/* XPM */\n/*/ \"9 9 9 9\" */\n\"2 1 1 1\",\n\"a c red\",\n\"aa\"\n",
        // After a comment closes, its '/' may open the next one.
        "/* XPM */\n/* a */* \"9 9 9 9\" */\n\"2 1 1 1\",\n\"a c red\",\n\"aa\"\n",
        // A quote inside a comment is no string.
        "/* XPM */\n/* \" */\n\"2 1 1 1\",\n\"a c red\",\n\"aa\"\n",
        // Hotspot half given, extensions, too many words.
        xpm("4 2 3 1 1", colours1, pixel_rows(4, 2, keys1)),
        xpm("4 2 3 1 XPMEXT", colours1, pixel_rows(4, 2, keys1)) + "\"XPMEXT ext data\",\n\"XPMENDEXT\"\n",
        xpm("4 2 3 1 1 1 XPMEXT", colours1, pixel_rows(4, 2, keys1)),
        xpm("4 2 3 1 0 0 junk", colours1, pixel_rows(4, 2, keys1)),
        // Sizes and counts out of the way.
        xpm("0 2 3 1", colours1, ""), xpm("4 0 3 1", colours1, ""), xpm("4 2 0 1", "", pixel_rows(4, 2, keys1)),
        xpm("4 2 3 3", colours1, pixel_rows(4, 2, keys1)), xpm("4 2 3 0", colours1, pixel_rows(4, 2, keys1)),
        xpm("99999999999 2 3 1", colours1, pixel_rows(4, 2, keys1)), xpm("4 2 3x 1", colours1, ""),
        // A value before any key; a pixel no colour names; a short row.
        xpm("1 1 1 1", "\"a red\",\n", "\"a\"\n"), xpm("2 1 3 1", colours1, "\"az\"\n"),
        xpm("4 2 3 1", colours1, "\"..\",\n\"....\"\n"),
        // A quote as a key, bytes above ASCII, a NUL in a pixel row.
        xpm("2 1 2 1", "\"\" c red\",\n\"a c blue\",\n", "\"\"a\"\n"),
        xpm("2 1 1 1", "\"a c caf\xc3\xa9\",\n", "\"aa\"\n"), xpm("2 1 2 1", colours1, std::string("\"a\0\"\n", 5)),
        // XPM 2, an XPM 1 style header, no header at all, a comment never closed.
        "! XPM2\n2 1 1 1\na c red\naa\n", "#define t_format 1\n", "\"2 1 1 1\",\n\"a c red\",\n\"aa\"\n",
        "/* XPM */\n/* never closed \"2 1 1 1\",\n",
    };
    // Every prefix of a good file, and every byte of it changed in turn.
    for (size_t n = 0; n < good.size(); n++)
        texts.push_back(good.substr(0, n));
    const char swaps[] = {'"', '/', '*', ' ', '\n', 'c', '9', '.', '\0'};
    for (size_t i = 0; i < good.size(); i++)
        for (char c : swaps) {
            std::string t = good;
            t[i] = c;
            texts.push_back(t);
        }
    int taken = 0;
    for (size_t i = 0; i < texts.size(); i++) {
        Verdict v = both(texts[i]);
        taken += v.taken;
        EXPECT_EQ(v.difference, "") << "case " << i << ":\n" << texts[i];
    }
    // The mutations keep most files readable: both ways must have been tried.
    EXPECT_GT(taken, 100);
}

}  // namespace
