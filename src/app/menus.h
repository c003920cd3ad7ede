// The menu bar of a drawing window, built from one table.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

struct MenuEntry {
    const char* name;        // "-..." makes a separator "menuSeparator"
    int command;             // 0 for separators
    int toggle;              // non-zero for a toggle button
    const MenuEntry* submenu;
    int submenuLength;
    int reserved;
};

// Creates the XmMenuBar "menuBar" in the main window, with the Help menu.
Widget build_menu_bar(Widget mainWindow, Drawing* d);

// Selection-dependent items (Cut, Copy, Clear, nudges, transforms) follow
// whether the drawing has a selection; Invert also needs a bitmap.
void update_selection_sensitivity(Drawing* d);

// ZoomIn / ZoomOut / ShowSmallView follow the zoom.
void update_zoom_sensitivity(Drawing* d);

// Undo follows whether the drawing has something to take back.
void update_undo_sensitivity(Drawing* d);

// Sets a toggle item (and the state kept beside it) without running its
// command: the thing it shows has already changed.
void show_toggle_state(Drawing* d, int command, bool on);

// The item widget of a command, or null.
Widget menu_item(Drawing* d, int command);
