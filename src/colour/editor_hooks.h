// What the colour list dialog asks of the colour editor: opening it on an
// entry (EditColor, double clicks) and following the chosen colour while
// it is open.
#pragma once

struct ColorList;
struct ColorEntry;

void open_color_editor(ColorList* list, ColorEntry* entry);
// Loads `entry` into the editor when the editor exists and is managed.
void load_color_editor_if_open(ColorList* list, ColorEntry* entry);
