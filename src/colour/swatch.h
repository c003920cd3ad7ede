// The swatch buttons of the colour list dialog and the two wells: drawing a
// colour with its black-and-white strip, and making a swatch for an entry.
#pragma once

#include <X11/Intrinsic.h>

struct ColorList;
struct ColorEntry;

// Paints `colour` with a strip of `mapping` at its right inside the
// button's shadows; does nothing while the button has no window.
void draw_swatch(Widget button, Pixel colour, Pixel mapping);

// A managed "ColorListEntry" drawn button in the list's entry box, holding
// `entry` as its user data: a retired one when the box has any, else a new
// one. Returns null when the list has no entry box.
Widget make_swatch_button(ColorList* list, ColorEntry* entry);

// Puts swatches whose colours are gone aside for the next colours of the
// list: unmanaged, with no entry. They are never destroyed: Motif keeps a
// record for every label-class widget it creates (the class translations
// it saves under the widget) and never removes it, not even when the widget
// is destroyed, so destroying the swatches of every closed drawing and
// making new ones for the next would grow the program by that record for
// every colour of every file opened.
void retire_swatches(WidgetList buttons, Cardinal count);

// Re-packs the entry box into enough columns for `count` swatches.
void fit_entry_box(ColorList* list, unsigned long count);

// Between these two, swatches are made unmanaged and the box is not
// re-packed; the end manages them all at once, packs the box for `count`
// and gives the last the focus: the box ends as one swatch at a time would
// leave it, without laying its children out again for every swatch.
void begin_swatch_batch();
void end_swatch_batch(ColorList* list, unsigned long count);
