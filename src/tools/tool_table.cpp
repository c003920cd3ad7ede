// The tool table in palette order, and the dispatch of synthetic tool
// events. Adding a tool means one row here and one unit of its own.
#include "tools/tool_table.h"

#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "tools/geometry.h"
#include "tools/tool_handlers.h"

const ToolRow toolTable[] = {
    // input        motion         cursor            reserved name       icon                      undo captured                undone
    {select_input,  select_motion, CURSOR_CROSSHAIR, 0,       "select",  &toolIcons[TOOL_SELECT],  UndoCapture::ByTool,        UndoRestore::ByTool},
    {line_input,    line_motion,   CURSOR_CROSSHAIR, 0,       "line",    &toolIcons[TOOL_LINE],    UndoCapture::Commit,        UndoRestore::WholeImage},
    {pencil_input,  pencil_motion, CURSOR_PENCIL,    0,       "pencil",  &toolIcons[TOOL_PENCIL],  UndoCapture::Commit,        UndoRestore::WholeImage},
    {fill_input,    nullptr,       CURSOR_BUCKET,    0,       "fill",    &toolIcons[TOOL_FILL],    UndoCapture::CommitOnImage, UndoRestore::WholeImage},
    {eraser_input,  eraser_motion, CURSOR_ERASER,    0,       "eraser",  &toolIcons[TOOL_ERASER],  UndoCapture::Commit,        UndoRestore::WholeImage},
    {text_input,    nullptr,       CURSOR_TEXT,      0,       "alpha",   &toolIcons[TOOL_ALPHA],   UndoCapture::ByTool,        UndoRestore::ByTool},
    {rect_input,    rect_motion,   CURSOR_CROSSHAIR, 0,       "rect",    &toolIcons[TOOL_RECT],    UndoCapture::Commit,        UndoRestore::ByTool},
    {oval_input,    oval_motion,   CURSOR_CROSSHAIR, 0,       "oval",    &toolIcons[TOOL_OVAL],    UndoCapture::Commit,        UndoRestore::ByTool},
    {hotspot_input, nullptr,       CURSOR_CROSSHAIR, 0,       "hotspot", &toolIcons[TOOL_HOTSPOT], UndoCapture::OnImage,       UndoRestore::ByTool},
};
const int toolCount = sizeof toolTable / sizeof toolTable[0];

const ToolRow* current_tool_row(const Drawing* d)
{
    if (!d || d->currentTool < 0 || d->currentTool >= toolCount)
        return nullptr;
    return &toolTable[d->currentTool];
}

void send_tool_event(Drawing* d, Widget w, int type, int tool)
{
    if (!d)
        return;
    int t = tool >= 0 ? tool : d->currentTool;
    if (t < 0 || t >= toolCount || !toolTable[t].input)
        return;
    XEvent ev{};
    ev.type = type;
    ev.xany.display = app().display;
    ev.xany.window = d->activeWindow;
    toolTable[t].input(w, d, &ev);
}

bool palette_event(Widget w, Drawing* d, XEvent* event, int tool)
{
    switch (event->type) {
    case TOOL_CREATED:
        if (w)
            set_tool_picture(w, tool);
        return true;
    case TOOL_SELECTED:
        tell_cursor(d, toolTable[tool].cursor);
        return true;
    case TOOL_DESELECTED:
        set_undo_available(d, false);
        return true;
    default:
        return false;
    }
}

Point event_point(const XEvent* event)
{
    switch (event->type) {
    case ButtonPress:
    case ButtonRelease:
        return Point{event->xbutton.x, event->xbutton.y};
    case MotionNotify:
        return Point{event->xmotion.x, event->xmotion.y};
    case KeyPress:
    case KeyRelease:
        return Point{event->xkey.x, event->xkey.y};
    default:
        return Point{0, 0};
    }
}

unsigned event_state(const XEvent* event)
{
    switch (event->type) {
    case ButtonPress:
    case ButtonRelease:
        return event->xbutton.state;
    case MotionNotify:
        return event->xmotion.state;
    case KeyPress:
    case KeyRelease:
        return event->xkey.state;
    default:
        return 0;
    }
}
