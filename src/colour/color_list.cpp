// A drawing's colour list: read/write cells of the default colormap chained
// behind an anchor entry whose pixel field counts them, the transparent
// colour, and the current foreground and background entries with the GCs
// that paint them.
#include "colour/color_list.h"

#include <Xm/Xm.h>

#include <vector>

#include "colour/editor_hooks.h"
#include "colour/mono_key.h"
#include "colour/swatch.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/error_trap.h"
#include "files/image_io.h"

namespace {

// The colour count lives in the anchor's pixel field.
unsigned long& colour_count(ColorList* list) { return list->anchor->pixel; }

Pixel widget_background(Widget w)
{
    Pixel p = res().background;
    if (w)
        XtVaGetValues(w, XmNbackground, &p, nullptr);
    return p;
}

bool alloc_cell(Display* dpy, Colormap cmap, Pixel* cell)
{
    unsigned long planes[1];
    return XAllocColorCells(dpy, cmap, False, planes, 0, cell, 1) != 0;
}

// Copies the colour of `from` into the read/write cell `to`; false when
// `to` is not writable by us (a read-only background, a pixel a bad table
// named), which must not end the program.
bool copy_colour(Display* dpy, Colormap cmap, Pixel from, Pixel to)
{
    XColor c{};
    c.pixel = from;
    XQueryColor(dpy, cmap, &c);
    c.pixel = to;
    c.flags = DoRed | DoGreen | DoBlue;
    ErrorTrap trap(dpy);
    XStoreColor(dpy, cmap, &c);
    return trap.error() == 0;
}

// The list's own background stands for transparent. Its entry gets the
// program-wide transparent cell: the current `background` when that is a
// different cell we can write the background colour into (a file was just
// read into it), else a fresh cell. The program-wide `background` then
// follows, so that new images are filled with this list's transparent
// colour and freeing never touches it. Returns false when no cell is left.
bool make_transparent(Display* dpy, Colormap cmap, ColorList* list, ColorEntry* entry, Pixel b)
{
    Pixel transparent = 0;
    bool have = false;
    if (b != res().background && copy_colour(dpy, cmap, b, res().background)) {
        transparent = res().background;
        have = true;
    }
    if (!have) {
        if (!alloc_cell(dpy, cmap, &transparent))
            return false;
        copy_colour(dpy, cmap, b, transparent);
    }
    list->transparentPixel = transparent;
    entry->pixel = transparent;
    entry->mapsTo = transparent;
    res().background = transparent;
    return true;
}

void set_gc_foreground(GC gc, Pixel p)
{
    if (gc)
        XSetForeground(app().display, gc, p);
}

void apply_entries_to_gcs(ColorList* list)
{
    if (list->foregroundEntry)
        set_gc_foreground(list->foregroundGC, list->foregroundEntry->pixel);
    if (list->backgroundEntry)
        set_gc_foreground(list->backgroundGC, list->backgroundEntry->pixel);
}

bool background_well_selected(const ColorList* list)
{
    return list->selectedWell && list->selectedWell == list->backgroundButton;
}

}  // namespace

ColorList* color_list_of_dialog(Widget dialog)
{
    if (!dialog)
        return nullptr;
    XtPointer data = nullptr;
    XtVaGetValues(dialog, XmNuserData, &data, nullptr);
    return static_cast<ColorList*>(data);
}

ColorList* color_list_of(Drawing* d)
{
    return d && d->depth != 1 ? color_list_of_dialog(d->colourList) : nullptr;
}

bool color_list_in_use(const ColorList* list)
{
    if (!list)
        return false;
    // A list made outside any drawing window has nothing to say otherwise.
    const Drawing* d = find_drawing_of_widget(list->entryBox);
    return !d || d->depth != 1;
}

void set_list_gcs(Widget dialog, GC foregroundGC, GC backgroundGC)
{
    ColorList* list = color_list_of_dialog(dialog);
    if (!list)
        return;
    list->foregroundGC = foregroundGC;
    list->backgroundGC = backgroundGC;
}

Pixel bw_mapping(const char* monoKey, Pixel defaultPixel)
{
    switch (classify_mono_key(monoKey)) {
    case MonoKey::Black:
        return app().blackPixel;
    case MonoKey::White:
        return app().whitePixel;
    case MonoKey::Other:
        break;
    }
    return defaultPixel;
}

ColorEntry* add_color(ColorList* list, Pixel source, Pixel mapsTo, int allocate)
{
    if (!list || !list->anchor)
        return nullptr;
    Display* dpy = app().display;
    Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    Pixel b = widget_background(list->entryBox);

    Pixel pixel = source;
    if (allocate) {
        if (!alloc_cell(dpy, cmap, &pixel))
            return nullptr;
        copy_colour(dpy, cmap, source, pixel);
    }

    auto* entry = reinterpret_cast<ColorEntry*>(XtMalloc(sizeof(ColorEntry)));
    *entry = ColorEntry{mapsTo, pixel, nullptr, nullptr};

    if (source == b) {
        if (!make_transparent(dpy, cmap, list, entry, b)) {
            // Out of cells: nothing of this add is kept, so the list's
            // chain and count still agree.
            if (allocate)
                XFreeColors(dpy, cmap, &pixel, 1, 0);
            XtFree(reinterpret_cast<char*>(entry));
            return nullptr;
        }
        // The cell taken for the source colour is not the one the entry
        // ended up with; give it back rather than leak one per drawing.
        if (allocate && pixel != entry->pixel)
            XFreeColors(dpy, cmap, &pixel, 1, 0);
    }

    ColorEntry* last = list->anchor;
    for (unsigned long i = 0; i < colour_count(list) && last->next; i++)
        last = last->next;
    last->next = entry;
    colour_count(list)++;

    if (list->swatchesMade) {
        entry->button = make_swatch_button(list, entry);
        fit_entry_box(list, colour_count(list));
    }

    // The new colour belongs to the selected well; the GC and the well are
    // only brought up to date when a swatch is chosen.
    if (background_well_selected(list))
        list->backgroundEntry = entry;
    else
        list->foregroundEntry = entry;
    return entry;
}

