// The colour editor: one dialog for the whole program that edits a colour
// of a drawing in its read/write cell, so every pixel of that colour
// changes while the user drags. Opened from the colour list dialog
// through colour/editor_hooks.h.
#pragma once

#include <X11/Intrinsic.h>

struct ColorList;
struct ColorEntry;

struct ColorEditor {
    int mode;                 // row of editorModeTable; always the HSV row
    Widget modeForm;
    Widget whiteSample, blackSample, colorSample, transparentSample;
    Widget mapLabel;          // "BWLabel"
    XColor saved;             // the cell as loaded; written back by Undo
    Pixel mapping;            // black-and-white mapping now chosen
    Pixel savedMapping;       // as loaded; restored by Undo
    ColorList* list;          // none once the drawing's colours are gone
};

// The state of the HSV mode: the wheel, the value scale and the edited cell.
struct HsvState {
    Widget hueSat;
    Widget valueScale;
    int hue, saturation, value;
    int red, green, blue;
    int markerX, markerY;
    Display* display;
    Colormap colormap;
    Pixel hueSatCells[36];    // only the first 28 paint the wheel
    Boolean haveCells;
    Pixel editedPixel;
    Boolean live;             // editedPixel still belongs to a loaded entry
    GC gc;
};

// One row per editing mode: make its form inside the frame, set the edited
// colour from a pixel, show the mode for the pixel being edited.
struct EditorMode {
    Widget (*create)(Widget frame);
    void (*set)(Pixel pixel);
    void (*show)(Pixel pixel);
};
extern const EditorMode editorModeTable[3];

// The HSV row's operations and state (hsv_mode.cpp).
Widget hsv_create(Widget frame);
void hsv_set(Pixel pixel);
void hsv_show(Pixel pixel);
HsvState* hsv_state();
// Stops writing to the edited cell (its entry is gone).
void hsv_release_cell();

// The editor record and its dialog "ColorPickerDialog"; null until the
// editor is first opened.
ColorEditor* color_editor();
Widget color_editor_dialog();

void load_color_editor(ColorList* list, ColorEntry* entry);
// Chooses the black-and-white mapping of `sample` (one of the three
// mapping samples) for the selected well's entry.
void select_editor_mapping(ColorEditor* ed, Widget sample);
// Tells the drawing of the edited colour that it changed.
void notify_colour_edited();
