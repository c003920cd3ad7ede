// The fill's mask on plain arrays, checked against a simple flood fill, and the eraser's square and sweep.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "tools/geometry.h"
#include "tools/seed_fill.h"

namespace {

// A plain 4-way flood fill to compare with.
std::vector<uint8_t> reference_fill(const std::vector<unsigned long>& pixels, int w, int h, int x, int y)
{
    std::vector<uint8_t> mask(pixels.size(), 0);
    std::vector<std::pair<int, int>> todo{{x, y}};
    while (!todo.empty()) {
        auto [cx, cy] = todo.back();
        todo.pop_back();
        size_t i = static_cast<size_t>(cy) * w + cx;
        if (cx < 0 || cy < 0 || cx >= w || cy >= h || mask[i] || pixels[i] != pixels[static_cast<size_t>(y) * w + x])
            continue;
        mask[i] = 1;
        todo.insert(todo.end(), {{cx + 1, cy}, {cx - 1, cy}, {cx, cy + 1}, {cx, cy - 1}});
    }
    return mask;
}

std::string rows_of(const std::vector<uint8_t>& mask, int width)
{
    std::string s;
    for (size_t i = 0; i < mask.size(); i++)
        s += std::string(mask[i] ? "#" : ".") + ((i + 1) % static_cast<size_t>(width) ? "" : "\n");
    return s;
}

}  // namespace

// Pixels touching only at corners wall the fill in (4-connected); Control fills the value everywhere; a seed
// outside the image marks nothing.
TEST(SeedFill, DiagonalWallEverywhereAndOutside)
{
    std::string rows = "aaaab" "aaaba" "aabaa" "abaaa" "baaaa";
    std::vector<unsigned long> p(rows.begin(), rows.end());
    FillStack stack;
    std::vector<uint8_t> mask;
    EXPECT_EQ(seed_fill(p, 5, 5, 0, 0, false, &stack, &mask), 10);
    EXPECT_EQ(rows_of(mask, 5), "####.\n###..\n##...\n#....\n.....\n");
    EXPECT_EQ(seed_fill(p, 5, 5, 0, 0, true, &stack, &mask), 20);
    EXPECT_EQ(rows_of(mask, 5), "####.\n###.#\n##.##\n#.###\n.####\n");
    for (auto [x, y] : {std::pair{-1, 0}, {0, -1}, {5, 0}, {0, 5}, {-100000, 100000}})
        EXPECT_EQ(seed_fill(p, 5, 5, x, y, false, &stack, &mask), 0) << x << "," << y;
    fill_stack_free(&stack);
}

// On random pictures of few values (spirals, combs, holes) the scan-line fill finds exactly what a flood fill finds,
// also while its stack grows; leaving the tool shrinks the stack back.
TEST(SeedFill, AgreesWithFloodFillOnRandomPictures)
{
    std::mt19937 random(12345);
    FillStack stack;
    std::vector<uint8_t> mask;
    for (int round = 0; round < 300; round++) {
        int w = 1 + static_cast<int>(random() % 40), h = 1 + static_cast<int>(random() % 40);
        unsigned values = 2 + random() % 2;
        std::vector<unsigned long> p;
        for (int i = 0; i < w * h; i++)
            p.push_back(random() % values);
        int x = static_cast<int>(random() % w), y = static_cast<int>(random() % h);
        long n = seed_fill(p, w, h, x, y, false, &stack, &mask);
        std::vector<uint8_t> expected = reference_fill(p, w, h, x, y);
        ASSERT_EQ(mask, expected) << "round " << round << " at " << x << "," << y << "\n"
                                  << rows_of(mask, w) << "expected\n" << rows_of(expected, w);
        ASSERT_EQ(n, std::count(expected.begin(), expected.end(), 1));
    }
    // A comb of one-pixel teeth pushes many segments in one fill.
    std::vector<unsigned long> comb(201 * 200, 0);
    for (size_t i = 201; i < comb.size(); i++)
        comb[i] = i % 201 % 2;
    EXPECT_EQ(seed_fill(comb, 201, 200, 0, 199, false, &stack, &mask), 201L * 200 - 100L * 199);
    EXPECT_GT(stack.capacity, FILL_STACK_START) << "the comb grew the stack";
    fill_stack_shrink(&stack);   // as leaving the tool does, giving the memory back
    EXPECT_EQ(stack.capacity, FILL_STACK_START);
    fill_stack_free(&stack);
}

// The eraser's square is 16 screen pixels (15 at actual size) in image pixels, never less than one, one more when
// the pointer is past its cell's first screen pixel; the sweep's hexagon turns at the corners facing away.
TEST(EraserGeometry, SideAndSweep)
{
    const struct { int zoom, x, side; } sides[] = {{0, 0, 15}, {0, 7, 15}, {2, 8, 4}, {2, 9, 5}, {3, 16, 2},
                                                  {3, 23, 3}, {4, 32, 1}, {5, 64, 1}, {5, 65, 2}, {1, -3, 9}};
    for (const auto& c : sides)
        EXPECT_EQ(eraser_side(c.zoom, c.x), c.side) << "zoom " << c.zoom << " x " << c.x;
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
