// Reads every menu item's accelerator and label from the menu bar's
// pulldowns, so the list shows what the running program really binds,
// application defaults and user resources included.
#include "help/help_keys.h"

#include <Xm/CascadeB.h>
#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/RowColumn.h>
#include <Xm/Xm.h>

#include <vector>

#include "help/key_list.h"

namespace {

std::string string_resource(Widget w, const char* name)
{
    XmString s = nullptr;
    XtVaGetValues(w, name, &s, nullptr);
    if (!s)
        return "";
    std::string out;
    if (char* text = static_cast<char*>(XmStringUnparse(s, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0,
                                                        XmOUTPUT_ALL))) {
        out = text;
        XtFree(text);
    }
    XmStringFree(s);   // the label hands out a copy
    return out;
}

std::string label_of(Widget w)
{
    std::string label = string_resource(w, XmNlabelString);
    return label.empty() ? XtName(w) : label;
}

std::vector<Widget> children_of(Widget w)
{
    WidgetList kids = nullptr;
    Cardinal count = 0;
    XtVaGetValues(w, XmNchildren, &kids, XmNnumChildren, &count, nullptr);
    return std::vector<Widget>(kids, kids + count);
}

void collect(Widget pane, const std::string& path, std::vector<KeyEntry>* out)
{
    for (Widget item : children_of(pane)) {
        if (!XtIsManaged(item))
            continue;
        std::string where = path + " > " + label_of(item);
        Widget sub = nullptr;
        if (XmIsCascadeButton(item))
            XtVaGetValues(item, XmNsubMenuId, &sub, nullptr);
        if (sub) {
            collect(sub, where, out);
            continue;
        }
        if (!XmIsLabel(item) && !XmIsLabelGadget(item))
            continue;
        // Labels hand out a fresh copy of the accelerator on every read:
        // two reads that differ are two copies, and both are ours to free.
        char* accelerator = nullptr;
        char* again = nullptr;
        XtVaGetValues(item, XmNaccelerator, &accelerator, nullptr);
        XtVaGetValues(item, XmNaccelerator, &again, nullptr);
        std::string keys = readable_keys(string_resource(item, XmNacceleratorText),
                                         accelerator ? accelerator : "");
        if (accelerator != again) {
            XtFree(accelerator);
            XtFree(again);
        }
        out->push_back(KeyEntry{keys, where});
    }
}

}  // namespace

std::string menu_key_list(Widget menuBar)
{
    if (!menuBar)
        return "";
    std::vector<KeyEntry> entries;
    for (Widget cascade : children_of(menuBar)) {
        Widget sub = nullptr;
        if (!XtIsManaged(cascade) || !XmIsCascadeButton(cascade))
            continue;
        XtVaGetValues(cascade, XmNsubMenuId, &sub, nullptr);
        if (sub)
            collect(sub, label_of(cascade), &entries);
    }
    return format_key_list("Menu keys of this window:", entries);
}
