// Which private cell each pixel of a freshly read XPM takes, against a fake allocator that hands out cells 100, 101,
// ... and remembers which old pixel each was made for.
#include <gtest/gtest.h>

#include <vector>

#include "files/cell_remap.h"

namespace {

struct FakeCells {
    unsigned long next = 100;
    long left = 1000;   // cells the fake colormap still has
    std::vector<unsigned long> madeFor;   // the old pixel of each cell made, in order

    static bool allocate(unsigned long oldPixel, unsigned long* newPixel, void* data)
    {
        auto* cells = static_cast<FakeCells*>(data);
        if (cells->left-- <= 0)
            return false;
        cells->madeFor.push_back(oldPixel);
        *newPixel = cells->next++;
        return true;
    }
};

// Maps the pixels in the order given (the reader's order, column by column).
std::vector<unsigned long> map_all(CellRemap& remap, FakeCells& cells, const std::vector<unsigned long>& pixels)
{
    std::vector<unsigned long> out;
    for (unsigned long p : pixels) {
        unsigned long q = 0;
        EXPECT_TRUE(remap.map(p, &q, FakeCells::allocate, &cells)) << p;
        out.push_back(q);
    }
    return out;
}

}  // namespace

// A pixel libXpm gave n colours gets a new cell at each of its first n visits; every later visit takes the last cell
// made for it, not the first.
TEST(CellRemap, LaterVisitsOfASharedPixelTakeTheLastCellMade)
{
    CellRemap remap({5, 5, 9});
    FakeCells cells;
    EXPECT_EQ(map_all(remap, cells, {5, 9, 5, 5, 9, 5}), (std::vector<unsigned long>{100, 101, 102, 102, 101, 102}));
    EXPECT_EQ(cells.madeFor, (std::vector<unsigned long>{5, 9, 5}));
}

// The first pixel visited gets a cell even when libXpm gave it out for no colour (the transparent fill under the
// mask); later visits of such a pixel keep their value, and its cell is a stray one that stands for no colour.
TEST(CellRemap, FirstPixelVisitedAlwaysGetsACell)
{
    CellRemap remap({5});
    FakeCells cells;
    EXPECT_EQ(map_all(remap, cells, {7, 5, 7, 5}), (std::vector<unsigned long>{100, 101, 7, 101}));
    EXPECT_EQ(cells.madeFor, (std::vector<unsigned long>{7, 5}));
    EXPECT_EQ(remap.stray_cells(), (std::vector<unsigned long>{100}));

    CellRemap first({5});
    FakeCells other;
    EXPECT_EQ(map_all(first, other, {5, 7}), (std::vector<unsigned long>{100, 7})) << "a first pixel with a colour";
    EXPECT_TRUE(first.stray_cells().empty());
}

// Each table colour takes the first cell made for its pixel that no colour took before; a colour the image never
// uses finds none and is listed, for a cell of its own.
TEST(CellRemap, TableColoursTakeTheCellsInOrder)
{
    CellRemap remap({5, 5, 9, 3});
    FakeCells cells;
    map_all(remap, cells, {5, 5, 9});
    std::vector<unsigned long> table = {5, 5, 9, 3};
    EXPECT_EQ(remap.rewrite_pixels(table), (std::vector<size_t>{3}));
    EXPECT_EQ(table, (std::vector<unsigned long>{100, 101, 102, 3}));
    ASSERT_EQ(remap.pairs().size(), 3u);
    for (const CellPair& pair : remap.pairs())
        EXPECT_TRUE(pair.used) << pair.newPixel;
}

// When the colormap runs out the map says so, and the pixel keeps no cell.
TEST(CellRemap, RunningOutOfCellsFails)
{
    CellRemap remap({5, 9});
    FakeCells cells;
    cells.left = 1;
    unsigned long q = 0;
    EXPECT_TRUE(remap.map(5, &q, FakeCells::allocate, &cells));
    EXPECT_FALSE(remap.map(9, &q, FakeCells::allocate, &cells));
    EXPECT_EQ(remap.pairs().size(), 1u);
}
