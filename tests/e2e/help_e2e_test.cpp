// Help as a user meets it in the real program: the Help menu's items show
// their topics in the one "Pictrel Help" window (never an error), On Keys
// lists the keys the menus really bind, and On Context shows the topic of
// the part clicked. The shown text is read the way a user could take it:
// selected in the window (Ctrl+/) and fetched as the PRIMARY selection.
#include <gtest/gtest.h>

#include <X11/Xatom.h>

#include <string>

#include "e2e_support.h"

namespace {

std::string primary_selection(Display* dpy)
{
    Window me = XCreateSimpleWindow(dpy, DefaultRootWindow(dpy), 0, 0, 1, 1, 0, 0, 0);
    Atom prop = XInternAtom(dpy, "PICTREL_HELP_E2E", False);
    XConvertSelection(dpy, XA_PRIMARY, XA_STRING, prop, me, CurrentTime);
    XFlush(dpy);
    std::string out;
    XEvent ev;
    for (int i = 0; i < 60; i++) {
        if (XCheckTypedWindowEvent(dpy, me, SelectionNotify, &ev)) {
            Atom type;
            int format;
            unsigned long count, after;
            unsigned char* data = nullptr;
            if (ev.xselection.property != None &&
                XGetWindowProperty(dpy, me, prop, 0, 1 << 20, True, AnyPropertyType, &type, &format, &count, &after,
                                   &data) == Success && data) {
                out.assign(reinterpret_cast<char*>(data), count);
                XFree(data);
            }
            break;
        }
        e2e_sleep_ms(50);
    }
    XDestroyWindow(dpy, me);
    return out;
}

// The text the help window shows now.
std::string help_text(E2eApp& app, Window help)
{
    XWindowAttributes a;
    if (!help || !XGetWindowAttributes(app.display(), help, &a))
        return "";
    app.click(help, a.width - 60, 40);   // into the text, right of the topic list
    app.key(help, "ctrl+slash");         // select all
    e2e_sleep_ms(200);
    return primary_selection(app.display());
}

// A Help menu item by its mnemonic: F10 opens File, Left wraps to Help.
void help_item(E2eApp& app, Window shell, const char* mnemonic)
{
    app.keys(shell, {"F10", "Left", "Down", mnemonic});
    e2e_sleep_ms(200);
}

bool titled(E2eApp& app, const std::string& title)
{
    for (const E2eWindow& w : app.windows())
        if (w.title == title)
            return true;
    return false;
}

}  // namespace

TEST(HelpE2e, OnWindowAndOnKeysShowTopicsInTheHelpWindow)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16);
    ASSERT_NE(d.shell, 0u) << app.stderr_text();

    help_item(app, d.shell, "w");
    Window help = app.wait_window("Pictrel Help", 5000);
    ASSERT_NE(help, 0u) << "On Window opened no help window";
    std::string text = help_text(app, help);
    EXPECT_EQ(text.rfind("The Drawing Window\n", 0), 0u) << text;
    EXPECT_FALSE(titled(app, "Error")) << "On Window put up an error";

    help_item(app, d.shell, "k");
    EXPECT_EQ(app.wait_window("Pictrel Help", 5000), help) << "the help window was not reused";
    text = help_text(app, help);
    for (const char* line : {"Tools > Rotate", "Tools > Invert", "Ctrl+R", "Ctrl+I", "Edit > Undo", "Button 2"})
        EXPECT_NE(text.find(line), std::string::npos) << "On Keys lacks " << line << ":\n" << text;
    EXPECT_NE(text.find("Ctrl+R        Tools > Rotate"), std::string::npos) << text;
}

TEST(HelpE2e, OnContextShowsThePickedPartsTopic)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16);
    ASSERT_EQ(d.tools.size(), 9u) << app.stderr_text();

    help_item(app, d.shell, "c");
    app.click(d.tools[0], 5, 5);
    Window help = app.wait_window("Pictrel Help", 5000);
    ASSERT_NE(help, 0u) << "On Context on the tools palette opened no help";
    std::string tool = help_text(app, help);
    EXPECT_EQ(tool.rfind("The Select Tool\n", 0), 0u) << tool;

    // Escape puts the window away (it may lie over the canvas).
    app.key(help, "Escape");
    for (int i = 0; i < 40 && titled(app, "Pictrel Help"); i++)
        e2e_sleep_ms(50);
    EXPECT_FALSE(titled(app, "Pictrel Help")) << "Escape left the help window up";

    help_item(app, d.shell, "c");
    app.click(d.canvas, e2e_cell(3), e2e_cell(3));
    help = app.wait_window("Pictrel Help", 5000);
    ASSERT_NE(help, 0u) << "On Context on the canvas opened no help";
    std::string canvas = help_text(app, help);
    EXPECT_EQ(canvas.rfind("The Canvas\n", 0), 0u) << canvas;
    EXPECT_NE(canvas, tool);
    EXPECT_EQ(dark_cells(app, d, 0, 0, 15, 15), 0) << "the pick painted on the canvas";
}
