// Taking server font names apart and deriving the font chooser's lists and
// choices from them. Pure: no display.
#include "fonts/font_names.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int XLFD_DASHES = 14;

// The text between the n-th and (n+1)-th '-' of the name.
std::string field(const std::string& name, int n)
{
    size_t start = 0;
    for (int i = 0; i < n; i++) {
        start = name.find('-', start);
        if (start == std::string::npos)
            return {};
        start++;
    }
    size_t end = name.find('-', start);
    return name.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

bool same_choice(const FontRecord& r, const std::string& foundry, const std::string& family)
{
    return r.foundry == foundry && r.family == family;
}

template <typename Key>
void push_distinct(std::vector<std::string>* out, const Key& value)
{
    if (out->empty() || out->back() != value)
        out->push_back(value);
}

bool on(const StyleToggles& t, int style) { return t.set[style] && t.sensitive[style]; }

// Moves a set style that is no longer offered to the first offered one of
// `order`; it stays when none is.
void move_to_offered(StyleToggles* t, int from, std::initializer_list<int> order)
{
    if (!t->set[from] || t->sensitive[from])
        return;
    for (int to : order)
        if (t->sensitive[to]) {
            t->set[from] = false;
            t->set[to] = true;
            return;
        }
}

}  // namespace

FontRecord parse_font_name(const char* name)
{
    FontRecord r{};
    r.name = name ? name : "";
    if (!r.name.empty() && r.name[0] == '-' &&
        std::count(r.name.begin(), r.name.end(), '-') >= XLFD_DASHES) {
        r.xlfd = true;
        r.foundry = field(r.name, 1);
        r.family = field(r.name, 2);
        r.size = field(r.name, 7);
        std::string weight = field(r.name, 3), slant = field(r.name, 4);
        r.weight = weight.empty() ? 0 : weight[0];
        r.slant = slant.empty() ? 0 : slant[0];
        return r;
    }
    r.foundry = MISC_FOUNDRY;
    r.family = r.name;
    return r;
}

int compare_font_records(const FontRecord& a, const FontRecord& b)
{
    if (int c = std::strcmp(a.foundry.c_str(), b.foundry.c_str()))
        return c;
    if (int c = std::strcmp(a.family.c_str(), b.family.c_str()))
        return c;
    // As numbers, so that "8" comes before "10".
    if (int c = std::atoi(a.size.c_str()) - std::atoi(b.size.c_str()))
        return c;
    if (a.weight != b.weight)
        return static_cast<unsigned char>(a.weight) - static_cast<unsigned char>(b.weight);
    return static_cast<unsigned char>(a.slant) - static_cast<unsigned char>(b.slant);
}

std::vector<FontRecord> sorted_font_records(const std::vector<const char*>& names)
{
    std::vector<FontRecord> fonts;
    fonts.reserve(names.size());
    for (const char* n : names)
        if (n)
            fonts.push_back(parse_font_name(n));
    std::stable_sort(fonts.begin(), fonts.end(),
                     [](const FontRecord& a, const FontRecord& b) { return compare_font_records(a, b) < 0; });
    return fonts;
}

std::vector<std::string> distinct_foundries(const std::vector<FontRecord>& fonts)
{
    std::vector<std::string> out;
    for (const FontRecord& r : fonts)
        push_distinct(&out, r.foundry);
    return out;
}

std::vector<std::string> distinct_families(const std::vector<FontRecord>& fonts, const std::string& foundry)
{
    std::vector<std::string> out;
    for (const FontRecord& r : fonts)
        if (r.foundry == foundry)
            push_distinct(&out, r.family);
    return out;
}

std::vector<std::string> distinct_sizes(const std::vector<FontRecord>& fonts, const std::string& foundry,
                                        const std::string& family)
{
    std::vector<std::string> out;
    for (const FontRecord& r : fonts)
        if (same_choice(r, foundry, family) && r.xlfd)
            push_distinct(&out, r.size);
    return out;
}

