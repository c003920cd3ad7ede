// Pure geometry of the painting tools: boxes, the Shift constraints, the
// drag-constraint test and the line-width pictures.
#include <gtest/gtest.h>

#include <string>

#include "tools/geometry.h"

namespace {

bool same(Point a, Point b) { return a.x == b.x && a.y == b.y; }
std::string str(Box b)
{
    return std::to_string(b.x) + "," + std::to_string(b.y) + " " + std::to_string(b.width) + "x" + std::to_string(b.height);
}

}  // namespace

// The Shift line snaps to vertical, horizontal or the 45-degree diagonal,
// with a leg negligible only when it is less than half the other.
TEST(Geometry, ShiftLineSnapsWithFactorOfTwoThresholds)
{
    Point s{10, 10};
    EXPECT_TRUE(same(constrain_line(s, {13, 30}), {10, 30})) << "mostly down: vertical";
    EXPECT_TRUE(same(constrain_line(s, {20, 14}), {20, 10})) << "mostly right: horizontal";
    EXPECT_TRUE(same(constrain_line(s, {20, 16}), {16, 16})) << "in between: diagonal";
    EXPECT_TRUE(same(constrain_line(s, {17, 17}), {17, 17})) << "already diagonal";
    // Exactly half is not negligible: 2*5 == 10 snaps to the diagonal.
    EXPECT_TRUE(same(constrain_line(s, {15, 20}), {15, 15}));
    EXPECT_TRUE(same(constrain_line(s, {14, 20}), {10, 20})) << "4 < 10/2: vertical";
    // Every quadrant keeps its direction on the diagonal.
    EXPECT_TRUE(same(constrain_line(s, {4, 3}), {4, 4}));
    EXPECT_TRUE(same(constrain_line(s, {16, 3}), {16, 4}));
    EXPECT_TRUE(same(constrain_line(s, {3, 16}), {4, 16}));
}

// Rectangles and ovals square on the shorter leg, towards the pointer.
TEST(Geometry, SquareConstraintUsesShorterLeg)
{
    Point s{10, 10};
    Point p = constrain_square(s, {30, 14});
    EXPECT_TRUE(same(p, {14, 14}));
    EXPECT_EQ(str(box_of(s, p)), "10,10 5x5");
    EXPECT_TRUE(same(constrain_square(s, {0, 2}), {2, 2}));
    EXPECT_TRUE(same(constrain_square(s, {13, -20}), {13, 7}));
}

// Boxes include both ends and grow symmetrically; a zero growth is a no-op.
TEST(Geometry, BoxesAreInclusiveAndGrowOnEverySide)
{
    Box b = box_of({7, 3}, {2, 9});
    EXPECT_EQ(str(b), "2,3 6x7");
    EXPECT_EQ(str(box_of({4, 4}, {4, 4})), "4,4 1x1");
    EXPECT_EQ(str(grow_box(b, 5)), "-3,-2 16x17");
    EXPECT_EQ(str(grow_box(b, 0)), str(b));
}

// The drag constraint waits for more than 5 window pixels and tests the
// vertical move first.
TEST(Geometry, DragConstraintNeedsMoreThanFivePixelsVerticalFirst)
{
    EXPECT_EQ(drag_constraint(100, 100, 105, 105), 0) << "5 is not more than 5";
    EXPECT_EQ(drag_constraint(100, 100, 106, 102), 1);
    EXPECT_EQ(drag_constraint(100, 100, 94, 100), 1);
    EXPECT_EQ(drag_constraint(100, 100, 101, 106), 2);
    EXPECT_EQ(drag_constraint(100, 100, 120, 106), 2) << "vertical wins even when x moved more";
    EXPECT_EQ(drag_constraint(100, 100, 100, 94), 2);
}

// Clipping keeps rectangles inside the image, and one wholly outside
// comes out empty.
TEST(Geometry, ClipBoxCutsToTheImage)
{
    EXPECT_EQ(str(clip_box({-5, -3, 10, 10}, 64, 64)), "0,0 5x7");
    EXPECT_EQ(str(clip_box({60, 60, 10, 10}, 64, 64)), "60,60 4x4");
    EXPECT_EQ(clip_box({64, 0, 3, 3}, 64, 64).width, 0);
    EXPECT_EQ(clip_box({-10, 0, 10, 3}, 64, 64).width, 0);
    EXPECT_EQ(clip_box({0, 0, -1, 3}, 64, 64).width, 0);
}

// Line-width pictures: at least 6 high, the triangle one row up for even
// widths above 1 so that it stays centred on the bar.
TEST(Geometry, WidthPictures)
{
    struct Case { unsigned w; int h, mid, tri; };
    const Case cases[] = {{1, 6, 3, 3}, {2, 6, 3, 2}, {4, 6, 3, 2}, {6, 6, 3, 2}, {9, 9, 4, 4}};
    for (const Case& c : cases) {
        WidthPicture p = width_picture(c.w);
        EXPECT_EQ(p.width, 18) << c.w;
        EXPECT_EQ(p.height, c.h) << c.w;
        EXPECT_EQ(p.mid, c.mid) << c.w;
        EXPECT_EQ(p.triangleY, c.tri) << c.w;
    }
}
