// The Help menu of every drawing window. Version opens the version dialog;
// context help lets the user pick a widget and names it; the other items
// explain that no help book is installed (there is no help server here).
#include "help/help_menu.h"

#include <X11/IntrinsicP.h>
#include <X11/cursorfont.h>
#include <Xm/CascadeB.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Xm.h>
#include <string>

#include "core/app_state.h"
#include "core/message.h"
#include "help/help_show.h"
#include "help/widget_tree.h"

namespace {

// Texts of the help items: application resources with built-in defaults.
struct HelpTexts {
    String helpUnavailableString;
    String helpOnKeysString;
    String helpContextString;
};

HelpTexts texts{};
bool textsFetched = false;
void (*versionAction)(Widget parent) = nullptr;

#define HELP_RES(name, cls, field, def) \
    {(char*)name, (char*)cls, XtRString, sizeof(String), XtOffsetOf(HelpTexts, field), XtRString, (XtPointer)def}

XtResource helpResources[] = {
    HELP_RES("helpUnavailableString", "HelpUnavailableString", helpUnavailableString,
             "No help book is installed for Pictrel."),
    HELP_RES("helpOnKeysString", "HelpOnKeysString", helpOnKeysString,
             "Keys of the drawing window:\n"
             "Ctrl+N  New          Ctrl+O  Open\n"
             "Ctrl+S  Save         Ctrl+W  Close\n"
             "Ctrl+Q  Quit         Ctrl+Z  Undo\n"
             "Ctrl+X  Cut          Ctrl+C  Copy\n"
             "Ctrl+V  Paste        Ctrl+A  Select All\n"
             "Ctrl+=  Zoom In      Ctrl+-  Zoom Out\n"
             "Ctrl+L  Colors       Ctrl+arrows  Nudge"),
    HELP_RES("helpContextString", "HelpContextString", helpContextString,
             "No help is available for this part of the window:"),
};

const HelpTexts& help_texts()
{
    if (!textsFetched && app().topLevel) {
        XtGetApplicationResources(app().topLevel, &texts, helpResources, XtNumber(helpResources), nullptr, 0);
        textsFetched = true;
    }
    return texts;
}

const char* text_or(const char* text, const char* fallback)
{
    return (text && *text) ? text : fallback;
}

// The drawing window the menu belongs to (menus live in their own shells).
Widget window_shell_of(Widget w)
{
    while (w && !XtIsApplicationShell(w))
        w = XtParent(w);
    return w ? w : app().topLevel;
}

void say(Widget w, const char* text)
{
    show_message(window_shell_of(w), text_or(text, "No help available."), 0, nullptr, nullptr);
}

void help_on_context(Widget w)
{
    static Cursor question = None;
    Widget top = window_shell_of(w);
    if (!top || !XtIsRealized(top))
        return;
    if (!question)
        question = XCreateFontCursor(XtDisplay(top), XC_question_arrow);
    XEvent event;
    Widget picked = XmTrackingEvent(top, question, False, &event);
    if (!picked)
        return;
    std::string text = text_or(help_texts().helpContextString, "");
    text += "\n\"";
    text += XtName(picked);
    text += "\" (";
    text += XtClass(picked)->core_class.class_name;
    text += ")";
    say(w, text.c_str());
}

void help_on_window(Widget w) { help_show(w, "window"); }
void help_on_keys(Widget w) { help_show(w, "keys"); }
void help_index(Widget w) { help_show(w, "index"); }
void help_on_help(Widget w) { help_show(w, "help"); }
void help_widget_tree(Widget w) { show_widget_tree(window_shell_of(w)); }
void help_on_version(Widget w)
{
    if (versionAction)
        versionAction(window_shell_of(w));
}

struct HelpItem {
    const char* name;
    void (*run)(Widget item);
};

/* widget name      action */
const HelpItem helpItems[] = {
    {"HelpOnContext", help_on_context},
    {"HelpOnWindow",  help_on_window},
    {"HelpOnKeys",    help_on_keys},
    {"HelpIndex",     help_index},
    {"HelpOnHelp",    help_on_help},
    {"HelpOnVersion", help_on_version},
    {"HelpWidgetTree", help_widget_tree},
};

void help_item_cb(Widget w, XtPointer clientData, XtPointer) noexcept
{
    auto* item = static_cast<const HelpItem*>(clientData);
    if (item && item->run)
        item->run(w);
}

}  // namespace

Widget build_help_menu(Widget menuBar, void (*showVersion)(Widget parent))
{
    // Every item works on the window it was chosen in.
    if (!menuBar)
        return nullptr;
    versionAction = showVersion;
    Widget pulldown = XmCreatePulldownMenu(menuBar, const_cast<char*>("Help"), nullptr, 0);
    for (const HelpItem& item : helpItems) {
        Widget b = XtVaCreateManagedWidget(item.name, xmPushButtonWidgetClass, pulldown, nullptr);
        XtAddCallback(b, XmNactivateCallback, help_item_cb, const_cast<HelpItem*>(&item));
    }
    Widget cascade = XtVaCreateManagedWidget("Help", xmCascadeButtonWidgetClass, menuBar, XmNsubMenuId, pulldown,
                                             nullptr);
    XtVaSetValues(menuBar, XmNmenuHelpWidget, cascade, nullptr);
    return cascade;
}
