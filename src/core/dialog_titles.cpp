#include "core/dialog_titles.h"

#include <Xm/Xm.h>

#include <utility>
#include <vector>

#include "core/titles.h"
#include "core/x_owned.h"

namespace {

// Dialogs are made once per drawing slot and never destroyed: the table
// only grows with the slots, and is never freed.
std::vector<std::pair<Widget, std::string>>& roles()
{
    static auto* table = new std::vector<std::pair<Widget, std::string>>;
    return *table;
}

std::string text_of(XmString s)
{
    if (!s)
        return "";
    char* text = static_cast<char*>(
        XmStringUnparse(s, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0, XmOUTPUT_ALL));
    std::string out = text ? text : "";
    XtFree(text);
    return out;
}

}  // namespace

void remember_dialog_role(Widget dialog, const char* builtIn)
{
    if (!dialog)
        return;
    XmString title = nullptr;
    XtVaGetValues(dialog, XmNdialogTitle, &title, nullptr);
    std::string role = text_of(title);
    XmStringFree(title);
    if (role.empty())
        role = builtIn ? builtIn : "";
    for (auto& [w, r] : roles())
        if (w == dialog) {
            r = role;
            return;
        }
    roles().emplace_back(dialog, role);
}

void title_dialog_for(Widget dialog, const std::string& drawingName)
{
    if (!dialog)
        return;
    std::string role;
    for (const auto& [w, r] : roles())
        if (w == dialog)
            role = r;
    std::string text = drawing_window_title(drawingName, role);
    XmStringPtr title = localized(text.c_str());
    XtVaSetValues(dialog, XmNdialogTitle, title.get(), nullptr);
}
