// The colour editor from the outside: a drawing filled with its white background colour, the colour list opened by
// its accelerator, the editor by a double click on the background well, and a click on the wheel turns every pixel
// of that colour red. A bitmap has no colour list to open or to change what it paints.
#include <gtest/gtest.h>

#include <X11/extensions/XTest.h>

#include <fstream>
#include <string>

#include "e2e_support.h"

TEST(ColourE2e, WheelRecoloursTheDrawing)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16, "+300+300");
    ASSERT_TRUE(d.canvas && d.tools.size() == 9u);
    Display* dpy = app.display();
    app.click(d.tools[3], 12, 12);
    app.click(d.canvas, 60, 60, 3);   // fill with the white background colour
    app.key(d.shell, "ctrl+l");
    Window colours = app.wait_window("Untitled - Colors");
    e2e_sleep_ms(200);
    int wells = 0;
    Geometry background{};   // the right one of the foreground and background wells
    find_window(dpy, colours, [&](const Geometry& g) {
        if (g.width == 64 && g.height == 32 && ++wells && g.x >= background.x)
            background = g;
        return false;
    });
    ASSERT_EQ(wells, 2) << "the colour list's foreground and background wells";
    app.move(background.id, 30, 15);
    for (int i = 0; i < 2; i++) {   // well inside the multi-click time
        XTestFakeButtonEvent(dpy, 1, True, CurrentTime);
        XTestFakeButtonEvent(dpy, 1, False, CurrentTime);
    }
    XSync(dpy, False);
    Window editor = app.wait_window("Edit Color");
    e2e_sleep_ms(300);
    Window wheel = find_canvas(dpy, editor, 160, 160);
    ASSERT_NE(wheel, 0u) << "a double click on the well opens the editor with its wheel";
    app.click(wheel, 150, 80);   // right edge: hue 0, full saturation
    e2e_sleep_ms(300);
    ImagePtr shown = read_window(dpy, d.shell, d.canvas, 128, 128);
    ASSERT_TRUE(shown);
    EXPECT_EQ(rgb_of(dpy, XGetPixel(shown.get(), 60, 60)), 0xFF0000u) << "the canvas turned red";
    EXPECT_EQ(XGetPixel(shown.get(), 5, 5), XGetPixel(shown.get(), 120, 120));
}

// A bitmap opened into the window of a closed colour drawing has no colour list: Ctrl+L opens none, and button 1
// still paints set bits. (Were a list shown, New Color and a click on an even cell's swatch are tried on it.)
TEST(ColourE2e, BitmapHasNoColourList)
{
    E2eScratch scratch;
    std::string colour = scratch.dir + "/colour.xpm", first = scratch.dir + "/first.xbm";
    std::string second = scratch.dir + "/second.xbm";
    std::string rows;
    for (int y = 0; y < 16; y++)
        rows += std::string("\"....####....####\"") + (y < 15 ? ",\n" : "};\n");
    std::ofstream(colour) << "/* XPM */\nstatic char *colour[] = {\n\"16 16 2 1\",\n\". c #FFFFFF m white\",\n"
                             "\"# c #0000FF m black\",\n" << rows;
    for (const std::string& path : {first, second}) {
        std::ofstream out(path);
        out << "#define bits_width 16\n#define bits_height 16\nstatic unsigned char bits_bits[] = {\n";
        for (int i = 0; i < 32; i++)
            out << " 0x00" << (i < 31 ? "," : "};\n");
    }

    E2eApp app;
    ASSERT_TRUE(app.start({colour, first, "-geometry", "+300+300"}));
    Window colourShell = app.wait_window("colour.xpm"), firstShell = app.wait_window("first.xbm");
    ASSERT_TRUE(colourShell && firstShell) << app.stderr_text();
    e2e_sleep_ms(300);
    app.key(colourShell, "ctrl+w");   // unchanged: closes at once and leaves its window for the next drawing
    e2e_sleep_ms(300);
    ASSERT_EQ(app.wait_window("colour.xpm", 300), 0u) << "the colour drawing closed";
    app.key(firstShell, "ctrl+o");
    Window fd = app.wait_window("File Dialog");
    ASSERT_NE(fd, 0u);
    e2e_sleep_ms(300);
    app.type(fd, second);
    app.key(0, "Return");
    E2eDrawing d;
    d.shell = app.wait_window("second.xbm");
    ASSERT_NE(d.shell, 0u) << "the second bitmap opened";
    e2e_sleep_ms(300);
    d.width = d.height = 16 << 3;
    d.canvas = find_canvas(app.display(), d.shell, d.width, d.height);
    ASSERT_NE(d.canvas, 0u);

    app.key(d.shell, "ctrl+l");
    Window colours = app.wait_window("Colors", 1500);
    EXPECT_EQ(colours, 0u) << "Ctrl+L opened a colour list for a bitmap";
    if (colours) {
        // New Color (the left action button) twice, then a click on a swatch whose cell is even: as a bit, 0.
        Display* dpy = app.display();
        e2e_sleep_ms(300);
        Geometry newColor{};
        find_window(dpy, colours, [&](const Geometry& g) {
            if (g.height == 25 && (!newColor.id || g.x < newColor.x))
                newColor = g;
            return false;
        });
        for (int i = 0; newColor.id && i < 2; i++)
            app.click(newColor.id, 20, 12);
        e2e_sleep_ms(300);
        std::vector<Window> swatches;
        find_window(dpy, colours, [&](const Geometry& g) {
            if (g.height == 22 && g.width > 100)
                swatches.push_back(g.id);
            return false;
        });
        for (Window w : swatches) {
            ImagePtr shown = read_window(dpy, colours, w, 20, 20);
            if (shown && XGetPixel(shown.get(), 10, 10) % 2 == 0) {
                app.click(w, 10, 10);
                break;
            }
        }
    }
    app.click(d.canvas, e2e_cell(3), e2e_cell(3));   // the pencil, button 1
    app.click(d.canvas, e2e_cell(9), e2e_cell(12));
    EXPECT_EQ(dark_cells(app, d, 3, 3, 3, 3) + dark_cells(app, d, 9, 12, 9, 12), 2) << "button 1 paints set bits";
}
