// The tool table and the contract every tool follows.
//
// Handlers receive (widget, drawing, event). Event types 2 (KeyPress),
// 4 (ButtonPress), 5 (ButtonRelease) and 6 (MotionNotify) are real input
// with x and y already in image pixels; the synthetic types below come from
// the palette and the Undo command.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

enum ToolEvent {
    TOOL_CREATED = 2000,
    TOOL_SELECTED = 2001,
    TOOL_DESELECTED = 2002,
    TOOL_UNDO = 2003,
};

enum ToolIndex {
    TOOL_SELECT, TOOL_LINE, TOOL_PENCIL, TOOL_FILL, TOOL_ERASER,
    TOOL_ALPHA, TOOL_RECT, TOOL_OVAL, TOOL_HOTSPOT,
};

using ToolHandler = void (*)(Widget w, Drawing* d, XEvent* event);

struct ToolIcon {
    int width, height;
    const unsigned char* bits;   // XBM order
};

struct ToolRow {
    ToolHandler input;
    ToolHandler motion;
    int cursor;
    int reserved;
    const char* name;
    const ToolIcon* icon;
};

extern const ToolRow toolTable[];
extern const int toolCount;   // 9

// Sends a synthetic tool event (2000..2003) to the drawing's current tool,
// or to tool `tool` when it is not negative.
void send_tool_event(Drawing* d, Widget w, int type, int tool = -1);
