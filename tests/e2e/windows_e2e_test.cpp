// Where the real program's windows go and how its dialogs are left, with no window manager to help: drawings
// opened together cascade on the screen, the views open beside their drawing, a start-up message stays above the
// window that maps after it, and Escape cancels the New, Close Drawing and Fonts dialogs.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "e2e_support.h"

namespace {

// The window's rectangle on the screen, border included; width 0 when it cannot be read.
Geometry screen_box(Display* dpy, Window w)
{
    XWindowAttributes a;
    Window child;
    int x = 0, y = 0;
    if (!w || !XGetWindowAttributes(dpy, w, &a))
        return {w, 0, 0, 0, 0};
    XTranslateCoordinates(dpy, w, DefaultRootWindow(dpy), 0, 0, &x, &y, &child);
    return {w, x - a.border_width, y - a.border_width, a.width + 2 * a.border_width, a.height + 2 * a.border_width};
}

bool on_screen(Display* dpy, const Geometry& g)
{
    return g.width > 0 && g.x >= 0 && g.y >= 0 && g.x + g.width <= DisplayWidth(dpy, DefaultScreen(dpy)) &&
           g.y + g.height <= DisplayHeight(dpy, DefaultScreen(dpy));
}

bool overlap(const Geometry& a, const Geometry& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

std::string describe(const Geometry& g)
{
    return std::to_string(g.width) + "x" + std::to_string(g.height) + "+" + std::to_string(g.x) + "+" +
           std::to_string(g.y);
}

// Whether `upper` is stacked above `lower` among the root's children.
bool stacked_above(Display* dpy, Window upper, Window lower)
{
    int up = -1, low = -1, i = 0;
    for (const Geometry& g : child_windows(dpy, DefaultRootWindow(dpy))) {   // bottom to top
        up = g.id == upper ? i : up;
        low = g.id == lower ? i : low;
        i++;
    }
    return up >= 0 && low >= 0 && up > low;
}

void write_xpm(const std::string& path)
{
    std::ofstream(path) << "/* XPM */\nstatic char *p[] = {\n\"4 4 2 1\",\n\"# c #000000 m black\",\n"
                           "\". c #FFFFFF m white\",\n\"#..#\",\n\".##.\",\n\".##.\",\n\"#..#\"};\n";
}

}  // namespace

// Escape answers Cancel in the New dialog, the confirm-close question (the modified drawing stays open) and the
// font chooser.
TEST(WindowsE2e, EscapeCancelsNewCloseAndFonts)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16);
    ASSERT_NE(d.canvas, 0u) << app.stderr_text();
    app.click(d.canvas, e2e_cell(3), e2e_cell(3));   // modified: closing asks

    struct Case {
        const char* title;
        std::initializer_list<const char*> keys;
    };
    const Case cases[] = {
        {"New Drawing", {"ctrl+n"}},
        {"Close Drawing", {"ctrl+w"}},
        {"Fonts", {"F10", "Right", "Right", "Right", "Down", "o"}},   // Tools > Fonts...
    };
    for (const Case& c : cases) {
        app.keys(d.shell, c.keys);
        Window dialog = app.wait_window(c.title, 5000);
        ASSERT_NE(dialog, 0u) << "no " << c.title << " dialog";
        app.key(dialog, "Escape");
        EXPECT_TRUE(app.gone(c.title, 5000)) << "Escape leaves " << c.title << " up";
        EXPECT_NE(app.wait_window("Untitled", 1000), 0u) << "the drawing is still open after " << c.title;
    }
    EXPECT_TRUE(app.running());
}

// Every file of the command line failed: the message about it stays above the untitled window that maps after it,
// wholly on the screen.
TEST(WindowsE2e, StartupMessageStaysAboveTheWindowMappedAfterIt)
{
    E2eApp app;
    ASSERT_TRUE(app.start({"/nonexistent/pictrel-missing.xpm"}));
    Window drawing = app.wait_window("Untitled");
    Window message = app.wait_window("Error");
    ASSERT_NE(drawing, 0u) << app.stderr_text();
    ASSERT_NE(message, 0u) << "no message about the file";
    e2e_sleep_ms(300);
    Display* dpy = app.display();
    Geometry box = screen_box(dpy, message);
    EXPECT_TRUE(stacked_above(dpy, message, drawing)) << "the message is under the untitled window";
    EXPECT_TRUE(overlap(box, screen_box(dpy, drawing))) << "the check would not show a covered message";
    EXPECT_TRUE(on_screen(dpy, box)) << describe(box);
}

// Two drawings opened together take different places, both wholly on the screen; a drawing's actual-size and
// black-and-white views and its colour list open beside it (covering neither its window, palettes included, nor the
// views each other) and on the screen, titled with the drawing's name and what they show.
TEST(WindowsE2e, DrawingsCascadeAndViewsOpenBeside)
{
    E2eScratch scratch;
    std::string a = scratch.dir + "/first.xpm", b = scratch.dir + "/second.xpm";
    write_xpm(a);
    write_xpm(b);
    E2eApp app;
    Window first = app.start_shown({a, b}, "first.xpm"), second = app.shown("second.xpm");
    ASSERT_TRUE(first && second) << app.stderr_text();
    Display* dpy = app.display();
    Geometry one = screen_box(dpy, first), two = screen_box(dpy, second);
    EXPECT_TRUE(one.x != two.x || one.y != two.y) << "both at " << describe(one);
    EXPECT_TRUE(on_screen(dpy, one)) << describe(one);
    EXPECT_TRUE(on_screen(dpy, two)) << describe(two);

    app.menu(second, 2, "a");   // View > Actual Size View
    Window small = app.wait_window("second.xpm - Actual Size", 5000);
    ASSERT_NE(small, 0u) << "no actual-size view titled with its drawing";
    app.menu(second, 2, "b");   // View > Black and White View
    Window bw = app.wait_window("second.xpm - Black and White", 5000);
    ASSERT_NE(bw, 0u) << "no black-and-white view titled with its drawing";
    app.key(second, "ctrl+l");
    Window colours = app.shown("second.xpm - Colors", 5000);
    ASSERT_NE(colours, 0u) << "Ctrl+L opened no colour list titled with its drawing";
    Geometry drawing = screen_box(dpy, second), s = screen_box(dpy, small), w = screen_box(dpy, bw);
    for (const Geometry& view : {s, w, screen_box(dpy, colours)}) {
        EXPECT_TRUE(on_screen(dpy, view)) << describe(view);
        EXPECT_FALSE(overlap(view, drawing)) << "view " << describe(view) << " on the drawing " << describe(drawing);
    }
    EXPECT_FALSE(overlap(s, w)) << "the views on each other: " << describe(s) << ", " << describe(w);
}
