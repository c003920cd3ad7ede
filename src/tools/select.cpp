// The selection tool. For now it answers only the palette's events;
// making, moving and transforming selections come later.
#include "app/draw.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

void select_input(Widget w, Drawing* d, XEvent* event)
{
    palette_event(w, d, event, TOOL_SELECT);
}

void select_motion(Widget, Drawing*, XEvent*) {}
