// Widgets to help topics. Most parts are found by name (and, where a name is
// used twice, by their parent's name); menu items and cascades follow one
// rule, "menu.<menu>.<item>", so a new item needs only its topic in the book.
#include "help/help_topics.h"

#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>
#include <Xm/Xm.h>

#include <cctype>
#include <cstring>

namespace {

struct TopicRow {
    const char* name;     // the widget's name
    const char* parent;   // its parent's name, or null for any parent
    const char* topic;
};

/* widget name           parent              topic */
const TopicRow topicTable[] = {
    // The drawing window
    {"Window",               nullptr,            "window"},
    {"menuBar",              nullptr,            "menu"},
    {"tools",                "drawForm",         "tool"},
    {"lineWidthRC",          nullptr,            "linewidth"},
    {"patterns",             "drawForm",         "patterns"},
    {"drawFrame",            nullptr,            "canvas"},
    {"status",               nullptr,            "status"},
    {"orvlogo",              nullptr,            "status"},
    // Its views and colours
    {"SmallView Dialog",     nullptr,            "actualsize"},
    {"BWView Dialog",        nullptr,            "bwview"},
    {"ColorListDialog",      nullptr,            "colors"},
    {"Foreground_Button",    nullptr,            "colors.wells"},
    {"Background_Button",    nullptr,            "colors.wells"},
    {"ColorListRCW",         nullptr,            "colors.swatches"},
    {"New",                  "ColorListDialog",  "colors.new"},
    {"EditColor",            "ColorListDialog",  "colors.edit"},
    {"ColorPickerDialog",    nullptr,            "editor"},
    {"frame",                "main",             "editor.wheel"},
    {"grabButton",           nullptr,            "editor.grab"},
    {"colorSample",          nullptr,            "editor.bw"},
    {"blackSample",          nullptr,            "editor.bw"},
    {"whiteSample",          nullptr,            "editor.bw"},
    {"transparentSample",    nullptr,            "editor.bw"},
    {"Undo",                 "ColorPickerDialog", "editor.undo"},
    // Dialogs shared by every drawing
    {"New Dialog",           nullptr,            "new"},
    {"ConfirmClose",         nullptr,            "close"},
    {"Resize Dialog",        nullptr,            "resize"},
    {"Scale Dialog",         nullptr,            "scale"},
    {"File Dialog",          nullptr,            "files"},
    {"Warning Dialog",       nullptr,            "files"},
    {"Font Dialog",          nullptr,            "fonts"},
    {"FontFoundrySW",        nullptr,            "fonts.lists"},
    {"FontFamilySW",         nullptr,            "fonts.lists"},
    {"FontSizeSW",           nullptr,            "fonts.lists"},
    {"Weight",               nullptr,            "fonts.style"},
    {"Slants",               nullptr,            "fonts.style"},
    {"Error",                nullptr,            "messages"},
    {"Error Dialog",         nullptr,            "messages"},
    {"Show Version",         nullptr,            "version"},
    {"Help Dialog",          nullptr,            "help"},
    {"SumDialog",            nullptr,            "widgettree"},
};

std::string lower(const char* s)
{
    std::string out;
    for (; s && *s; s++)
        out += static_cast<char>(std::tolower(static_cast<unsigned char>(*s)));
    return out;
}

bool is_menu_pane(Widget w)
{
    if (!w || !XmIsRowColumn(w))
        return false;
    unsigned char type = 0;
    XtVaGetValues(w, XmNrowColumnType, &type, nullptr);
    return type == XmMENU_PULLDOWN || type == XmMENU_BAR;
}

// Items of a pulldown take their topic from the pane's name (the pane is
// named after its menu); cascades of the bar from their own.
std::string menu_topic(Widget w)
{
    if (is_menu_pane(w)) {
        unsigned char type = 0;
        XtVaGetValues(w, XmNrowColumnType, &type, nullptr);
        if (type == XmMENU_PULLDOWN)
            return "menu." + lower(XtName(w));
    }
    Widget parent = XtParent(w);
    if (!is_menu_pane(parent))
        return "";
    unsigned char type = 0;
    XtVaGetValues(parent, XmNrowColumnType, &type, nullptr);
    if (type == XmMENU_BAR)
        return "menu." + lower(XtName(w));
    return "menu." + lower(XtName(parent)) + "." + lower(XtName(w));
}

const char* table_topic(Widget w)
{
    const char* name = XtName(w);
    const char* parentName = XtParent(w) ? XtName(XtParent(w)) : "";
    for (const TopicRow& row : topicTable)
        if (std::strcmp(row.name, name) == 0 && (!row.parent || std::strcmp(row.parent, parentName) == 0))
            return row.topic;
    return nullptr;
}

}  // namespace

std::string topic_of_widget(Widget w)
{
    for (; w; w = XtParent(w)) {
        // Each tool of the palette has a topic named after it.
        if (XtParent(w) && std::strcmp(XtName(XtParent(w)), "tools") == 0 && XmIsToggleButton(w))
            return "tool." + lower(XtName(w));
        if (const char* topic = table_topic(w))
            return topic;
        std::string menu = menu_topic(w);
        if (!menu.empty())
            return menu;
    }
    return "";
}
