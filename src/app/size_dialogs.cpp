// The Resize and Scale dialogs of the Tools menu: a width and a height,
// prefilled with the drawing's size, and for Resize the anchor that stays
// put, for Scale whether the proportions are kept. One builder makes both;
// each is made on first use and reused by every drawing.
#include "app/size_dialogs.h"

#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <string>

#include "app/draw.h"
#include "app/file_dialog.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/message.h"
#include "core/safe_format.h"
#include "core/template_dialog.h"
#include "imageops/image_resize.h"
#include "imageops/resize_scale.h"

namespace {

enum class SizeKind { Resize, Scale };

// The nine anchor buttons, row by row from the top left: their index is the
// anchor the operation takes.
const char* const anchorNames[] = {"topLeft",    "top",    "topRight",
                                   "left",       "centre", "right",
                                   "bottomLeft", "bottom", "bottomRight"};
// Top left by default: the picture stays where it is and only the right and
// bottom edges move, as when a canvas is dragged larger.
constexpr int DEFAULT_ANCHOR = 0;

struct SizeDialog {
    SizeKind kind;
    const char* name;
    Widget dialog;
    Widget widthField, heightField;
    Widget anchors[9];          // Resize
    Widget keepProportions;     // Scale
    Drawing* asking;            // the drawing whose menu asked last
    Placement placement;
    bool updating;              // a field is being set from the other one
};

SizeDialog dialogs[] = {
    {SizeKind::Resize, "Resize Dialog", nullptr, nullptr, nullptr, {}, nullptr, nullptr, {}, false},
    {SizeKind::Scale,  "Scale Dialog",  nullptr, nullptr, nullptr, {}, nullptr, nullptr, {}, false},
};

// The dialog being built: the work-area fill function gets only the form.
SizeDialog* building = nullptr;

struct SizeTexts {
    String badSizeString;
};
SizeTexts texts{};
bool textsFetched = false;

XtResource sizeResources[] = {
    {(char*)"badSizeString", (char*)"BadSizeString", XtRString, sizeof(String),
     XtOffsetOf(SizeTexts, badSizeString), XtRString, (XtPointer)"Width and height must be whole numbers of at least 1"},
};

const SizeTexts& size_texts()
{
    if (!textsFetched && app().topLevel) {
        XtGetApplicationResources(app().topLevel, &texts, sizeResources, XtNumber(sizeResources), nullptr, 0);
        textsFetched = true;
    }
    return texts;
}

Widget add_row(Widget form, const char* labelName, const char* fieldName, Widget above, Widget* field)
{
    Widget label = XtVaCreateManagedWidget(labelName, xmLabelWidgetClass, form, XmNleftAttachment, XmATTACH_FORM,
                                           XmNtopAttachment, above ? XmATTACH_WIDGET : XmATTACH_FORM,
                                           XmNtopWidget, above, XmNtopOffset, above ? 10 : 0, nullptr);
    // Three characters, as the New dialog: every size within the limits.
    *field = XtVaCreateManagedWidget(fieldName, xmTextFieldWidgetClass, form, XmNleftAttachment, XmATTACH_WIDGET,
                                     XmNleftWidget, label, XmNleftOffset, 10, XmNtopAttachment,
                                     above ? XmATTACH_WIDGET : XmATTACH_FORM, XmNtopWidget, above,
                                     XmNmaxLength, 3, XmNnavigationType, XmEXCLUSIVE_TAB_GROUP, nullptr);
    return label;
}

// With the proportions kept, a new width gives the height that goes with it
// and the other way round.
void follow_cb(Widget field, XtPointer client, XtPointer) noexcept
{
    auto* sd = static_cast<SizeDialog*>(client);
    Drawing* d = sd->asking;
    if (sd->updating || !d || !drawing_is_open(d) || !sd->keepProportions ||
        !XmToggleButtonGetState(sd->keepProportions))
        return;
    bool width = field == sd->widthField;
    int value = 0;
    if (parse_size_field(field_text(field).c_str(), width ? MAX_IMAGE_WIDTH : MAX_IMAGE_HEIGHT, &value) !=
        SizeField::Ok)
        return;
    sd->updating = true;
    if (width)
        set_field(sd->heightField, proportional_side(value, d->width, d->height));
    else
        set_field(sd->widthField, proportional_side(value, d->height, d->width));
    sd->updating = false;
}

// A field reached by Tab or shown afresh has all its text selected: what
// is typed replaces the number.
void select_all_cb(Widget field, XtPointer, XtPointer) noexcept
{
    XmTextFieldSetSelection(field, 0, XmTextFieldGetLastPosition(field),
                            XtLastTimestampProcessed(XtDisplay(field)));
}

void fill_size_form(Widget form)
{
    SizeDialog* sd = building;
    Widget widthLabel = add_row(form, "widthLW", "WidthTW", nullptr, &sd->widthField);
    Widget heightLabel = add_row(form, "heightLW", "HeightTW", sd->widthField, &sd->heightField);
    for (Widget field : {sd->widthField, sd->heightField})
        XtAddCallback(field, XmNfocusCallback, select_all_cb, nullptr);
    Widget last = sd->heightField;
    if (sd->kind == SizeKind::Resize) {
        Widget label = XtVaCreateManagedWidget("anchorLW", xmLabelWidgetClass, form, XmNleftAttachment,
                                               XmATTACH_FORM, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget,
                                               last, XmNtopOffset, 10, nullptr);
        // Horizontal with three "columns" means three rows filled row by row.
        Widget box = XmCreateRadioBox(form, const_cast<char*>("anchorBox"), nullptr, 0);
        XtVaSetValues(box, XmNorientation, XmHORIZONTAL, XmNpacking, XmPACK_COLUMN, XmNnumColumns, 3,
                      XmNleftAttachment, XmATTACH_FORM, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, label,
                      XmNrightAttachment, XmATTACH_FORM, nullptr);
        for (int i = 0; i < 9; i++)
            sd->anchors[i] = XtVaCreateManagedWidget(anchorNames[i], xmToggleButtonWidgetClass, box, nullptr);
        XtManageChild(box);
        last = box;
    } else {
        sd->keepProportions = XtVaCreateManagedWidget(
            "keepProportions", xmToggleButtonWidgetClass, form, XmNleftAttachment, XmATTACH_FORM,
            XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, last, XmNtopOffset, 10, nullptr);
        for (Widget field : {sd->widthField, sd->heightField})
            XtAddCallback(field, XmNvalueChangedCallback, follow_cb, sd);
    }
    // Line the fields up after the wider label.
    Dimension widest = 0;
    for (Widget label : {widthLabel, heightLabel}) {
        Dimension w = 0;
        XtVaGetValues(label, XmNwidth, &w, nullptr);
        widest = std::max(widest, w);
    }
    for (Widget field : {sd->widthField, sd->heightField})
        XtVaSetValues(field, XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, widest + 10, nullptr);
}

int chosen_anchor(const SizeDialog* sd)
{
    for (int i = 0; i < 9; i++)
        if (sd->anchors[i] && XmToggleButtonGetState(sd->anchors[i]))
            return i;
    return DEFAULT_ANCHOR;
}

// The message for a refused size, as the New dialog words its limits; empty
// when both fields are good.
std::string size_problem(SizeField w, SizeField h)
{
    AppResources& r = res();
    bool wideBad = w == SizeField::TooLarge, highBad = h == SizeField::TooLarge;
    if (w == SizeField::NotNumber || w == SizeField::TooSmall || h == SizeField::NotNumber ||
        h == SizeField::TooSmall)
        return size_texts().badSizeString ? size_texts().badSizeString
                                          : "Width and height must be whole numbers of at least 1";
    if (wideBad && highBad)
        return format_int2(r.tooLargeBothString, MAX_IMAGE_WIDTH, MAX_IMAGE_HEIGHT,
                           "Height and Width too big. \n Max Width = %d\n Max Height = %d ");
    if (wideBad)
        return format_int(r.tooLargeWidthString, MAX_IMAGE_WIDTH, "Width too big, Max = %d");
    if (highBad)
        return format_int(r.tooLargeHeightString, MAX_IMAGE_HEIGHT, "Height too big, Max = %d");
    return "";
}

void ok_cb(Widget, XtPointer client, XtPointer) noexcept
{
    auto* sd = static_cast<SizeDialog*>(client);
    Drawing* d = sd->asking;
    if (!d || !drawing_is_open(d)) {
        XtUnmanageChild(sd->dialog);
        return;
    }
    int width = 0, height = 0;
    SizeField w = parse_size_field(field_text(sd->widthField).c_str(), MAX_IMAGE_WIDTH, &width);
    SizeField h = parse_size_field(field_text(sd->heightField).c_str(), MAX_IMAGE_HEIGHT, &height);
    std::string problem = size_problem(w, h);
    if (!problem.empty()) {
        // Over the dialog: its modal grab would shut out a message under it.
        show_message(XtParent(sd->dialog), problem.c_str(), 0, nullptr, nullptr);
        return;
    }
    XtUnmanageChild(sd->dialog);
    int status = sd->kind == SizeKind::Resize ? resize_image(d, width, height, chosen_anchor(sd))
                                              : scale_image(d, width, height);
    if (status != 0)
        show_message(d->shell, res().outOfMemoryString ? res().outOfMemoryString : "Out of memory.", 0, nullptr,
                     nullptr);
}

void cancel_cb(Widget, XtPointer client, XtPointer) noexcept
{
    XtUnmanageChild(static_cast<SizeDialog*>(client)->dialog);
}

Widget make_dialog(SizeDialog* sd, Drawing* d)
{
    const DialogButton buttons[] = {
        {"OK", ok_cb, sd},
        {"Cancel", cancel_cb, sd},
        {nullptr, nullptr, nullptr},
    };
    Arg args[3];
    XtSetArg(args[0], XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL);
    XtSetArg(args[1], XmNautoUnmanage, False);
    // Placed over the drawing that asks each time, not the one it was made for.
    XtSetArg(args[2], XmNdefaultPosition, False);
    building = sd;
    Widget dialog = template_dialog(d->shell, sd->name, fill_size_form, args, 3, buttons);
    building = nullptr;
    set_default_and_cancel(dialog, "OK");
    return dialog;
}

void show_size_dialog(SizeDialog* sd, Drawing* d)
{
    if (!d || !drawing_is_open(d))
        return;
    if (!sd->dialog)
        sd->dialog = make_dialog(sd, d);
    if (!sd->dialog)
        return;
    sd->asking = d;
    sd->updating = true;   // the drawing's own size needs no following
    set_field(sd->widthField, d->width);
    set_field(sd->heightField, d->height);
    sd->updating = false;
    for (int i = 0; i < 9; i++)
        if (sd->anchors[i])
            XmToggleButtonSetState(sd->anchors[i], i == DEFAULT_ANCHOR, False);
    if (sd->keepProportions)
        XmToggleButtonSetState(sd->keepProportions, True, False);
    centre_when_shown(sd->dialog, &sd->placement, d);
    XtManageChild(sd->dialog);
    XmProcessTraversal(sd->widthField, XmTRAVERSE_CURRENT);
}

}  // namespace

Widget resize_dialog() { return dialogs[0].dialog; }
Widget scale_dialog() { return dialogs[1].dialog; }

int cmd_resize_image(Drawing* d, XEvent*, Boolean)
{
    show_size_dialog(&dialogs[0], d);
    return 0;
}

int cmd_scale_image(Drawing* d, XEvent*, Boolean)
{
    show_size_dialog(&dialogs[1], d);
    return 0;
}
