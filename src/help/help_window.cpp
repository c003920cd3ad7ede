// The built-in help window "Pictrel Help": a modeless dialog made at first
// use and kept, with the topic list on the left, the topic's text on the
// right, Back (through the topics shown before) and Close (or Escape).
#include "help/help_window.h"

#include <Xm/Form.h>
#include <Xm/List.h>
#include <Xm/Text.h>
#include <Xm/Xm.h>

#include <string>
#include <vector>

#include "core/app_state.h"
#include "core/drawing.h"
#include "core/template_dialog.h"
#include "core/window_place.h"
#include "core/x_owned.h"
#include "help/help_book_load.h"
#include "help/help_keys.h"

namespace {

struct HelpWindow {
    Widget dialog = nullptr;
    Widget list = nullptr;
    Widget text = nullptr;
    std::vector<std::string> ids;        // the list's topics, in its order
    std::vector<std::string> history;    // topics shown before, latest last
    std::string current;
    Drawing* drawing = nullptr;          // whose keys On Keys lists
    bool placed = false;
};

HelpWindow hw;

// For when the application defaults file is missing.
const char* const fallbackLines[] = {
    "*Help Dialog.dialogTitle: Pictrel Help",
    "*Help Dialog*Back.labelString: Back",
    "*Help Dialog*Close.labelString: Close",
    "*Help Dialog*helpTopics.visibleItemCount: 20",
    "*Help Dialog*helpText.rows: 20",
    "*Help Dialog*helpText.columns: 72",
};
bool fallbackMerged = false;

void show_topic(const std::string& id, bool remember);

std::string index_text(const HelpBook& book)
{
    std::string out;
    for (const HelpTopic& t : book.topics)
        if (t.id != "index")
            out += std::string(2 + 2 * topic_depth(t.id), ' ') + t.title + "\n";
    return out;
}

Widget menu_bar_for_keys()
{
    Drawing* d = drawing_is_open(hw.drawing) ? hw.drawing : first_open_drawing();
    return d ? d->menuBar : nullptr;
}

// The topic as the window shows it: its title, then its body; the index
// and the keys add what only the running program knows.
std::string topic_text(const HelpBook& book, const HelpTopic& t)
{
    std::string out = t.title + "\n" + std::string(t.title.size(), '=') + "\n\n";
    if (t.id == "keys") {
        std::string keys = menu_key_list(menu_bar_for_keys());
        if (!keys.empty())
            out += keys + "\n";
    }
    out += t.body;
    if (t.id == "index")
        out += (t.body.empty() ? "" : "\n\n") + index_text(book);
    return out;
}

void list_selected_cb(Widget, XtPointer, XtPointer callData) noexcept
{
    auto* cbs = static_cast<XmListCallbackStruct*>(callData);
    if (!cbs || cbs->item_position < 1 || static_cast<size_t>(cbs->item_position) > hw.ids.size())
        return;
    std::string id = hw.ids[static_cast<size_t>(cbs->item_position - 1)];
    if (id != hw.current)
        show_topic(id, true);
}

void back_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (hw.history.empty())
        return;
    std::string id = hw.history.back();
    hw.history.pop_back();
    show_topic(id, false);
}

void close_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (hw.dialog)
        XtUnmanageChild(hw.dialog);
}

// First shown beside the drawing it was asked from; after that it stays
// where the user leaves it.
void popup_cb(Widget shell, XtPointer, XtPointer) noexcept
{
    if (hw.placed)
        return;
    hw.placed = true;
    if (drawing_is_open(hw.drawing))
        place_beside_drawing(shell, hw.drawing);
    else
        keep_shell_on_screen(shell);
}

