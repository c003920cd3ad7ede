// Pure pieces of the shell: picture names from resources, the built-in
// search directories, and the logo's XPM data.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "app/logo_data.h"
#include "app/placement.h"
#include "colour/pixmap_name.h"

namespace {

std::string cut(const char* value)
{
    std::string s = value;
    cut_at_blank(s.data());
    return s.c_str();   // up to the written terminator
}

}  // namespace

// A resource value names the file up to its first blank or tab.
TEST(PixmapName, CutAtFirstBlankOrTab)
{
    EXPECT_EQ(cut("rect.xpm"), "rect.xpm");
    EXPECT_EQ(cut("rect.xpm the filled one"), "rect.xpm");
    EXPECT_EQ(cut("rect.xpm\tcomment"), "rect.xpm");
    EXPECT_EQ(cut("a\tb c"), "a");
    EXPECT_EQ(cut(" leading"), "");
    EXPECT_EQ(cut(""), "");
    cut_at_blank(nullptr);
}

// Null, empty and Motif's "unspecified_pixmap" mean no picture; nothing else.
TEST(PixmapName, UnspecifiedNames)
{
    EXPECT_TRUE(is_unspecified_name(nullptr));
    EXPECT_TRUE(is_unspecified_name(""));
    EXPECT_TRUE(is_unspecified_name("unspecified_pixmap"));
    EXPECT_FALSE(is_unspecified_name("unspecified_pixmap.xpm"));
    EXPECT_FALSE(is_unspecified_name("rect.xpm"));
}

// The built-in directories become one search path; directories the path
// syntax cannot carry are left out rather than breaking the path.
TEST(PixmapName, DirectorySearchPath)
{
    const char* dirs[] = {"/src/resources", "/usr/share/pictrel/pixmaps/"};
    EXPECT_EQ(directory_search_path(dirs, 2), "/src/resources/%N%S:/usr/share/pictrel/pixmaps/%N%S");
    const char* odd[] = {nullptr, "", "/with:colon", "/with%percent", "/ok"};
    EXPECT_EQ(directory_search_path(odd, 5), "/ok/%N%S");
    EXPECT_EQ(directory_search_path(odd, 4), "");
}

// The logo is a well-formed 85 x 31 XPM of four one-character colours, each bound to a symbolic colour so that it
// follows the scheme, and every pixel uses one of them.
TEST(LogoData, WellFormedSymbolicXpm)
{
    int w = 0, h = 0, colours = 0, chars = 0;
    ASSERT_EQ(sscanf(pictrelLogo[0], "%d %d %d %d", &w, &h, &colours, &chars), 4);
    EXPECT_EQ(w, LOGO_WIDTH);
    EXPECT_EQ(h, LOGO_HEIGHT);
    EXPECT_EQ(colours, 4);
    EXPECT_EQ(chars, 1);
    const char* const expected[][2] = {{" ", "s background"}, {".", "s black"}, {"X", "s topShadow"}, {"o", "s black"}};
    std::set<char> keys;
    for (int c = 0; c < colours; c++) {
        const char* line = pictrelLogo[1 + c];
        EXPECT_EQ(line[0], expected[c][0][0]) << line;
        EXPECT_NE(strstr(line, expected[c][1]), nullptr) << line;
        EXPECT_NE(strstr(line, "m white"), nullptr) << line;
        keys.insert(line[0]);
    }
    std::set<char> used;
    for (int y = 0; y < h; y++) {
        const char* row = pictrelLogo[1 + colours + y];
        ASSERT_EQ(strlen(row), static_cast<size_t>(w)) << "row " << y;
        for (int x = 0; x < w; x++) {
            EXPECT_TRUE(keys.count(row[x])) << "row " << y << " column " << x;
            used.insert(row[x]);
        }
    }
    EXPECT_EQ(used, keys) << "every colour of the mark is used";
}

// A dialog is centred over the asking window but never starts off the screen: a 400-wide dialog over a 260-wide
// window at the left edge would otherwise begin at -70.
TEST(DialogPlacement, CentredThenKeptOnScreen)
{
    EXPECT_EQ(centred_on_screen(100, 400, 200, 1280), 200);
    EXPECT_EQ(centred_on_screen(0, 260, 400, 1280), 0);
    EXPECT_EQ(centred_on_screen(1200, 260, 400, 1280), 880);
    EXPECT_EQ(centred_on_screen(0, 100, 2000, 1280), 0);
}
