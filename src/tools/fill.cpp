// The fill tool. For now it answers only the palette's events; the seed
// fill comes later.
#include "app/draw.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

void fill_input(Widget w, Drawing* d, XEvent* event)
{
    palette_event(w, d, event, TOOL_FILL);
}
