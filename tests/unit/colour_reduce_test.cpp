// Colour reduction: colours that fit stay exact, a reduction fits the target and maps every colour, weight decides
// where the palette goes, and the error is well under that of an even grid of the same size.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "imageops/colour_reduce.h"

namespace {

// A photo-like picture: two smooth gradients meeting, w x h pixels, every pixel its own colour index.
std::vector<Rgb8> gradient_picture(int w, int h)
{
    std::vector<Rgb8> px;
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++) {
            double u = double(x) / (w - 1), v = double(y) / (h - 1);
            px.push_back({uint8_t(40 + 200 * u * v), uint8_t(220 * (1 - u) + 30 * v), uint8_t(60 + 150 * v * v)});
        }
    return px;
}

std::vector<Rgb8> apply(const ColourReduction& r, size_t n)
{
    std::vector<Rgb8> out;
    for (size_t i = 0; i < n; i++)
        out.push_back(r.palette.at(r.mapping.at(i)));
    return out;
}

}  // namespace

TEST(ColourReduce, FittingColoursStayExact)
{
    std::vector<Rgb8> c{{1, 2, 3}, {200, 100, 0}, {1, 2, 3}, {9, 9, 9}};
    ColourReduction r = reduce_colours(c, {5, 0, 1, 7}, 3);
    ASSERT_EQ(r.mapping.size(), c.size());
    EXPECT_EQ(r.palette.size(), 3u) << "three distinct colours, one of them twice";
    EXPECT_EQ(apply(r, c.size()), c) << "every colour kept as it was";
}

TEST(ColourReduce, GradientFitsTargetWithSmallError)
{
    const int w = 64, h = 48;
    std::vector<Rgb8> px = gradient_picture(w, h);
    std::vector<uint64_t> weights(px.size(), 1);
    for (unsigned target : {16u, 120u}) {
        ColourReduction r = reduce_colours(px, weights, target);
        ASSERT_EQ(r.mapping.size(), px.size());
        EXPECT_LE(r.palette.size(), target);
        EXPECT_GE(r.palette.size(), target * 9 / 10) << "the palette is used, not left half empty";
        std::set<uint32_t> distinct;
        for (Rgb8 p : r.palette)
            distinct.insert(uint32_t(p.r) << 16 | p.g << 8 | p.b);
        EXPECT_EQ(distinct.size(), r.palette.size()) << "no colour twice";
        double error = mean_colour_error(px, apply(r, px.size()));

        // An even grid of about as many colours, each pixel to its nearest level per channel.
        int levels = int(std::cbrt(double(target)));
        std::vector<Rgb8> grid;
        auto q = [&](uint8_t v) { return uint8_t(std::lround(std::round(v * (levels - 1) / 255.0) * 255.0 / (levels - 1))); };
        for (Rgb8 p : px)
            grid.push_back({q(p.r), q(p.g), q(p.b)});
        EXPECT_LT(error, mean_colour_error(px, grid) / 4) << target << " colours";
        // The gradient is a surface of about 200 x 220 in RGB: tiled evenly by `target` cells, a pixel lies some 0.38
        // cell widths from its cell's centre on average.
        EXPECT_LT(error, 0.42 * std::sqrt(200.0 * 220.0 / target)) << target << " colours";
    }
}

TEST(ColourReduce, WeightPullsThePalette)
{
    // Two tight groups; nine in ten pixels are one colour of the first group, which must survive exactly, and a
    // colour no pixel uses still maps to its nearest palette colour.
    std::vector<Rgb8> c{{10, 10, 10}, {14, 10, 10}, {10, 14, 10}, {240, 240, 240}, {236, 240, 240}, {0, 0, 255}};
    std::vector<uint64_t> w{900, 10, 10, 40, 40, 0};
    ColourReduction r = reduce_colours(c, w, 2);
    ASSERT_EQ(r.palette.size(), 2u);
    EXPECT_EQ(r.palette[r.mapping[0]], (Rgb8{10, 10, 10}));
    EXPECT_EQ(r.mapping[1], r.mapping[0]);
    EXPECT_EQ(r.mapping[3], r.mapping[4]);
    EXPECT_NE(r.mapping[0], r.mapping[3]);
    EXPECT_EQ(r.mapping[5], r.mapping[0]) << "pure blue is nearer the dark group";
}
