// A drawing's colours: an ordered chain of read/write colour cells, each
// with its black-and-white mapping, and the current foreground/background.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/xpm.h>

struct DrawingXpmInfo;

struct ColorEntry {
    Pixel mapsTo;       // black, white or the list's transparent pixel
    Pixel pixel;        // the anchor keeps the colour count here
    Widget button;      // swatch in the colour list dialog; none for the anchor
    ColorEntry* next;
};

struct ColorList {
    GC foregroundGC;
    GC backgroundGC;
    ColorEntry* foregroundEntry;
    ColorEntry* backgroundEntry;
    Widget foregroundButton;
    Widget backgroundButton;
    Widget selectedWell;
    Widget entryBox;
    void (*colorChanged)(XtPointer);
    Pixel transparentPixel;
    XtPointer colorChangedData;
    ColorEntry* anchor;
    // Whether the entry box holds a swatch for every entry. Swatches are
    // made when the list is first shown, not with every drawing: a file of
    // a hundred colours would otherwise build a hundred buttons that a
    // user who never opens the list never sees. Once shown, a list keeps
    // its swatches up to date as colours come and go.
    bool swatchesMade;
};

// The colour list dialog "ColorListDialog" of a drawing (not managed).
Widget create_color_list_dialog(Widget parent, GC foregroundGC, GC backgroundGC,
                                ColorEntry** anchor, void (*colorChanged)(XtPointer),
                                XtPointer colorChangedData);
ColorList* color_list_of_dialog(Widget dialog);
// Whether the list belongs to a colour drawing. A slot keeps its list when a
// bitmap takes the slot over, but a bitmap has no colours: its list must not
// allocate, choose or edit anything.
bool color_list_in_use(const ColorList* list);
void set_list_gcs(Widget dialog, GC foregroundGC, GC backgroundGC);

// Fills the list from an image's colour table, or with transparent, white
// and black when `table` is null or empty. Returns 0, or 1 when a colour
// cell could not be had.
int load_color_list(Widget dialog, const DrawingXpmInfo* table);

// Returns the new entry, null when no cell could be allocated.
ColorEntry* add_color(ColorList* list, Pixel source, Pixel mapsTo, int allocate);
void free_all_colors(ColorList* list);
// Gives a closed drawing's own transparent cell back to the colormap (the
// list is not used again until it is loaded anew).
void release_transparent_cell(ColorList* list);
// Chooses an entry into the selected well (as a click on its swatch does).
void choose_color_entry(ColorList* list, ColorEntry* entry);
// Makes the swatches of a list about to be shown for the first time.
void make_list_swatches(ColorList* list);

// The black-and-white mapping of an XPM monochrome key.
Pixel bw_mapping(const char* monoKey, Pixel defaultPixel);

// The 18 symbolic colours for reading the program's own XPM pictures.
XpmColorSymbol* symbolic_colors(Widget w, const Pixel* transparent, int* count);
extern XpmColorSymbol symbolicColors[18];

// Opens the colour list dialog of a drawing (View menu); a bitmap has none.
struct Drawing;
ColorList* color_list_of(Drawing* d);
int cmd_show_colors(Drawing* d, XEvent* event, Boolean set);
