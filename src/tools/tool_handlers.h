// The handlers each tool unit exports for its row of the tool table, and
// the palette events every tool answers the same way.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;
struct ToolIcon;

void select_input(Widget w, Drawing* d, XEvent* event);
void select_motion(Widget w, Drawing* d, XEvent* event);
void line_input(Widget w, Drawing* d, XEvent* event);
void line_motion(Widget w, Drawing* d, XEvent* event);
void pencil_input(Widget w, Drawing* d, XEvent* event);
void pencil_motion(Widget w, Drawing* d, XEvent* event);
void fill_input(Widget w, Drawing* d, XEvent* event);
void eraser_input(Widget w, Drawing* d, XEvent* event);
void eraser_motion(Widget w, Drawing* d, XEvent* event);
void text_input(Widget w, Drawing* d, XEvent* event);
void rect_input(Widget w, Drawing* d, XEvent* event);
void rect_motion(Widget w, Drawing* d, XEvent* event);
void oval_input(Widget w, Drawing* d, XEvent* event);
void oval_motion(Widget w, Drawing* d, XEvent* event);
void hotspot_input(Widget w, Drawing* d, XEvent* event);

// Icons of the nine tools (tool_icons.cpp), indexed like the table, and the
// filled variants shown while DrawFilled is on.
extern const ToolIcon toolIcons[9];
extern const ToolIcon rectFilledIcon;
extern const ToolIcon ovalFilledIcon;

// Label and select pictures of an icon in the colours of the toggle's
// radio box: label plain, select inverted. Made once per icon and colour
// pair and kept for the program's life.
void icon_pixmaps(Widget toggle, const ToolIcon* icon, Pixmap* label, Pixmap* select);

// Gives a tool's toggle its picture from its row's icon.
void set_tool_picture(Widget toggle, int tool);

// The palette events that every tool answers alike: 2000 gives the toggle
// its picture, 2001 sets the tool's cursor, 2002 withdraws undo. Returns
// true when the event was one of them.
bool palette_event(Widget w, Drawing* d, XEvent* event, int tool);

// Image coordinates of a tool event (button, key or motion).
struct Point;
Point event_point(const XEvent* event);
unsigned event_state(const XEvent* event);
