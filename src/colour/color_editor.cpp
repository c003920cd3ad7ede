// The colour editor dialog "ColorPickerDialog": the current mode's form in
// a frame, a button that grabs a colour from the screen, and the samples
// that choose the colour's black-and-white mapping. Undo puts back the
// colour and mapping the entry had when it was loaded.
#include "colour/color_editor.h"

#include <Xm/DrawnB.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/Separator.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <initializer_list>

#include "colour/color_list.h"
#include "colour/editor_hooks.h"
#include "colour/grab.h"
#include "core/app_state.h"
#include "core/error_trap.h"
#include "core/template_dialog.h"
#include "core/window_place.h"

namespace {

// Readable defaults for what the application defaults file may set, merged
// beneath it with the loosest names so any line of the file or of the
// user's resources wins.
const char* const fallbackResources[] = {
    "*ColorPickerDialog.dialogTitle: Edit Color",
    "*ColorPickerDialog*Undo.labelString: Undo",
    "*ColorPickerDialog*Close.labelString: Close",
    "*ColorPickerDialog*grabButton.labelString: Grab From Screen",
    "*ColorPickerDialog*MapsToLabel.labelString: In black and white:",
    "*ColorPickerDialog*colorSample.labelString: ",
    "*ColorPickerDialog*blackSample.labelString: Black",
    "*ColorPickerDialog*whiteSample.labelString: White",
    "*ColorPickerDialog*transparentSample.labelString: Transparent",
    "*ColorPickerDialog*XmDrawnButton.recomputeSize: False",
    "*ColorPickerDialog*XmDrawnButton.width: 88",
    "*ColorPickerDialog*XmDrawnButton.height: 36",
};

bool fallbackMerged = false;

void no_create_pixel(Pixel) {}
Widget no_create(Widget) { return nullptr; }

ColorEditor* editor = nullptr;
Widget dialog = nullptr;

const EditorMode& current_mode()
{
    return editorModeTable[editor ? editor->mode : 0];
}

// Writes a colour into the edited cell; a cell that is not ours to write
// (or no longer exists) is refused by the server, not fatal.
void store_cell(Display* dpy, XColor colour)
{
    colour.flags = DoRed | DoGreen | DoBlue;
    ErrorTrap trap(dpy);
    XStoreColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &colour);
}

// Fills a sample's inside with a pixel. The samples are drawn with the
// screen's default GC, as they always have been.
void fill_sample(Widget button, Pixel pixel)
{
    if (!button || !XtIsRealized(button))
        return;
    Display* dpy = XtDisplay(button);
    Dimension width = 0, height = 0, shadow = 0, highlight = 0;
    XtVaGetValues(button, XmNwidth, &width, XmNheight, &height, XmNshadowThickness, &shadow,
                  XmNhighlightThickness, &highlight, nullptr);
    int inset = shadow + highlight + 1;
    int w = int(width) - 2 * inset, h = int(height) - 2 * inset;
    if (w <= 0 || h <= 0)
        return;
    GC gc = DefaultGC(dpy, DefaultScreen(dpy));
    XGCValues v{};
    v.foreground = pixel;
    v.line_width = 0;
    v.fill_style = FillSolid;
    XChangeGC(dpy, gc, GCForeground | GCLineWidth | GCFillStyle, &v);
    XFillRectangle(dpy, XtWindow(button), gc, inset, inset, unsigned(w), unsigned(h));
}

Pixel transparent_pixel(const ColorEditor* ed)
{
    if (ed->list && ed->list->transparentPixel)
        return ed->list->transparentPixel;
    return res().background;
}

// The mapping each sample stands for.
Pixel sample_mapping(ColorEditor* ed, Widget sample)
{
    if (sample == ed->blackSample)
        return app().blackPixel;
    if (sample == ed->whiteSample)
        return app().whitePixel;
    return transparent_pixel(ed);
}

Widget sample_for_mapping(ColorEditor* ed, Pixel mapping)
{
    if (mapping == app().blackPixel)
        return ed->blackSample;
    if (mapping == app().whitePixel)
        return ed->whiteSample;
    return ed->transparentSample;
}

void redraw_with_exposures(Widget w)
{
    if (w && XtIsRealized(w))
        XClearArea(XtDisplay(w), XtWindow(w), 0, 0, 999, 999, True);
}

void undo_cb(Widget, XtPointer, XtPointer) noexcept
{
    ColorEditor* ed = editor;
    if (!ed || !ed->list)
        return;
    store_cell(XtDisplay(dialog), ed->saved);
    current_mode().show(ed->saved.pixel);
    ed->mapping = ed->savedMapping;
    select_editor_mapping(ed, sample_for_mapping(ed, ed->mapping));
    notify_colour_edited();
}

void close_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (dialog)
        XtUnmanageChild(dialog);
}

