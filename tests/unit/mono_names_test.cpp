// The black-and-white names of an XPM colour table: read from the monochrome ("m") keys, closed up over the
// transparent colours that libXpm gives no pixel, and written back.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "files/mono_names.h"

namespace {

// The names as strings, "-" where none is stored.
std::vector<std::string> names_of(const MonoNaming& n)
{
    std::vector<std::string> out;
    for (const char* s : n.names)
        out.push_back(s ? s : "-");
    return out;
}

}  // namespace

// Absent reads as white; "None", "black" and "white" anywhere in the key count; an unknown key keeps the name before.
TEST(MonoNames, OneKey)
{
    EXPECT_STREQ(mono_name_of(nullptr, "b"), "w");
    EXPECT_STREQ(mono_name_of("None", "w"), "None");
    EXPECT_STREQ(mono_name_of("xNonex", "w"), "None");
    EXPECT_STREQ(mono_name_of("black", "w"), "b");
    EXPECT_STREQ(mono_name_of("white", "b"), "w");
    EXPECT_STREQ(mono_name_of("gray50", "b"), "b");
    EXPECT_STREQ(mono_name_of("gray50", "None"), "None");
}

// Without a transparent colour every record keeps its own name and counts; an unknown first key reads as absent.
TEST(MonoNames, TableWithoutTransparentColour)
{
    MonoNaming n = mono_names_of_table({"black", nullptr, "gray", "white"}, {"#000000", "#FFFFFF", "#808080", "red"});
    EXPECT_EQ(names_of(n), (std::vector<std::string>{"b", "w", "w", "w"}));
    EXPECT_EQ(n.colourCount, 4u);
    EXPECT_FALSE(n.hasTransparent);
    EXPECT_EQ(names_of(mono_names_of_table({"gray", "black"}, {"#111111", "#222222"})),
              (std::vector<std::string>{"w", "b"}));
    EXPECT_TRUE(mono_names_of_table({}, {}).names.empty());
}

// The names close up over transparent colours wherever they stand ("None" in any case, or containing it), so that
// each sits beside its colour's pixel; the records left at the end have none, and only the others count.
TEST(MonoNames, TableClosesUpOverTransparentColours)
{
    MonoNaming first = mono_names_of_table({"None", "black", "white"}, {"None", "#000000", "#FFFFFF"});
    EXPECT_EQ(names_of(first), (std::vector<std::string>{"b", "w", "-"}));
    EXPECT_EQ(first.colourCount, 2u);
    EXPECT_TRUE(first.hasTransparent);

    MonoNaming middle =
        mono_names_of_table({"black", nullptr, "white", "black"}, {"#000000", "none", "#FFFFFF", "xNonex"});
    EXPECT_EQ(names_of(middle), (std::vector<std::string>{"b", "w", "-", "-"}));
    EXPECT_EQ(middle.colourCount, 2u);

    MonoNaming only = mono_names_of_table({nullptr}, {"None"});
    EXPECT_EQ(names_of(only), (std::vector<std::string>{"-"}));
    EXPECT_EQ(only.colourCount, 0u);
}

// The anchor, which stands for the transparent colour, is always written "None"; white is tested before black.
TEST(MonoNames, WrittenNames)
{
    EXPECT_STREQ(written_mono_name(true, true, false), "None");
    EXPECT_STREQ(written_mono_name(false, true, true), "white");
    EXPECT_STREQ(written_mono_name(false, false, true), "black");
    EXPECT_STREQ(written_mono_name(false, false, false), "None");
}
