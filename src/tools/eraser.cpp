// The eraser. For now it answers only the palette's events; erasing comes
// later.
#include "app/draw.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

void eraser_input(Widget w, Drawing* d, XEvent* event)
{
    palette_event(w, d, event, TOOL_ERASER);
}

void eraser_motion(Widget, Drawing*, XEvent*) {}
