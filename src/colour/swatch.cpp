// Swatches: a drawn button shows a colour in its left four fifths and its
// black-and-white mapping in the strip at its right, divided by an etched
// line. One GC, shared by every list, draws them all.
#include "colour/swatch.h"

#include <Xm/DrawnB.h>
#include <Xm/RowColumn.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <vector>

#include "colour/color_list.h"
#include "colour/editor_hooks.h"
#include "core/app_state.h"

namespace {

// Swatches per column before the entry box grows another column, so that a
// file with many colours widens the dialog instead of running off screen.
constexpr unsigned long SWATCHES_PER_COLUMN = 16;

GC swatchGC = nullptr;

bool batching;
std::vector<Widget> batched;   // made or reused while batching, in order

GC swatch_gc()
{
    if (!swatchGC)
        swatchGC = XCreateGC(app().display, app().root, 0, nullptr);
    return swatchGC;
}

void swatch_expose_cb(Widget w, XtPointer, XtPointer) noexcept
{
    XtPointer data = nullptr;
    XtVaGetValues(w, XmNuserData, &data, nullptr);
    auto* entry = static_cast<ColorEntry*>(data);
    if (entry)
        draw_swatch(w, entry->pixel, entry->mapsTo);
}

void swatch_activate_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept
{
    auto* list = static_cast<ColorList*>(clientData);
    auto* cb = static_cast<XmDrawnButtonCallbackStruct*>(callData);
    XtPointer data = nullptr;
    XtVaGetValues(w, XmNuserData, &data, nullptr);
    auto* entry = static_cast<ColorEntry*>(data);
    if (!color_list_in_use(list))
        return;
    // The first click of a double click has already chosen the colour.
    if (cb && cb->click_count == 2)
        open_color_editor(list, entry);
    else
        choose_color_entry(list, entry);
}

}  // namespace

void draw_swatch(Widget button, Pixel colour, Pixel mapping)
{
    if (!button || !XtIsRealized(button))
        return;
    Dimension width = 0, height = 0, highlight = 0, shadow = 0;
    Pixel top = 0, bottom = 0;
    XtVaGetValues(button, XmNwidth, &width, XmNheight, &height, XmNtopShadowColor, &top,
                  XmNbottomShadowColor, &bottom, XmNhighlightThickness, &highlight,
                  XmNshadowThickness, &shadow, nullptr);
    int inset = shadow + highlight + 1;
    int w = int(width) - 2 * inset;
    int h = int(height) - 2 * inset;
    if (w <= 0 || h <= 0)
        return;
    int split = w * 4 / 5;

    Display* dpy = XtDisplay(button);
    Window win = XtWindow(button);
    GC gc = swatch_gc();
    XRectangle clip{short(inset), short(inset), (unsigned short)w, (unsigned short)h};
    XSetClipRectangles(dpy, gc, 0, 0, &clip, 1, Unsorted);
    XSetForeground(dpy, gc, colour);
    XFillRectangle(dpy, win, gc, inset, inset, unsigned(int(width) - (w - split)), unsigned(h));
    XSetForeground(dpy, gc, mapping);
    XFillRectangle(dpy, win, gc, inset + split, inset, unsigned(w - split), unsigned(h));
    XSetForeground(dpy, gc, top);
    XDrawLine(dpy, win, gc, inset + split, inset, inset + split, inset + h);
    XSetForeground(dpy, gc, bottom);
    XDrawLine(dpy, win, gc, inset + split + 1, inset, inset + split + 1, inset + h);
}

namespace {

// A swatch put aside by retire_swatches: unmanaged, with no entry. The
// swatches of a batch are unmanaged too, but taken; once a batch finds no
// spare it looks no more.
bool noSpareLeft;

Widget spare_swatch(Widget box)
{
    if (batching && noSpareLeft)
        return nullptr;
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(box, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; i++) {
        Widget w = children[i];
        if (XtIsManaged(w) || XtClass(w) != xmDrawnButtonWidgetClass)
            continue;
        if (batching && std::find(batched.begin(), batched.end(), w) != batched.end())
            continue;
        XtPointer data = nullptr;
        XtVaGetValues(w, XmNuserData, &data, nullptr);
        if (!data)
            return w;
    }
    noSpareLeft = batching;
    return nullptr;
}

}  // namespace

Widget make_swatch_button(ColorList* list, ColorEntry* entry)
{
    if (!list || !list->entryBox)
        return nullptr;
    // Spares are taken in the box's child order, so that the swatches of a
    // list reloaded after retire_swatches stand in list order again.
    if (Widget spare = spare_swatch(list->entryBox)) {
        XtVaSetValues(spare, XmNuserData, entry, nullptr);
        if (batching) {
            batched.push_back(spare);
            return spare;
        }
        XtManageChild(spare);
        XmProcessTraversal(spare, XmTRAVERSE_CURRENT);
        return spare;
    }
    Widget b = XtVaCreateWidget("ColorListEntry", xmDrawnButtonWidgetClass, list->entryBox, XmNuserData, entry,
                                XmNmultiClick, XmMULTICLICK_KEEP, nullptr);
    XtAddCallback(b, XmNexposeCallback, swatch_expose_cb, list);
    XtAddCallback(b, XmNactivateCallback, swatch_activate_cb, list);
    if (batching) {
        batched.push_back(b);
        return b;
    }
    XtManageChild(b);
    XmProcessTraversal(b, XmTRAVERSE_CURRENT);
    return b;
}

void fit_entry_box(ColorList* list, unsigned long count)
{
    if (!list || !list->entryBox || batching)
        return;
    short columns = short((count + SWATCHES_PER_COLUMN - 1) / SWATCHES_PER_COLUMN);
    if (columns < 1)
        columns = 1;
    short now = 0;
    XtVaGetValues(list->entryBox, XmNnumColumns, &now, nullptr);
    if (now != columns)
        XtVaSetValues(list->entryBox, XmNnumColumns, columns, nullptr);
}

void retire_swatches(WidgetList buttons, Cardinal count)
{
    for (Cardinal i = 0; i < count; i++)
        XtVaSetValues(buttons[i], XmNuserData, nullptr, nullptr);
    XtUnmanageChildren(buttons, count);
}

void begin_swatch_batch()
{
    batching = true;
    noSpareLeft = false;
    batched.clear();
}

void end_swatch_batch(ColorList* list, unsigned long count)
{
    batching = false;
    if (!batched.empty()) {
        XtManageChildren(batched.data(), static_cast<Cardinal>(batched.size()));
        XmProcessTraversal(batched.back(), XmTRAVERSE_CURRENT);
    }
    batched.clear();
    fit_entry_box(list, count);
}
