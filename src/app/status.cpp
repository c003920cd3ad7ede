// The status line at the bottom of every drawing window (logo, image size,
// separator) and the version dialog that shows the same logo.
#include "app/status.h"

#include <X11/xpm.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/Separator.h>
#include <Xm/Xm.h>
#include <cstdio>

#include "app/draw.h"
#include "app/logo_data.h"
#include "core/app_state.h"
#include "core/message.h"
#include "core/safe_format.h"
#include "core/template_dialog.h"
#include "core/x_owned.h"

const char* const PICTREL_VERSION_STRING = "5.1.1";

namespace {

const char* const defaultSizeFormat = "Width - %d, Height - %d";

Pixmap logo = None;       // one for the program, made at first need
bool logoTried = false;   // a failed logo is not retried for every window
Widget versionDialogWidget = nullptr;
Widget versionParent = nullptr;   // where the dialog pops up next

// The logo's colours all come from `w` and the screen, so it follows the
// colour scheme of the resources.
Pixmap make_logo(Display* dpy, int screen, Widget w, int depth)
{
    Pixel topShadow = 0, bottomShadow = 0, fg = BlackPixel(dpy, screen), bg = WhitePixel(dpy, screen);
    XtVaGetValues(w, XmNtopShadowColor, &topShadow, XmNbottomShadowColor, &bottomShadow, XmNforeground, &fg,
                  XmNbackground, &bg, nullptr);
    XpmColorSymbol symbols[] = {
        {const_cast<char*>("transparent"), nullptr, bg},
        {const_cast<char*>("background"), nullptr, bg},
        {const_cast<char*>("foreground"), nullptr, fg},
        {const_cast<char*>("white"), nullptr, WhitePixel(dpy, screen)},
        {const_cast<char*>("black"), nullptr, BlackPixel(dpy, screen)},
        {const_cast<char*>("topShadow"), nullptr, topShadow},
        {const_cast<char*>("bottomShadow"), nullptr, bottomShadow},
    };
    XpmAttributes attrs{};
    attrs.visual = DefaultVisual(dpy, screen);
    attrs.colormap = DefaultColormap(dpy, screen);
    attrs.depth = static_cast<unsigned>(depth);
    attrs.colorsymbols = symbols;
    attrs.numsymbols = XtNumber(symbols);
    attrs.valuemask = XpmVisual | XpmColormap | XpmDepth | XpmColorSymbols | XpmReturnPixels;
    Pixmap pixmap = None, mask = None;
    int status = XpmCreatePixmapFromData(dpy, RootWindow(dpy, screen), const_cast<char**>(pictrelLogo), &pixmap,
                                         &mask, &attrs);
    XpmFreeAttributes(&attrs);
    if (mask)
        XFreePixmap(dpy, mask);
    if (status != XpmSuccess) {
        printf("problem w/ logo\n");
        fflush(stdout);
        if (pixmap)
            XFreePixmap(dpy, pixmap);
        return None;
    }
    return pixmap;
}

Pixmap shared_logo(Widget w)
{
    if (!logoTried) {
        logoTried = true;
        int depth = res().depth;
        if (depth <= 1)
            XtVaGetValues(w, XmNdepth, &depth, nullptr);
        logo = make_logo(XtDisplay(w), XScreenNumberOfScreen(XtScreen(w)), w, depth);
    }
    return logo;
}

// A label showing the logo; without a logo it stays an empty text label.
Widget logo_label(const char* name, Widget parent)
{
    Pixmap p = shared_logo(parent);
    if (p)
        return XtVaCreateManagedWidget(name, xmLabelWidgetClass, parent, XmNlabelType, XmPIXMAP, XmNlabelPixmap,
                                       p, nullptr);
    XmStringPtr empty = localized("");
    Widget w = XtVaCreateManagedWidget(name, xmLabelWidgetClass, parent, XmNlabelString, empty.get(), nullptr);
    return w;
}

void set_label_text(Widget label, const char* text)
{
    XmStringPtr s = localized(text);
    XtVaSetValues(label, XmNlabelString, s.get(), nullptr);
}

void version_work_area(Widget form)
{
    Widget logoW = logo_label("logo", form);
    XtVaSetValues(logoW, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, 10, XmNleftAttachment, XmATTACH_FORM,
                  XmNrightAttachment, XmATTACH_FORM, nullptr);
    Widget copyright = XtVaCreateManagedWidget("copyright", xmLabelWidgetClass, form, XmNtopAttachment,
                                               XmATTACH_WIDGET, XmNtopWidget, logoW, XmNleftAttachment,
                                               XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, nullptr);
    Widget date = XtVaCreateManagedWidget("date", xmLabelWidgetClass, form, XmNtopAttachment, XmATTACH_WIDGET,
                                          XmNtopWidget, copyright, XmNleftAttachment, XmATTACH_FORM,
                                          XmNrightAttachment, XmATTACH_FORM, nullptr);
    set_label_text(date, PICTREL_VERSION_STRING);
}

// Over the window it was asked from, else over the first open drawing.
void version_popup_cb(Widget shell, XtPointer, XtPointer) noexcept
{
    Widget parent = versionParent;
    if (!parent) {
        Drawing* d = first_open_drawing();
        parent = d ? d->shell : nullptr;
    }
    centre_shell_over(shell, parent);
}

void version_ok_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (versionDialogWidget)
        XtUnmanageChild(versionDialogWidget);
}

