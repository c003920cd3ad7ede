// Closing a drawing: at once when nothing is unsaved, else through the
// "ConfirmClose" dialog (Save, Discard, Cancel); and Quit, which closes
// every drawing, asking for each modified one in turn.
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Xm.h>

#include <cstring>
#include <string>

#include "app/draw.h"
#include "app/file_dialog.h"
#include "app/new_close.h"
#include "app/open_save.h"
#include "app/session.h"
#include "core/app_state.h"
#include "core/template_dialog.h"
#include "core/titles.h"
#include "tools/selection.h"
#include "core/x_owned.h"
#include "help/help_client.h"

namespace {

Widget confirmDialog = nullptr;
// The drawing the dialog asks about; the buttons read it through its
// address, so they always act on the latest request.
Drawing* confirmDrawing = nullptr;
Placement confirmPlacement{};
// The question as the application defaults word it, with a "%s" where the
// drawing's name goes; read from the label when the dialog is made.
std::string confirmQuestion;
constexpr const char* BUILT_IN_QUESTION = "Save changes to %s before closing?";
// Set while Quit walks the drawings; a Cancel anywhere stops it.
bool quitting = false;

void fill_confirm_form(Widget form)
{
    Arg args[4];
    XtSetArg(args[0], XmNtopAttachment, XmATTACH_FORM);
    XtSetArg(args[1], XmNbottomAttachment, XmATTACH_FORM);
    XtSetArg(args[2], XmNleftAttachment, XmATTACH_FORM);
    XtSetArg(args[3], XmNrightAttachment, XmATTACH_FORM);
    Widget label = XmCreateLabel(form, const_cast<char*>("confirmLabel"), args, 4);
    XtManageChild(label);
    // A label the resources say nothing about shows its own name.
    XmString text = nullptr;
    XtVaGetValues(label, XmNlabelString, &text, nullptr);
    char* plain = text ? static_cast<char*>(XmStringUnparse(text, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT,
                                                              nullptr, 0, XmOUTPUT_ALL))
                       : nullptr;
    confirmQuestion = plain && *plain && strcmp(plain, "confirmLabel") != 0 ? plain : BUILT_IN_QUESTION;
    XtFree(plain);
    XmStringFree(text);
}

// The question names the drawing it is about.
void ask_about(Drawing* d)
{
    Widget label = XtNameToWidget(confirmDialog, "*confirmLabel");
    if (!label)
        return;
    std::string text = question_about(confirmQuestion, d->name);
    XmStringPtr s = multiline(text.c_str());
    XtVaSetValues(label, XmNlabelString, s.get(), nullptr);
}

void save_cb(Widget, XtPointer client, XtPointer) noexcept
{
    if (Drawing* d = *static_cast<Drawing**>(client))
        save_drawing(d, finish_close);
}

void discard_cb(Widget w, XtPointer client, XtPointer call) noexcept
{
    if (Drawing* d = *static_cast<Drawing**>(client))
        finish_close(w, d, call);
}

// The dialog closes itself (its buttons unmanage it); a Cancel also ends
// a Quit in progress.
void cancel_cb(Widget, XtPointer, XtPointer) noexcept { quitting = false; }

Widget make_confirm_dialog(Drawing* d)
{
    static const DialogButton buttons[] = {
        {"Save", save_cb, &confirmDrawing},
        {"Discard", discard_cb, &confirmDrawing},
        {"Cancel", cancel_cb, nullptr},
        {nullptr, nullptr, nullptr},
    };
    Arg args[2];
    XtSetArg(args[0], XmNdialogStyle, XmDIALOG_PRIMARY_APPLICATION_MODAL);
    XtSetArg(args[1], XmNdefaultPosition, False);
    Widget parent = d && d->shell ? d->shell : app().topLevel;
    Widget dialog = template_dialog(parent, "ConfirmClose", fill_confirm_form, args, 2, buttons);
    set_default_and_cancel(dialog, "Save");
    return dialog;
}

void show_confirm(Drawing* d)
{
    if (!confirmDialog)
        confirmDialog = make_confirm_dialog(d);
    if (!confirmDialog)
        return;
    confirmDrawing = d;
    ask_about(d);
    centre_when_shown(confirmDialog, &confirmPlacement, d);
    // A request about another drawing while the question is up takes it
    // over: the question moves over the drawing it now concerns, so that
    // Discard never throws away a drawing the user was not looking at.
    if (XtIsManaged(confirmDialog)) {
        Widget shell = XtParent(confirmDialog);
        centre_over_drawing(shell, d);
        if (XtIsRealized(shell))
            XRaiseWindow(XtDisplay(shell), XtWindow(shell));
    }
    // While the session manager ends the program there is no way out but
    // to answer.
    Widget cancel = XtNameToWidget(confirmDialog, "Cancel");
    bool closing = d->closing == 1;
    if (cancel) {
        if (closing)
            XtUnmanageChild(cancel);
        else
            XtManageChild(cancel);
    }
    XtVaSetValues(confirmDialog, XmNdialogStyle,
                  closing ? XmDIALOG_SYSTEM_MODAL : XmDIALOG_PRIMARY_APPLICATION_MODAL, nullptr);
    XtManageChild(confirmDialog);
}

// Closes unmodified drawings and asks about the first modified one; the
// answer comes back through finish_close, which carries on.
void quit_next()
{
    while (quitting) {
        Drawing* d = first_open_drawing();
        if (!d) {
            quitting = false;
            help_client_shutdown();
            exit(0);
        }
        if (d->modified) {
            show_confirm(d);
            return;
        }
        finish_close(nullptr, d, nullptr);
    }
}

}  // namespace

void cancel_quit() { quitting = false; }

Widget confirm_dialog() { return confirmDialog; }

void request_close(Drawing* d)
{
    if (!d || !drawing_is_open(d) || d->sessionClosed)
        return;
    if (!d->modified) {
        finish_close(nullptr, d, nullptr);
        return;
    }
    show_confirm(d);
}

void finish_close(Widget, Drawing* d, XtPointer)
{
    if (!d || !drawing_is_open(d) || d->sessionClosed)
        return;
    settle_selection(d);
    close_drawing(d);
    after_close(d);   // exits when no drawing is left
    // Saved under a new name while the session ends: restart with it.
    if (d->closing == 1)
        update_restart_command(d);
    if (quitting)
        quit_next();
}

int cmd_close(Drawing* d, XEvent*, Boolean)
{
    quitting = false;
    request_close(d);
    return 0;
}

int cmd_quit(Drawing*, XEvent*, Boolean)
{
    quitting = true;
    quit_next();
    return 0;
}
