// The XPM monochrome key mapping that decides each colour's black-and-white
// value when a file is loaded.
#include <gtest/gtest.h>

#include "colour/mono_key.h"

// Keys are told apart by their first character alone, and a missing key is
// black: the reader writes abbreviations ("b", "w") and full names alike.
TEST(MonoKey, FirstCharacterDecides)
{
    EXPECT_EQ(classify_mono_key(nullptr), MonoKey::Black) << "absent key";
    EXPECT_EQ(classify_mono_key("b"), MonoKey::Black);
    EXPECT_EQ(classify_mono_key("black"), MonoKey::Black);
    EXPECT_EQ(classify_mono_key("blue"), MonoKey::Black) << "only the first character is read";
    EXPECT_EQ(classify_mono_key("w"), MonoKey::White);
    EXPECT_EQ(classify_mono_key("white"), MonoKey::White);
    EXPECT_EQ(classify_mono_key("wheat"), MonoKey::White);
}

// Anything else (the transparent "None", upper case, an empty string) is
// neither black nor white, so the caller's default (transparent) applies.
TEST(MonoKey, OtherKeysFallToTheDefault)
{
    EXPECT_EQ(classify_mono_key("None"), MonoKey::Other);
    EXPECT_EQ(classify_mono_key("none"), MonoKey::Other);
    EXPECT_EQ(classify_mono_key("Black"), MonoKey::Other) << "the test is case sensitive";
    EXPECT_EQ(classify_mono_key("White"), MonoKey::Other);
    EXPECT_EQ(classify_mono_key(""), MonoKey::Other);
    EXPECT_EQ(classify_mono_key("#Transparent"), MonoKey::Other);
}
