// The menu bar of a drawing window, built from one table. Each item's
// widget is kept in the drawing at its command number, so other units can
// change its sensitivity or state.
#include "app/menus.h"

#include <vector>

#include <Xm/CascadeB.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/ToggleB.h>
#include <Xm/Xm.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "app/commands.h"
#include "app/draw.h"
#include "app/status.h"
#include "core/app_state.h"
#include "help/help_menu.h"
#include "imageops/clipboard.h"
#include "tools/selection.h"

namespace {

/* name               command                  toggle submenu length reserved */
const MenuEntry fileMenu[] = {
    {"New",            CMD_NEW,                 0, nullptr, 0, 0},
    {"Open",           CMD_OPEN,                0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"Save",           CMD_SAVE,                0, nullptr, 0, 0},
    {"SaveAs",         CMD_SAVE_AS,             0, nullptr, 0, 0},
    {"SaveAsBW",       CMD_SAVE_AS_BW,          0, nullptr, 0, 0},
    {"Close",          CMD_CLOSE,               0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"SetRootWindow",  CMD_SET_ROOT_WINDOW,     0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"Quit",           CMD_QUIT,                0, nullptr, 0, 0},
};

const MenuEntry editMenu[] = {
    {"Undo",           CMD_UNDO,                0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"Cut",            CMD_CUT,                 0, nullptr, 0, 0},
    {"Copy",           CMD_COPY,                0, nullptr, 0, 0},
    {"Paste",          CMD_PASTE,               0, nullptr, 0, 0},
    {"Clear",          CMD_CLEAR,               0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"SelectAll",      CMD_SELECT_ALL,          0, nullptr, 0, 0},
};

const MenuEntry viewMenu[] = {
    {"ZoomIn",         CMD_ZOOM_IN,             0, nullptr, 0, 0},
    {"ZoomOut",        CMD_ZOOM_OUT,            0, nullptr, 0, 0},
    {"ShowSmallView",  CMD_SHOW_SMALL_VIEW,     1, nullptr, 0, 0},
    {"ShowBWView",     CMD_SHOW_BW_VIEW,        1, nullptr, 0, 0},
    {"ShowGrid",       CMD_SHOW_GRID,           1, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"ShowColors",     CMD_SHOW_COLORS,         0, nullptr, 0, 0},
};

const MenuEntry toolsMenu[] = {
    {"DrawFilled",     CMD_DRAW_FILLED,         1, nullptr, 0, 0},
    {"Fonts",          CMD_FONTS,               0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"Invert",         CMD_INVERT,              0, nullptr, 0, 0},
    {"Rotate",         CMD_ROTATE,              0, nullptr, 0, 0},
    {"FlipHorizontal", CMD_FLIP_HORIZONTAL,     0, nullptr, 0, 0},
    {"FlipVertical",   CMD_FLIP_VERTICAL,       0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"NudgeUp",        CMD_NUDGE_UP,            0, nullptr, 0, 0},
    {"NudgeRight",     CMD_NUDGE_RIGHT,         0, nullptr, 0, 0},
    {"NudgeDown",      CMD_NUDGE_DOWN,          0, nullptr, 0, 0},
    {"NudgeLeft",      CMD_NUDGE_LEFT,          0, nullptr, 0, 0},
    {"-------",        0,                       0, nullptr, 0, 0},
    {"ResizeImage",    CMD_RESIZE_IMAGE,        0, nullptr, 0, 0},
    {"ScaleImage",     CMD_SCALE_IMAGE,         0, nullptr, 0, 0},
};

#define SUB(table) table, static_cast<int>(sizeof(table) / sizeof(table[0]))
const MenuEntry menuBarTable[] = {
    {"File",  CMD_FILE,  0, SUB(fileMenu), 0},
    {"Edit",  CMD_EDIT,  0, SUB(editMenu), 0},
    {"View",  CMD_VIEW,  0, SUB(viewMenu), 0},
    {"Tools", CMD_TOOLS, 0, SUB(toolsMenu), 0},
};

const int selectionItems[] = {CMD_CUT, CMD_COPY, CMD_CLEAR, CMD_NUDGE_UP, CMD_NUDGE_RIGHT,
                              CMD_NUDGE_DOWN, CMD_NUDGE_LEFT, CMD_ROTATE, CMD_FLIP_HORIZONTAL,
                              CMD_FLIP_VERTICAL};

XtPointer number_data(int n)
{
    return reinterpret_cast<XtPointer>(static_cast<intptr_t>(n));
}

int data_number(XtPointer p)
{
    return static_cast<int>(reinterpret_cast<intptr_t>(p));
}

bool has_selection(Drawing* d)
{
    return selection_exists(d);
}

bool clipboard_has_image(Drawing* d)
{
    return clipboard_can_paste(d);
}

void set_sensitive(Drawing* d, int command, bool on)
{
    if (Widget w = menu_item(d, command))
        XtSetSensitive(w, on);
}

void activate_cb(Widget w, XtPointer clientData, XtPointer callData)
{
    Drawing* d = find_drawing_of_widget(w);
    if (!d)
        return;
    auto* cbs = static_cast<XmAnyCallbackStruct*>(callData);
    run_command(d, data_number(clientData), cbs ? cbs->event : nullptr, False);
}

void value_changed_cb(Widget w, XtPointer clientData, XtPointer callData)
{
    Drawing* d = find_drawing_of_widget(w);
    if (!d)
        return;
    auto* cbs = static_cast<XmToggleButtonCallbackStruct*>(callData);
    int n = data_number(clientData);
    Boolean set = cbs ? cbs->set : XmToggleButtonGetState(w);
    d->menuState.toggles[n] = set;
    run_command(d, n, cbs ? cbs->event : nullptr, set);
}

void cascading_cb(Widget w, XtPointer clientData, XtPointer)
{
    Drawing* d = find_drawing_of_widget(w);
    if (!d)
        return;
    switch (data_number(clientData)) {
    case CMD_EDIT:
        update_selection_sensitivity(d);
        set_sensitive(d, CMD_PASTE, clipboard_has_image(d));
        break;
    case CMD_TOOLS:
        update_selection_sensitivity(d);
        break;
    case CMD_VIEW:
        // Bring the toggles into line with what is really shown.
        for (int n : {CMD_SHOW_SMALL_VIEW, CMD_SHOW_BW_VIEW}) {
            Widget dialog = n == CMD_SHOW_SMALL_VIEW ? d->smallViewDialog : d->bwDialog;
            bool shown = dialog && XtIsManaged(dialog);
            if (Widget t = menu_item(d, n))
                XmToggleButtonSetState(t, shown, False);
            d->menuState.toggles[n] = shown;
        }
        show_toggle_state(d, CMD_SHOW_GRID, d->gridShown);
        break;
    default:
        break;
    }
}

void popdown_cb(Widget w, XtPointer clientData, XtPointer)
{
    // Paste must work through its accelerator while the menu is closed.
    if (data_number(clientData) != CMD_EDIT)
        return;
    if (Drawing* d = find_drawing_of_widget(w))
        set_sensitive(d, CMD_PASTE, true);
}

void popup_cb(Widget, XtPointer, XtPointer) {}

void build_items(Widget menu, const MenuEntry* entries, int count, Drawing* d);

Widget build_cascade(Widget parent, const MenuEntry& e, Drawing* d)
{
    // The pulldown is given to the cascade when the cascade is made, before
    // its items: an item made in a menu already attached registers its
    // mnemonic and accelerator once, where a pulldown attached afterwards
    // has every item's keys worked out again (a scan of the whole keyboard
    // map for each). Managed by the caller, with its siblings.
    Widget pulldown = nullptr;
    if (e.submenu) {
        pulldown = XmCreatePulldownMenu(parent, const_cast<char*>(e.name), nullptr, 0);
        Widget shell = XtParent(pulldown);
        XtAddCallback(shell, XmNpopupCallback, popup_cb, number_data(e.command));
        XtAddCallback(shell, XmNpopdownCallback, popdown_cb, number_data(e.command));
    }
    Widget cascade = pulldown ? XtVaCreateWidget(e.name, xmCascadeButtonWidgetClass, parent, XmNsubMenuId,
                                                 pulldown, nullptr)
                              : XtVaCreateWidget(e.name, xmCascadeButtonWidgetClass, parent, nullptr);
    XtAddCallback(cascade, XmNcascadingCallback, cascading_cb, number_data(e.command));
    if (pulldown)
        build_items(pulldown, e.submenu, e.submenuLength, d);
    return cascade;
}

// The items are made unmanaged and managed together at the end: managed
// one by one, each would have the menu laid out again.
void build_items(Widget menu, const MenuEntry* entries, int count, Drawing* d)
{
    std::vector<Widget> made;
    for (int i = 0; i < count; i++) {
        const MenuEntry& e = entries[i];
        Widget w;
        if (e.name[0] == '-') {
            made.push_back(XtVaCreateWidget("menuSeparator", xmSeparatorWidgetClass, menu, nullptr));
            continue;
        }
        if (e.submenu) {
            w = build_cascade(menu, e, d);
        } else if (e.toggle) {
            w = XtVaCreateWidget(e.name, xmToggleButtonWidgetClass, menu, nullptr);
            XtAddCallback(w, XmNvalueChangedCallback, value_changed_cb, number_data(e.command));
        } else {
            w = XtVaCreateWidget(e.name, xmPushButtonWidgetClass, menu, nullptr);
            XtAddCallback(w, XmNactivateCallback, activate_cb, number_data(e.command));
        }
        made.push_back(w);
        if (e.command > 0 && e.command < MENU_ITEM_COUNT)
            d->menuState.items[e.command] = w;
    }
    XtManageChildren(made.data(), static_cast<Cardinal>(made.size()));
}

}  // namespace

