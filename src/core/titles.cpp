#include "core/titles.h"

#include "core/safe_format.h"

std::string title_name(const std::string& drawingName)
{
    size_t slash = drawingName.rfind('/');
    if (slash == std::string::npos || slash + 1 == drawingName.size())
        return drawingName;
    return drawingName.substr(slash + 1);
}

std::string drawing_window_title(const std::string& drawingName, const std::string& what)
{
    std::string name = title_name(drawingName);
    return what.empty() ? name : name + " - " + what;
}

std::string question_about(const std::string& question, const std::string& drawingName)
{
    std::string name = title_name(drawingName);
    if (format_conversions(question.c_str()) == "s")
        return format_str(question.c_str(), name.c_str(), "%s");
    return name + "\n" + question;
}