void free_all_colors(ColorList* list)
{
    if (!list || !list->anchor)
        return;
    // The editor must not write into cells that are about to be given back.
    forget_color_editor_list(list);
    Display* dpy = app().display;
    Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    std::vector<Widget> swatches;
    {
        ErrorTrap trap(dpy);
        ColorEntry* e = list->anchor->next;
        while (e) {
            ColorEntry* next = e->next;
            // The transparent cell is shared with images and later drawings.
            bool shared = e->pixel == res().background ||
                          (list->transparentPixel != 0 && e->pixel == list->transparentPixel);
            if (!shared)
                XFreeColors(dpy, cmap, &e->pixel, 1, 0);
            if (e->button)
                swatches.push_back(e->button);
            XtFree(reinterpret_cast<char*>(e));
            e = next;
        }
    }
    retire_swatches(swatches.data(), static_cast<Cardinal>(swatches.size()));
    list->anchor->next = nullptr;
    colour_count(list) = 0;
    list->foregroundEntry = nullptr;
    list->backgroundEntry = nullptr;
    fit_entry_box(list, 0);
}

void release_transparent_cell(ColorList* list)
{
    if (!list || list->transparentPixel == 0)
        return;
    Display* dpy = app().display;
    Colormap cmap = DefaultColormap(dpy, DefaultScreen(dpy));
    Pixel cell = list->transparentPixel;
    // Every drawing made or read takes a transparent cell of its own; the
    // program's transparent pixel must not be left naming a cell that goes
    // back to the colormap, so it falls back to the widgets' background,
    // which is what the next drawing starts from anyway.
    if (cell == res().background) {
        Pixel fallback = widget_background(list->entryBox);
        if (fallback == cell)
            return;
        res().background = fallback;
    }
    {
        ErrorTrap trap(dpy);
        XFreeColors(dpy, cmap, &cell, 1, 0);
    }
    list->transparentPixel = 0;
}

int load_color_list(Widget dialog, const DrawingXpmInfo* table)
{
    ColorList* list = color_list_of_dialog(dialog);
    if (!list || !list->anchor)
        return 1;
    // A reused drawing loads into the list of its previous image.
    if (colour_count(list) > 0 || list->anchor->next)
        free_all_colors(list);

    Pixel p = widget_background(dialog);
    // Only a new drawing has no table. A file whose every colour is
    // transparent has a table without a counted colour: its pixels hold the
    // transparent cell the read made, which must become this list's
    // transparent entry, or the image would lose its transparency on save
    // and that cell would never be given back.
    bool fromFile = table && (table->colourCount > 0 || table->tableCount > 0) && table->pixels;
    if (!fromFile) {
        res().background = p;
        add_color(list, p, p, 1);
        ColorEntry* white = add_color(list, app().whitePixel, app().whitePixel, 1);
        list->backgroundEntry = white;
        ColorEntry* black = add_color(list, app().blackPixel, app().blackPixel, 1);
        list->foregroundEntry = black;
        if (!black || !list->backgroundEntry)
            return 1;
        apply_entries_to_gcs(list);
        return 0;
    }

    // The dialog background always comes first and stands for transparent;
    // a file's own "None" colour is then just one of the colours below.
    if (list->swatchesMade)
        begin_swatch_batch();
    add_color(list, p, p, 0);
    for (unsigned i = 0; i < table->colourCount; i++) {
        const XpmColor* c = table->colours ? table->colours[i] : nullptr;
        add_color(list, table->pixels[i], bw_mapping(c ? c->m_color : nullptr, p), 0);
    }
    if (list->swatchesMade)
        end_swatch_batch(list, colour_count(list));
    ColorEntry* first = list->anchor->next;
    if (!first)
        return 1;
    list->backgroundEntry = first;
    list->foregroundEntry = first->next ? first->next : first;
    apply_entries_to_gcs(list);
    return 0;
}

void make_list_swatches(ColorList* list)
{
    if (!list || !list->anchor || list->swatchesMade)
        return;
    list->swatchesMade = true;
    // As a load makes them: in list order, managed together, the last
    // one given the focus.
    begin_swatch_batch();
    ColorEntry* e = list->anchor->next;
    for (unsigned long i = 0; e && i < colour_count(list); i++, e = e->next)
        e->button = make_swatch_button(list, e);
    end_swatch_batch(list, colour_count(list));
}

void choose_color_entry(ColorList* list, ColorEntry* entry)
{
    if (!color_list_in_use(list))
        return;
    bool background = background_well_selected(list);
    if (!entry)
        entry = background ? list->backgroundEntry : list->foregroundEntry;
    if (!entry)
        return;
    if (background) {
        list->backgroundEntry = entry;
        set_gc_foreground(list->backgroundGC, entry->pixel);
    } else {
        list->foregroundEntry = entry;
        set_gc_foreground(list->foregroundGC, entry->pixel);
    }
    if (list->selectedWell)
        draw_swatch(list->selectedWell, entry->pixel, entry->mapsTo);
    load_color_editor_if_open(list, entry);
}
