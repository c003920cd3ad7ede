// The fill's mask on plain arrays, checked against a simple flood fill, and
// the eraser's square and sweep.
#include <gtest/gtest.h>

#include <queue>
#include <random>
#include <string>

#include "tools/geometry.h"
#include "tools/seed_fill.h"

namespace {

struct Picture {
    int width, height;
    std::vector<unsigned long> pixels;
};

// Rows of characters, one pixel value per character.
Picture picture(std::initializer_list<const char*> rows)
{
    Picture p{0, 0, {}};
    for (const char* r : rows) {
        std::string row = r;
        p.width = static_cast<int>(row.size());
        for (char c : row)
            p.pixels.push_back(static_cast<unsigned char>(c));
        p.height++;
    }
    return p;
}

// A plain 4-way breadth-first flood fill to compare with.
std::vector<uint8_t> reference_fill(const Picture& p, int x, int y)
{
    std::vector<uint8_t> mask(p.pixels.size(), 0);
    unsigned long seed = p.pixels[static_cast<size_t>(y) * p.width + x];
    std::queue<std::pair<int, int>> todo;
    todo.push({x, y});
    mask[static_cast<size_t>(y) * p.width + x] = 1;
    while (!todo.empty()) {
        auto [cx, cy] = todo.front();
        todo.pop();
        const int dx[] = {1, -1, 0, 0}, dy[] = {0, 0, 1, -1};
        for (int k = 0; k < 4; k++) {
            int nx = cx + dx[k], ny = cy + dy[k];
            if (nx < 0 || ny < 0 || nx >= p.width || ny >= p.height)
                continue;
            size_t i = static_cast<size_t>(ny) * p.width + nx;
            if (!mask[i] && p.pixels[i] == seed) {
                mask[i] = 1;
                todo.push({nx, ny});
            }
        }
    }
    return mask;
}

std::string rows_of(const std::vector<uint8_t>& mask, int width)
{
    std::string s;
    for (size_t i = 0; i < mask.size(); i++) {
        s += mask[i] ? '#' : '.';
        if ((i + 1) % static_cast<size_t>(width) == 0)
            s += '\n';
    }
    return s;
}

}  // namespace

// Pixels that touch only at their corners still wall the fill in: the
// fill is 4-connected. Control fills that value everywhere instead.
TEST(SeedFill, DiagonalChainStopsFillAndEverywhereIgnoresIt)
{
    Picture p = picture({
        "aaaab",
        "aaaba",
        "aabaa",
        "abaaa",
        "baaaa",
    });
    FillStack stack;
    std::vector<uint8_t> mask;
    EXPECT_EQ(seed_fill(p.pixels, p.width, p.height, 0, 0, false, &stack, &mask), 10);
    EXPECT_EQ(rows_of(mask, 5), "####.\n###..\n##...\n#....\n.....\n");
    EXPECT_EQ(seed_fill(p.pixels, p.width, p.height, 0, 0, true, &stack, &mask), 20);
    EXPECT_EQ(mask[24], 1) << "the far corner, not connected, is filled too";
    EXPECT_EQ(mask[4], 0);
    fill_stack_free(&stack);
}

// Outside the image nothing is marked and nothing is read.
TEST(SeedFill, SeedOutsideImageMarksNothing)
{
    Picture p = picture({"ab", "ba"});
    FillStack stack;
    std::vector<uint8_t> mask;
    for (auto [x, y] : {std::pair{-1, 0}, {0, -1}, {2, 0}, {0, 2}, {-100000, 100000}})
        EXPECT_EQ(seed_fill(p.pixels, p.width, p.height, x, y, false, &stack, &mask), 0) << x << "," << y;
    fill_stack_free(&stack);
}

// Random pictures of few values make spirals, combs and holes: the scan-line fill, with its look-back where a run
// overhangs its parent, must find exactly what a plain flood fill finds, from every kind of seed.
TEST(SeedFill, AgreesWithFloodFillOnRandomPictures)
{
    std::mt19937 random(12345);
    FillStack stack;
    std::vector<uint8_t> mask;
    for (int round = 0; round < 300; round++) {
        Picture p{1 + static_cast<int>(random() % 40), 1 + static_cast<int>(random() % 40), {}};
        int values = 2 + static_cast<int>(random() % 2);
        for (int i = 0; i < p.width * p.height; i++)
            p.pixels.push_back(random() % values);
        int x = static_cast<int>(random() % p.width), y = static_cast<int>(random() % p.height);
        long n = seed_fill(p.pixels, p.width, p.height, x, y, false, &stack, &mask);
        std::vector<uint8_t> expected = reference_fill(p, x, y);
        ASSERT_EQ(mask, expected) << "round " << round << " at " << x << "," << y << "\n"
                                  << rows_of(mask, p.width) << "expected\n" << rows_of(expected, p.width);
        long count = 0;
        for (uint8_t m : expected)
            count += m;
        ASSERT_EQ(n, count);
    }
    fill_stack_free(&stack);
}

