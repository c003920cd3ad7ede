// The window's side of the hooks record: how the menus, the cursor and the
// title follow what lower code reports.
#pragma once

// Fills the hooks record. Start-up calls it before the first drawing opens.
void install_window_hooks();
