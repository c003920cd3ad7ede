// The one hooks record, and the calls through it.
#include "core/window_hooks.h"

WindowHooks& window_hooks()
{
    static WindowHooks hooks{};
    return hooks;
}

void tell_undo_changed(Drawing* d)
{
    if (window_hooks().undo_changed)
        window_hooks().undo_changed(d);
}

void tell_selection_changed(Drawing* d)
{
    if (window_hooks().selection_changed)
        window_hooks().selection_changed(d);
}

void tell_zoom_changed(Drawing* d)
{
    if (window_hooks().zoom_changed)
        window_hooks().zoom_changed(d);
}

void tell_toggle_changed(Drawing* d, WindowToggle which, bool on)
{
    if (window_hooks().toggle_changed)
        window_hooks().toggle_changed(d, which, on);
}

void tell_name_changed(Drawing* d)
{
    if (window_hooks().name_changed)
        window_hooks().name_changed(d);
}

void tell_cursor(Drawing* d, int cursor)
{
    if (window_hooks().show_cursor)
        window_hooks().show_cursor(d, cursor);
}

void tell_size_changed(Drawing* d)
{
    if (window_hooks().size_changed)
        window_hooks().size_changed(d);
}

void tell_view_area_made(Drawing* d, Widget area)
{
    if (window_hooks().view_area_made)
        window_hooks().view_area_made(d, area);
}
