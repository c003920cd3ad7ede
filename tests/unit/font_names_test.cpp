// Font names taken apart, ordered and turned into the chooser's lists,
// style toggles and load patterns.
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

}  // namespace

// XLFD fields come from between the dashes (empty fields included); names
// that are not whole XLFD names go under "misc fonts" with their full name.
TEST(FontNames, ParsesXlfdAndOtherNames)
{
    FontRecord r = parse_font_name("-misc-fixed-bold-r-semicondensed--13-120-75-75-c-60-iso8859-1");
    EXPECT_TRUE(r.xlfd);
    EXPECT_EQ(r.foundry, "misc");
    EXPECT_EQ(r.family, "fixed");
    EXPECT_EQ(r.size, "13");
    EXPECT_EQ(r.weight, 'b');
    EXPECT_EQ(r.slant, 'r');

    FontRecord empty = parse_font_name("--open look cursor--------------");
    EXPECT_TRUE(empty.xlfd);
    EXPECT_EQ(empty.foundry, "");
    EXPECT_EQ(empty.family, "open look cursor");
    EXPECT_EQ(empty.weight, 0);

    for (const char* odd : {"cursor", "-truncated-name-bold", "", "6x13"}) {
        FontRecord m = parse_font_name(odd);
        EXPECT_FALSE(m.xlfd) << odd;
        EXPECT_EQ(m.foundry, MISC_FOUNDRY) << odd;
        EXPECT_EQ(m.family, odd);
        EXPECT_EQ(m.size, "");
        EXPECT_EQ(m.weight, 0);
    }
    EXPECT_EQ(parse_font_name(nullptr).family, "");
}

// Sorted by foundry, family, numeric size, weight, slant; the lists hold
// each value once; sizes follow the family.
TEST(FontNames, OrderAndDistinctLists)
{
    std::vector<const char*> names = {
        "-b-sans-medium-r-normal--12-0-0-0-p-0-iso8859-1",
        "-b-sans-bold-r-normal--10-0-0-0-p-0-iso8859-1",
        "cursor",
        "-a-mono-medium-r-normal--10-0-0-0-c-0-iso8859-1",
        "-b-sans-medium-i-normal--8-0-0-0-p-0-iso8859-1",
        "-b-sans-medium-r-normal--8-0-0-0-p-0-iso8859-1",
        "-b-serif-medium-r-normal--10-0-0-0-p-0-iso8859-1",
        nullptr,
    };
    std::vector<FontRecord> fonts = sorted_font_records(names);
    ASSERT_EQ(fonts.size(), 7u);
    EXPECT_EQ(fonts[0].family, "mono");
    EXPECT_EQ(fonts[1].size, "8");
    EXPECT_EQ(fonts[1].slant, 'i') << "at the same size and weight, italic before roman";
    EXPECT_EQ(fonts[2].size, "8");
    EXPECT_EQ(fonts[3].size, "10") << "numeric, not string order";
    EXPECT_EQ(fonts[4].size, "12");
    EXPECT_EQ(fonts[6].foundry, MISC_FOUNDRY) << "'m' after 'b'";

    EXPECT_EQ(distinct_foundries(fonts), (std::vector<std::string>{"a", "b", MISC_FOUNDRY}));
    EXPECT_EQ(distinct_families(fonts, "b"), (std::vector<std::string>{"sans", "serif"}));
    EXPECT_EQ(distinct_sizes(fonts, "b", "sans"), (std::vector<std::string>{"8", "10", "12"}));
    EXPECT_TRUE(distinct_sizes(fonts, MISC_FOUNDRY, "cursor").empty());
    EXPECT_TRUE(distinct_families(fonts, "nobody").empty());
}

// The styles offered at a size, including the next family's fonts of the
// same size; a missing size offers nothing.
TEST(FontNames, StylesOffered)
{
    std::vector<FontRecord> fonts = sorted_font_records({
        "-x-boldonly-bold-r-normal--10-0-0-0-p-0-iso8859-1",
        "-x-boldonly-bold-o-normal--12-0-0-0-p-0-iso8859-1",
        "-x-next-medium-i-normal--12-0-0-0-p-0-iso8859-1",
    });
    bool offered[STYLE_COUNT];
    ASSERT_TRUE(styles_offered(fonts, "x", "boldonly", "10", offered));
    EXPECT_TRUE(offered[STYLE_BOLD]);
    EXPECT_FALSE(offered[STYLE_MEDIUM]);
    EXPECT_TRUE(offered[STYLE_ROMAN]);
    EXPECT_FALSE(offered[STYLE_ITALIC]);

    ASSERT_TRUE(styles_offered(fonts, "x", "boldonly", "12", offered));
    EXPECT_TRUE(offered[STYLE_MEDIUM]) << "the following family of the same size counts";
    EXPECT_TRUE(offered[STYLE_ITALIC]);
    EXPECT_TRUE(offered[STYLE_OBLIQUE]);

    EXPECT_FALSE(styles_offered(fonts, "x", "boldonly", "99", offered));
    EXPECT_FALSE(offered[STYLE_BOLD]);
}

// Unset radio boxes get Medium and Italic; an unavailable choice moves to
// an available one in the fixed order, or stays when none is.
TEST(FontNames, RepairStyleToggles)
{
    StyleToggles t = toggles({}, {STYLE_MEDIUM, STYLE_BOLD, STYLE_ROMAN, STYLE_ITALIC, STYLE_OBLIQUE});
    repair_style_toggles(&t);
    EXPECT_TRUE(t.set[STYLE_MEDIUM] && t.set[STYLE_ITALIC]);

    t = toggles({STYLE_MEDIUM, STYLE_ITALIC}, {STYLE_BOLD, STYLE_OBLIQUE});
    repair_style_toggles(&t);
    EXPECT_TRUE(t.set[STYLE_BOLD] && !t.set[STYLE_MEDIUM]) << "a bold-only family switches to Bold";
    EXPECT_TRUE(t.set[STYLE_OBLIQUE] && !t.set[STYLE_ITALIC]) << "Italic falls to Oblique without Roman";

    t = toggles({STYLE_BOLD, STYLE_ROMAN}, {STYLE_MEDIUM, STYLE_ITALIC, STYLE_OBLIQUE});
    repair_style_toggles(&t);
    EXPECT_TRUE(t.set[STYLE_MEDIUM]);
    EXPECT_TRUE(t.set[STYLE_OBLIQUE] && !t.set[STYLE_ROMAN]) << "Roman prefers Oblique";

    t = toggles({STYLE_MEDIUM, STYLE_OBLIQUE}, {STYLE_ROMAN, STYLE_ITALIC});
    repair_style_toggles(&t);
    EXPECT_TRUE(t.set[STYLE_ITALIC] && !t.set[STYLE_OBLIQUE]) << "Oblique prefers Italic";
    EXPECT_TRUE(t.set[STYLE_MEDIUM]) << "nothing to move a weight to: it stays";

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