void grab_cb(Widget w, XtPointer, XtPointer) noexcept
{
    ColorEditor* ed = editor;
    if (!ed)
        return;
    Display* dpy = XtDisplay(w);
    Pixel pixel = grab_pixel(dpy);
    // The grab dispatches events while it waits: the drawing may have been
    // closed meanwhile, and then there is no cell left to set.
    if (!ed->list)
        return;
    current_mode().set(pixel);
    // The cell takes the grabbed colour itself, not its rounding through HSV.
    XColor c{};
    c.pixel = pixel;
    XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &c);
    if (HsvState* s = hsv_state(); s && s->live) {
        c.pixel = s->editedPixel;
        store_cell(dpy, c);
        notify_colour_edited();
    }
}

void color_sample_expose_cb(Widget w, XtPointer, XtPointer) noexcept
{
    if (editor)
        fill_sample(w, editor->saved.pixel);
}

void bw_sample_expose_cb(Widget w, XtPointer clientData, XtPointer) noexcept
{
    fill_sample(w, clientData ? app().whitePixel : app().blackPixel);
}

void sample_activate_cb(Widget w, XtPointer, XtPointer) noexcept
{
    if (editor)
        select_editor_mapping(editor, w);
}

Widget make_sample(const char* name, Widget form, Widget left, int offset, Widget below)
{
    return XtVaCreateManagedWidget(
        name, xmDrawnButtonWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget,
        below, XmNtopOffset, 10, XmNleftAttachment, left ? XmATTACH_WIDGET : XmATTACH_FORM,
        XmNleftWidget, left, XmNleftOffset, offset, XmNbottomAttachment, XmATTACH_FORM,
        XmNbottomOffset, 10, XmNpushButtonEnabled, True, nullptr);
}

void fill_work_area(Widget form)
{
    ColorEditor* ed = editor;
    Widget frame = XtVaCreateManagedWidget(
        "frame", xmFrameWidgetClass, form, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, 10,
        XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
    ed->modeForm = current_mode().create(frame);
    Widget grab = XtVaCreateManagedWidget(
        "grabButton", xmPushButtonWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
        XmNtopWidget, frame, XmNtopOffset, 10, XmNleftAttachment, XmATTACH_FORM, nullptr);
    XtAddCallback(grab, XmNactivateCallback, grab_cb, nullptr);
    Widget sep = XtVaCreateManagedWidget(
        "sep", xmSeparatorWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, grab,
        XmNtopOffset, 10, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
        nullptr);
    Widget mapsTo = XtVaCreateManagedWidget(
        "MapsToLabel", xmLabelWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, sep,
        XmNtopOffset, 10, XmNleftAttachment, XmATTACH_FORM, nullptr);
    ed->mapLabel = XtVaCreateManagedWidget(
        "BWLabel", xmLabelWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, sep,
        XmNtopOffset, 10, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, mapsTo, nullptr);

    ed->colorSample = make_sample("colorSample", form, nullptr, 0, mapsTo);
    XtVaSetValues(ed->colorSample, XmNshadowType, XmSHADOW_ETCHED_IN, XmNpushButtonEnabled, False,
                  nullptr);
    XtAddCallback(ed->colorSample, XmNexposeCallback, color_sample_expose_cb, nullptr);
    ed->blackSample = make_sample("blackSample", form, ed->colorSample, 20, mapsTo);
    ed->whiteSample = make_sample("whiteSample", form, ed->blackSample, 10, mapsTo);
    ed->transparentSample = make_sample("transparentSample", form, ed->whiteSample, 10, mapsTo);
    XtAddCallback(ed->blackSample, XmNexposeCallback, bw_sample_expose_cb, nullptr);
    XtAddCallback(ed->whiteSample, XmNexposeCallback, bw_sample_expose_cb, ed);
    for (Widget sample : {ed->blackSample, ed->whiteSample, ed->transparentSample})
        XtAddCallback(sample, XmNactivateCallback, sample_activate_cb, nullptr);
}

Widget make_dialog()
{
    merge_fallback_resources(XtDisplay(app().topLevel), fallbackResources, XtNumber(fallbackResources),
                             &fallbackMerged);
    editor = reinterpret_cast<ColorEditor*>(XtMalloc(sizeof(ColorEditor)));
    *editor = ColorEditor{};
    const DialogButton buttons[] = {
        {"Undo", undo_cb, nullptr},
        {"Close", close_cb, nullptr},
        {nullptr, nullptr, nullptr},
    };
    Arg args[3];
    Cardinal n = 0;
    XtSetArg(args[n], XmNuserData, editor); n++;
    XtSetArg(args[n], XmNautoUnmanage, False); n++;
    // Placed beside the drawing's colours (place_beside), not over them.
    XtSetArg(args[n], XmNdefaultPosition, False); n++;
    return template_dialog(app().topLevel, "ColorPickerDialog", fill_work_area, args, n, buttons);
}

Widget shell_of(Widget w)
{
    while (w && !XtIsShell(w))
        w = XtParent(w);
    return w;
}

// Puts the editor where it covers neither the drawing nor its colour list,
// so the user sees the colour change in the image while dragging: right of
// the colour list, else left of the drawing window, kept on the screen.
// Runs as the editor pops up, when its size is its own: measured before,
// a first showing's size is not yet final and the editor could end off
// the screen's edge.
void place_beside(Widget editorShell, ColorList* list)
{
    if (!list)
        return;
    Widget listShell = shell_of(list->foregroundButton);
    Widget drawingShell = listShell ? shell_of(XtParent(listShell)) : nullptr;
    WindowBox listBox, drawingBox;
    if (!shown_box(listShell, &listBox) || !shown_box(drawingShell, &drawingBox))
        return;
    int width = 0, height = 0, screenWidth = 0, screenHeight = 0;
    outer_size(editorShell, &width, &height);
    screen_size(editorShell, &screenWidth, &screenHeight);
    int x = listBox.x + listBox.width + BESIDE_GAP;
    int y = listBox.y;
    if (x + width > screenWidth) {
        x = drawingBox.x - width - BESIDE_GAP;
        y = drawingBox.y;
    }
    move_shell(editorShell, clamped_on_screen(x, y, width, height, screenWidth, screenHeight));
}

void place_cb(Widget shell, XtPointer, XtPointer) noexcept
{
    if (editor)
        place_beside(shell, editor->list);
}

}  // namespace

