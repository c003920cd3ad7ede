// What the code below the window tells the window when something it shows
// has changed: the menus, the cursor and the title are the window's, so a
// tool or a view says what happened through this record and never reaches
// for a menu item itself. app/ fills the record at start-up; an entry left
// empty (as in tests of the lower layers alone) is simply not called.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

// The tool cursors, made at start-up and named by the tool table.
enum CursorIndex { CURSOR_CROSSHAIR, CURSOR_ERASER, CURSOR_TEXT, CURSOR_PENCIL, CURSOR_BUCKET, CURSOR_COUNT };

// The window's two-state items that lower code also changes: a view shown
// or hidden by its own Close button, or reset with the drawing.
enum class WindowToggle { SmallView, BwView, DrawFilled };

struct WindowHooks {
    // d->undoAvailable changed.
    void (*undo_changed)(Drawing* d);
    // A selection was made or dropped.
    void (*selection_changed)(Drawing* d);
    // d->zoom changed.
    void (*zoom_changed)(Drawing* d);
    // A toggle's state changed other than through its menu item.
    void (*toggle_changed)(Drawing* d, WindowToggle which, bool on);
    // d->name changed.
    void (*name_changed)(Drawing* d);
    // The canvas areas are to show this cursor (a CursorIndex).
    void (*show_cursor)(Drawing* d, int cursor);
    // d->width or d->height changed (a resize or scale, or its undo).
    void (*size_changed)(Drawing* d);
    // A view painted in like the canvas (the actual-size view, built when
    // first shown) has its drawing area now.
    void (*view_area_made)(Drawing* d, Widget area);
};

WindowHooks& window_hooks();

// The calls lower code makes; each does nothing while its hook is empty.
void tell_undo_changed(Drawing* d);
void tell_selection_changed(Drawing* d);
void tell_zoom_changed(Drawing* d);
void tell_toggle_changed(Drawing* d, WindowToggle which, bool on);
void tell_name_changed(Drawing* d);
void tell_cursor(Drawing* d, int cursor);
void tell_size_changed(Drawing* d);
void tell_view_area_made(Drawing* d, Widget area);
