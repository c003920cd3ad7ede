// The widget-tree browser on a live drawing window: every widget of the window and of its dialogs is read without
// a fault, values are typed, and Up / Down move the browser through the tree and let go of a destroyed widget.
#include "x_env.h"

#include <Xm/Form.h>
#include <Xm/List.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "app/commands.h"
#include "core/message.h"
#include "files_support.h"
#include "help/resource_text.h"
#include "help/widget_summary.h"
#include "help/widget_tree.h"

namespace {

bool has_line(const std::vector<std::string>& lines, const std::string& line)
{
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// Reads every widget below `w`, pop-ups included, once; fills `seen`.
void walk(Widget w, std::set<Widget>* seen, std::vector<std::string>* lines)
{
    if (!w || !seen->insert(w).second)
        return;
    WidgetSummary s = summarize_widget(w);
    EXPECT_EQ(s.children.size(), s.childLabels.size());
    EXPECT_FALSE(s.resources.empty()) << s.name;
    for (const std::string& r : s.resources)
        lines->push_back(s.name + ": " + r);
    for (Widget child : s.children)
        walk(child, seen, lines);
}

std::string shown_class() { return filetest::text_of(XtNameToWidget(widget_tree_dialog(), "*classText")); }

}  // namespace

// Every widget of a drawing window and of the dialogs it opens (colours, views, fonts, new, open, messages,
// version, help and the browser itself) is read through the browser's listing, and the values come out typed.
TEST(WidgetTree, EveryWidgetReadsTyped)
{
    Drawing* d = make_drawing(16, 16);
    for (int command : {CMD_SHOW_COLORS, CMD_SHOW_SMALL_VIEW, CMD_SHOW_BW_VIEW, CMD_FONTS, CMD_NEW, CMD_OPEN})
        run_command(d, command, nullptr, True);
    show_message(d->shell, "a message", 1, nullptr, nullptr);
    for (const char* item : {"*HelpOnVersion", "*HelpOnWindow", "*HelpWidgetTree"})
        filetest::press(d->shell, item);
    ASSERT_EQ(widget_tree_current(), d->shell) << "Help > Widget Tree... opens on the drawing window";

    std::set<Widget> seen;
    std::vector<std::string> lines;
    walk(d->shell, &seen, &lines);
    walk(app().topLevel, &seen, &lines);
    EXPECT_GT(seen.size(), 200u) << "the walk missed the dialogs";
    EXPECT_TRUE(seen.count(widget_tree_dialog())) << "the browser is a pop-up of the top-level shell";

    XColor bg{};
    XtVaGetValues(d->mainWindow, XmNbackground, &bg.pixel, nullptr);
    XQueryColor(app().display, app().colormap, &bg);
    std::string rgb = rgb_text(bg.red, bg.green, bg.blue);
    const std::string expected[] = {
        "Window: background (Pixel) = " + rgb,
        "Window: sensitive (Boolean) = True",
        "Down The Tree: sensitive (Boolean) = False",
        "HelpWidgetTree: activateCallback (Callback) = 1 callback",
        "HelpWidgetTree: labelString (XmString) = \"Widget Tree...\"",
        "menuBar: menuHelpWidget (MenuWidget) = Help",
        "SumDialog: dialogTitle (XmString) = \"Widget Tree\"",
    };
    for (const std::string& line : expected)
        EXPECT_TRUE(has_line(lines, line)) << "missing: " << line;
    EXPECT_EQ(rgb.size(), 7u);

    WidgetSummary shell = summarize_widget(d->shell);
    EXPECT_TRUE(shell.parent.empty());
    EXPECT_TRUE(has_line(shell.resources, "title (String) = \"Untitled\"")) << "the window's title";
    WidgetSummary form = summarize_widget(XtParent(d->frame));
    EXPECT_EQ(form.parent, "Window (XmMainWindow)");
    WidgetSummary frame = summarize_widget(d->frame);
    EXPECT_TRUE(std::any_of(frame.constraints.begin(), frame.constraints.end(),
                            [](const std::string& l) { return l.rfind("leftAttachment (", 0) == 0; }))
        << "the form's constraints on its child";
}

// Down goes to the chosen child, Up back to the parent (and not past the top); a destroyed widget is let go.
TEST(WidgetTree, UpDownAndADestroyedWidget)
{
    Drawing* d = make_drawing(16, 16);
    show_widget_tree(d->shell);
    pump();
    Widget dialog = widget_tree_dialog();
    ASSERT_TRUE(dialog && XtIsManaged(dialog));
    Widget up = XtNameToWidget(dialog, "Up The Tree"), down = XtNameToWidget(dialog, "Down The Tree");
    Widget list = XtNameToWidget(dialog, "*childList");
    ASSERT_TRUE(up && down && list);
    auto press = [&](Widget button) { filetest::press(dialog, XtName(button)); };
    EXPECT_EQ(shown_class(), "ApplicationShell");
    EXPECT_FALSE(XtIsSensitive(up)) << "nothing above a top-level shell";
    EXPECT_FALSE(XtIsSensitive(down)) << "no child chosen yet";

    XmListSelectPos(list, 1, True);
    EXPECT_TRUE(XtIsSensitive(down));
    press(down);
    EXPECT_EQ(widget_tree_current(), d->mainWindow);
    EXPECT_EQ(shown_class(), "XmMainWindow");
    EXPECT_TRUE(XtIsSensitive(up));
    press(up);
    EXPECT_EQ(widget_tree_current(), d->shell);
    EXPECT_EQ(shown_class(), "ApplicationShell");

    // Opened again on another widget, the same dialog moves there.
    show_widget_tree(d->frame);
    EXPECT_EQ(widget_tree_dialog(), dialog);
    EXPECT_EQ(shown_class(), "XmFrame");

    Widget scratch = XtVaCreateWidget("scratch", xmFormWidgetClass, XtParent(d->frame), nullptr);
    show_widget_tree(scratch);
    XtDestroyWidget(scratch);
    pump();
    EXPECT_EQ(widget_tree_current(), nullptr);
    press(up);
    press(down);
    EXPECT_EQ(widget_tree_current(), nullptr);
    EXPECT_EQ(shown_class(), "");
}