// The readout beside the size text. It keeps the width it is made with,
// room for a typical text: a label that asked for the width of every new
// text would make the window grow and shrink as the pointer moves.
void create_pointer_label(Widget form, Drawing* d)
{
    XmStringPtr room = localized("X - 000, Y - 000  #000000");
    d->pointerLabel = XtVaCreateManagedWidget(
        "pointerReadout", xmLabelWidgetClass, form, XmNlabelString, room.get(), XmNalignment, XmALIGNMENT_BEGINNING,
        XmNrecomputeSize, False, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, d->statusLabel,
        XmNleftOffset, 16, XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, 4, XmNtopAttachment,
        XmATTACH_OPPOSITE_WIDGET, XmNtopWidget, d->statusLabel, XmNbottomAttachment, XmATTACH_FORM, nullptr);
    set_label_text(d->pointerLabel, "");
}

}  // namespace

Widget create_status_area(Widget form, Drawing* d)
{
    if (!form || !d)
        return nullptr;
    Widget logoW = logo_label("orvlogo", form);
    XtVaSetValues(logoW, XmNleftAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, nullptr);
    d->statusLabel = XtVaCreateManagedWidget(
        "status", xmLabelWidgetClass, form, XmNalignment, XmALIGNMENT_BEGINNING, XmNleftAttachment,
        XmATTACH_WIDGET, XmNleftWidget, logoW, XmNleftOffset, 8,
        XmNtopAttachment, XmATTACH_OPPOSITE_WIDGET, XmNtopWidget, logoW, XmNbottomAttachment, XmATTACH_FORM,
        nullptr);
    create_pointer_label(form, d);
    Widget sep = XtVaCreateManagedWidget("separator", xmSeparatorWidgetClass, form, XmNleftAttachment,
                                         XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment,
                                         XmATTACH_WIDGET, XmNbottomWidget, logoW, nullptr);
    return sep;
}

void update_status(Drawing* d)
{
    if (!d || !d->statusLabel)
        return;
    std::string text = format_int2(res().widthHeightString, d->width, d->height, defaultSizeFormat);
    set_label_text(d->statusLabel, text.c_str());
    if (res().debug) {
        printf("Status: %s\n", text.c_str());
        fflush(stdout);
    }
}

void show_pointer_text(Drawing* d, const std::string& text)
{
    if (!d || !d->pointerLabel)
        return;
    // Most motions stay on the same pixel of the same colour: leave the
    // label alone then.
    if (text == d->pointerText)
        return;
    d->pointerText = text;
    set_label_text(d->pointerLabel, text.c_str());
    if (res().debug) {
        printf("Pointer: %s\n", text.c_str());
        fflush(stdout);
    }
}

namespace {

constexpr unsigned long NOTE_MS = 10000;

// One pending note per drawing slot; the record is checked when the timer
// fires, as the drawing may have closed meanwhile.
struct StatusNote {
    Drawing* drawing;
    XtIntervalId timer;
};
StatusNote notes[MAX_DRAWINGS];

void note_done_cb(XtPointer client, XtIntervalId* id) noexcept
{
    auto* note = static_cast<StatusNote*>(client);
    if (note->timer != *id)
        return;
    note->timer = 0;
    if (drawing_is_open(note->drawing))
        update_status(note->drawing);
}

}  // namespace

void show_status_note(Drawing* d, const char* note)
{
    if (!d || !d->statusLabel || !note)
        return;
    std::string text = format_int2(res().widthHeightString, d->width, d->height, defaultSizeFormat);
    text += "    ";
    text += note;
    set_label_text(d->statusLabel, text.c_str());
    StatusNote* slot = nullptr;
    for (StatusNote& n : notes)
        if (n.drawing == d)
            slot = &n;
    for (StatusNote& n : notes)
        if (!slot && !n.timer)
            slot = &n;
    if (!slot)
        return;
    if (slot->timer)
        XtRemoveTimeOut(slot->timer);
    slot->drawing = d;
    slot->timer = XtAppAddTimeOut(app().context, NOTE_MS, note_done_cb, slot);
}

void show_version()
{
    show_version_over(nullptr);
}

void show_version_over(Widget parent)
{
    versionParent = parent;
    if (!versionDialogWidget) {
        if (!app().topLevel)
            return;
        static const DialogButton buttons[] = {
            {"OK", version_ok_cb, nullptr},
            {nullptr, nullptr, nullptr},
        };
        versionDialogWidget = template_dialog(app().topLevel, "Show Version", version_work_area, nullptr, 0,
                                              buttons);
        if (!versionDialogWidget)
            return;
        set_default_button(versionDialogWidget, "OK");
        XtAddCallback(XtParent(versionDialogWidget), XmNpopupCallback, version_popup_cb, nullptr);
    }
    XtManageChild(versionDialogWidget);
    Widget shell = XtParent(versionDialogWidget);
    if (XtIsRealized(shell))
        XRaiseWindow(XtDisplay(shell), XtWindow(shell));
}

Widget version_dialog()
{
    return versionDialogWidget;
}
