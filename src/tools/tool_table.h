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

// How a stroke is made undoable, by the input layer before the tool sees
// its press, so that every tool that changes the image at a press captures
// undo the same way and at the same moment.
enum class UndoCapture : unsigned char {
    ByTool,          // the tool captures undo itself (select, text)
    Commit,          // every press commits the image; its release offers undo
    CommitOnImage,   // the same, but a press beside the image changes nothing
    OnImage,         // a press on the image offers undo at its release; the
                     // tool keeps what it changes itself (the hotspot)
};

// How Undo takes a stroke back.
enum class UndoRestore : unsigned char {
    ByTool,       // the tool's handler gets TOOL_UNDO
    WholeImage,   // the whole image comes back as it was at the press
};

struct ToolRow {
    ToolHandler input;
    ToolHandler motion;
    int cursor;
    int reserved;
    const char* name;
    const ToolIcon* icon;
    UndoCapture capture;
    UndoRestore restore;
};

extern const ToolRow toolTable[];
extern const int toolCount;   // 9

// The drawing's current tool's row, or null.
const ToolRow* current_tool_row(const Drawing* d);

// Sends a synthetic tool event (2000..2003) to the drawing's current tool,
// or to tool `tool` when it is not negative.
void send_tool_event(Drawing* d, Widget w, int type, int tool = -1);
