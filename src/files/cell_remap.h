// Which private colour cell each pixel of a freshly read XPM image takes.
// libXpm hands out shared cells (two file colours of one RGB share one);
// every file colour must end up in a read/write cell of its own so that the
// colour editor can change it in place. Pure logic.
#pragma once

#include <array>
#include <cstddef>
#include <unordered_map>
#include <vector>

struct CellPair {
    unsigned long oldPixel;
    unsigned long newPixel;
    bool used;   // taken by a colour of the table (rewrite_pixels)
};

class CellRemap {
public:
    // Makes a new cell holding the colour of `oldPixel`; false when none is left.
    using Allocate = bool (*)(unsigned long oldPixel, unsigned long* newPixel, void* data);

    // `returned` is libXpm's list of the pixels it gave the file's colours;
    // a pixel listed n times stands for n file colours.
    explicit CellRemap(const std::vector<unsigned long>& returned);

    // The pixel that image pixel p becomes, visiting pixels column by column.
    // The first time p is met, and again while fewer cells exist for it than
    // the colours it stands for, a new cell is made; later visits take the
    // last one made. A pixel libXpm did not give out (the transparent fill)
    // keeps its value, except that the very first pixel visited always gets
    // a cell. Returns false when allocation fails.
    bool map(unsigned long p, unsigned long* out, Allocate allocate, void* data)
    {
        if (p < DIRECT && settled_[p]) {
            *out = settledCell_[p];
            return true;
        }
        return map_unsettled(p, out, allocate, data);
    }

    // Gives each table colour (pixels[c]) the first pair of its old pixel not
    // yet taken; returns the indices of colours that found none (a colour the
    // image never uses).
    std::vector<size_t> rewrite_pixels(std::vector<unsigned long>& pixels);

    const std::vector<CellPair>& pairs() const { return pairs_; }
    // Pairs whose old pixel libXpm never gave out: their cells stand for no
    // file colour.
    std::vector<unsigned long> stray_cells() const;

private:
    bool map_unsettled(unsigned long p, unsigned long* out, Allocate allocate, void* data);

    // Answers that can no longer change, by pixel value: on the 8-bit
    // displays the program runs on every pixel fits, and a full-size image
    // then costs an array lookup a pixel instead of two hash lookups.
    static constexpr size_t DIRECT = 256;
    std::array<unsigned long, DIRECT> settledCell_{};
    std::array<bool, DIRECT> settled_{};

    std::unordered_map<unsigned long, int> demand_;               // times listed
    std::unordered_map<unsigned long, std::vector<size_t>> made_; // pairs per old pixel
    std::vector<CellPair> pairs_;
};
