// The widget-tree browser of the real program: Help > Widget Tree... opens it on the drawing window, and the class
// it shows follows Up The Tree and Down The Tree, read as a user copies it (selected in its field, read back from
// the PRIMARY selection).
#include <gtest/gtest.h>

#include <X11/Xatom.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "e2e_support.h"

namespace {

const char* const labelFont = "-misc-fixed-medium-r-normal--13-*-*-*-*-*-iso8859-1";
const char* const buttonFont = "-misc-fixed-bold-r-normal--13-*-*-*-*-*-iso8859-1";

// A viewable window and its rectangle on the screen.
struct Placed {
    Window id;
    int x, y, width, height;
    bool leaf;
};

void collect(Display* dpy, Window w, std::vector<Placed>* out)
{
    Window root, parent, *kids = nullptr;
    unsigned n = 0;
    if (!XQueryTree(dpy, w, &root, &parent, &kids, &n))
        return;
    for (unsigned i = 0; i < n; i++) {
        XWindowAttributes a;
        if (!XGetWindowAttributes(dpy, kids[i], &a) || a.map_state != IsViewable)
            continue;
        int x = 0, y = 0;
        Window child;
        XTranslateCoordinates(dpy, kids[i], DefaultRootWindow(dpy), 0, 0, &x, &y, &child);
        size_t at = out->size();
        out->push_back({kids[i], x, y, a.width, a.height, true});
        collect(dpy, kids[i], out);
        (*out)[at].leaf = out->size() == at + 1;
    }
    XFree(kids);
}

// The innermost window of the dialog that shows `text`.
Placed showing(E2eApp& app, Window dialog, const char* font, const std::string& text)
{
    std::vector<Placed> all;
    collect(app.display(), dialog, &all);
    Placed found{};
    for (const Placed& p : all)   // parents come before their children
        if (app.shows_text(p.id, font, text))
            found = p;
    return found;
}

// The field right of a label, on its line.
Placed field_right_of(E2eApp& app, Window dialog, const Placed& label)
{
    std::vector<Placed> all;
    collect(app.display(), dialog, &all);
    int middle = label.y + label.height / 2;
    for (const Placed& p : all)
        if (p.leaf && p.x > label.x + label.width && p.y <= middle && middle < p.y + p.height)
            return p;
    return {};
}

void click_middle(E2eApp& app, const Placed& p) { app.click(p.id, p.width / 2, p.height / 2); }

// Clicks in quick succession, as a user's double or triple click (E2eApp::click waits after each one).
void multi_click(E2eApp& app, Window w, int x, int y, int times)
{
    app.move(w, x, y);
    for (int i = 0; i < times; i++) {
        XTestFakeButtonEvent(app.display(), 1, True, CurrentTime);
        XTestFakeButtonEvent(app.display(), 1, False, CurrentTime);
        XSync(app.display(), False);
        e2e_sleep_ms(30);   // the toolkit counts clicks of distinct times only
    }
    XSync(app.display(), False);
    e2e_sleep_ms(200);
}

// What the PRIMARY selection holds, as a user's paste would get it.
std::string primary_text(Display* dpy)
{
    Window me = XCreateSimpleWindow(dpy, DefaultRootWindow(dpy), 0, 0, 1, 1, 0, 0, 0);
    Atom into = XInternAtom(dpy, "PICTREL_TEST_PASTE", False);
    XConvertSelection(dpy, XA_PRIMARY, XA_STRING, into, me, CurrentTime);
    XFlush(dpy);
    XEvent ev{};
    bool answered = false;
    for (int i = 0; i < 300 && !answered; i++) {
        answered = XCheckTypedWindowEvent(dpy, me, SelectionNotify, &ev);
        if (!answered)
            e2e_sleep_ms(10);
    }
    std::string text;
    Atom type;
    int format;
    unsigned long count = 0, after = 0;
    unsigned char* data = nullptr;
    if (answered && ev.xselection.property != None &&
        XGetWindowProperty(dpy, me, into, 0, 1024, True, AnyPropertyType, &type, &format, &count, &after, &data) ==
            Success &&
        data)
        text.assign(reinterpret_cast<char*>(data), count);
    XFree(data);
    XDestroyWindow(dpy, me);
    return text;
}

// The class the browser shows: its field selected whole by a triple click, then pasted.
std::string shown_class(E2eApp& app, Window dialog, const Placed& field)
{
    // With no window manager here to give it, the browser gets the focus as a click-to-focus manager would.
    XSetInputFocus(app.display(), dialog, RevertToPointerRoot, CurrentTime);
    multi_click(app, field.id, field.width / 2, field.height / 2, 3);
    return primary_text(app.display());
}

}  // namespace

// Help > Widget Tree... opens "Widget Tree" on the drawing window's shell. Up does nothing at the top; a child
// chosen in the list and Down The Tree show the child's class, Up The Tree the shell's again, and a double click
// on a child goes down as well. Escape closes the browser and leaves the drawing.
TEST(WidgetTreeE2e, UpAndDownChangeTheClassShown)
{
    E2eApp app;
    ASSERT_TRUE(app.start({}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u) << app.stderr_text();
    app.keys(w, {"F10", "Left", "Down", "t"});   // Help > Widget Tree...
    Window dialog = app.wait_window("Widget Tree", 5000);
    ASSERT_NE(dialog, 0u) << "no Widget Tree window";
    e2e_sleep_ms(300);

    Placed label = showing(app, dialog, labelFont, "Class");
    Placed field = field_right_of(app, dialog, label);
    Placed child = showing(app, dialog, labelFont, "Window (XmMainWindow)");
    Placed close = showing(app, dialog, buttonFont, "Close");
    ASSERT_TRUE(label.id && field.id && child.id && close.id) << "the browser's class field, list or buttons";
    // The buttons stand in one row: Up The Tree, Down The Tree, Close.
    std::vector<Placed> row;
    std::vector<Placed> all;
    collect(app.display(), dialog, &all);
    for (const Placed& p : all)
        if (p.y == close.y && p.height == close.height && p.x <= close.x)
            row.push_back(p);
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

    multi_click(app, child.id, 20, 8, 2);
    EXPECT_EQ(shown_class(app, dialog, field), "XmMainWindow") << "a double click on a child";

    app.key(dialog, "Escape");
    bool closed = false;
    for (int i = 0; i < 100 && !closed; i++) {
        closed = true;
        for (const E2eWindow& win : app.windows())
            closed = closed && win.title != "Widget Tree";
        if (!closed)
            e2e_sleep_ms(50);
    }
    EXPECT_TRUE(closed) << "Escape leaves the browser up";
    EXPECT_TRUE(app.running());
}
