// The widget-tree browser: one dialog for the program's life, showing one
// widget at a time (name, class, parent, children, resources) and moving up
// to the parent or down to a chosen child. It watches the widget it shows:
// when that widget is destroyed the browser lets go of it.
#include "help/widget_tree.h"

#include <X11/IntrinsicP.h>
#include <X11/CoreP.h>
#include <X11/CompositeP.h>
#include <Xm/Label.h>
#include <Xm/List.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>

#include <string>
#include <vector>

#include "core/app_state.h"
#include "core/message.h"
#include "core/template_dialog.h"
#include "help/widget_summary.h"

namespace {

struct TreeBrowser {
    Widget dialog = nullptr;
    Widget nameText = nullptr, classText = nullptr, parentText = nullptr;
    Widget childList = nullptr, resourceText = nullptr;
    Widget up = nullptr, down = nullptr;
    Widget current = nullptr;          // null once it has been destroyed
    std::vector<Widget> children;      // as listed, in list order
    Widget over = nullptr;             // the shell it pops up over
};

TreeBrowser* browser = nullptr;

constexpr int FIELD_OFFSET = 90;   // where the fields start, right of their labels

Widget add_label(Widget form, const char* name, Widget field)
{
    Widget label = XtVaCreateManagedWidget(name, xmLabelWidgetClass, form, XmNleftAttachment, XmATTACH_FORM,
                                           XmNtopAttachment, XmATTACH_OPPOSITE_WIDGET, XmNtopWidget, field,
                                           XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    return label;
}

// A one-line read-only field under `above` (the form's top when null): the
// user can select and copy from it.
Widget add_field(Widget form, const char* name, const char* labelName, Widget above)
{
    Widget field = XtVaCreateManagedWidget(
        name, xmTextFieldWidgetClass, form, XmNeditable, False, XmNcursorPositionVisible, False,
        XmNcolumns, 48, XmNtopAttachment, above ? XmATTACH_WIDGET : XmATTACH_FORM, XmNtopWidget, above,
        XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, FIELD_OFFSET, XmNrightAttachment, XmATTACH_FORM, nullptr);
    Widget label = add_label(form, labelName, field);
    XtVaSetValues(label, XmNbottomAttachment, XmATTACH_OPPOSITE_WIDGET, XmNbottomWidget, field, nullptr);
    return field;
}

void list_select_cb(Widget, XtPointer, XtPointer) noexcept;
void list_default_cb(Widget, XtPointer, XtPointer) noexcept;

void fill_browser_form(Widget form)
{
    browser->nameText = add_field(form, "nameText", "Name", nullptr);
    browser->classText = add_field(form, "classText", "Class", browser->nameText);
    browser->parentText = add_field(form, "parentText", "Parent", browser->classText);

    Arg args[8];
    Cardinal n = 0;
    XtSetArg(args[n], XmNselectionPolicy, XmBROWSE_SELECT); n++;
    XtSetArg(args[n], XmNvisibleItemCount, 6); n++;
    XtSetArg(args[n], XmNscrollBarDisplayPolicy, XmSTATIC); n++;
    XtSetArg(args[n], XmNlistSizePolicy, XmCONSTANT); n++;
    browser->childList = XmCreateScrolledList(form, const_cast<char*>("childList"), args, n);
    XtAddCallback(browser->childList, XmNbrowseSelectionCallback, list_select_cb, nullptr);
    XtAddCallback(browser->childList, XmNdefaultActionCallback, list_default_cb, nullptr);
    Widget listWindow = XtParent(browser->childList);
    XtVaSetValues(listWindow, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, browser->parentText, XmNtopOffset, 4,
                  XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, FIELD_OFFSET, XmNrightAttachment, XmATTACH_FORM,
                  nullptr);
    XtManageChild(browser->childList);
    add_label(form, "Children", listWindow);

    Widget resourcesLabel = XtVaCreateManagedWidget(
        "Resources", xmLabelWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, listWindow,
        XmNtopOffset, 4, XmNleftAttachment, XmATTACH_FORM, XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
    n = 0;
    XtSetArg(args[n], XmNeditMode, XmMULTI_LINE_EDIT); n++;
    XtSetArg(args[n], XmNeditable, False); n++;
    XtSetArg(args[n], XmNcursorPositionVisible, False); n++;
    XtSetArg(args[n], XmNrows, 16); n++;
    XtSetArg(args[n], XmNcolumns, 64); n++;
    XtSetArg(args[n], XmNscrollHorizontal, False); n++;
    XtSetArg(args[n], XmNwordWrap, True); n++;
    browser->resourceText = XmCreateScrolledText(form, const_cast<char*>("resourceText"), args, n);
    XtVaSetValues(XtParent(browser->resourceText), XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, resourcesLabel,
                  XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment,
                  XmATTACH_FORM, nullptr);
    XtManageChild(browser->resourceText);
}

std::string resource_page(const WidgetSummary& s, Widget parent)
{
    std::string text;
    for (const std::string& line : s.resources)
        text += line + "\n";
    if (!s.constraints.empty()) {
        text += "\nConstraints of the parent " + widget_label(parent) + ":\n";
        for (const std::string& line : s.constraints)
            text += line + "\n";
    }
    return text;
}

void set_list(const std::vector<std::string>& labels)
{
    XmListDeleteAllItems(browser->childList);
    std::vector<XmString> items;
    items.reserve(labels.size());
    for (const std::string& l : labels)
        items.push_back(XmStringCreateLocalized(const_cast<char*>(l.c_str())));
    if (!items.empty())
        XmListAddItems(browser->childList, items.data(), static_cast<int>(items.size()), 0);
    for (XmString s : items)
        XmStringFree(s);
}

void current_destroyed_cb(Widget, XtPointer, XtPointer) noexcept;

// Shows `w` (nothing when null) and watches it. The summary is read before
// the browser adds its own destroy callback, so the count it shows is the
// program's.
void show_widget(Widget w)
{
    if (browser->current)
        XtRemoveCallback(browser->current, XtNdestroyCallback, current_destroyed_cb, nullptr);
    browser->current = w;
    WidgetSummary s = summarize_widget(w);
    XmTextFieldSetString(browser->nameText, const_cast<char*>(w ? s.name.c_str() : "(destroyed)"));
    XmTextFieldSetString(browser->classText, const_cast<char*>(s.className.c_str()));
    const char* parent = s.parent.empty() && w ? "(none: a top-level shell)" : s.parent.c_str();
    XmTextFieldSetString(browser->parentText, const_cast<char*>(parent));
    browser->children = s.children;
    set_list(s.childLabels);
    std::string page = resource_page(s, w ? XtParent(w) : nullptr);
    XmTextSetString(browser->resourceText, const_cast<char*>(page.c_str()));
    XmTextShowPosition(browser->resourceText, 0);
    XtSetSensitive(browser->up, w && XtParent(w));
    XtSetSensitive(browser->down, False);
    if (w)
        XtAddCallback(w, XtNdestroyCallback, current_destroyed_cb, nullptr);
}

void current_destroyed_cb(Widget w, XtPointer, XtPointer) noexcept
{
    if (!browser || browser->current != w)
        return;
    browser->current = nullptr;   // its callback list goes with it
    show_widget(nullptr);
}

// Whether `child` is still a child (or pop-up) of `w`: the list may name a
// child destroyed since it was shown.
bool still_child(Widget w, Widget child)
{
    if (!w || !child)
        return false;
    if (XtIsComposite(w)) {
        auto* c = reinterpret_cast<CompositeWidget>(w);
        for (Cardinal i = 0; i < c->composite.num_children; i++)
            if (c->composite.children[i] == child)
                return true;
    }
    if (XtIsWidget(w))
        for (Cardinal i = 0; i < w->core.num_popups; i++)
            if (w->core.popup_list[i] == child)
                return true;
    return false;
}

void go_down_to(int position)
{
    if (position < 1 || position > static_cast<int>(browser->children.size()))
        return;
    Widget child = browser->children[static_cast<size_t>(position) - 1];
    if (still_child(browser->current, child))
        show_widget(child);
    else
        show_widget(browser->current);   // the list was stale: show it afresh
}

int selected_position()
{
    int* positions = nullptr;
    int count = 0;
    int pos = 0;
    if (XmListGetSelectedPos(browser->childList, &positions, &count) && count > 0)
        pos = positions[0];
    XtFree(reinterpret_cast<char*>(positions));
    return pos;
}

void list_select_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (browser)
        XtSetSensitive(browser->down, selected_position() > 0);
}

void list_default_cb(Widget, XtPointer, XtPointer call) noexcept
{
    auto* cbs = static_cast<XmListCallbackStruct*>(call);
    if (browser && cbs)
        go_down_to(cbs->item_position);
}

void up_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (browser && browser->current && XtParent(browser->current))
        show_widget(XtParent(browser->current));
}

void down_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (browser)
        go_down_to(selected_position());
}

