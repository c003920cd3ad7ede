// One level of undo: the drawing's undo state, which the Edit menu's Undo
// item follows, and the Undo command, which is always the current tool's
// business.
#include "canvas/undo.h"

#include "canvas/image_size.h"
#include "canvas/image_store.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "tools/tool_table.h"

void set_undo_available(Drawing* d, bool on)
{
    if (!d)
        return;
    // Whatever comes after a change of size, its undo is no longer the last.
    drop_size_undo(d);
    d->undoAvailable = on;
    tell_undo_changed(d);
}

int cmd_undo(Drawing* d, XEvent* event, Boolean set)
{
    if (!d)
        return 1;
    if (undo_image_size(d))
        return 0;
    const ToolRow* row = current_tool_row(d);
    if (row && row->restore == UndoRestore::WholeImage)
        undo_whole_image(d);
    else
        send_tool_event(d, d->activeArea, TOOL_UNDO);
    return 0;
}

void undo_whole_image(Drawing* d)
{
    restore_corners(d, 0, 0, d->width, d->height);
    refresh_corners(d, 0, 0, d->width, d->height);
    set_undo_available(d, false);
}
