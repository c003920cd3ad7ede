// The colour editor's integer maths: RGB <-> HSV and the wheel geometry
// that turns a pointer position into a hue and saturation.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>

#include "colour/hsv.h"

namespace {

bool same(Rgb a, Rgb b) { return a.red == b.red && a.green == b.green && a.blue == b.blue; }

}  // namespace

// The primaries, secondaries and greys land exactly on their hue and come
// back unchanged, with hue 360 read as 0 and negative hues folded.
TEST(Hsv, PrimariesAndGreys)
{
    struct Case {
        Rgb rgb;
        Hsv hsv;
    } cases[] = {
        {{255, 0, 0}, {0, 255, 255}},     {{0, 255, 0}, {120, 255, 255}},
        {{0, 0, 255}, {240, 255, 255}},   {{255, 255, 0}, {60, 255, 255}},
        {{0, 255, 255}, {180, 255, 255}}, {{255, 0, 255}, {300, 255, 255}},
        {{128, 128, 128}, {0, 0, 128}},   {{0, 0, 0}, {0, 0, 0}},
        {{255, 255, 255}, {0, 0, 255}},   {{128, 0, 0}, {0, 255, 128}},
    };
    for (const Case& c : cases) {
        Hsv h = rgb_to_hsv(c.rgb);
        EXPECT_EQ(h.hue, c.hsv.hue) << c.rgb.red << "," << c.rgb.green << "," << c.rgb.blue;
        EXPECT_EQ(h.saturation, c.hsv.saturation) << c.rgb.red << "," << c.rgb.green << "," << c.rgb.blue;
        EXPECT_EQ(h.value, c.hsv.value) << c.rgb.red << "," << c.rgb.green << "," << c.rgb.blue;
        EXPECT_TRUE(same(hsv_to_rgb(c.hsv), c.rgb)) << "hue " << c.hsv.hue;
    }
    EXPECT_TRUE(same(hsv_to_rgb({360, 255, 255}), Rgb{255, 0, 0}));
    EXPECT_TRUE(same(hsv_to_rgb({-60, 255, 255}), Rgb{255, 0, 255}));
    EXPECT_TRUE(same(hsv_to_rgb({200, 0, 77}), Rgb{77, 77, 77})) << "no saturation is grey";
}

// Over a grid of colours HSV stays in range and the round trip loses at
// most a few steps to integer truncation, never a whole hue sector.
TEST(Hsv, RoundTripStaysClose)
{
    int worst = 0;
    for (int r = 0; r < 256; r += 15)
        for (int g = 0; g < 256; g += 15)
            for (int b = 0; b < 256; b += 15) {
                Hsv h = rgb_to_hsv({r, g, b});
                ASSERT_GE(h.hue, 0);
                ASSERT_LT(h.hue, 360);
                ASSERT_GE(h.saturation, 0);
                ASSERT_LE(h.saturation, 255);
                Rgb back = hsv_to_rgb(h);
                int err = std::max({std::abs(back.red - r), std::abs(back.green - g), std::abs(back.blue - b)});
                worst = std::max(worst, err);
                ASSERT_LE(err, 12) << r << "," << g << "," << b;
            }
    EXPECT_GT(worst, 0) << "the grid reaches colours that truncate";
}

// The wheel in the editor's 160 by 160 area: ring squares, the colours of
// its cells, and what a click picks.
TEST(Wheel, GeometryAndPicking)
{
    EXPECT_EQ(wheel_radius(160, 160), 70);
    const WheelArc expected[] = {{10, 10, 140}, {30, 30, 100}, {50, 50, 60}, {70, 70, 20}};
    for (int k = 0; k < 4; k++) {
        WheelArc a = wheel_ring(160, 160, k);
        EXPECT_EQ(a.x, expected[k].x) << "ring " << k;
        EXPECT_EQ(a.diameter, expected[k].diameter) << "ring " << k;
    }
    EXPECT_EQ(wheel_cell_colour(0, 9).hue, 20);
    EXPECT_EQ(wheel_cell_colour(0, 9).saturation, 255);
    EXPECT_EQ(wheel_cell_colour(0, 9).value, 9);
    EXPECT_EQ(wheel_cell_colour(10, 0).hue, 60);
    EXPECT_EQ(wheel_cell_colour(10, 0).saturation, 183);
    EXPECT_EQ(wheel_cell_colour(26, 0).hue, 340);
    EXPECT_EQ(wheel_cell_colour(26, 0).saturation, 111);
    EXPECT_EQ(wheel_cell_colour(27, 0).saturation, 0) << "the centre is grey";

    Hsv centre = wheel_pick(80, 80, 160, 160);
    EXPECT_EQ(centre.hue, 0);
    EXPECT_EQ(centre.saturation, 0);
    Hsv edge = wheel_pick(150, 80, 160, 160);
    EXPECT_EQ(edge.hue, 0);
    EXPECT_EQ(edge.saturation, 255);
    Hsv up = wheel_pick(80, 45, 160, 160);
    EXPECT_EQ(up.hue, 90) << "up is 90 degrees: y grows downwards";
    EXPECT_EQ(up.saturation, 127);
    EXPECT_EQ(wheel_pick(80, 150, 160, 160).hue, 270);
    Hsv outside = wheel_pick(0, 0, 160, 160);
    EXPECT_EQ(outside.hue, 135);
    EXPECT_EQ(outside.saturation, 255) << "beyond the edge is full saturation";
    EXPECT_EQ(wheel_pick(-32768, 32767, 160, 160).saturation, 255);

    // A collapsed area has no inside but must not divide by zero.
    EXPECT_EQ(wheel_pick(5, 5, 10, 10).saturation, 0);
    EXPECT_EQ(wheel_pick(8, 5, 10, 10).saturation, 255);
}

// A click in the middle of each painted sector picks that sector's hue
// and a saturation near the ring's, so the wheel shows what it picks.
TEST(Wheel, PickAgreesWithThePaintedSectors)
{
    int r = wheel_radius(160, 160);
    int step = r * 2 / 7;
    for (int ring = 0; ring < WHEEL_RINGS; ring++)
        for (int j = 0; j < WHEEL_SECTORS; j++) {
            Hsv painted = wheel_cell_colour(WHEEL_SECTORS * ring + j, 255);
            double radius = r - step * ring - step / 2.0;
            double a = painted.hue * std::numbers::pi / 180;
            int x = int(std::lround(80 + radius * std::cos(a)));
            int y = int(std::lround(80 - radius * std::sin(a)));
            Hsv picked = wheel_pick(x, y, 160, 160);
            EXPECT_NEAR(picked.hue, painted.hue, 2) << "ring " << ring << " sector " << j;
            EXPECT_NEAR(picked.saturation, painted.saturation, 40) << "ring " << ring << " sector " << j;
        }
}

// The marker of a colour sits at its hue and saturation on a circle of
// half the area's width.
TEST(Wheel, MarkerPosition)
{
    Point p = wheel_marker(0, 0, 160);
    EXPECT_EQ(p.x, 80);
    EXPECT_EQ(p.y, 80);
    p = wheel_marker(0, 255, 160);
    EXPECT_EQ(p.x, 160);
    EXPECT_EQ(p.y, 80);
    p = wheel_marker(90, 255, 160);
    EXPECT_EQ(p.x, 80);
    EXPECT_EQ(p.y, 0);
    p = wheel_marker(180, 128, 160);
    EXPECT_EQ(p.x, 40);
    EXPECT_EQ(p.y, 80);
}
