#include "help/widget_tree.h"

void show_widget_tree(Widget) {}
