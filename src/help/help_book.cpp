// Parsing the help book and finding a topic, falling back up the ids.
#include "help/help_book.h"

#include <cctype>
#include <unordered_set>

namespace {

bool valid_id(const std::string& id)
{
    if (id.empty() || id.front() == '.' || id.back() == '.')
        return false;
    char last = 0;
    for (char c : id) {
        bool ok = std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || c == '.';
        if (!ok || (c == '.' && last == '.'))
            return false;
        last = c;
    }
    return true;
}

std::string trim(const std::string& s)
{
    size_t b = s.find_first_not_of(" \t");
    if (b == std::string::npos)
        return "";
    size_t e = s.find_last_not_of(" \t\r");
    return s.substr(b, e - b + 1);
}

void finish_body(HelpTopic& t, std::vector<std::string>& lines)
{
    while (!lines.empty() && trim(lines.back()).empty())
        lines.pop_back();
    size_t first = 0;
    while (first < lines.size() && trim(lines[first]).empty())
        first++;
    t.body.clear();
    for (size_t i = first; i < lines.size(); i++) {
        if (i > first)
            t.body += '\n';
        t.body += lines[i];
    }
    lines.clear();
}

}  // namespace

std::string parent_topic_id(const std::string& id)
{
    if (id.empty() || id == "index")
        return "";
    size_t dot = id.rfind('.');
    return dot == std::string::npos ? "index" : id.substr(0, dot);
}

int topic_depth(const std::string& id)
{
    int depth = 0;
    for (char c : id)
        depth += c == '.';
    return depth;
}

int parse_help_book(const std::string& text, HelpBook* book, std::string* error)
{
    HelpBook out;
    std::vector<std::string> lines;
    std::unordered_set<std::string> seen;
    int number = 0;
    auto fail = [&](const std::string& why) {
        if (error)
            *error = why;
        return number;
    };
    size_t pos = 0;
    while (pos < text.size()) {
        size_t nl = text.find('\n', pos);
        std::string line = text.substr(pos, nl == std::string::npos ? std::string::npos : nl - pos);
        pos = nl == std::string::npos ? text.size() : nl + 1;
        number++;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty() && line[0] == '#')
            continue;
        if (line.rfind("@@", 0) == 0) {
            line.erase(0, 1);
        } else if (!line.empty() && line[0] == '@') {
            if (!out.topics.empty())
                finish_body(out.topics.back(), lines);
            std::string rest = trim(line.substr(1));
            size_t space = rest.find_first_of(" \t");
            std::string id = rest.substr(0, space);
            std::string title = space == std::string::npos ? "" : trim(rest.substr(space));
            if (!valid_id(id))
                return fail("bad topic id \"" + id + "\"");
            if (!seen.insert(id).second)
                return fail("topic \"" + id + "\" given twice");
            if (title.empty())
                return fail("topic \"" + id + "\" has no title");
            out.topics.push_back(HelpTopic{id, title, ""});
            continue;
        }
        if (out.topics.empty()) {
            if (trim(line).empty())
                continue;
            return fail("text before the first topic");
        }
        lines.push_back(line);
    }
    if (!out.topics.empty())
        finish_body(out.topics.back(), lines);
    if (book)
        *book = std::move(out);
    return 0;
}

const HelpTopic* exact_topic(const HelpBook& book, const std::string& id)
{
    for (const HelpTopic& t : book.topics)
        if (t.id == id)
            return &t;
    return nullptr;
}

const HelpTopic* find_topic(const HelpBook& book, const std::string& id)
{
    for (std::string at = id; !at.empty(); at = parent_topic_id(at))
        if (const HelpTopic* t = exact_topic(book, at))
            return t;
    return nullptr;
}
