// Placeholders for canvas and tool pieces still being built.
#include "canvas/image_store.h"
#include "canvas/input.h"
#include "canvas/undo.h"
#include "canvas/views.h"
#include "tools/geometry.h"
#include "tools/palettes.h"
#include "tools/shapes.h"
#include "tools/tool_table.h"

Widget create_canvas(Widget, Drawing*) { return nullptr; }
void create_drawing_gcs(Drawing*) {}
void size_canvas(Drawing*) {}
int create_image(Drawing*, Pixmap) { return 0; }
void refresh_rect(Drawing*, int, int, int, int) {}
void refresh_corners(Drawing*, int, int, int, int) {}
void refresh_region(Drawing*, Region) {}
void commit(Drawing*) {}
void restore_rect(Drawing*, int, int, int, int) {}
void restore_corners(Drawing*, int, int, int, int) {}
void restore_corners_offset(Drawing*, int, int, int, int, int, int) {}
void restore_region(Drawing*, Region) {}
Pixmap snapshot_drawable(Display*, Drawable, GC, unsigned*, unsigned*, unsigned*) { return None; }
void zoom_in(Drawing*, XEvent*) {}
void zoom_out(Drawing*, XEvent*) {}
void layout_canvas(Drawing*) {}
void canvas_input_cb(Widget, XtPointer, XtPointer) {}
void canvas_motion_eh(Widget, XtPointer, XEvent*, Boolean*) {}
void canvas_key_eh(Widget, XtPointer, XEvent*, Boolean*) {}
GC choose_gc(Drawing*, unsigned) { return nullptr; }
void set_undo_sensitive(Drawing*, bool) {}
bool undo_sensitive(Drawing*) { return false; }
int cmd_undo(Drawing*, XEvent*, Boolean) { return 0; }
void create_small_view(Widget, Drawing*) {}
void create_bw_view(Widget, Drawing*) {}
void small_view_update(Drawing*, int, int, int, int) {}
void bw_view_update(Drawing*, int, int, int, int) {}
int cmd_show_small_view(Drawing*, XEvent*, Boolean) { return 0; }
int cmd_show_bw_view(Drawing*, XEvent*, Boolean) { return 0; }
Pixmap render_bw_pixmap(Drawing*) { return None; }
const ToolRow toolTable[1] = {};
const int toolCount = 0;
void send_tool_event(Drawing*, Widget, int, int) {}
const unsigned char patternBits[PATTERN_COUNT][8] = {};
const unsigned lineWidths[5] = {1, 2, 4, 6, 9};
Widget create_tools_box(Widget, Drawing*) { return nullptr; }
Widget create_patterns_box(Widget, Drawing*) { return nullptr; }
Widget create_line_width_box(Widget, Drawing*) { return nullptr; }
GC pattern_gc(int, int) { return nullptr; }
void toggle_changed(Drawing*, int, bool) {}
void reset_tool_state(Drawing*) {}
void select_tool(Drawing*, int) {}
void set_rectangle_filled(Drawing*, bool) {}
void toggle_oval_filled(Drawing*) {}
int cmd_draw_filled(Drawing*, XEvent*, Boolean) { return 0; }
