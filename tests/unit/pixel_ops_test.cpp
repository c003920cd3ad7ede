// Selection transforms on plain pixel buffers.
#include <gtest/gtest.h>

#include "imageops/pixel_ops.h"

namespace {

PixelBuffer numbered(int w, int h)
{
    PixelBuffer b(w, h);
    for (int i = 0; i < w * h; i++)
        b.pixels[static_cast<size_t>(i)] = static_cast<unsigned long>(i + 10);
    return b;
}

}  // namespace

// A quarter turn is counter-clockwise, swaps the size, and four give back
// the original.
TEST(PixelOps, RotateQuarter)
{
    PixelBuffer src = numbered(3, 2);   // 10 11 12 / 13 14 15
    PixelBuffer r = rotate_quarter(src);
    ASSERT_EQ(r.width, 2);
    ASSERT_EQ(r.height, 3);
    // The top row becomes the left column read from the bottom up.
    EXPECT_EQ(r.at(0, 2), 10u);
    EXPECT_EQ(r.at(0, 1), 11u);
    EXPECT_EQ(r.at(0, 0), 12u);
    EXPECT_EQ(r.at(1, 0), 15u);
    EXPECT_EQ(r.at(1, 2), 13u);
    PixelBuffer back = rotate_quarter(rotate_quarter(rotate_quarter(r)));
    EXPECT_EQ(back.width, 3);
    EXPECT_EQ(back.pixels, src.pixels);
}

// Flips mirror one axis and undo themselves.
TEST(PixelOps, Flips)
{
    PixelBuffer src = numbered(3, 2);
    PixelBuffer h = flip_horizontal(src);
    EXPECT_EQ(h.at(0, 0), 12u);
    EXPECT_EQ(h.at(2, 1), 13u);
    EXPECT_EQ(flip_horizontal(h).pixels, src.pixels);
    PixelBuffer v = flip_vertical(src);
    EXPECT_EQ(v.at(0, 0), 13u);
    EXPECT_EQ(v.at(2, 1), 12u);
    EXPECT_EQ(flip_vertical(v).pixels, src.pixels);
    PixelBuffer empty;
    EXPECT_EQ(rotate_quarter(empty).pixels.size(), 0u);
}

TEST(PixelOps, InvertSwapsSetAndClear)
{
    PixelBuffer b(3, 1);
    b.pixels = {0, 1, 7};
    invert_bits(b);
    EXPECT_EQ(b.pixels, (std::vector<unsigned long>{1, 0, 0}));
}

// Trim finds the box of non-background pixels; background only gives none.
TEST(PixelOps, TrimBox)
{
    PixelBuffer b(6, 5);
    for (auto& v : b.pixels)
        v = 4;
    Box none = trim_box(b, 4);
    EXPECT_EQ(none.width, 0);
    EXPECT_EQ(none.height, 0);
    b.set(2, 3, 9);
    Box one = trim_box(b, 4);
    EXPECT_EQ(one.x, 2);
    EXPECT_EQ(one.y, 3);
    EXPECT_EQ(one.width, 1);
    EXPECT_EQ(one.height, 1);
    b.set(5, 0, 0);
    b.set(0, 4, 1);
    Box all = trim_box(b, 4);
    EXPECT_EQ(all.x, 0);
    EXPECT_EQ(all.y, 0);
    EXPECT_EQ(all.width, 6);
    EXPECT_EQ(all.height, 5);
}
