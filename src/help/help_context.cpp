// On Context and the help key. Both find the topic of a widget through the
// widget tree (help_topics.cpp) and show it through help_show, so the help
// server, when there is one, answers them too.
#include "help/help_context.h"

#include <X11/cursorfont.h>
#include <Xm/Xm.h>

#include "core/template_dialog.h"
#include "help/help_cursor.h"
#include "help/help_show.h"
#include "help/help_topics.h"
#include "help/widget_tree.h"

namespace {

Widget shell_of(Widget w)
{
    while (w && !XtIsShell(w))
        w = XtParent(w);
    return w;
}

// The drawing window a menu item belongs to: menus live in shells of their
// own, so only an application shell will do.
Widget window_shell_of(Widget w)
{
    while (w && !XtIsApplicationShell(w))
        w = XtParent(w);
    return w;
}

// Motif calls the help callback of the nearest widget up from the one with
// the focus that has one; the topic is that of the focus widget itself.
void help_key_cb(Widget w, XtPointer, XtPointer) noexcept
{
    Widget focus = XmGetFocusWidget(w);
    std::string topic = help_topic_for(focus && shell_of(focus) == shell_of(w) ? focus : w);
    help_show(w, topic.c_str());
}

}  // namespace

std::string help_topic_for(Widget w)
{
    std::string topic = topic_of_widget(w);
    return topic.empty() ? "window" : topic;
}

void install_context_help() { set_dialog_help(help_key_cb); }

void add_window_help(Widget mainWindow)
{
    if (mainWindow)
        XtAddCallback(mainWindow, XmNhelpCallback, help_key_cb, nullptr);
}

void help_on_context(Widget w)
{
    static Cursor question = None;
    Widget top = window_shell_of(w);
    if (!top || !XtIsRealized(top))
        return;
    if (!question)
        question = XCreateFontCursor(XtDisplay(top), XC_question_arrow);
    // The pointer grab shows the cursor wherever the pointer goes; the
    // canvases are told as well, as they keep a tool cursor of their own.
    help_cursor_everywhere(True, question);
    XEvent event{};
    Widget picked = XmTrackingEvent(top, question, False, &event);
    help_cursor_everywhere(False, None);
    bool shift = (event.type == ButtonPress || event.type == ButtonRelease) && (event.xbutton.state & ShiftMask);
    if (shift) {
        show_widget_tree(picked ? picked : top);
        return;
    }
    if (!picked)
        return;
    std::string topic = help_topic_for(picked);
    help_show(picked, topic.c_str());
}
