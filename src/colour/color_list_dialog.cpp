// The colour list dialog of a drawing: the foreground and background wells
// above a column of swatches, and the New and EditColor buttons. The dialog
// holds its ColorList as user data and hands it to every callback.
#include <Xm/DrawnB.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/RowColumn.h>
#include <Xm/Xm.h>

#include "colour/color_list.h"
#include "colour/editor_hooks.h"
#include "colour/swatch.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/message.h"
#include "core/template_dialog.h"

namespace {

// Readable defaults for what the application defaults file may set. They
// are merged without overriding and use the loosest resource names, so any
// line of the defaults file or the user's resources wins.
const char* const fallbackResources[] = {
    "*ColorListDialog.dialogTitle: Colors",
    "*ColorListDialog.noResize: False",
    "*Foreground_Label.labelString: Foreground",
    "*Background_Label.labelString: Background",
    "*EditColor.labelString: Edit...",
    "*Foreground_Button.width: 64",
    "*Foreground_Button.height: 32",
    "*Background_Button.width: 64",
    "*Background_Button.height: 32",
    "*ColorListRCW.orientation: vertical",
    "*ColorListRCW.packing: pack_column",
    "*ColorListRCW.spacing: 2",
    "*ColorListRCW.marginWidth: 0",
    "*ColorListEntry.width: 150",
    "*ColorListEntry.height: 22",
};

bool fallbackMerged = false;

// The list being built: the work-area fill function gets only the form.
ColorList* buildingList = nullptr;

ColorEntry* well_entry(ColorList* list, Widget well)
{
    return well == list->backgroundButton ? list->backgroundEntry : list->foregroundEntry;
}

void well_expose_cb(Widget w, XtPointer clientData, XtPointer) noexcept
{
    auto* list = static_cast<ColorList*>(clientData);
    ColorEntry* entry = list ? well_entry(list, w) : nullptr;
    if (entry)
        draw_swatch(w, entry->pixel, entry->mapsTo);
}

void select_well(ColorList* list, Widget well)
{
    unsigned char shadow = XmSHADOW_OUT;
    XtVaGetValues(well, XmNshadowType, &shadow, nullptr);
    if (shadow == XmSHADOW_IN)
        return;
    Widget other = well == list->foregroundButton ? list->backgroundButton : list->foregroundButton;
    XtVaSetValues(well, XmNshadowType, XmSHADOW_IN, nullptr);
    if (other)
        XtVaSetValues(other, XmNshadowType, XmSHADOW_OUT, nullptr);
    list->selectedWell = well;
    ColorEntry* entry = well_entry(list, well);
    if (entry)
        load_color_editor_if_open(list, entry);
}

void well_activate_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept
{
    auto* list = static_cast<ColorList*>(clientData);
    auto* cb = static_cast<XmDrawnButtonCallbackStruct*>(callData);
    if (!color_list_in_use(list))
        return;
    if (cb && cb->click_count == 2)
        open_color_editor(list, well_entry(list, w));
    else
        select_well(list, w);
}

void new_cb(Widget w, XtPointer clientData, XtPointer) noexcept
{
    auto* list = static_cast<ColorList*>(clientData);
    if (!color_list_in_use(list))
        return;
    if (!add_color(list, app().whitePixel, app().blackPixel, 1))
        show_message(w, res().allocColorErr, 0, nullptr, nullptr);
}

void edit_cb(Widget, XtPointer clientData, XtPointer) noexcept
{
    auto* list = static_cast<ColorList*>(clientData);
    if (!color_list_in_use(list))
        return;
    bool background = list->selectedWell && list->selectedWell == list->backgroundButton;
    open_color_editor(list, background ? list->backgroundEntry : list->foregroundEntry);
}

Widget make_well(const char* name, Widget form, ColorList* list, unsigned char shadow)
{
    Widget well = XtVaCreateManagedWidget(name, xmDrawnButtonWidgetClass, form, XmNshadowType,
                                          shadow, XmNmultiClick, XmMULTICLICK_KEEP, nullptr);
    XtAddCallback(well, XmNexposeCallback, well_expose_cb, list);
    XtAddCallback(well, XmNactivateCallback, well_activate_cb, list);
    return well;
}

void fill_work_area(Widget form)
{
    ColorList* list = buildingList;
    if (!list)
        return;
    Widget fg = make_well("Foreground_Button", form, list, XmSHADOW_IN);
    XtVaSetValues(fg, XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, nullptr);
    Widget fgLabel = XtVaCreateManagedWidget(
        "Foreground_Label", xmLabelWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
        XmNtopWidget, fg, XmNtopOffset, 0, XmNleftAttachment, XmATTACH_OPPOSITE_WIDGET,
        XmNleftWidget, fg, nullptr);
    Widget bg = make_well("Background_Button", form, list, XmSHADOW_OUT);
    XtVaSetValues(bg, XmNtopAttachment, XmATTACH_OPPOSITE_WIDGET, XmNtopWidget, fg,
                  XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, fgLabel, XmNleftOffset, 10,
                  nullptr);
    Widget bgLabel = XtVaCreateManagedWidget(
        "Background_Label", xmLabelWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
        XmNtopWidget, bg, XmNtopOffset, 0, XmNleftAttachment, XmATTACH_OPPOSITE_WIDGET,
        XmNleftWidget, bg, nullptr);
    Widget box = XtVaCreateManagedWidget(
        "ColorListRCW", xmRowColumnWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
        XmNtopWidget, bgLabel, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment,
        XmATTACH_FORM, nullptr);
    list->foregroundButton = fg;
    list->backgroundButton = bg;
    list->selectedWell = fg;
    list->entryBox = box;
}

}  // namespace

