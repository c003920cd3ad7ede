// One level of undo: the Edit menu's Undo item and the Undo command, which
// is always the current tool's business.
#include "canvas/undo.h"

#include "app/commands.h"
#include "app/menus.h"
#include "canvas/image_store.h"
#include "core/drawing.h"
#include "tools/tool_table.h"

void set_undo_sensitive(Drawing* d, bool on)
{
    if (!d)
        return;
    if (Widget item = menu_item(d, CMD_UNDO))
        XtSetSensitive(item, on ? True : False);
}

bool undo_sensitive(Drawing* d)
{
    if (!d)
        return false;
    Widget item = menu_item(d, CMD_UNDO);
    return item && XtIsSensitive(item);
}

int cmd_undo(Drawing* d, XEvent* event, Boolean set)
{
    if (!d)
        return 1;
    send_tool_event(d, d->activeArea, TOOL_UNDO);
    return 0;
}

void undo_whole_image(Drawing* d)
{
    restore_corners(d, 0, 0, d->width, d->height);
    refresh_corners(d, 0, 0, d->width, d->height);
    set_undo_sensitive(d, false);
}
