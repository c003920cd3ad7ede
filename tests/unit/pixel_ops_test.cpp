// Selection transforms on plain pixel buffers.
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "imageops/pixel_ops.h"

using Pixels = std::vector<unsigned long>;

// On 10 11 12 / 13 14 15: a quarter turn is counter-clockwise and swaps the size; flips mirror one axis.
TEST(PixelOps, RotateAndFlips)
{
    PixelBuffer src(3, 2);
    src.pixels = {10, 11, 12, 13, 14, 15};
    PixelBuffer r = rotate_quarter(src);
    EXPECT_EQ(std::tie(r.width, r.height), std::make_tuple(2, 3));
    EXPECT_EQ(r.pixels, (Pixels{12, 15, 11, 14, 10, 13}));
    EXPECT_EQ(flip_horizontal(src).pixels, (Pixels{12, 11, 10, 15, 14, 13}));
    EXPECT_EQ(flip_vertical(src).pixels, (Pixels{13, 14, 15, 10, 11, 12}));
    EXPECT_TRUE(rotate_quarter(PixelBuffer()).pixels.empty());
}

// Invert swaps set and clear bits; trim boxes what is not background, and finds nothing in background only.
TEST(PixelOps, InvertAndTrim)
{
    PixelBuffer b(3, 1);
    b.pixels = {0, 1, 7};
    invert_bits(b);
    EXPECT_EQ(b.pixels, (Pixels{1, 0, 0}));
    auto trim = [](const PixelBuffer& p) {
        Box t = trim_box(p, 4);
        return std::make_tuple(t.x, t.y, t.width, t.height);
    };
    PixelBuffer t(6, 5);
    std::fill(t.pixels.begin(), t.pixels.end(), 4);
    EXPECT_EQ(std::get<2>(trim(t)) + std::get<3>(trim(t)), 0) << "an empty box";
    t.set(2, 3, 9);
    EXPECT_EQ(trim(t), std::make_tuple(2, 3, 1, 1));
    t.set(5, 0, 0);
    t.set(0, 4, 1);
    EXPECT_EQ(trim(t), std::make_tuple(0, 0, 6, 5));
}
