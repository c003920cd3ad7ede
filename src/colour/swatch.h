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
// `entry` as its user data. Returns null when the list has no entry box.
Widget make_swatch_button(ColorList* list, ColorEntry* entry);

// Re-packs the entry box into enough columns for `count` swatches.
void fit_entry_box(ColorList* list, unsigned long count);
