// Builders of the program's template dialogs and message boxes: a work
// area form "main" filled by the caller, and a row of buttons from a table.
#include "core/template_dialog.h"

#include <Xm/Form.h>
#include <Xm/MessageB.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>
#include <vector>

#include "core/x_owned.h"

namespace {

constexpr int MAX_BUTTONS = 32;

XtCallbackProc dialogHelp = nullptr;

using Creator = Widget (*)(Widget, String, ArgList, Cardinal);

// The caller's arguments followed by ours; ours come last so that the
// empty message string always holds.
Widget build(Creator create, Widget parent, const char* name, void (*fill)(Widget form), ArgList args,
             Cardinal argCount, const DialogButton* buttons, const Arg* extra, Cardinal extraCount)
{
    if (!parent || !name)
        return nullptr;
    std::vector<Arg> merged;
    for (Cardinal i = 0; args && i < argCount; i++)
        merged.push_back(args[i]);
    for (Cardinal i = 0; i < extraCount; i++)
        merged.push_back(extra[i]);
    Widget dialog = create(parent, const_cast<String>(name), merged.data(), static_cast<Cardinal>(merged.size()));

    add_dialog_help(dialog);
    Widget form = XmCreateForm(dialog, const_cast<String>("main"), nullptr, 0);
    if (fill)
        fill(form);
    for (int i = 0; buttons && i < MAX_BUTTONS && buttons[i].name; i++) {
        Widget b = XmCreatePushButton(dialog, const_cast<String>(buttons[i].name), nullptr, 0);
        if (buttons[i].callback)
            XtAddCallback(b, XmNactivateCallback, buttons[i].callback, buttons[i].clientData);
        XtManageChild(b);
    }
    if (Widget label = XmMessageBoxGetChild(dialog, XmDIALOG_MESSAGE_LABEL))
        XtUnmanageChild(label);
    XtManageChild(form);
    return dialog;
}

}  // namespace

Widget template_dialog(Widget parent, const char* name, void (*fill)(Widget form), ArgList args,
                       Cardinal argCount, const DialogButton* buttons)
{
    XmStringPtr empty = localized("");
    Arg extra[1];
    XtSetArg(extra[0], XmNmessageString, empty.get());
    Widget w = build(XmCreateTemplateDialog, parent, name, fill, args, argCount, buttons, extra, 1);
    return w;
}

Widget message_box(Widget parent, const char* name, void (*fill)(Widget form), ArgList args,
                   Cardinal argCount, const DialogButton* buttons)
{
    XmString empty = XmStringCreateLocalized(const_cast<char*>(""));
    Arg extra[2];
    XtSetArg(extra[0], XmNmessageString, empty);
    // A bare box: the standard OK/Cancel/Help appear only when asked for.
    XtSetArg(extra[1], XmNdialogType, XmDIALOG_TEMPLATE);
    Widget w = build(XmCreateMessageBox, parent, name, fill, args, argCount, buttons, extra, 2);
    XmStringFree(empty);
    return w;
}

void set_dialog_help(XtCallbackProc callback) { dialogHelp = callback; }

void add_dialog_help(Widget dialog)
{
    if (dialog && dialogHelp)
        XtAddCallback(dialog, XmNhelpCallback, dialogHelp, nullptr);
}

void set_dialog_message(Widget dialog, const char* text)
{
    if (!dialog)
        return;
    Widget label = XmMessageBoxGetChild(dialog, XmDIALOG_MESSAGE_LABEL);
    if (!text) {
        if (label)
            XtUnmanageChild(label);
        return;
    }
    // Several lines in one text become several lines of the label.
    XmStringPtr s = multiline(text);
    XtVaSetValues(dialog, XmNmessageString, s.get(), nullptr);
    if (label)
        XtManageChild(label);
}

void set_default_button(Widget dialog, const char* childName)
{
    if (!dialog || !childName)
        return;
    Widget button = XtNameToWidget(dialog, childName);
    if (button)
        XtVaSetValues(dialog, XmNdefaultButton, button, nullptr);
}

void set_default_and_cancel(Widget dialog, const char* defaultName)
{
    if (!dialog)
        return;
    set_default_button(dialog, defaultName);
    XtVaSetValues(dialog, XmNcancelButton, XtNameToWidget(dialog, "Cancel"), nullptr);
}

void merge_fallback_resources(Display* dpy, const char* const* lines, size_t count, bool* merged)
{
    if (*merged || !dpy)
        return;
    *merged = true;
    XrmDatabase fallback = nullptr;
    for (size_t i = 0; i < count; i++)
        XrmPutLineResource(&fallback, lines[i]);
    XrmDatabase db = XtDatabase(dpy);
    if (db)
        XrmCombineDatabase(fallback, &db, False);
    else
        XrmDestroyDatabase(fallback);
}

std::string field_text(Widget field)
{
    char* s = field ? XmTextFieldGetString(field) : nullptr;
    std::string value = s ? s : "";
    XtFree(s);
    return value;
}

void set_field(Widget field, int value)
{
    XmTextFieldSetString(field, const_cast<char*>(std::to_string(value).c_str()));
}
