// The colour editor's integer maths: RGB <-> HSV and the wheel that turns a pointer position into hue and saturation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

#include "colour/hsv.h"

// Primaries, secondaries and greys land exactly on their hue and come back unchanged; hue 360 reads as 0 and
// negative hues fold onto the circle.
TEST(Hsv, ExactColoursAndRoundTrip)
{
    const int cases[][6] = {
        {255, 0, 0, 0, 255, 255},     {0, 255, 0, 120, 255, 255},   {0, 0, 255, 240, 255, 255},
        {255, 255, 0, 60, 255, 255},  {0, 255, 255, 180, 255, 255}, {255, 0, 255, 300, 255, 255},
        {128, 128, 128, 0, 0, 128},   {0, 0, 0, 0, 0, 0},           {128, 0, 0, 0, 255, 128},
    };
    for (const auto& c : cases) {
        Hsv h = rgb_to_hsv({c[0], c[1], c[2]});
        EXPECT_EQ(std::tie(h.hue, h.saturation, h.value), std::tie(c[3], c[4], c[5])) << c[0] << "," << c[1];
        Rgb o = hsv_to_rgb({c[3], c[4], c[5]});
        EXPECT_EQ(std::tie(o.red, o.green, o.blue), std::tie(c[0], c[1], c[2])) << "hue " << c[3];
    }
    EXPECT_EQ(hsv_to_rgb({360, 255, 255}).green, 0);
    EXPECT_EQ(hsv_to_rgb({-60, 255, 255}).blue, 255);
    EXPECT_EQ(hsv_to_rgb({200, 0, 77}).blue, 77) << "no saturation is grey";

    // Over a grid the round trip loses a few steps to truncation, never a sector.
    for (int r = 0; r < 256; r += 15)
        for (int g = 0; g < 256; g += 15)
            for (int b = 0; b < 256; b += 15) {
                Hsv h = rgb_to_hsv({r, g, b});
                ASSERT_TRUE(h.hue >= 0 && h.hue < 360 && h.saturation <= 255);
                Rgb o = hsv_to_rgb(h);
                ASSERT_LE(std::max({std::abs(o.red - r), std::abs(o.green - g), std::abs(o.blue - b)}), 12)
                    << r << "," << g << "," << b;
            }
}

// The wheel in the editor's 160 by 160 area: what a click picks (centre grey, edge and beyond full saturation, up is
// 90 degrees), and where the marker of a colour goes.
TEST(Wheel, GeometryPickingAndMarker)
{
    EXPECT_EQ(wheel_cell_colour(27, 7).saturation, 0) << "the centre is grey";
    const int picks[][4] = {{80, 80, 0, 0},  {150, 80, 0, 255},  {80, 45, 90, 127},
                            {80, 150, 270, 255}, {0, 0, 135, 255}};
    for (const auto& p : picks) {
        Hsv h = wheel_pick(p[0], p[1], 160, 160);
        EXPECT_EQ(std::tie(h.hue, h.saturation), std::tie(p[2], p[3])) << p[0] << "," << p[1];
    }
    EXPECT_EQ(wheel_pick(-32768, 32767, 160, 160).saturation, 255);
    EXPECT_EQ(wheel_pick(5, 5, 10, 10).saturation, 0) << "a collapsed wheel divides by nothing";
    EXPECT_EQ(wheel_pick(8, 5, 10, 10).saturation, 255);

    const int markers[][4] = {{0, 0, 80, 80}, {0, 255, 160, 80}, {90, 255, 80, 0}, {180, 128, 40, 80}};
    for (const auto& m : markers) {
        Point p = wheel_marker(m[0], m[1], 160);
        EXPECT_EQ(std::tie(p.x, p.y), std::tie(m[2], m[3])) << "hue " << m[0];
    }
}

// A click in the middle of each painted sector picks that sector's hue and a saturation near its ring's, so the
// wheel shows what it picks.
TEST(Wheel, PickAgreesWithThePaintedSectors)
{
    int r = wheel_radius(160, 160), step = r * 2 / 7;
    for (int cell = 0; cell < WHEEL_CELLS - 1; cell++) {
        Hsv painted = wheel_cell_colour(cell, 255);
        double radius = r - step * (cell / WHEEL_SECTORS) - step / 2.0;
        double a = painted.hue * std::numbers::pi / 180;
        Hsv picked = wheel_pick(int(std::lround(80 + radius * std::cos(a))),
                                int(std::lround(80 - radius * std::sin(a))), 160, 160);
        EXPECT_NEAR(picked.hue, painted.hue, 2) << "cell " << cell;
        EXPECT_NEAR(picked.saturation, painted.saturation, 40) << "cell " << cell;
    }
}