void close_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (browser)
        XtUnmanageChild(browser->dialog);
}

void place_cb(Widget shell, XtPointer, XtPointer) noexcept
{
    if (browser)
        centre_shell_over(shell, browser->over);
}

Widget shell_of(Widget w)
{
    while (w && !XtIsShell(w))
        w = XtParent(w);
    return w;
}

bool make_browser()
{
    static const DialogButton buttons[] = {
        {"Up The Tree", up_cb, nullptr},
        {"Down The Tree", down_cb, nullptr},
        {"Close", close_cb, nullptr},
        {nullptr, nullptr, nullptr},
    };
    browser = new TreeBrowser{};
    Arg args[2];
    XtSetArg(args[0], XmNautoUnmanage, False);
    XtSetArg(args[1], XmNdefaultPosition, False);
    browser->dialog = template_dialog(app().topLevel, "SumDialog", fill_browser_form, args, 2, buttons);
    if (!browser->dialog) {
        delete browser;
        browser = nullptr;
        return false;
    }
    browser->up = XtNameToWidget(browser->dialog, "Up The Tree");
    browser->down = XtNameToWidget(browser->dialog, "Down The Tree");
    // Escape closes it, as it cancels every other dialog.
    XtVaSetValues(browser->dialog, XmNcancelButton, XtNameToWidget(browser->dialog, "Close"), nullptr);
    XtAddCallback(XtParent(browser->dialog), XmNpopupCallback, place_cb, nullptr);
    return true;
}

}  // namespace

void show_widget_tree(Widget start)
{
    if (!start || (!browser && !make_browser()))
        return;
    browser->over = shell_of(start);
    show_widget(start);
    if (XtIsManaged(browser->dialog)) {
        if (XtIsRealized(XtParent(browser->dialog)))
            XRaiseWindow(XtDisplay(browser->dialog), XtWindow(XtParent(browser->dialog)));
        return;
    }
    XtManageChild(browser->dialog);
}

Widget widget_tree_dialog() { return browser ? browser->dialog : nullptr; }

Widget widget_tree_current() { return browser ? browser->current : nullptr; }
