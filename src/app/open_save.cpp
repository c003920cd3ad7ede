// Open, Save, Save As and Save As black-and-white through the one file
// dialog; the writing itself is files/write_drawing's.
#include "app/open_save.h"

#include <Xm/FileSB.h>
#include <Xm/MwmUtil.h>
#include <Xm/Text.h>
#include <Xm/Xm.h>
#include <unistd.h>

#include <string>

#include "app/draw.h"
#include "app/file_dialog.h"
#include "app/session.h"
#include "core/app_state.h"
#include "core/safe_format.h"
#include "files/copy_file.h"
#include "files/read_status.h"
#include "files/suffix_rule.h"
#include "files/write_drawing.h"

namespace {

// The save the file dialog is serving; its address is the dialog's
// XmNuserData while a save is pending.
struct SaveRequest {
    Drawing* drawing;
    SaveContinuation then;
};
SaveRequest pendingSave{};
bool bwSave = false;
Placement filePlacement{};

const char* const NO_WRITE_PERMISSION = "You don't have write permission";

std::string text_value()
{
    Widget text = file_dialog_text();
    if (!text)
        return {};
    char* s = XmTextGetString(text);
    std::string value = s ? s : "";
    XtFree(s);
    return value;
}

// The offered name is selected when the field first gets the keyboard, so
// that typing a name replaces it; selecting earlier fails while the dialog
// is still unmapped.
bool selectOffer = false;
bool selectWatched = false;

void select_offer_cb(Widget text, XtPointer, XtPointer) noexcept
{
    if (!selectOffer)
        return;
    selectOffer = false;
    Time when = XtLastTimestampProcessed(XtDisplay(text));
    XmTextSetSelection(text, 0, XmTextGetLastPosition(text), when);
}

void set_text_value(const std::string& value)
{
    Widget text = file_dialog_text();
    if (!text)
        return;
    XmTextSetString(text, const_cast<char*>(value.c_str()));
    XmTextSetInsertionPosition(text, XmTextGetLastPosition(text));
    if (!selectWatched) {
        XtAddCallback(text, XmNfocusCallback, select_offer_cb, nullptr);
        selectWatched = true;
    }
    selectOffer = true;
}

// Takes the pending continuation out of the dialog.
SaveRequest fetch_request()
{
    XtPointer data = nullptr;
    if (Widget fd = file_dialog())
        XtVaGetValues(fd, XmNuserData, &data, nullptr);
    return data ? *static_cast<SaveRequest*>(data) : SaveRequest{};
}

// While the session manager ends the program the user must save: no Cancel
// and system modal. Otherwise the dialog is its ordinary self again.
void set_closing_mode(Widget fd, bool closing)
{
    Widget cancel = XmFileSelectionBoxGetChild(fd, XmDIALOG_CANCEL_BUTTON);
    if (closing)
        XtUnmanageChild(cancel);
    else
        XtManageChild(cancel);
    XtVaSetValues(XtParent(fd), XmNmwmInputMode,
                  closing ? MWM_INPUT_SYSTEM_MODAL : MWM_INPUT_PRIMARY_APPLICATION_MODAL, nullptr);
}

std::string open_error_text(const std::string& target)
{
    return format_str(res().openFileErrorString, target.c_str(), "Can't open the file %s.");
}

void open_ok_cb(Widget, XtPointer, XtPointer) noexcept
{
    std::string path = text_value();
    int status = open_file(path.c_str());
    if (status == 0) {
        hide_file_dialog();
        return;
    }
    if (status != OPEN_TOO_MANY)
        report_read_status(XtParent(file_dialog()), status, path.c_str());
}

// OK of the overwrite question: write over the existing file.
void overwrite_confirmed()
{
    SaveRequest request = fetch_request();
    Drawing* d = request.drawing;
    if (!d)
        return;
    std::string target = apply_suffix(bwSave ? 1 : d->depth, text_value());
    if (write_drawing(d, target.c_str(), bwSave) != 0) {
        show_save_warning(open_error_text(target).c_str());
        return;
    }
    hide_file_dialog();
    d->hasFile = 1;
    d->modified = 0;
    update_restart_command(d);
    if (request.then)
        request.then(file_dialog(), d, nullptr);
}

void save_ok_cb(Widget w, XtPointer client, XtPointer call) noexcept
{
    auto* d = static_cast<Drawing*>(client);
    auto* cbs = static_cast<XmFileSelectionBoxCallbackStruct*>(call);
    if (!d)
        return;
    std::string target = apply_suffix(bwSave ? 1 : d->depth, text_value());
    if (eaccess(target.c_str(), F_OK) == 0) {
        if (eaccess(target.c_str(), W_OK) == 0) {
            std::string question = format_str(res().overwriteString, target.c_str(), "Overwrite %s?");
            show_overwrite_question(question.c_str(), overwrite_confirmed);
        } else {
            show_save_warning(NO_WRITE_PERMISSION);
        }
        return;
    }
    if (write_drawing(d, target.c_str(), bwSave) != 0) {
        show_save_warning(open_error_text(target).c_str());
        return;
    }
    SaveRequest request = fetch_request();
    Widget fd = file_dialog();
    hide_file_dialog();
    // So that the new file is in the list next time.
    XmFileSelectionDoSearch(fd, cbs ? cbs->mask : nullptr);
    if (!bwSave) {
        d->hasFile = 1;
        d->modified = 0;
        update_restart_command(d);
    }
    if (request.then)
        request.then(fd, d, call);
}

void show_save_dialog(Drawing* d, SaveContinuation then, bool bw)
{
    if (!d)
        return;
    Widget fd = get_file_dialog(d);
    centre_when_shown(fd, &filePlacement, d);
    pendingSave = SaveRequest{d, then};
    XtVaSetValues(fd, XmNuserData, &pendingSave, nullptr);
    set_text_value(bw ? d->name : apply_suffix(d->depth, d->name));
    XtRemoveAllCallbacks(fd, XmNokCallback);
    XtAddCallback(fd, XmNokCallback, save_ok_cb, d);
    set_closing_mode(fd, d->closing == 1);
    bwSave = bw;
    XtManageChild(fd);
}

}  // namespace

