// Reducing an image's colours to fewer: a weighted median cut, each box
// split where it leaves the least squared error, refined by k-means over
// the distinct colours. Pure: colours in, palette and mapping out.
#pragma once

#include <cstdint>
#include <vector>

struct Rgb8 {
    uint8_t r, g, b;
};

inline bool operator==(Rgb8 a, Rgb8 b) { return a.r == b.r && a.g == b.g && a.b == b.b; }

struct ColourReduction {
    std::vector<Rgb8> palette;       // at most the target, no two alike
    std::vector<uint32_t> mapping;   // for each colour given, its palette index
};

// Reduces `colours` (weighted by how many pixels use each; a colour of
// weight 0 is still mapped, to its nearest palette colour, but pulls no
// palette colour towards it) to at most `target` colours. Colours that
// already fit are kept exactly. A target of 0 counts as 1.
ColourReduction reduce_colours(const std::vector<Rgb8>& colours, const std::vector<uint64_t>& weights,
                               unsigned target);

// The mean Euclidean distance in 8-bit RGB between two pictures of the same
// size, pixel by pixel: how far a reduction moved the colours on average.
double mean_colour_error(const std::vector<Rgb8>& a, const std::vector<Rgb8>& b);
