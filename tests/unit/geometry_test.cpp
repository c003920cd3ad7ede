// Pure geometry of the painting tools: boxes, Shift constraints, the drag constraint and the line-width pictures.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "tools/geometry.h"

namespace {

std::string str(Point p) { return std::to_string(p.x) + "," + std::to_string(p.y); }
std::string str(Box b) { return str(Point{b.x, b.y}) + " " + std::to_string(b.width) + "x" + std::to_string(b.height); }

}  // namespace

// From (10, 10) the Shift line snaps vertical, horizontal or diagonal, a leg being negligible only under half the
// other, and every quadrant keeps its direction; rectangles square on the shorter leg, towards the pointer.
TEST(Geometry, ShiftConstraints)
{
    const struct { Point p; const char* line; } lines[] = {
        {{13, 30}, "10,30"}, {{20, 14}, "20,10"}, {{20, 16}, "16,16"}, {{17, 17}, "17,17"},
        {{15, 20}, "15,15"}, {{14, 20}, "10,20"}, {{4, 3}, "4,4"}, {{16, 3}, "16,4"}, {{3, 16}, "4,16"}};
    for (const auto& c : lines)
        EXPECT_EQ(str(constrain_line({10, 10}, c.p)), c.line) << "towards " << str(c.p);
    EXPECT_EQ(str(constrain_square({10, 10}, {30, 14})), "14,14");
    EXPECT_EQ(str(constrain_square({10, 10}, {0, 2})), "2,2");
    EXPECT_EQ(str(constrain_square({10, 10}, {13, -20})), "13,7");
}

// Boxes include both ends and grow on every side; clipping keeps them inside the image, empty when wholly outside.
TEST(Geometry, BoxesGrowAndClip)
{
    EXPECT_EQ(str(box_of({7, 3}, {2, 9})), "2,3 6x7");
    EXPECT_EQ(str(box_of({4, 4}, {4, 4})), "4,4 1x1");
    EXPECT_EQ(str(grow_box(box_of({7, 3}, {2, 9}), 5)), "-3,-2 16x17");
    EXPECT_EQ(str(clip_box({-5, -3, 10, 10}, 64, 64)), "0,0 5x7");
    EXPECT_EQ(str(clip_box({60, 60, 10, 10}, 64, 64)), "60,60 4x4");
    for (Box outside : {Box{64, 0, 3, 3}, Box{-10, 0, 10, 3}, Box{0, 0, -1, 3}})
        EXPECT_EQ(clip_box(outside, 64, 64).width, 0) << str(outside);
}

// The drag constraint waits for more than 5 window pixels and tests the vertical move first.
TEST(Geometry, DragConstraint)
{
    constexpr DragConstraint unheld = DragConstraint::Free, across = DragConstraint::Horizontal,
                             down = DragConstraint::Vertical;
    const struct { int x, y; DragConstraint want; } cases[] = {
        {105, 105, unheld}, {106, 102, across}, {94, 100, across}, {101, 106, down}, {120, 106, down}, {100, 94, down}};
    for (const auto& c : cases)
        EXPECT_EQ(drag_constraint(100, 100, c.x, c.y), c.want) << c.x << "," << c.y;
}

// Line-width pictures: 18 wide, at least 6 high, the triangle one row up for even widths so it stays centred.
TEST(Geometry, WidthPictures)
{
    const struct { unsigned w; int h, mid, tri; } cases[] = {
        {1, 6, 3, 3}, {2, 6, 3, 2}, {4, 6, 3, 2}, {6, 6, 3, 2}, {9, 9, 4, 4}};
    for (const auto& c : cases) {
        WidthPicture p = width_picture(c.w);
        EXPECT_EQ(std::tie(p.width, p.height, p.mid, p.triangleY), std::make_tuple(18, c.h, c.mid, c.tri))
            << c.w;
    }
}
