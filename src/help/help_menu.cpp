// The Help menu of every drawing window: each item shows a topic of the
// help book (On Keys one that lists the window's own keys), On Context the
// topic of the part picked, Version the version dialog.
#include "help/help_menu.h"

#include <Xm/CascadeB.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Xm.h>

#include "core/app_state.h"
#include "help/help_context.h"
#include "help/help_show.h"
#include "help/widget_tree.h"

namespace {

void (*versionAction)(Widget parent) = nullptr;

// The drawing window the menu belongs to (menus live in their own shells).
Widget window_shell_of(Widget w)
{
    while (w && !XtIsApplicationShell(w))
        w = XtParent(w);
    return w ? w : app().topLevel;
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
    // As with the other menus, the pulldown is attached before its items are
    // made and they are managed together: attached after, or managed one by
    // one, the menu would work out every item's keys again each time.
    Widget pulldown = XmCreatePulldownMenu(menuBar, const_cast<char*>("Help"), nullptr, 0);
    Widget cascade = XtVaCreateManagedWidget("Help", xmCascadeButtonWidgetClass, menuBar, XmNsubMenuId, pulldown,
                                             nullptr);
    Widget items[XtNumber(helpItems)];
    Cardinal count = 0;
    for (const HelpItem& item : helpItems) {
        Widget b = XtVaCreateWidget(item.name, xmPushButtonWidgetClass, pulldown, nullptr);
        XtAddCallback(b, XmNactivateCallback, help_item_cb, const_cast<HelpItem*>(&item));
        items[count++] = b;
    }
    XtManageChildren(items, count);
    XtVaSetValues(menuBar, XmNmenuHelpWidget, cascade, nullptr);
    // The help key anywhere in the window (menus included) ends at the main
    // window, the menu bar's parent.
    add_window_help(XtParent(menuBar));
    return cascade;
}
