// Formats from resources can be wrong; a mismatched conversion must never reach printf with arguments it does not
// have, nor may "%ls" (a wide string) or a width asking for gigabytes of text.
#include <gtest/gtest.h>

#include "core/safe_format.h"

TEST(SafeFormat, MatchingFormatsAreUsedAndWrongOnesFallBack)
{
    EXPECT_EQ(format_int("Untitled", 3, "Untitled"), "Untitled");
    EXPECT_EQ(format_int("Untitled %d", 3, "Untitled"), "Untitled 3");
    EXPECT_EQ(format_int("Untitled %s", 3, "Untitled %d"), "Untitled 3") << "a %s would read a bad pointer";
    EXPECT_EQ(format_int2("Width - %d, Height - %d", 32, 16, "x"), "Width - 32, Height - 16");
    EXPECT_EQ(format_int2("%s by %s", 32, 16, "%d x %d"), "32 x 16");
    EXPECT_EQ(format_str("Can't open the file %s.", "a.xpm", "%s"), "Can't open the file a.xpm.");
    EXPECT_EQ(format_str("Bad %d", "a.xpm", "Bad %s"), "Bad a.xpm");
    EXPECT_EQ(format_str(nullptr, "a", "[%s]"), "[a]");
    EXPECT_EQ(format_str("Overwrite %ls?", "a.xpm", "Overwrite %s?"), "Overwrite a.xpm?");
    EXPECT_EQ(format_str("%999999999s", "a.xpm", "[%s]"), "[a.xpm]");
    EXPECT_EQ(format_int2("Width - %0999999999d", 1, 2, "%d x %d"), "1 x 2");
    EXPECT_EQ(format_int("%d%n", 1, "[%d]"), "[1]") << "%n writes through a pointer";
    EXPECT_EQ(format_str("trailing %", "a", "[%s]"), "[a]");
}
