// Font names taken apart, ordered and turned into the chooser's lists, style toggles and load patterns.
#include <gtest/gtest.h>

#include "fonts/font_names.h"

namespace {

StyleToggles toggles(std::initializer_list<int> set, std::initializer_list<int> sensitive)
{
    StyleToggles t{};
    for (int s : set)
        t.set[s] = true;
    for (int s : sensitive)
        t.sensitive[s] = true;
    return t;
}

// "xlfd/foundry/family/size/weight slant", 0 shown as '0'.
std::string fields(const FontRecord& r)
{
    return std::string(r.xlfd ? "xlfd/" : "name/") + r.foundry + "/" + r.family + "/" + r.size + "/" +
           (r.weight ? r.weight : '0') + (r.slant ? r.slant : '0');
}

}  // namespace

// XLFD fields come from between the dashes, empty ones included; names that are not whole XLFD names go under
// "misc fonts" with their full name and no size or style.
TEST(FontNames, ParsesXlfdAndOtherNames)
{
    const std::string misc = std::string("name/") + MISC_FOUNDRY + "/";
    const struct { const char* name; std::string want; } cases[] = {
        {"-misc-fixed-bold-r-semicondensed--13-120-75-75-c-60-iso8859-1", "xlfd/misc/fixed/13/br"},
        {"--open look cursor--------------", "xlfd//open look cursor//00"},
        {"cursor", misc + "cursor//00"}, {"-truncated-name-bold", misc + "-truncated-name-bold//00"},
        {"", misc + "//00"}, {"6x13", misc + "6x13//00"}};
    for (const auto& c : cases)
        EXPECT_EQ(fields(parse_font_name(c.name)), c.want);
    EXPECT_EQ(parse_font_name(nullptr).family, "");
}

// Sorted by foundry, family, numeric size, weight, slant; the lists hold each value once; sizes follow the family.
TEST(FontNames, OrderAndDistinctLists)
{
    std::vector<FontRecord> fonts = sorted_font_records({
        "-b-sans-medium-r-normal--12-0-0-0-p-0-iso8859-1", "-b-sans-bold-r-normal--10-0-0-0-p-0-iso8859-1", "cursor",
        "-a-mono-medium-r-normal--10-0-0-0-c-0-iso8859-1", "-b-sans-medium-i-normal--8-0-0-0-p-0-iso8859-1",
        "-b-sans-medium-r-normal--8-0-0-0-p-0-iso8859-1", "-b-serif-medium-r-normal--10-0-0-0-p-0-iso8859-1", nullptr});
    std::string order;
    for (const FontRecord& f : fonts)
        order += fields(f) + " ";
    EXPECT_EQ(order, "xlfd/a/mono/10/mr xlfd/b/sans/8/mi xlfd/b/sans/8/mr xlfd/b/sans/10/br xlfd/b/sans/12/mr "
                     "xlfd/b/serif/10/mr name/" + std::string(MISC_FOUNDRY) + "/cursor//00 ");
    EXPECT_EQ(distinct_foundries(fonts), (std::vector<std::string>{"a", "b", MISC_FOUNDRY}));
    EXPECT_EQ(distinct_families(fonts, "b"), (std::vector<std::string>{"sans", "serif"}));
    EXPECT_EQ(distinct_sizes(fonts, "b", "sans"), (std::vector<std::string>{"8", "10", "12"}));
    EXPECT_TRUE(distinct_sizes(fonts, MISC_FOUNDRY, "cursor").empty());
}

// The styles offered at a size include the next family's fonts of that size; a missing size offers nothing.
TEST(FontNames, StylesOffered)
{
    std::vector<FontRecord> fonts = sorted_font_records({"-x-boldonly-bold-r-normal--10-0-0-0-p-0-iso8859-1",
                                                         "-x-boldonly-bold-o-normal--12-0-0-0-p-0-iso8859-1",
                                                         "-x-next-medium-i-normal--12-0-0-0-p-0-iso8859-1"});
    auto offered = [&](const char* size) {
        bool on[STYLE_COUNT];
        std::string s = styles_offered(fonts, "x", "boldonly", size, on) ? "" : "none:";
        for (bool b : on)
            s += b ? '1' : '0';
        return s;
    };
    EXPECT_EQ(offered("10"), "01100");   // medium bold roman italic oblique
    EXPECT_EQ(offered("12"), "11011");
    EXPECT_EQ(offered("99"), "none:00000");
}

// Unset radio boxes get Medium and Italic; a bold-only family gets Bold; Italic falls to Oblique without Roman,
// Roman prefers Oblique and Oblique Italic; a weight with nowhere to go stays.
TEST(FontNames, RepairStyleToggles)
{
    const struct { StyleToggles t; int want[2]; } cases[] = {
        {toggles({}, {STYLE_MEDIUM, STYLE_BOLD, STYLE_ROMAN, STYLE_ITALIC, STYLE_OBLIQUE}),
         {STYLE_MEDIUM, STYLE_ITALIC}},
        {toggles({STYLE_MEDIUM, STYLE_ITALIC}, {STYLE_BOLD, STYLE_OBLIQUE}), {STYLE_BOLD, STYLE_OBLIQUE}},
        {toggles({STYLE_BOLD, STYLE_ROMAN}, {STYLE_MEDIUM, STYLE_ITALIC, STYLE_OBLIQUE}),
         {STYLE_MEDIUM, STYLE_OBLIQUE}},
        {toggles({STYLE_MEDIUM, STYLE_OBLIQUE}, {STYLE_ROMAN, STYLE_ITALIC}), {STYLE_MEDIUM, STYLE_ITALIC}}};
    for (const auto& c : cases) {
        StyleToggles t = c.t;
        repair_style_toggles(&t);
        for (int s = 0; s < STYLE_COUNT; s++)
            EXPECT_EQ(t.set[s], s == c.want[0] || s == c.want[1]) << "case " << &c - cases << " style " << s;
    }
}

