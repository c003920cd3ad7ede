// The text tool ("alpha"). For now it answers only the palette's events;
// typing text comes later.
#include "app/draw.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

void text_input(Widget w, Drawing* d, XEvent* event)
{
    palette_event(w, d, event, TOOL_ALPHA);
}
