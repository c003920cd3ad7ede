// What the widget-tree browser shows of one widget: its name and class, its
// parent, its children and its resources with their values, read from the
// live widget. Reading is safe on every widget of the program: values are
// fetched into buffers of their resource's size, copies the toolkit hands
// out are freed, and colours are asked for under the error trap.
#pragma once

#include <X11/Intrinsic.h>

#include <string>
#include <vector>

struct WidgetSummary {
    std::string name;
    std::string className;
    std::string parent;                   // "name (Class)", empty at the top
    std::vector<Widget> children;         // normal children, then pop-ups
    std::vector<std::string> childLabels; // "name (Class)", pop-ups marked
    std::vector<std::string> resources;   // "name (Type) = value", sorted
    std::vector<std::string> constraints; // the parent's constraints on it
};

// "name (Class)" of a widget.
std::string widget_label(Widget w);

// The value of the widget's resource `r` as text, typed by its type name.
std::string resource_value(Widget w, const XtResource& r);

WidgetSummary summarize_widget(Widget w);
