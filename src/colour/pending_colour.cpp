// Placeholders for colour pieces still being built.
#include "colour/color_list.h"
#include "colour/grab.h"
#include "colour/mono_key.h"

Widget create_color_list_dialog(Widget, GC, GC, ColorEntry**, void (*)(XtPointer), XtPointer) { return nullptr; }
ColorList* color_list_of_dialog(Widget) { return nullptr; }
void set_list_gcs(Widget, GC, GC) {}
int load_color_list(Widget, const DrawingXpmInfo*) { return 0; }
ColorEntry* add_color(ColorList*, Pixel, Pixel, int) { return nullptr; }
void free_all_colors(ColorList*) {}
void choose_color_entry(ColorList*, ColorEntry*) {}
Pixel bw_mapping(const char*, Pixel p) { return p; }
XpmColorSymbol* symbolic_colors(Widget, const Pixel*, int* count) { *count = 0; return nullptr; }
ColorList* color_list_of(Drawing*) { return nullptr; }
int cmd_show_colors(Drawing*, XEvent*, Boolean) { return 0; }
MonoKey classify_mono_key(const char*) { return MonoKey::Black; }
unsigned long grab_pixel(Display*) { return 0; }
