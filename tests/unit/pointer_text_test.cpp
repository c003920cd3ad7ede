// The pointer readout's text: X's 16-bit channels rounded to "#rrggbb", the symbolic name after the colour,
// transparency written as XPM writes it, and the rubber band's size.
#include <gtest/gtest.h>

#include "app/pointer_text.h"

TEST(PointerText, ColoursNamesAndSelection)
{
    EXPECT_EQ(rgb_hex(0xffff, 0x0000, 0x8080), "#ff0080");
    // A byte b is the channel b * 0x101: values between round to the nearest byte, not down.
    EXPECT_EQ(rgb_hex(0x12ff, 0x3480, 0x567f), "#133456");
    EXPECT_EQ(rgb_hex(0x0080, 0xff7f, 0x7fff), "#00ff7f");

    PointerSample red{3, 7, false, 0xffff, 0, 0, nullptr};
    EXPECT_EQ(pointer_text(red), "X - 3, Y - 7  #ff0000");
    red.name = "";
    EXPECT_EQ(pointer_text(red), "X - 3, Y - 7  #ff0000");
    red.name = "accent";
    EXPECT_EQ(pointer_text(red), "X - 3, Y - 7  #ff0000 accent");
    PointerSample clear{0, 511, true, 0xffff, 0xffff, 0xffff, "mask"};
    EXPECT_EQ(pointer_text(clear), "X - 0, Y - 511  None mask");

    EXPECT_EQ(selection_text(5, 1), "Selection - 5 x 1");
}
