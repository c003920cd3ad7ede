// Tools > Resize Image... and Scale Image... of the real program, through the menu keys and their dialogs: what Save
// writes afterwards has the new size, the pixels moved about the anchor or scaled, the new area in the background
// colour, the colours of the file and the hotspot moved with the picture; Undo and Save give back the picture as it
// was opened.
#include <gtest/gtest.h>

#include <X11/xpm.h>

#include <fstream>
#include <strings.h>
#include <string>
#include <vector>

#include "e2e_support.h"

namespace {

// The picture as letters, one per pixel (y yellow, r red, b blue, g green, n transparent, ? anything else), and its
// hotspot.
struct Saved {
    std::vector<std::string> rows;
    std::pair<int, int> hot{-1, -1};
    unsigned colours = 0;
};

char letter_of(Display* dpy, const char* spec)
{
    if (spec && strcasecmp(spec, "None") == 0)
        return 'n';
    XColor c{};
    if (!spec || !XParseColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), spec, &c))
        return '?';
    unsigned rgb = (c.red >> 8) << 16 | (c.green >> 8) << 8 | c.blue >> 8;
    return rgb == 0xFFFF00 ? 'y' : rgb == 0xFF0000 ? 'r' : rgb == 0x0000FF ? 'b' : rgb == 0x00FF00 ? 'g' : '?';
}

Saved read_saved(Display* dpy, const std::string& path)
{
    Saved s;
    XpmImage image{};
    XpmInfo info{};
    info.valuemask = XpmReturnInfos;
    if (XpmReadFileToXpmImage(const_cast<char*>(path.c_str()), &image, &info) != XpmSuccess)
        return s;
    s.colours = image.ncolors;
    for (unsigned y = 0; y < image.height; y++) {
        std::string row;
        for (unsigned x = 0; x < image.width; x++)
            row += letter_of(dpy, image.colorTable[image.data[y * image.width + x]].c_color);
        s.rows.push_back(row);
    }
    if (info.valuemask & XpmHotspot)
        s.hot = {int(info.x_hotspot), int(info.y_hotspot)};
    XpmFreeXpmInfo(&info);
    XpmFreeXpmImage(&image);
    return s;
}

// Ctrl+S on the drawing, then the file once it differs from `before` (which it becomes).
Saved save_and_read(E2eApp& app, Window shell, const std::string& path, std::string* before)
{
    app.key(shell, "ctrl+s");
    *before = changed_file(path, *before);
    return read_saved(app.display(), path);
}

// Opens Tools > (mnemonic) and waits for the dialog titled `title`.
Window open_tools_item(E2eApp& app, Window shell, const char* mnemonic, const char* title)
{
    app.menu(shell, 3, mnemonic);
    return app.shown(title, 5000);
}

const std::vector<std::string> original = {"rbgr", "gyrb", "bgbg"};

}  // namespace

TEST(ResizeScaleE2e, ResizeAndScaleSavedThenUndone)
{
    E2eScratch s;
    std::string path = s.dir + "/pic.xpm";
    // The drawing's background is transparent, as for every file opened; the hotspot is the green pixel at (1, 2).
    std::ofstream(path) << "/* XPM */\nstatic char *pic[] = {\n\"4 3 4 1 1 2\",\n"
                           "\"y c #FFFF00\",\n\"r c #FF0000\",\n\"b c #0000FF\",\n\"g c #00FF00\",\n"
                           "\"rbgr\",\n\"gyrb\",\n\"bgbg\"};\n";
    std::string bytes = e2e_read_file(path);
    E2eApp app;
    Window shell = app.start_shown({path}, "pic.xpm");
    ASSERT_NE(shell, 0u) << app.stderr_text();

    // Resize: a height of 0 is refused with a message and the dialog stays; then 6 x 2 about the bottom right
    // corner extends two columns on the left, in the background, and crops the top row.
    Window dialog = open_tools_item(app, shell, "z", "Resize Image");
    ASSERT_NE(dialog, 0u) << "Tools > Resize Image... opens its dialog";
    app.type(dialog, "6");
    app.key(0, "Tab");
    app.type(0, "0");
    app.key(0, "Return");
    Window error = app.shown("Error", 5000);
    ASSERT_NE(error, 0u) << "a height of 0 is refused with a message";
    app.key(error, "Return");
    e2e_sleep_ms(300);
    // The height field has the focus again, its text selected; Tab then reaches the anchors.
    app.type(dialog, "2");
    app.keys(0, {"Tab", "Down", "Down", "Right", "Right", "space", "Return"});
    Saved resized = save_and_read(app, shell, path, &bytes);
    EXPECT_EQ(resized.rows, (std::vector<std::string>{"nngyrb", "nnbgbg"}));
    EXPECT_EQ(resized.hot, std::make_pair(3, 1)) << "the hotspot moved with it";
    EXPECT_EQ(resized.colours, 5u) << "the file's four and the background (transparent), no other";

    app.key(shell, "ctrl+z");
    Saved undone = save_and_read(app, shell, path, &bytes);
    EXPECT_EQ(undone.rows, original) << "Undo brings back the size and pixels";
    EXPECT_EQ(undone.hot, std::make_pair(1, 2));

    // Scale: 8 typed as the width gives a height of 6 with the proportions kept; every pixel becomes 2 x 2.
    dialog = open_tools_item(app, shell, "S", "Scale Image");
    ASSERT_NE(dialog, 0u) << "Tools > Scale Image... opens its dialog";
    app.type(dialog, "8");
    app.key(0, "Return");
    Saved scaled = save_and_read(app, shell, path, &bytes);
    EXPECT_EQ(scaled.rows, (std::vector<std::string>{"rrbbggrr", "rrbbggrr", "ggyyrrbb", "ggyyrrbb", "bbggbbgg",
                                                     "bbggbbgg"}));
    EXPECT_EQ(scaled.hot, std::make_pair(2, 4)) << "the hotspot scaled with it";
    EXPECT_EQ(scaled.colours, 4u) << "no colour added or lost";

    app.key(shell, "ctrl+z");
    undone = save_and_read(app, shell, path, &bytes);
    EXPECT_EQ(undone.rows, original) << "Undo of the scale";
    EXPECT_EQ(undone.hot, std::make_pair(1, 2));

    // Escape cancels: the dialog goes and the picture stays.
    dialog = open_tools_item(app, shell, "z", "Resize Image");
    ASSERT_NE(dialog, 0u);
    app.type(dialog, "9");
    app.key(0, "Escape");
    EXPECT_TRUE(app.gone("Resize Image")) << "Escape closes the dialog";
    app.key(shell, "ctrl+s");
    e2e_sleep_ms(500);
    EXPECT_EQ(read_saved(app.display(), path).rows, original) << "a cancelled resize changes nothing";
}
