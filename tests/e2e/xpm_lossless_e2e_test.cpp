// What a file holds beyond its pixels survives open -> Ctrl+S: symbolic colour names (the transparent colour's too)
// and XPMEXT extensions, with the hotspot; the file written still reads in libXpm and ImageMagick. A file with more
// colours than free cells asks first: Return opens it reduced into the free cells, modified; Escape refuses it with
// "Unable to allocate color." and no drawing.
#include <gtest/gtest.h>

#include <X11/xpm.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

#include "e2e_support.h"
#include "files/colour_fit.h"

namespace {

struct ReadBack {
    int status = -1;
    XpmImage image{};
    XpmInfo info{};
    explicit ReadBack(const std::string& path)
    {
        info.valuemask = XpmReturnExtensions;
        status = XpmReadFileToXpmImage(const_cast<char*>(path.c_str()), &image, &info);
    }
    ~ReadBack()
    {
        if (status == XpmSuccess) {
            XpmFreeXpmInfo(&info);
            XpmFreeXpmImage(&image);
        }
    }
    // The symbolic name of the colour whose "c" key is `colour`, "" for none, "?" when no colour has that key.
    std::string name_of(const char* colour) const
    {
        for (unsigned i = 0; i < image.ncolors; i++)
            if (image.colorTable[i].c_color && !strcasecmp(image.colorTable[i].c_color, colour))
                return image.colorTable[i].symbolic ? image.colorTable[i].symbolic : "";
        return "?";
    }
};

// 20 x 16: 300 pixels of a colour each (a smooth blend, as a photo has), then a row of transparent ones.
constexpr int MANY_W = 20, MANY_H = 16, MANY_COLOURS = 300;
unsigned many_rgb(int i) { return unsigned(40 + (i % 20) * 10) << 16 | unsigned(30 + (i / 20) * 12) << 8 | unsigned(90 + (i % 20) * (i / 20) / 2); }

std::string many_colour_xpm()
{
    const std::string chars = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    auto key = [&](int i) { return std::string{chars[size_t(i) % chars.size()], chars[size_t(i) / chars.size()]}; };
    std::string s = "/* XPM */\nstatic char *many[] = {\n\"20 16 301 2\",\n\"   c None\",\n";
    for (int i = 0; i < MANY_COLOURS; i++) {
        char line[40];
        std::snprintf(line, sizeof line, "\"%s c #%06X\",\n", key(i).c_str(), many_rgb(i));
        s += line;
    }
    for (int y = 0; y < MANY_H; y++) {
        s += '"';
        for (int x = 0; x < MANY_W; x++) {
            int i = y * MANY_W + x;
            s += i < MANY_COLOURS ? key(i) : "  ";
        }
        s += y + 1 < MANY_H ? "\",\n" : "\"};\n";
    }
    return s;
}

}  // namespace

TEST(XpmLosslessE2e, NamesAndExtensionsSurviveSave)
{
    E2eScratch s;
    std::string path = s.dir + "/named.xpm";
    // The transparent colour sits in the middle of the table, and one colour has no name.
    std::string original =
        "/* XPM */\nstatic char *named[] = {\n\"8 6 4 1 2 3 XPMEXT\",\n"
        "\"a s shadow m black c #102030\",\n\"  s mask c None\",\n\"b c #F0E0D0\",\n\"c s highlight m white c red\",\n"
        "\"aaaabbbb\",\n\"a    ccb\",\n\"a cc  cb\",\n\"abbbbbbb\",\n\"cccc    \",\n\"aabbccaa\",\n"
        "\"XPMEXT author A. Painter\",\n\"XPMEXT notes\",\n\"first line\",\n\"second line\",\n\"XPMENDEXT\"\n};\n";
    std::ofstream(path) << original;
    ReadBack before(path);
    ASSERT_EQ(before.status, XpmSuccess);
    ASSERT_EQ(before.info.nextensions, 2u) << "libXpm reads the fixture's extensions";

    E2eApp app;
    Window shell = app.start_shown({path}, "named.xpm");
    ASSERT_NE(shell, 0u) << app.stderr_text();
    app.key(shell, "ctrl+s");
    std::string saved = changed_file(path, original);
    ASSERT_NE(saved, original) << "Ctrl+S wrote the file";

    ReadBack after(path);
    ASSERT_EQ(after.status, XpmSuccess) << saved;
    EXPECT_EQ(after.name_of("#101020203030"), "shadow") << saved;
    EXPECT_EQ(after.name_of("#FFFF00000000"), "highlight") << saved;
    EXPECT_EQ(after.name_of("None"), "mask") << saved;
    EXPECT_EQ(after.name_of("#F0F0E0E0D0D0"), "") << "a colour without a name gets none";
    ASSERT_EQ(after.info.nextensions, 2u) << saved;
    for (unsigned i = 0; i < 2; i++) {
        const XpmExtension& x = before.info.extensions[i];
        const XpmExtension& y = after.info.extensions[i];
        EXPECT_STREQ(x.name, y.name);
        ASSERT_EQ(x.nlines, y.nlines) << x.name;
        for (unsigned l = 0; l < x.nlines; l++)
            EXPECT_STREQ(x.lines[l], y.lines[l]);
    }
    EXPECT_EQ(after.info.x_hotspot * 10 + after.info.y_hotspot, 23u) << saved;
    EXPECT_NE(saved.find("m black"), std::string::npos) << "the monochrome keys are still written";
    ASSERT_EQ(after.image.width * after.image.height, 48u);
    for (unsigned i = 0; i < 48; i++) {
        // Pixel for pixel the same colours (tables may be ordered differently).
        const char* was = before.image.colorTable[before.image.data[i]].c_color;
        const char* is = after.image.colorTable[after.image.data[i]].c_color;
        EXPECT_EQ(std::string(was) == "None", std::string(is) == "None") << "pixel " << i;
    }
    EXPECT_EQ(command_output("identify -format '%w %h %k' '" + path + "' 2>&1"), "8 6 4")
        << "ImageMagick reads the file";
}