bool styles_offered(const std::vector<FontRecord>& fonts, const std::string& foundry, const std::string& family,
                    const std::string& size, bool offered[STYLE_COUNT])
{
    std::fill(offered, offered + STYLE_COUNT, false);
    size_t i = 0, n = fonts.size();
    while (i < n && fonts[i].foundry != foundry)
        i++;
    while (i < n && fonts[i].family != family)
        i++;
    while (i < n && fonts[i].size != size)
        i++;
    if (i == n)
        return false;
    // The scan stops on the size alone: a following family of the same
    // size adds its styles too.
    for (; i < n && fonts[i].size == size; i++) {
        switch (fonts[i].weight) {
        case 'm': offered[STYLE_MEDIUM] = true; break;
        case 'b': offered[STYLE_BOLD] = true; break;
        default: break;
        }
        switch (fonts[i].slant) {
        case 'r': offered[STYLE_ROMAN] = true; break;
        case 'i': offered[STYLE_ITALIC] = true; break;
        case 'o': offered[STYLE_OBLIQUE] = true; break;
        default: break;
        }
    }
    return true;
}

void repair_style_toggles(StyleToggles* t)
{
    if (!t->set[STYLE_MEDIUM] && !t->set[STYLE_BOLD])
        t->set[STYLE_MEDIUM] = true;
    if (!t->set[STYLE_ROMAN] && !t->set[STYLE_ITALIC] && !t->set[STYLE_OBLIQUE])
        t->set[STYLE_ITALIC] = true;
    move_to_offered(t, STYLE_MEDIUM, {STYLE_BOLD});
    move_to_offered(t, STYLE_BOLD, {STYLE_MEDIUM});
    // One slant at a time moves; a radio box holds only one set.
    if (t->set[STYLE_ITALIC])
        move_to_offered(t, STYLE_ITALIC, {STYLE_ROMAN, STYLE_OBLIQUE});
    else if (t->set[STYLE_ROMAN])
        move_to_offered(t, STYLE_ROMAN, {STYLE_OBLIQUE, STYLE_ITALIC});
    else
        move_to_offered(t, STYLE_OBLIQUE, {STYLE_ITALIC, STYLE_ROMAN});
}

std::string font_pattern(const std::string& foundry, const std::string& family, const std::string& size,
                         const StyleToggles& t)
{
    if (foundry == MISC_FOUNDRY)
        return family;
    const char* weight = on(t, STYLE_MEDIUM) ? "medium" : on(t, STYLE_BOLD) ? "bold" : "";
    const char* slant = on(t, STYLE_ITALIC) ? "i" : on(t, STYLE_OBLIQUE) ? "o" : on(t, STYLE_ROMAN) ? "r" : "";
    return "-" + foundry + "-" + family + "-" + weight + "-" + slant + "-*-*-" + size + "-*-*-*-*-*-*-*";
}

int font_line_height(int ascent, int descent)
{
    int h = ascent + descent;
    return h + h * 10 / 100;
}

void choose_styles_of(const FontRecord& font, StyleToggles* t)
{
    struct Row {
        char letter;
        int style, first, last;   // the toggle and its radio row
    };
    static const Row rows[] = {
        {'m', STYLE_MEDIUM, STYLE_MEDIUM, STYLE_BOLD},   {'b', STYLE_BOLD, STYLE_MEDIUM, STYLE_BOLD},
        {'r', STYLE_ROMAN, STYLE_ROMAN, STYLE_OBLIQUE},  {'i', STYLE_ITALIC, STYLE_ROMAN, STYLE_OBLIQUE},
        {'o', STYLE_OBLIQUE, STYLE_ROMAN, STYLE_OBLIQUE},
    };
    for (const Row& row : rows) {
        char own = row.style <= STYLE_BOLD ? font.weight : font.slant;
        if (std::tolower(static_cast<unsigned char>(own)) != row.letter || !t->sensitive[row.style])
            continue;
        for (int i = row.first; i <= row.last; i++)
            t->set[i] = i == row.style;
    }
}

int listed_font_index(const std::vector<FontRecord>& fonts, const std::string& fullName)
{
    std::string lower = fullName;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    auto same_name = [&](const FontRecord& r) { return r.name == fullName || r.name == lower; };
    auto found = std::find_if(fonts.begin(), fonts.end(), same_name);
    if (found == fonts.end()) {
        FontRecord wanted = parse_font_name(lower.c_str());
        if (wanted.xlfd)
            found = std::find_if(fonts.begin(), fonts.end(), [&](const FontRecord& r) {
                return r.xlfd && r.foundry == wanted.foundry && r.family == wanted.family && r.size == wanted.size &&
                       r.weight == wanted.weight && r.slant == wanted.slant;
            });
    }
    return found == fonts.end() ? -1 : static_cast<int>(found - fonts.begin());
}
