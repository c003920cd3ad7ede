// The file selection dialog shared by every drawing, its centring over the
// asking drawing, and the warning and overwrite dialogs of a save.
#include "app/file_dialog.h"

#include <Xm/FileSB.h>
#include <Xm/MessageB.h>
#include <Xm/Xm.h>

#include "app/open_save.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/placement.h"
#include "core/template_dialog.h"
#include "core/window_place.h"
#include "core/x_owned.h"

namespace {

Widget fileDialog = nullptr;
Widget warningDialog = nullptr;
Widget overwriteDialog = nullptr;
void (*overwriteAction)() = nullptr;

void placement_cb(Widget shell, XtPointer client, XtPointer) noexcept
{
    auto* placement = static_cast<Placement*>(client);
    XtRemoveCallback(shell, XmNpopupCallback, placement_cb, client);
    placement->pending = false;
    centre_over_drawing(shell, placement->drawing);
}

void cancel_cb(Widget, XtPointer, XtPointer) noexcept
{
    hide_file_dialog();
    cancel_quit();
}

void overwrite_ok_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (overwriteAction)
        overwriteAction();
}

}  // namespace

void centre_over_drawing(Widget shell, Drawing* d)
{
    // The asking drawing's shell, or the whole screen without one.
    Position x = 0, y = 0;
    Dimension width = 0, height = 0;
    if (d && d->shell) {
        XtVaGetValues(d->shell, XmNx, &x, XmNy, &y, XmNwidth, &width, XmNheight, &height, nullptr);
    } else {
        Screen* s = XtScreen(shell);
        width = static_cast<Dimension>(WidthOfScreen(s));
        height = static_cast<Dimension>(HeightOfScreen(s));
    }
    int dw = 0, dh = 0;
    outer_size(shell, &dw, &dh);
    Screen* screen = XtScreen(shell);
    int nx = centred_on_screen(x, width, dw, WidthOfScreen(screen));
    int ny = centred_on_screen(y, height, dh, HeightOfScreen(screen));
    move_shell(shell, {nx, ny});
}

void centre_when_shown(Widget dialog, Placement* placement, Drawing* d)
{
    if (!dialog)
        return;
    Widget shell = XtParent(dialog);
    placement->drawing = d;
    if (!placement->pending) {
        XtAddCallback(shell, XmNpopupCallback, placement_cb, placement);
        placement->pending = true;
    }
    if (d && d->shell)
        XtVaSetValues(shell, XmNtransientFor, d->shell, nullptr);
}

Widget get_file_dialog(Drawing* d)
{
    if (fileDialog)
        return fileDialog;
    Widget parent = d && d->shell ? d->shell : app().topLevel;
    Arg args[2];
    Cardinal n = 0;
    XtSetArg(args[n], XmNdialogStyle, XmDIALOG_PRIMARY_APPLICATION_MODAL); n++;
    // We place the dialog ourselves, over the drawing that asks.
    XtSetArg(args[n], XmNdefaultPosition, False); n++;
    fileDialog = XmCreateFileSelectionDialog(parent, const_cast<char*>("File Dialog"), args, n);
    XtAddCallback(fileDialog, XmNcancelCallback, cancel_cb, nullptr);
    XtUnmanageChild(XmFileSelectionBoxGetChild(fileDialog, XmDIALOG_HELP_BUTTON));
    add_dialog_help(fileDialog);
    // The user comes to name a file: the keyboard starts in the selection
    // field, not in the filter.
    XtVaSetValues(fileDialog, XmNinitialFocus, XmFileSelectionBoxGetChild(fileDialog, XmDIALOG_TEXT), nullptr);
    return fileDialog;
}

Widget file_dialog() { return fileDialog; }

Widget file_dialog_text()
{
    return fileDialog ? XmFileSelectionBoxGetChild(fileDialog, XmDIALOG_TEXT) : nullptr;
}

void hide_file_dialog()
{
    if (!fileDialog)
        return;
    XtVaSetValues(fileDialog, XmNuserData, nullptr, nullptr);
    XtRemoveAllCallbacks(fileDialog, XmNokCallback);
    XtUnmanageChild(fileDialog);
}

Widget warning_dialog() { return warningDialog; }
Widget overwrite_dialog() { return overwriteDialog; }

void show_save_warning(const char* text)
{
    if (!warningDialog) {
        Widget parent = fileDialog ? fileDialog : app().topLevel;
        Arg args[1];
        XtSetArg(args[0], XmNdialogStyle, XmDIALOG_PRIMARY_APPLICATION_MODAL);
        warningDialog = XmCreateErrorDialog(parent, const_cast<char*>("Warning Dialog"), args, 1);
        XtUnmanageChild(XmMessageBoxGetChild(warningDialog, XmDIALOG_CANCEL_BUTTON));
        XtUnmanageChild(XmMessageBoxGetChild(warningDialog, XmDIALOG_HELP_BUTTON));
        add_dialog_help(warningDialog);
    }
    XmStringPtr s = localized(text ? text : "");
    XtVaSetValues(warningDialog, XmNmessageString, s.get(), nullptr);
    XtManageChild(warningDialog);
}

void show_overwrite_question(const char* text, void (*overwrite)())
{
    if (!overwriteDialog) {
        Widget parent = fileDialog ? fileDialog : app().topLevel;
        Arg args[2];
        XtSetArg(args[0], XmNdialogStyle, XmDIALOG_PRIMARY_APPLICATION_MODAL);
        XtSetArg(args[1], XmNdefaultButtonType, XmDIALOG_CANCEL_BUTTON);
        overwriteDialog = XmCreateWarningDialog(parent, const_cast<char*>("Warning Dialog"), args, 2);
        XtUnmanageChild(XmMessageBoxGetChild(overwriteDialog, XmDIALOG_HELP_BUTTON));
        add_dialog_help(overwriteDialog);
        XtAddCallback(overwriteDialog, XmNokCallback, overwrite_ok_cb, nullptr);
    }
    overwriteAction = overwrite;
    XmStringPtr s = localized(text ? text : "");
    XtVaSetValues(overwriteDialog, XmNmessageString, s.get(), nullptr);
    XtManageChild(overwriteDialog);
}
