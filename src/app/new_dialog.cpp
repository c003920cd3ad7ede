// The New dialog: a name, a width and a height for an empty drawing.
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/draw.h"
#include "app/file_dialog.h"
#include "app/new_close.h"
#include "core/app_state.h"
#include "core/message.h"
#include "core/safe_format.h"
#include "core/template_dialog.h"
#include "imageops/resize_scale.h"

namespace {

// The largest drawing, the same for New as for Resize and Scale.
constexpr int MAX_NEW_WIDTH = MAX_IMAGE_WIDTH;
constexpr int MAX_NEW_HEIGHT = MAX_IMAGE_HEIGHT;

Widget newDialog = nullptr;
Widget nameField = nullptr;
Widget widthField = nullptr;
Widget heightField = nullptr;
// The drawing whose menu asked last; the OK button acts for it.
Drawing* askingDrawing = nullptr;
Placement newPlacement{};

// Only the first character of an insertion is looked at: typing is one
// character at a time, and a pasted "12x" still reads as 12.
void digits_only_cb(Widget, XtPointer, XtPointer call) noexcept
{
    auto* cbs = static_cast<XmTextVerifyCallbackStruct*>(call);
    if (cbs && cbs->text && cbs->text->ptr && cbs->text->length > 0 &&
        !std::isdigit(static_cast<unsigned char>(cbs->text->ptr[0])))
        cbs->doit = False;
}

Widget add_label(Widget form, const char* name, Widget above)
{
    Arg args[4];
    Cardinal n = 0;
    XtSetArg(args[n], XmNleftAttachment, XmATTACH_FORM); n++;
    if (above) {
        XtSetArg(args[n], XmNtopAttachment, XmATTACH_WIDGET); n++;
        XtSetArg(args[n], XmNtopWidget, above); n++;
        XtSetArg(args[n], XmNtopOffset, 10); n++;
    } else {
        XtSetArg(args[n], XmNtopAttachment, XmATTACH_FORM); n++;
    }
    Widget label = XmCreateLabel(form, const_cast<char*>(name), args, n);
    XtManageChild(label);
    return label;
}

Widget add_field(Widget form, const char* name, Widget label, Widget above, bool number)
{
    Arg args[10];
    Cardinal n = 0;
    XtSetArg(args[n], XmNleftAttachment, XmATTACH_WIDGET); n++;
    XtSetArg(args[n], XmNleftWidget, label); n++;
    XtSetArg(args[n], XmNleftOffset, 10); n++;
    XtSetArg(args[n], XmNrightAttachment, XmATTACH_FORM); n++;
    XtSetArg(args[n], XmNnavigationType, XmEXCLUSIVE_TAB_GROUP); n++;
    if (above) {
        XtSetArg(args[n], XmNtopAttachment, XmATTACH_WIDGET); n++;
        XtSetArg(args[n], XmNtopWidget, above); n++;
    } else {
        XtSetArg(args[n], XmNtopAttachment, XmATTACH_FORM); n++;
    }
    if (number) {
        XtSetArg(args[n], XmNmaxLength, 3); n++;
    }
    Widget field = XmCreateTextField(form, const_cast<char*>(name), args, n);
    if (number)
        XtAddCallback(field, XmNmodifyVerifyCallback, digits_only_cb, nullptr);
    XtManageChild(field);
    return field;
}

void fill_new_form(Widget form)
{
    Widget nameLabel = add_label(form, "nameLW", nullptr);
    nameField = add_field(form, "NameTW", nameLabel, nullptr, false);
    Widget widthLabel = add_label(form, "widthLW", nameField);
    widthField = add_field(form, "WidthTW", widthLabel, nameField, true);
    Widget heightLabel = add_label(form, "heightLW", widthField);
    heightField = add_field(form, "HeightTW", heightLabel, widthField, true);

    // Line the three fields up after the widest label.
    Dimension widest = 0;
    for (Widget label : {nameLabel, widthLabel, heightLabel}) {
        Dimension w = 0;
        XtVaGetValues(label, XmNwidth, &w, nullptr);
        widest = std::max(widest, w);
    }
    for (Widget field : {nameField, widthField, heightField})
        XtVaSetValues(field, XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, widest + 10, nullptr);
}

void new_ok_cb(Widget, XtPointer client, XtPointer) noexcept
{
    Drawing* d = *static_cast<Drawing**>(client);
    std::string name = field_text(nameField);
    if (name.empty())
        return;
    auto width = static_cast<uint16_t>(std::atoi(field_text(widthField).c_str()));
    auto height = static_cast<uint16_t>(std::atoi(field_text(heightField).c_str()));

    std::string message;
    AppResources& r = res();
    if (width > MAX_NEW_WIDTH && height > MAX_NEW_HEIGHT)
        message = format_int2(r.tooLargeBothString, MAX_NEW_WIDTH, MAX_NEW_HEIGHT,
                              "Height and Width too big. \n Max Width = %d\n Max Height = %d ");
    else if (width > MAX_NEW_WIDTH)
        message = format_int(r.tooLargeWidthString, MAX_NEW_WIDTH, "Width too big, Max = %d");
    else if (height > MAX_NEW_HEIGHT)
        message = format_int(r.tooLargeHeightString, MAX_NEW_HEIGHT, "Height too big, Max = %d");
    if (!message.empty()) {
        Widget parent = d && drawing_is_open(d) ? d->shell : nullptr;
        show_message(parent, message.c_str(), 0, nullptr, nullptr);
        return;
    }
    XtUnmanageChild(newDialog);
    new_untitled_drawing(name.c_str(), width, height);
}

void new_cancel_cb(Widget, XtPointer, XtPointer) noexcept
{
    XtUnmanageChild(newDialog);
}

Widget make_new_dialog(Drawing* d)
{
    static const DialogButton buttons[] = {
        {"OK", new_ok_cb, &askingDrawing},
        {"Cancel", new_cancel_cb, nullptr},
        {nullptr, nullptr, nullptr},
    };
    Arg args[3];
    XtSetArg(args[0], XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL);
    XtSetArg(args[1], XmNautoUnmanage, False);
    // Placed over the drawing that asks each time, not the one it was made for.
    XtSetArg(args[2], XmNdefaultPosition, False);
    Widget parent = d && d->shell ? d->shell : app().topLevel;
    Widget dialog = template_dialog(parent, "New Dialog", fill_new_form, args, 3, buttons);
    set_default_and_cancel(dialog, "OK");
    return dialog;
}

}  // namespace

Widget new_dialog() { return newDialog; }

void show_new_dialog(Drawing* d)
{
    if (!newDialog)
        newDialog = make_new_dialog(d);
    if (!newDialog)
        return;
    askingDrawing = d;
    XmTextFieldSetString(nameField, const_cast<char*>(""));
    set_field(widthField, res().drawAreaWidth);
    set_field(heightField, res().drawAreaHeight);
    centre_when_shown(newDialog, &newPlacement, d && drawing_is_open(d) ? d : nullptr);
    XtManageChild(newDialog);
    XmProcessTraversal(nameField, XmTRAVERSE_CURRENT);
    // With eight drawings open the dialog still comes up, but the message
    // comes after it: over it, where it is seen, and reachable past the
    // dialog's modal grab, which would shut out a message shown before.
    if (registry().openCount >= MAX_DRAWINGS)
        show_message(XtParent(newDialog),
                     res().tooManyDrawingsString ? res().tooManyDrawingsString : "Too many drawings",
                     0, nullptr, nullptr);
}

int cmd_new(Drawing* d, XEvent*, Boolean)
{
    show_new_dialog(d);
    return 0;
}
