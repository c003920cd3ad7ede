// Font names as the server lists them, taken apart into the fields the font
// chooser browses by, their ordering, and the choices the chooser derives
// from a sorted list: distinct foundries, families and sizes, the weights
// and slants on offer, and the pattern that loads the choice.
#pragma once

#include <string>
#include <vector>

// Foundry under which names that are not XLFD names are listed.
inline constexpr const char* MISC_FOUNDRY = "misc fonts";

struct FontRecord {
    std::string name;      // the server's full name
    std::string foundry;   // XLFD field 1, or MISC_FOUNDRY
    std::string family;    // XLFD field 2, or the full name
    std::string size;      // XLFD field 7 (pixel size); empty when not XLFD
    bool xlfd;             // false: size, weight and slant are absent
    char weight;           // first letter of XLFD field 3, or 0
    char slant;            // first letter of XLFD field 4, or 0
};

// Takes a name apart. A name counts as XLFD only when it begins with '-'
// and has all fourteen fields; anything else is listed whole under
// MISC_FOUNDRY, so that it can still be loaded by its full name.
FontRecord parse_font_name(const char* name);

// The chooser's order: foundry, family, pixel size as a number, weight
// letter, slant letter. Negative, zero or positive as for qsort.
int compare_font_records(const FontRecord& a, const FontRecord& b);

// Parses and sorts a list of names (null entries are skipped).
std::vector<FontRecord> sorted_font_records(const std::vector<const char*>& names);

// Distinct values in list order, from a sorted list.
std::vector<std::string> distinct_foundries(const std::vector<FontRecord>& fonts);
std::vector<std::string> distinct_families(const std::vector<FontRecord>& fonts, const std::string& foundry);
std::vector<std::string> distinct_sizes(const std::vector<FontRecord>& fonts, const std::string& foundry,
                                        const std::string& family);

// The five style toggles, in this order.
enum FontStyle { STYLE_MEDIUM, STYLE_BOLD, STYLE_ROMAN, STYLE_ITALIC, STYLE_OBLIQUE, STYLE_COUNT };

struct StyleToggles {
    bool set[STYLE_COUNT];
    bool sensitive[STYLE_COUNT];
};

// Which styles exist at the chosen size: from the first record of the
// foundry, then of the family, then of the size, every record while the
// size stays the same (records of a following family of the same size
// count too). Returns false when no record has that foundry, family and
// size; all styles are then unavailable.
bool styles_offered(const std::vector<FontRecord>& fonts, const std::string& foundry, const std::string& family,
                    const std::string& size, bool offered[STYLE_COUNT]);

// Brings the set toggles onto available ones after their sensitivity has
// changed: a weight and a slant are always set, and a set style that is
// not offered moves to one that is, when there is one.
void repair_style_toggles(StyleToggles* t);

// Sets the weight and the slant toggles to the font's own, each where it
// is offered; a letter with no toggle, or one not offered, leaves its row
// as it is.
void choose_styles_of(const FontRecord& font, StyleToggles* t);

// The name to load for a choice: the full name under MISC_FOUNDRY, else an
// XLFD pattern with the weight ("medium", "bold" or empty) and the slant
// ("i", "o", "r" or empty) of the set and sensitive toggles.
std::string font_pattern(const std::string& foundry, const std::string& family, const std::string& size,
                         const StyleToggles& t);

// The record the chooser shows for a font known by its full name (the
// FONT property of a loaded font, whatever its case): the record of that
// very name, else the first with its foundry, family, pixel size, weight
// and slant, else a name listed whole (an alias such as "fixed"). -1 when
// the lists hold nothing of it.
int listed_font_index(const std::vector<FontRecord>& fonts, const std::string& fullName);

// Ascent plus descent plus a tenth of it, for line spacing.
int font_line_height(int ascent, int descent);