Widget create_color_list_dialog(Widget parent, GC foregroundGC, GC backgroundGC,
                                ColorEntry** anchor, void (*colorChanged)(XtPointer),
                                XtPointer colorChangedData)
{
    if (!parent)
        return nullptr;
    merge_fallback_resources(XtDisplay(parent), fallbackResources, XtNumber(fallbackResources),
                             &fallbackMerged);

    auto* first = reinterpret_cast<ColorEntry*>(XtMalloc(sizeof(ColorEntry)));
    *first = ColorEntry{0, 0, nullptr, nullptr};
    auto* list = reinterpret_cast<ColorList*>(XtMalloc(sizeof(ColorList)));
    *list = ColorList{};
    list->foregroundGC = foregroundGC;
    list->backgroundGC = backgroundGC;
    list->colorChanged = colorChanged;
    list->colorChangedData = colorChangedData;
    list->transparentPixel = 0;
    list->anchor = first;
    if (anchor)
        *anchor = first;

    const DialogButton buttons[] = {
        {"New", new_cb, list},
        {"EditColor", edit_cb, list},
        {nullptr, nullptr, nullptr},
    };
    Arg args[3];
    Cardinal n = 0;
    XtSetArg(args[n], XmNuserData, list); n++;
    XtSetArg(args[n], XmNautoUnmanage, False); n++;
    // Shown beside its drawing window, not over it: the drawing places it.
    XtSetArg(args[n], XmNdefaultPosition, False); n++;

    buildingList = list;
    Widget dialog = template_dialog(parent, "ColorListDialog", fill_work_area, args, n, buttons);
    buildingList = nullptr;
    if (!dialog) {
        if (anchor)
            *anchor = nullptr;
        XtFree(reinterpret_cast<char*>(first));
        XtFree(reinterpret_cast<char*>(list));
    }
    return dialog;
}

int cmd_show_colors(Drawing* d, XEvent*, Boolean)
{
    // A bitmap has no colour list, even where its window kept the list of a
    // colour drawing that had it before.
    if (!d || d->depth == 1 || !d->colourList)
        return 1;
    // It pops up beside the drawing window (the drawing placed it so).
    Widget dialog = d->colourList;
    Widget shell = XtParent(dialog);
    make_list_swatches(color_list_of_dialog(dialog));
    XtManageChild(dialog);
    if (shell && XtIsRealized(shell))
        XRaiseWindow(XtDisplay(shell), XtWindow(shell));
    return 0;
}
