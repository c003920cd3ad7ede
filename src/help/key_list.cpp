// Laying out the key list.
#include "help/key_list.h"

#include <algorithm>

namespace {

std::string trim(const std::string& s)
{
    size_t b = s.find_first_not_of(" \t");
    if (b == std::string::npos)
        return "";
    return s.substr(b, s.find_last_not_of(" \t") - b + 1);
}

}  // namespace

std::string readable_keys(const std::string& acceleratorText, const std::string& accelerator)
{
    std::string text = trim(acceleratorText);
    if (!text.empty())
        return text;
    // Only the first of several bindings; "Ctrl Shift<Key>plus" -> "Ctrl+Shift+plus".
    std::string a = trim(accelerator.substr(0, accelerator.find(',')));
    std::string out;
    for (size_t i = 0; i < a.size(); i++) {
        if (a.compare(i, 5, "<Key>") == 0) {
            if (!out.empty() && out.back() != '+')
                out += '+';
            i += 4;
        } else if (a[i] == ' ') {
            if (!out.empty() && out.back() != '+')
                out += '+';
        } else {
            out += a[i];
        }
    }
    return out;
}

std::string format_key_list(const std::string& heading, const std::vector<KeyEntry>& entries)
{
    size_t width = 0;
    for (const KeyEntry& e : entries)
        width = std::max(width, e.keys.size());
    if (width == 0)
        return "";
    std::string out = heading + "\n\n";
    for (const KeyEntry& e : entries) {
        if (e.keys.empty())
            continue;
        out += "  " + e.keys + std::string(width - e.keys.size() + 4, ' ') + e.where + "\n";
    }
    return out;
}
