// The widget-tree browser "SumDialog", titled "Widget Tree": a diagnostic
// for whoever carries the program on.
#pragma once

#include <X11/Intrinsic.h>

// Opens the browser on `start` (a widget of a drawing window or a dialog).
void show_widget_tree(Widget start);