Widget build_menu_bar(Widget mainWindow, Drawing* d)
{
    Widget bar = XmCreateMenuBar(mainWindow, const_cast<char*>("menuBar"), nullptr, 0);
    std::vector<Widget> cascades;
    for (const MenuEntry& e : menuBarTable)
        cascades.push_back(d->menuState.items[e.command] = build_cascade(bar, e, d));
    XtManageChildren(cascades.data(), static_cast<Cardinal>(cascades.size()));
    build_help_menu(bar, show_version_over);
    XtManageChild(bar);
    return bar;
}

Widget menu_item(Drawing* d, int command)
{
    if (!d || command <= 0 || command >= MENU_ITEM_COUNT)
        return nullptr;
    return d->menuState.items[command];
}

void update_selection_sensitivity(Drawing* d)
{
    bool sel = has_selection(d);
    for (int n : selectionItems)
        set_sensitive(d, n, sel);
    set_sensitive(d, CMD_INVERT, sel && d->depth == 1);
    // A floating selection is to be put down before the whole picture changes.
    set_sensitive(d, CMD_RESIZE_IMAGE, !sel);
    set_sensitive(d, CMD_SCALE_IMAGE, !sel);
}

void update_zoom_sensitivity(Drawing* d)
{
    set_sensitive(d, CMD_ZOOM_IN, d->zoom != MAX_ZOOM);
    set_sensitive(d, CMD_ZOOM_OUT, d->zoom != 0);
    set_sensitive(d, CMD_SHOW_SMALL_VIEW, d->zoom != 0);
}

void update_undo_sensitivity(Drawing* d)
{
    set_sensitive(d, CMD_UNDO, d->undoAvailable);
}

void show_toggle_state(Drawing* d, int command, bool on)
{
    if (Widget t = menu_item(d, command))
        if (XmIsToggleButton(t))
            XmToggleButtonSetState(t, on ? True : False, False);
    if (command > 0 && command < MENU_ITEM_COUNT)
        d->menuState.toggles[command] = on ? True : False;
}
