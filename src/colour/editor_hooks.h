// What the colour list asks of the colour editor: opening it on an entry
// (EditColor, double clicks), following the chosen colour while it is
// open, and letting go of a list whose colours are being freed.
#pragma once

struct ColorList;
struct ColorEntry;

void open_color_editor(ColorList* list, ColorEntry* entry);
// Loads `entry` into the editor when the editor exists and is managed.
void load_color_editor_if_open(ColorList* list, ColorEntry* entry);
// Called before `list` frees its entries and cells: an editor working on
// it closes and never writes those cells again.
void forget_color_editor_list(ColorList* list);