// Patterns name only set and available styles; misc fonts load by name.
TEST(FontNames, PatternsAndLineHeight)
{
    StyleToggles t = toggles({STYLE_BOLD, STYLE_OBLIQUE}, {STYLE_BOLD, STYLE_OBLIQUE});
    EXPECT_EQ(font_pattern("adobe", "courier", "14", t), "-adobe-courier-bold-o-*-*-14-*-*-*-*-*-*-*");
    t = toggles({STYLE_MEDIUM, STYLE_ROMAN}, {STYLE_BOLD});
    EXPECT_EQ(font_pattern("adobe", "courier", "14", t), "-adobe-courier---*-*-14-*-*-*-*-*-*-*");
    EXPECT_EQ(font_pattern(MISC_FOUNDRY, "cursor", "", t), "cursor");
    EXPECT_EQ(font_line_height(11, 2), 14);
    EXPECT_EQ(font_line_height(30, 10), 44);
}

// The chooser finds the record of a loaded font from its FONT property, which the server gives in mixed case: the
// record of that name, else one of the same foundry, family, size, weight and slant; an alias listed whole is found
// by its name; anything else is not listed.
TEST(FontNames, ListedIndexOfALoadedFont)
{
    std::vector<FontRecord> fonts = sorted_font_records({
        "-arabic-newspaper-medium-r-normal--0-0-100-100-p-0-iso10646-1",
        "-misc-fixed-medium-r-normal--13-120-75-75-c-70-iso8859-1",
        "-misc-fixed-medium-r-semicondensed--13-120-75-75-c-60-iso8859-1",
        "-misc-fixed-bold-r-normal--13-120-75-75-c-70-iso8859-1",
        "fixed",
    });
    auto name_at = [&](int i) { return i < 0 ? std::string("none") : fonts[static_cast<size_t>(i)].name; };
    EXPECT_EQ(name_at(listed_font_index(fonts, "-Misc-Fixed-Medium-R-SemiCondensed--13-120-75-75-C-60-ISO8859-1")),
              "-misc-fixed-medium-r-semicondensed--13-120-75-75-c-60-iso8859-1");
    EXPECT_EQ(name_at(listed_font_index(fonts, "-Misc-Fixed-Bold-R-SemiCondensed--13-120-75-75-C-60-ISO8859-1")),
              "-misc-fixed-bold-r-normal--13-120-75-75-c-70-iso8859-1")
        << "same foundry, family, size, weight and slant";
    EXPECT_EQ(name_at(listed_font_index(fonts, "fixed")), "fixed");
    EXPECT_EQ(listed_font_index(fonts, "-misc-fixed-medium-i-normal--13-120-75-75-c-70-iso8859-1"), -1);
    EXPECT_EQ(listed_font_index(fonts, "cursor"), -1);
}

// The chooser opening on a font sets its own weight and slant where they are offered; a style not offered, or a
// letter with no toggle, leaves that row as it was.
TEST(FontNames, StylesOfAFont)
{
    StyleToggles t = toggles({STYLE_MEDIUM, STYLE_ITALIC}, {STYLE_MEDIUM, STYLE_BOLD, STYLE_ROMAN, STYLE_ITALIC});
    choose_styles_of(parse_font_name("-misc-fixed-bold-r-normal--13-120-75-75-c-70-iso8859-1"), &t);
    EXPECT_TRUE(!t.set[STYLE_MEDIUM] && t.set[STYLE_BOLD] && t.set[STYLE_ROMAN] && !t.set[STYLE_ITALIC]);

    t = toggles({STYLE_MEDIUM, STYLE_ROMAN}, {STYLE_MEDIUM, STYLE_ROMAN});
    choose_styles_of(parse_font_name("-Adobe-Courier-Bold-O-Normal--12-120-75-75-M-70-ISO8859-1"), &t);
    EXPECT_TRUE(t.set[STYLE_MEDIUM] && !t.set[STYLE_BOLD] && t.set[STYLE_ROMAN] && !t.set[STYLE_OBLIQUE])
        << "bold and oblique are not offered";

    t = toggles({STYLE_BOLD, STYLE_ITALIC}, {STYLE_MEDIUM, STYLE_BOLD, STYLE_ROMAN, STYLE_ITALIC});
    choose_styles_of(parse_font_name("-misc-fixed-demibold-x-normal--13-120-75-75-c-70-iso8859-1"), &t);
    EXPECT_TRUE(t.set[STYLE_BOLD] && t.set[STYLE_ITALIC]) << "letters with no toggle";
}
