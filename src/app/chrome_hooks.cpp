// The answers of the drawing window to what tools, views and files report
// through the hooks record: each turns a change of the drawing into the
// menu items, cursor or title that show it.
#include "app/chrome_hooks.h"

#include "app/commands.h"
#include "app/cursors.h"
#include "app/draw.h"
#include "app/menus.h"
#include "app/pointer_readout.h"
#include "app/session.h"
#include "app/status.h"
#include "core/window_hooks.h"

namespace {

void zoom_changed(Drawing* d)
{
    update_zoom_sensitivity(d);
    // A session brings a drawing back at the zoom it had.
    update_restart_command(d);
}

void toggle_changed(Drawing* d, WindowToggle which, bool on)
{
    /* what changed              its menu item */
    static const struct {
        WindowToggle which;
        int command;
    } items[] = {
        {WindowToggle::SmallView,  CMD_SHOW_SMALL_VIEW},
        {WindowToggle::BwView,     CMD_SHOW_BW_VIEW},
        {WindowToggle::DrawFilled, CMD_DRAW_FILLED},
    };
    for (const auto& item : items)
        if (item.which == which)
            show_toggle_state(d, item.command, on);
}

}  // namespace

void install_window_hooks()
{
    WindowHooks& h = window_hooks();
    h.undo_changed = update_undo_sensitivity;
    h.selection_changed = update_selection_sensitivity;
    h.zoom_changed = zoom_changed;
    h.toggle_changed = toggle_changed;
    h.name_changed = show_name;
    h.show_cursor = set_cursor;
    h.size_changed = update_status;
    h.view_area_made = follow_pointer_in;
}
