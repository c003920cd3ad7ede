// Pure pieces of the shell: picture names from resources, the built-in search directories, the logo's XPM data
// and dialog placement.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "app/logo_data.h"
#include "app/placement.h"
#include "colour/pixmap_name.h"

// Null, empty and Motif's "unspecified_pixmap" mean no picture; nothing else does.
TEST(PixmapName, UnspecifiedNames)
{
    for (const char* name : {(const char*)nullptr, "", "unspecified_pixmap"})
        EXPECT_TRUE(is_unspecified_name(name));
    EXPECT_FALSE(is_unspecified_name("unspecified_pixmap.xpm"));
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

// The logo is a well-formed 85 x 31 XPM whose four one-character colours are bound to symbolic colours, so that it
// follows the scheme, and every pixel uses one of them.
TEST(LogoData, WellFormedSymbolicXpm)
{
    int w = 0, h = 0, colours = 0, chars = 0;
    ASSERT_EQ(sscanf(pictrelLogo[0], "%d %d %d %d", &w, &h, &colours, &chars), 4);
    ASSERT_TRUE(w == LOGO_WIDTH && h == LOGO_HEIGHT && colours == 4 && chars == 1) << pictrelLogo[0];
    std::set<char> keys, used;
    for (int c = 0; c < colours; c++) {
        const char* line = pictrelLogo[1 + c];
        EXPECT_TRUE(strstr(line, " s ") && strstr(line, "m white")) << line;
        keys.insert(line[0]);
    }
    for (int y = 0; y < h; y++) {
        const char* row = pictrelLogo[1 + colours + y];
        ASSERT_EQ(strlen(row), static_cast<size_t>(w)) << "row " << y;
        used.insert(row, row + w);
    }
    EXPECT_EQ(used, keys) << "every pixel uses a colour of the mark, and every colour is used";
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
