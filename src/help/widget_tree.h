// The widget-tree browser "SumDialog", titled "Widget Tree": a diagnostic
// for whoever carries the program on.
#pragma once

#include <X11/Intrinsic.h>

// Opens the browser on `start` (a widget of a drawing window or a dialog).
// There is one browser; opened again, it moves to the new widget.
void show_widget_tree(Widget start);

// The browser's dialog (null before its first showing) and the widget it
// shows (null once that widget has been destroyed).
Widget widget_tree_dialog();
Widget widget_tree_current();