// A large area grows the stack by half each time from 20 records (20, 30,
// 45, 67, ...), and leaving the tool gives the memory back.
TEST(SeedFill, StackGrowsByHalfAndShrinksBack)
{
    FillStack stack;
    ASSERT_EQ(fill_stack_init(&stack), 0);
    EXPECT_EQ(stack.capacity, 20);
    std::vector<int> capacities;
    for (int i = 0; i < 70; i++) {
        ASSERT_EQ(fill_stack_push(&stack, FillSegment{i, i, 0, 0, 0, 1}), 0);
        if (capacities.empty() || capacities.back() != stack.capacity)
            capacities.push_back(stack.capacity);
    }
    EXPECT_EQ(capacities, (std::vector<int>{20, 30, 45, 67, 100}));
    FillSegment g;
    ASSERT_TRUE(fill_stack_pop(&stack, &g));
    EXPECT_EQ(g.left, 69) << "last in, first out";
    fill_stack_shrink(&stack);
    EXPECT_EQ(stack.capacity, 20);
    EXPECT_FALSE(fill_stack_pop(&stack, &g)) << "shrinking empties the stack";

    // A comb of one-pixel teeth pushes many segments in one fill.
    Picture comb{201, 200, std::vector<unsigned long>(201 * 200, 0)};
    for (int x = 1; x < comb.width; x += 2)
        for (int y = 1; y < comb.height; y++)
            comb.pixels[static_cast<size_t>(y) * comb.width + x] = 1;
    std::vector<uint8_t> mask;
    EXPECT_EQ(seed_fill(comb.pixels, comb.width, comb.height, 0, 199, false, &stack, &mask),
              201L * 200 - 100L * 199);
    EXPECT_GT(stack.capacity, 20);
    fill_stack_free(&stack);
}

// The eraser's square is 16 screen pixels (15 at actual size) in image
// pixels, one more when the pointer is past its cell's first screen pixel.
TEST(EraserGeometry, SideFollowsZoomAndPointer)
{
    EXPECT_EQ(eraser_side(0, 0), 15);
    EXPECT_EQ(eraser_side(0, 7), 15);
    EXPECT_EQ(eraser_side(2, 8), 4) << "zoom factor 4, first screen pixel of a cell";
    EXPECT_EQ(eraser_side(2, 9), 5);
    EXPECT_EQ(eraser_side(3, 16), 2);
    EXPECT_EQ(eraser_side(3, 23), 3);
    EXPECT_EQ(eraser_side(4, 32), 1);
    EXPECT_EQ(eraser_side(5, 64), 1) << "never less than one pixel";
    EXPECT_EQ(eraser_side(5, 65), 2);
    EXPECT_EQ(eraser_side(1, -3), 9) << "left of the area";
}

// The sweep's hexagon runs from the leftmost square's corners to the
// other's, turning at the corners that face away from the path.
TEST(EraserGeometry, SweepHexagonCorners)
{
    auto corners = [](Point a, Point b, int s) {
        Point out[6];
        eraser_sweep(a, b, s, out);
        std::string text;
        for (const Point& p : out)
            text += std::to_string(p.x) + "," + std::to_string(p.y) + " ";
        return text;
    };
    EXPECT_EQ(corners({10, 10}, {20, 10}, 4), "10,10 14,10 24,10 24,14 20,14 10,14 ");
    EXPECT_EQ(corners({20, 10}, {10, 10}, 4), corners({10, 10}, {20, 10}, 4)) << "direction does not matter";
    EXPECT_EQ(corners({10, 20}, {20, 10}, 3), "10,20 10,23 13,23 23,13 23,10 20,10 ") << "rising";
    EXPECT_EQ(corners({10, 10}, {20, 20}, 3), "10,10 13,10 23,20 23,23 20,23 10,13 ") << "falling";
}