void fill_form(Widget form)
{
    Arg args[8];
    Cardinal n = 0;
    XtSetArg(args[n], XmNselectionPolicy, XmBROWSE_SELECT), n++;
    XtSetArg(args[n], XmNscrollBarDisplayPolicy, XmSTATIC), n++;
    hw.list = XmCreateScrolledList(form, const_cast<char*>("helpTopics"), args, n);
    XtAddCallback(hw.list, XmNbrowseSelectionCallback, list_selected_cb, nullptr);
    XtVaSetValues(XtParent(hw.list), XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                  XmNbottomAttachment, XmATTACH_FORM, nullptr);

    n = 0;
    XtSetArg(args[n], XmNeditMode, XmMULTI_LINE_EDIT), n++;
    XtSetArg(args[n], XmNeditable, False), n++;
    XtSetArg(args[n], XmNcursorPositionVisible, False), n++;
    XtSetArg(args[n], XmNwordWrap, True), n++;
    XtSetArg(args[n], XmNscrollHorizontal, False), n++;
    hw.text = XmCreateScrolledText(form, const_cast<char*>("helpText"), args, n);
    XtVaSetValues(XtParent(hw.text), XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_WIDGET,
                  XmNleftWidget, XtParent(hw.list), XmNleftOffset, 6, XmNrightAttachment, XmATTACH_FORM,
                  XmNbottomAttachment, XmATTACH_FORM, nullptr);
    XtManageChild(hw.list);
    XtManageChild(hw.text);
}

void fill_list(const HelpBook& book)
{
    hw.ids.clear();
    XmListDeleteAllItems(hw.list);
    for (const HelpTopic& t : book.topics) {
        std::string line = std::string(2 * topic_depth(t.id), ' ') + t.title;
        XmStringPtr item = localized(line.c_str());
        XmListAddItemUnselected(hw.list, item.get(), 0);
        hw.ids.push_back(t.id);
    }
}

Widget make_window()
{
    merge_fallback_resources(app().display, fallbackLines, XtNumber(fallbackLines), &fallbackMerged);
    static const DialogButton buttons[] = {
        {"Back", back_cb, nullptr},
        {"Close", close_cb, nullptr},
        {nullptr, nullptr, nullptr},
    };
    Arg args[2];
    XtSetArg(args[0], XmNautoUnmanage, False);
    XtSetArg(args[1], XmNdialogStyle, XmDIALOG_MODELESS);
    Widget dialog = template_dialog(app().topLevel, "Help Dialog", fill_form, args, 2, buttons);
    if (!dialog)
        return nullptr;
    // Escape answers Close, from the list and the text as well.
    XtVaSetValues(dialog, XmNcancelButton, XtNameToWidget(dialog, "Close"), nullptr);
    XtAddCallback(XtParent(dialog), XmNpopupCallback, popup_cb, nullptr);
    fill_list(help_book());
    return dialog;
}

void show_topic(const std::string& id, bool remember)
{
    const HelpBook& book = help_book();
    const HelpTopic* t = find_topic(book, id);
    if (!t)
        t = &book.topics.front();
    if (remember && !hw.current.empty() && hw.current != t->id)
        hw.history.push_back(hw.current);
    hw.current = t->id;
    std::string text = topic_text(book, *t);
    XmTextSetString(hw.text, const_cast<char*>(text.c_str()));
    XmTextSetInsertionPosition(hw.text, 0);
    XmTextShowPosition(hw.text, 0);
    for (size_t i = 0; i < hw.ids.size(); i++)
        if (hw.ids[i] == t->id) {
            int pos = static_cast<int>(i) + 1;
            XmListSelectPos(hw.list, pos, False);
            int top = 0, visible = 0;
            XtVaGetValues(hw.list, XmNtopItemPosition, &top, XmNvisibleItemCount, &visible, nullptr);
            if (pos < top || pos >= top + visible)
                XmListSetPos(hw.list, pos);
        }
    if (Widget back = XtNameToWidget(hw.dialog, "Back"))
        XtSetSensitive(back, !hw.history.empty());
}

}  // namespace

int help_window_show(Widget from, const char* topic)
{
    if (!hw.dialog && !(hw.dialog = make_window()))
        return 1;
    if (Drawing* d = from ? find_drawing_of_widget(from) : nullptr)
        hw.drawing = d;
    show_topic(topic && *topic ? topic : "index", true);
    if (XtIsManaged(hw.dialog)) {
        // Reused: bring it to the front where it stands.
        if (XtIsRealized(XtParent(hw.dialog)))
            XRaiseWindow(XtDisplay(hw.dialog), XtWindow(XtParent(hw.dialog)));
    } else {
        XtManageChild(hw.dialog);
    }
    return 0;
}

Widget help_window_dialog() { return hw.dialog; }

std::string help_window_topic() { return hw.current; }