const EditorMode editorModeTable[3] = {
    /* create       set from pixel    show */
    {hsv_create, hsv_set, hsv_show},
    {no_create, no_create_pixel, no_create_pixel},
    {no_create, no_create_pixel, no_create_pixel},
};

ColorEditor* color_editor()
{
    return editor;
}

Widget color_editor_dialog()
{
    return dialog;
}

void select_editor_mapping(ColorEditor* ed, Widget sample)
{
    if (!ed || !sample)
        return;
    Pixel mapping = sample_mapping(ed, sample);
    for (Widget s : {ed->blackSample, ed->whiteSample, ed->transparentSample})
        XtVaSetValues(s, XmNshadowType, s == sample ? XmSHADOW_IN : XmSHADOW_OUT, nullptr);
    XmString label = nullptr;
    XtVaGetValues(sample, XmNlabelString, &label, nullptr);
    if (label) {
        XtVaSetValues(ed->mapLabel, XmNlabelString, label, nullptr);
        XmStringFree(label);
    }
    ed->mapping = mapping;

    ColorList* list = ed->list;
    if (!list)
        return;
    bool background = list->selectedWell && list->selectedWell == list->backgroundButton;
    ColorEntry* entry = background ? list->backgroundEntry : list->foregroundEntry;
    if (!entry)
        return;
    // Loading selects the sample that is already the entry's mapping; only
    // a real change marks the drawing changed.
    bool changed = entry->mapsTo != mapping;
    entry->mapsTo = mapping;
    if (changed && list->colorChanged)
        list->colorChanged(list->colorChangedData);
    redraw_with_exposures(list->selectedWell);
    redraw_with_exposures(entry->button);
}

void notify_colour_edited()
{
    if (editor && editor->list && editor->list->colorChanged)
        editor->list->colorChanged(editor->list->colorChangedData);
}

void load_color_editor(ColorList* list, ColorEntry* entry)
{
    ColorEditor* ed = editor;
    if (!ed || !list || !entry || !dialog)
        return;
    Display* dpy = XtDisplay(dialog);
    ed->saved = XColor{};
    ed->saved.pixel = entry->pixel;
    XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &ed->saved);
    ed->mapping = entry->mapsTo;
    ed->savedMapping = entry->mapsTo;
    ed->list = list;
    current_mode().show(entry->pixel);
    fill_sample(ed->colorSample, entry->pixel);
    select_editor_mapping(ed, sample_for_mapping(ed, ed->mapping));
}

void open_color_editor(ColorList* list, ColorEntry* entry)
{
    if (!list || !entry)
        return;
    if (!dialog) {
        dialog = make_dialog();
        if (dialog)
            XtAddCallback(XtParent(dialog), XmNpopupCallback, place_cb, nullptr);
    }
    if (!dialog)
        return;
    load_color_editor(list, entry);
    Widget shell = XtParent(dialog);
    XtManageChild(dialog);
    XtPopup(shell, XtGrabNone);
    if (XtIsRealized(shell))
        XRaiseWindow(XtDisplay(shell), XtWindow(shell));
}

void load_color_editor_if_open(ColorList* list, ColorEntry* entry)
{
    if (dialog && XtIsManaged(dialog))
        load_color_editor(list, entry);
}

void forget_color_editor_list(ColorList* list)
{
    if (!editor || !list || editor->list != list)
        return;
    editor->list = nullptr;
    hsv_release_cell();
    if (dialog)
        XtUnmanageChild(dialog);
}
