// Pure pieces of the shell: picture names from resources, the built-in search directories, the logo's XPM data,
// window placement and the titles that tell a drawing's windows apart.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "app/logo_data.h"
#include "colour/pixmap_name.h"
#include "core/placement.h"
#include "core/titles.h"

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

// Origins print as "(x, y)" in failure messages.
void PrintTo(const Origin& o, std::ostream* os) { *os << "(" << o.x << ", " << o.y << ")"; }

// A window is pulled wholly onto the screen; one larger than the screen starts at its top or left edge.
TEST(WindowPlacement, ClampedOnScreen)
{
    EXPECT_EQ(clamped_on_screen(100, 50, 300, 200, 1280, 1024), (Origin{100, 50}));
    EXPECT_EQ(clamped_on_screen(1100, 900, 300, 200, 1280, 1024), (Origin{980, 824})) << "the 4 pixels of Edit Color";
    EXPECT_EQ(clamped_on_screen(-20, -5, 300, 200, 1280, 1024), (Origin{0, 0}));
    EXPECT_EQ(clamped_on_screen(500, 500, 2000, 1500, 1280, 1024), (Origin{0, 0}));
}

// New drawing windows step down and right from the last one opened; a step past the bottom starts again at the
// top one step further right, a step past the right edge starts again at the left; an origin another window has
// is stepped over, so no window covers another exactly; every place keeps the window on the screen.
TEST(WindowPlacement, CascadeStepsWrapsAndNeverCoversExactly)
{
    const int S = CASCADE_STEP;
    EXPECT_EQ(cascade_origin({}, 300, 400, 1280, 1024), (Origin{0, 0}));
    EXPECT_EQ(cascade_origin({{0, 0, 300, 400}}, 300, 400, 1280, 1024), (Origin{S, S}));
    EXPECT_EQ(cascade_origin({{0, 0, 300, 400}, {760, 0, 300, 400}}, 300, 400, 1280, 1024), (Origin{760 + S, S}))
        << "from the last opened, not the first";

    // 1000 - 400 leaves room down to y 600: from y 590 the next step would leave the screen.
    EXPECT_EQ(cascade_origin({{100, 590, 300, 400}}, 300, 400, 1280, 1000), (Origin{100 + 2 * S, 0}));
    // 1280 - 300 leaves room right to x 980.
    EXPECT_EQ(cascade_origin({{970, 100, 300, 400}}, 300, 400, 1280, 1024), (Origin{0, 100 + S}));

    std::vector<WindowBox> open{{S, S, 300, 400}, {0, 0, 300, 400}};
    EXPECT_EQ(cascade_origin(open, 300, 400, 1280, 1024), (Origin{2 * S, 2 * S}))
        << "the step onto the first window's place is stepped over";

    // Eight windows on a small screen: all different, all on it.
    std::vector<WindowBox> many{{0, 0, 200, 150}};
    for (int i = 1; i < 8; i++) {
        Origin o = cascade_origin(many, 200, 150, 320, 240);
        for (const WindowBox& b : many)
            EXPECT_FALSE(b.x == o.x && b.y == o.y) << "window " << i << " covers another at " << o.x << "," << o.y;
        EXPECT_TRUE(o.x >= 0 && o.y >= 0 && o.x + 200 <= 320 && o.y + 150 <= 240) << "window " << i;
        many.push_back({o.x, o.y, 200, 150});
    }
}

// A view goes right of its drawing at its top, under a view already there, else left of the drawing, never over
// the drawing or another view while a free place on the screen exists; with none it goes right, pulled onto the
// screen, over the drawing's right side (its canvas) rather than its palettes.
TEST(WindowPlacement, BesideTheOwner)
{
    const int G = BESIDE_GAP;
    WindowBox drawing{100, 50, 300, 400};
    EXPECT_EQ(beside_owner(drawing, {}, 120, 100, 1280, 1024), (Origin{400 + G, 50}));
    WindowBox small{400 + G, 50, 120, 100};
    EXPECT_EQ(beside_owner(drawing, {small}, 120, 100, 1280, 1024), (Origin{400 + G, 150 + G}))
        << "under the view already beside it";

    WindowBox atRight{1000, 50, 270, 400};
    EXPECT_EQ(beside_owner(atRight, {}, 120, 100, 1280, 1024), (Origin{1000 - 120 - G, 50})) << "no room right";
    WindowBox tall{600, 0, 300, 1000};
    WindowBox rightView{900 + G, 0, 300, 1000};
    EXPECT_EQ(beside_owner(tall, {rightView}, 300, 1000, 1280, 1024), (Origin{300 - G, 0}))
        << "the right side is taken from top to bottom";

    WindowBox wide{0, 0, 1200, 900};
    EXPECT_EQ(beside_owner(wide, {}, 200, 200, 1280, 1024), (Origin{1080, 0}))
        << "no room anywhere: on the drawing's right side";
}

// The views and the colour list carry the drawing's name as its window does, then what they are; the confirm
// question names the drawing where its text says, or above it when the text has no place for it.
TEST(DrawingTitles, NameThenRoleAndTheQuestion)
{
    EXPECT_EQ(title_name("/a/b/pic.xpm"), "pic.xpm");
    EXPECT_EQ(title_name("Untitled"), "Untitled");
    EXPECT_EQ(drawing_window_title("/a/b/pic.xpm", "Actual Size"), "pic.xpm - Actual Size");
    EXPECT_EQ(drawing_window_title("Untitled", "Black and White"), "Untitled - Black and White");
    EXPECT_EQ(drawing_window_title("pic.xpm", ""), "pic.xpm");
    EXPECT_EQ(question_about("Save changes to %s before closing?", "/x/pic.xpm"),
              "Save changes to pic.xpm before closing?");
    EXPECT_EQ(question_about("Save changes?", "/x/pic.xpm"), "pic.xpm\nSave changes?");
    EXPECT_EQ(question_about("Save %d changes to %s?", "pic.xpm"), "pic.xpm\nSave %d changes to %s?")
        << "a conversion that takes no name is not formatted";
    EXPECT_EQ(question_about("100%% sure about %s?", "pic"), "100% sure about pic?");
}
