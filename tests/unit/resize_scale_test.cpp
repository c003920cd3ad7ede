// Resize and scale of a whole picture on plain buffers, the hotspot through both, and the dialogs' size fields.
#include <gtest/gtest.h>

#include <tuple>

#include "imageops/resize_scale.h"

using Pixels = std::vector<unsigned long>;

namespace {

// A w x h picture whose pixel (x, y) is 10 * y + x + 1, so that every value says where it came from.
PixelBuffer numbered(int w, int h)
{
    PixelBuffer b(w, h);
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++)
            b.set(x, y, 10UL * y + x + 1);
    return b;
}

auto xy(Point p) { return std::make_tuple(p.x, p.y); }

}  // namespace

// Extending by one of each anchor class puts the old 2 x 2 picture in that corner, edge middle or centre and fills
// the rest with the background; cropping keeps the part at the anchor. A picture that cannot be centred exactly
// leans left and up.
TEST(ResizeScale, ResizeAboutEachAnchorClass)
{
    const unsigned long B = 99;
    PixelBuffer src = numbered(2, 2);   // 1 2 / 11 12
    PixelBuffer tl = resize_pixels(src, 3, 3, anchor_of_index(0), B);
    EXPECT_EQ(std::tie(tl.width, tl.height), std::make_tuple(3, 3));
    EXPECT_EQ(tl.pixels, (Pixels{1, 2, B, 11, 12, B, B, B, B}));
    EXPECT_EQ(resize_pixels(src, 4, 4, anchor_of_index(4), B).pixels,
              (Pixels{B, B, B, B, B, 1, 2, B, B, 11, 12, B, B, B, B, B}));
    EXPECT_EQ(resize_pixels(src, 3, 2, anchor_of_index(5), B).pixels, (Pixels{B, 1, 2, B, 11, 12}))
        << "right edge, middle row";
    EXPECT_EQ(resize_pixels(src, 3, 3, anchor_of_index(8), B).pixels, (Pixels{B, B, B, B, 1, 2, B, 11, 12}));
    EXPECT_EQ(resize_pixels(src, 3, 3, anchor_of_index(4), B).pixels, (Pixels{1, 2, B, 11, 12, B, B, B, B}))
        << "an odd extra pixel goes right and down";

    PixelBuffer big = numbered(5, 4);
    EXPECT_EQ(resize_pixels(big, 2, 2, anchor_of_index(0), B).pixels, (Pixels{1, 2, 11, 12}));
    EXPECT_EQ(resize_pixels(big, 2, 2, anchor_of_index(8), B).pixels, (Pixels{24, 25, 34, 35}));
    EXPECT_EQ(resize_pixels(big, 3, 2, anchor_of_index(4), B).pixels, (Pixels{12, 13, 14, 22, 23, 24}));
    EXPECT_EQ(resize_pixels(big, 2, 3, anchor_of_index(7), B).pixels, (Pixels{13, 14, 23, 24, 33, 34}))
        << "bottom edge: crops from the top; the odd column goes from the left, as the picture leans left";
    PixelBuffer mixed = resize_pixels(big, 7, 2, anchor_of_index(2), B);   // wider but shorter, top right
    EXPECT_EQ(mixed.pixels, (Pixels{B, B, 1, 2, 3, 4, 5, B, B, 11, 12, 13, 14, 15}));
}

// Nearest neighbour: doubling repeats every pixel twice each way, halving takes one of each 2 x 2 block, and an
// uneven factor still only uses old values in order.
TEST(ResizeScale, ScaleUpAndDownExactPixels)
{
    PixelBuffer src = numbered(2, 2);
    PixelBuffer up = scale_pixels(src, 4, 4);
    EXPECT_EQ(up.pixels, (Pixels{1, 1, 2, 2, 1, 1, 2, 2, 11, 11, 12, 12, 11, 11, 12, 12}));
    PixelBuffer down = scale_pixels(numbered(4, 4), 2, 2);
    EXPECT_EQ(down.pixels, (Pixels{12, 14, 32, 34}));
    EXPECT_EQ(scale_pixels(numbered(3, 1), 7, 1).pixels, (Pixels{1, 1, 2, 2, 2, 3, 3}));
    EXPECT_EQ(scale_pixels(numbered(5, 1), 2, 1).pixels, (Pixels{2, 4}));
    PixelBuffer same = numbered(3, 2);
    EXPECT_EQ(scale_pixels(same, 3, 2).pixels, same.pixels) << "the same size changes nothing";
}

// The hotspot moves with a resize and is dropped when cropped away; a scale takes it along by the factor; none
// stays none.
TEST(ResizeScale, HotspotMovedScaledOrDropped)
{
    EXPECT_EQ(xy(resize_hotspot({1, 1}, 4, 4, 6, 6, anchor_of_index(8))), std::make_tuple(3, 3));
    EXPECT_EQ(xy(resize_hotspot({1, 1}, 4, 4, 6, 6, anchor_of_index(0))), std::make_tuple(1, 1));
    EXPECT_EQ(xy(resize_hotspot({3, 0}, 4, 4, 2, 2, anchor_of_index(2))), std::make_tuple(1, 0));
    EXPECT_EQ(xy(resize_hotspot({0, 3}, 4, 4, 2, 2, anchor_of_index(2))), std::make_tuple(-1, -1));
    EXPECT_EQ(xy(resize_hotspot({3, 3}, 4, 4, 3, 3, anchor_of_index(0))), std::make_tuple(-1, -1));
    EXPECT_EQ(xy(resize_hotspot({-1, -1}, 4, 4, 8, 8, anchor_of_index(4))), std::make_tuple(-1, -1));
    EXPECT_EQ(xy(scale_hotspot({1, 3}, 4, 4, 8, 2)), std::make_tuple(2, 1));
    EXPECT_EQ(xy(scale_hotspot({3, 3}, 4, 4, 3, 3)), std::make_tuple(2, 2));
    EXPECT_EQ(xy(scale_hotspot({-1, -1}, 4, 4, 8, 8)), std::make_tuple(-1, -1));
}

// Size fields take whole numbers between blanks, from 1 to the limit; proportions round to the nearest.
TEST(ResizeScale, SizeFieldsAndProportions)
{
    int v = 0;
    EXPECT_EQ(parse_size_field(" 512 ", 512, &v), SizeField::Ok);
    EXPECT_EQ(v, 512);
    EXPECT_EQ(parse_size_field("513", 512, &v), SizeField::TooLarge);
    EXPECT_EQ(parse_size_field("99999999999999999999", 512, &v), SizeField::TooLarge);
    EXPECT_EQ(parse_size_field("0", 512, &v), SizeField::TooSmall);
    for (const char* bad : {"", " ", "12x", "x", "-3", "1 2", "+4"})
        EXPECT_EQ(parse_size_field(bad, 512, &v), SizeField::NotNumber) << '"' << bad << '"';
    EXPECT_EQ(v, 512) << "a refused field leaves the value alone";
    EXPECT_EQ(proportional_side(32, 16, 10), 20);
    EXPECT_EQ(proportional_side(5, 16, 10), 3);
    EXPECT_EQ(proportional_side(1, 100, 3), 1);
}