int cmd_open(Drawing* d, XEvent*, Boolean)
{
    Widget fd = get_file_dialog(d);
    centre_when_shown(fd, &filePlacement, d);
    set_text_value(d ? d->name : std::string());
    XtRemoveAllCallbacks(fd, XmNokCallback);
    XtAddCallback(fd, XmNokCallback, open_ok_cb, d);
    set_closing_mode(fd, false);
    XtManageChild(fd);
    return 0;
}

int cmd_save(Drawing* d, XEvent*, Boolean)
{
    save_drawing(d, nullptr);
    return 0;
}

int cmd_save_as(Drawing* d, XEvent*, Boolean)
{
    save_as(d, nullptr);
    return 0;
}

int cmd_save_as_bw(Drawing* d, XEvent*, Boolean)
{
    save_as_bw(d, nullptr);
    return 0;
}

void save_drawing(Drawing* d, SaveContinuation then)
{
    if (!d)
        return;
    // A file is only ever replaced by a new one beside it, so one whose
    // folder takes no new files cannot be saved in place: Save As says so.
    if (d->hasFile == 1 && !d->name.empty() && eaccess(d->name.c_str(), W_OK) == 0 &&
        can_replace(d->name.c_str())) {
        // A failed direct write says nothing and still counts as saved;
        // the old file is never harmed by it (copy_file).
        std::string target = d->name;
        write_drawing(d, target.c_str(), false);
        d->modified = 0;
        if (then)
            then(d->shell, d, nullptr);
        return;
    }
    save_as(d, then);
}

void save_as(Drawing* d, SaveContinuation then) { show_save_dialog(d, then, false); }

void save_as_bw(Drawing* d, SaveContinuation then) { show_save_dialog(d, then, true); }
