// Help in the running program: every part of a drawing window and of every
// dialog that a user can click has a topic of the book, found up the widget
// tree; the help window falls back to a parent topic and goes Back.
#include "x_env.h"

#include <X11/IntrinsicP.h>
#include <Xm/CascadeB.h>
#include <Xm/CascadeBG.h>
#include <Xm/DrawingA.h>
#include <Xm/DrawnB.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <Xm/Scale.h>
#include <Xm/ScrollBar.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <Xm/ToggleBG.h>

#include <functional>
#include <string>

#include "app/commands.h"
#include "app/file_dialog.h"
#include "app/new_close.h"
#include "app/size_dialogs.h"
#include "app/status.h"
#include "colour/color_list.h"
#include "core/message.h"
#include "fonts/font_dialog.h"
#include "help/help_book_load.h"
#include "help/help_topics.h"
#include "help/help_window.h"
#include "help/widget_tree.h"

namespace {

bool clickable(Widget w)
{
    return XmIsPushButton(w) || XmIsPushButtonGadget(w) || XmIsToggleButton(w) || XmIsToggleButtonGadget(w) ||
           XmIsCascadeButton(w) || XmIsCascadeButtonGadget(w) || XmIsList(w) || XmIsText(w) ||
           XmIsTextField(w) || XmIsScale(w) || XmIsScrollBar(w) || XmIsDrawingArea(w) || XmIsDrawnButton(w);
}

std::string path_of(Widget w)
{
    std::string path = XtName(w);
    for (Widget p = XtParent(w); p; p = XtParent(p))
        path = std::string(XtName(p)) + "." + path;
    return path;
}

// Every managed widget below `w`, pop-up children (menus, dialogs) included.
void walk(Widget w, const std::function<void(Widget)>& visit)
{
    visit(w);
    if (XtIsComposite(w)) {
        auto* c = reinterpret_cast<CompositeWidget>(w);
        for (Cardinal i = 0; i < c->composite.num_children; i++)
            if (XtIsManaged(c->composite.children[i]))
                walk(c->composite.children[i], visit);
    }
    for (Cardinal i = 0; XtIsWidget(w) && i < w->core.num_popups; i++)
        walk(w->core.popup_list[i], visit);
}

}  // namespace

// Every clickable part resolves to a topic the book really has (not merely
// to a fallback), and none to the drawing window's general topic.
TEST(HelpTopics, EveryClickablePartHasATopicOfItsOwn)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    run_command(d, CMD_SHOW_BW_VIEW, nullptr, True);
    cmd_show_colors(d, nullptr, False);
    show_new_dialog(d);
    cmd_resize_image(d, nullptr, False);
    cmd_scale_image(d, nullptr, False);
    show_font_dialog(d);
    get_file_dialog(d);
    show_save_warning("warning");
    show_overwrite_question("question", nullptr);
    show_version();
    show_message(d->shell, "message", 0, nullptr, nullptr);
    help_window_show(d->shell, "index");
    show_widget_tree(d->shell);
    pump();
    XtCallCallbacks(XtNameToWidget(d->colourList, "EditColor"), XmNactivateCallback, nullptr);
    pump();

    const HelpBook& book = help_book();
    int checked = 0;
    auto check = [&](Widget w) {
        if (!clickable(w))
            return;
        checked++;
        std::string topic = topic_of_widget(w);
        EXPECT_TRUE(exact_topic(book, topic))
            << path_of(w) << " has no topic of its own (\"" << topic << "\"): add it to resources/help/pictrel.help";
        EXPECT_NE(topic, "window") << path_of(w) << " only has the window's general topic";
    };
    walk(d->shell, check);
    walk(app().topLevel, check);
    EXPECT_GT(checked, 100) << "the walk missed most of the widgets";
    EXPECT_EQ(topic_of_widget(XtNameToWidget(d->toolsBox, "pencil")), "tool.pencil");
    EXPECT_EQ(topic_of_widget(d->zoomedArea), "canvas");
}

// A topic the book lacks shows its parent's; Back returns to what was shown.
TEST(HelpTopics, WindowFallsBackAndGoesBack)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    ASSERT_EQ(help_window_show(d->shell, "tool.pencil"), 0);
    ASSERT_EQ(help_window_show(d->shell, "tool.brush"), 0);
    pump();
    Widget dialog = help_window_dialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(XtIsManaged(dialog));
    EXPECT_EQ(help_window_topic(), "tool");
    char* text = XmTextGetString(XtNameToWidget(dialog, "*helpText"));
    EXPECT_EQ(std::string(text).rfind("The Tools Palette\n", 0), 0u) << text;
    XtFree(text);
    XtCallCallbacks(XtNameToWidget(dialog, "Back"), XmNactivateCallback, nullptr);
    EXPECT_EQ(help_window_topic(), "tool.pencil");
}
