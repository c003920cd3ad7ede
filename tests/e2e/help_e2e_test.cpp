// Help as a user meets it in the real program: the Help menu's items show
// their topics in the one "Pictrel Help" window (never an error), On Keys
// lists the keys the menus really bind, and On Context shows the topic of
// the part clicked. The shown text is read the way a user could take it:
// selected in the window (Ctrl+/) and fetched as the PRIMARY selection.
#include <gtest/gtest.h>

#include <string>

#include "e2e_support.h"

namespace {

// The text the help window shows now.
std::string help_text(E2eApp& app, Window help)
{
    XWindowAttributes a;
    if (!help || !XGetWindowAttributes(app.display(), help, &a))
        return "";
    app.click(help, a.width - 60, 40);   // into the text, right of the topic list
    app.key(help, "ctrl+slash");         // select all
    e2e_sleep_ms(200);
    return primary_text(app.display());
}

}  // namespace

TEST(HelpE2e, OnWindowAndOnKeysShowTopicsInTheHelpWindow)
{
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16);
    ASSERT_NE(d.shell, 0u) << app.stderr_text();

    app.menu(d.shell, -1, "w");
    Window help = app.wait_window("Pictrel Help", 5000);
    ASSERT_NE(help, 0u) << "On Window opened no help window";
    std::string text = help_text(app, help);
    EXPECT_EQ(text.rfind("The Drawing Window\n", 0), 0u) << text;
    EXPECT_TRUE(app.gone("Error", 0)) << "On Window put up an error";

    app.menu(d.shell, -1, "k");
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

    app.menu(d.shell, -1, "c");
    app.click(d.tools[0], 5, 5);
    Window help = app.wait_window("Pictrel Help", 5000);
    ASSERT_NE(help, 0u) << "On Context on the tools palette opened no help";
    std::string tool = help_text(app, help);
    EXPECT_EQ(tool.rfind("The Select Tool\n", 0), 0u) << tool;

    // Escape puts the window away (it may lie over the canvas).
    app.key(help, "Escape");
    EXPECT_TRUE(app.gone("Pictrel Help")) << "Escape left the help window up";

    app.menu(d.shell, -1, "c");
    app.click(d.canvas, e2e_cell(3), e2e_cell(3));
    help = app.wait_window("Pictrel Help", 5000);
    ASSERT_NE(help, 0u) << "On Context on the canvas opened no help";
    std::string canvas = help_text(app, help);
    EXPECT_EQ(canvas.rfind("The Canvas\n", 0), 0u) << canvas;
    EXPECT_NE(canvas, tool);
    EXPECT_EQ(dark_cells(app, d, 0, 0, 15, 15), 0) << "the pick painted on the canvas";
}