TEST(XpmLosslessE2e, TooManyColoursAsksThenReducesOrRefuses)
{
    E2eScratch s;
    std::string path = s.dir + "/many.xpm";
    std::string original = many_colour_xpm();
    std::ofstream(path) << original;

    {
        // Escape answers No: the same refusal as ever, and the file is not opened.
        E2eApp app;
        Window ask = app.start_shown({path}, "Error");
        ASSERT_NE(ask, 0u) << app.stderr_text();
        EXPECT_TRUE(app.shows_text(ask, LABEL_FONT, "has 301 colours but only"));
        app.key(ask, "Escape");
        Window refusal = 0;
        for (int i = 0; i < 50 && !refusal; i++, e2e_sleep_ms(100))
            for (const E2eWindow& w : app.windows())
                if (w.title == "Error" && app.shows_text(w.id, LABEL_FONT, "Unable to allocate color."))
                    refusal = w.id;
        EXPECT_NE(refusal, 0u) << "No gives the refusal";
        EXPECT_EQ(app.wait_window("many.xpm", 500), 0u) << "and no drawing of the file";
    }

    Display* dpy = XOpenDisplay(nullptr);
    ASSERT_NE(dpy, nullptr);
    E2eApp app;
    Window ask = app.start_shown({path}, "Error");
    ASSERT_NE(ask, 0u) << app.stderr_text();
    app.key(ask, "Return");
    Window shell = app.shown("many.xpm");
    ASSERT_NE(shell, 0u) << "Yes, the default, opens it";
    EXPECT_TRUE(app.shows_text(shell, LABEL_FONT, "Colours reduced from 301 to")) << "the status line says so";
    EXPECT_GE(count_free_cells(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), 256), 1u)
        << "the reduced drawing fits in the cells that were free";
    XCloseDisplay(dpy);

    // Reduced, the drawing differs from its file: Quit asks, and Return (Save) writes it over the file.
    app.key(shell, "ctrl+q");
    Window close = app.shown("Close Drawing");
    ASSERT_NE(close, 0u) << "a reduced drawing counts as modified";
    app.key(close, "Return");
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status));
    EXPECT_EQ(status, 0);

    ReadBack after(path);
    ASSERT_EQ(after.status, XpmSuccess);
    ASSERT_EQ(after.image.width * 100 + after.image.height, unsigned(MANY_W * 100 + MANY_H));
    EXPECT_LT(after.image.ncolors, 256u);
    EXPECT_GT(after.image.ncolors, 100u) << "the free cells are used, not a handful";
    double error = 0;
    for (int i = 0; i < MANY_W * MANY_H; i++) {
        const char* c = after.image.colorTable[after.image.data[i]].c_color;
        ASSERT_NE(c, nullptr);
        if (i >= MANY_COLOURS) {
            EXPECT_STREQ(c, "None") << "transparency is kept, pixel " << i;
            continue;
        }
        unsigned r = 0, g = 0, b = 0;
        ASSERT_EQ(std::sscanf(c, "#%4X%4X%4X", &r, &g, &b), 3) << c;
        unsigned want = many_rgb(i);
        error += std::sqrt(std::pow(double(r >> 8) - (want >> 16), 2) + std::pow(double(g >> 8) - (want >> 8 & 255), 2) +
                           std::pow(double(b >> 8) - (want & 255), 2));
    }
    EXPECT_LT(error / MANY_COLOURS, 6.0) << "each pixel near its own colour";
}
