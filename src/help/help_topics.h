// Which help topic a widget belongs to: the nearest widget up the tree that
// the table below names, or the menu item's own topic.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

// The topic id of `w` or of its nearest ancestor that has one; empty when
// none has (a shell alone, say).
std::string topic_of_widget(Widget w);
