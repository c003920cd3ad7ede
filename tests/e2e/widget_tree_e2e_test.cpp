// The widget-tree browser of the real program: Help > Widget Tree... opens it on the drawing window, and the class
// it shows follows Up The Tree and Down The Tree, read as a user copies it (selected in its field, read back from
// the PRIMARY selection).
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "e2e_support.h"

namespace {

// A viewable window and its rectangle on the screen.
struct Placed {
    Window id;
    int x, y, width, height;
    bool leaf;
};

// Every viewable window below `w`, parents before their children.
std::vector<Placed> placed(Display* dpy, Window w, std::vector<Placed> out = {})
{
    for (const Geometry& g : child_windows(dpy, w)) {
        int x = 0, y = 0;
        Window child;
        XTranslateCoordinates(dpy, g.id, DefaultRootWindow(dpy), 0, 0, &x, &y, &child);
        size_t at = out.size();
        out.push_back({g.id, x, y, g.width, g.height, true});
        out = placed(dpy, g.id, std::move(out));
        out[at].leaf = out.size() == at + 1;
    }
    return out;
}

// The innermost window that shows `text`.
Placed showing(E2eApp& app, const std::vector<Placed>& all, const char* font, const std::string& text)
{
    Placed found{};
    for (const Placed& p : all)
        if (app.shows_text(p.id, font, text))
            found = p;
    return found;
}

void click_middle(E2eApp& app, const Placed& p) { app.click(p.id, p.width / 2, p.height / 2); }

// The class the browser shows: its field selected whole by a triple click, then pasted.
std::string shown_class(E2eApp& app, Window dialog, const Placed& field)
{
    // With no window manager here to give it, the browser gets the focus as a click-to-focus manager would.
    XSetInputFocus(app.display(), dialog, RevertToPointerRoot, CurrentTime);
    app.multi_click(field.id, field.width / 2, field.height / 2, 3);
    return primary_text(app.display());
}

}  // namespace

// Help > Widget Tree... opens "Widget Tree" on the drawing window's shell. Up does nothing at the top; a child
// chosen in the list and Down The Tree show the child's class, Up The Tree the shell's again, and a double click
// on a child goes down as well. Escape closes the browser and leaves the drawing.
TEST(WidgetTreeE2e, UpAndDownChangeTheClassShown)
{
    E2eApp app;
    Window w = app.start_shown({}, "Untitled");
    ASSERT_NE(w, 0u) << app.stderr_text();
    app.menu(w, -1, "t");   // Help > Widget Tree...
    Window dialog = app.shown("Widget Tree", 5000);
    ASSERT_NE(dialog, 0u) << "no Widget Tree window";

    std::vector<Placed> all = placed(app.display(), dialog), row;
    Placed label = showing(app, all, LABEL_FONT, "Class"), field{};
    Placed child = showing(app, all, LABEL_FONT, "Window (XmMainWindow)");
    Placed close = showing(app, all, BOLD_FONT, "Close");
    int middle = label.y + label.height / 2;
    for (const Placed& p : all) {
        if (!field.id && p.leaf && p.x > label.x + label.width && p.y <= middle && middle < p.y + p.height)
            field = p;   // the field right of the label, on its line
        // The buttons stand in one row: Up The Tree, Down The Tree, Close.
        if (p.y == close.y && p.height == close.height && p.x <= close.x)
            row.push_back(p);
    }
    ASSERT_TRUE(label.id && field.id && child.id && close.id) << "the browser's class field, list or buttons";
    std::sort(row.begin(), row.end(), [](const Placed& a, const Placed& b) { return a.x < b.x; });
    ASSERT_EQ(row.size(), 3u) << "three buttons in the row";
    const Placed& up = row[0];
    const Placed& down = row[1];

    EXPECT_EQ(shown_class(app, dialog, field), "ApplicationShell");
    click_middle(app, up);
    EXPECT_EQ(shown_class(app, dialog, field), "ApplicationShell") << "Up The Tree at the top";

    app.click(child.id, 20, 8);   // the first child
    click_middle(app, down);
    EXPECT_EQ(shown_class(app, dialog, field), "XmMainWindow") << "Down The Tree";
    click_middle(app, up);
    EXPECT_EQ(shown_class(app, dialog, field), "ApplicationShell") << "Up The Tree";
    click_middle(app, down);
    EXPECT_EQ(shown_class(app, dialog, field), "ApplicationShell") << "Down The Tree with no child chosen";

    app.multi_click(child.id, 20, 8, 2);
    EXPECT_EQ(shown_class(app, dialog, field), "XmMainWindow") << "a double click on a child";

    app.key(dialog, "Escape");
    EXPECT_TRUE(app.gone("Widget Tree", 5000)) << "Escape leaves the browser up";
    EXPECT_TRUE(app.running());
}
