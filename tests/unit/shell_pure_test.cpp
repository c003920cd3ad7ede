// Pure pieces of the shell: picture names from resources, the built-in search directories, the logo's XPM data
// and dialog placement.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "app/logo_data.h"
#include "app/placement.h"
#include "colour/pixmap_name.h"

// Null, empty and Motif's "unspecified_pixmap" mean no picture; directories the search path's syntax cannot carry
// are left out rather than breaking the path.
TEST(PixmapName, UnspecifiedNamesAndSearchPath)
{
    for (const char* name : {(const char*)nullptr, "", "unspecified_pixmap"})
        EXPECT_TRUE(is_unspecified_name(name));
    EXPECT_FALSE(is_unspecified_name("unspecified_pixmap.xpm"));
    const char* dirs[] = {"/src/resources", "/usr/share/pictrel/pixmaps/"};
    EXPECT_EQ(directory_search_path(dirs, 2), "/src/resources/%N%S:/usr/share/pictrel/pixmaps/%N%S");
    const char* odd[] = {nullptr, "", "/with:colon", "/with%percent", "/ok"};
    EXPECT_EQ(directory_search_path(odd, 5), "/ok/%N%S");
    EXPECT_EQ(directory_search_path(odd, 4), "");
}

// The logo's four one-character colours are bound to symbolic colours, so that it follows the scheme, and its
// pixels use exactly those.
TEST(LogoData, WellFormedSymbolicXpm)
{
    EXPECT_STREQ(pictrelLogo[0], "85 31 4 1");
    std::set<char> keys, used;
    for (int c = 1; c <= LOGO_COLOURS; c++) {
        EXPECT_TRUE(strstr(pictrelLogo[c], " s ") && strstr(pictrelLogo[c], "m white")) << pictrelLogo[c];
        keys.insert(pictrelLogo[c][0]);
    }
    for (int y = 1 + LOGO_COLOURS; y < LOGO_XPM_LINES; y++) {
        ASSERT_EQ(strlen(pictrelLogo[y]), size_t(LOGO_WIDTH)) << "line " << y;
        used.insert(pictrelLogo[y], pictrelLogo[y] + LOGO_WIDTH);
    }
    EXPECT_EQ(used, keys);
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
