// The pair table: (old pixel, new cell) in the order the cells were made.
// Its answers are exactly those of walking the table for every pixel, kept
// per pixel value; once a pixel's answer is settled it is looked up directly.
#include "files/cell_remap.h"

CellRemap::CellRemap(const std::vector<unsigned long>& returned)
{
    for (unsigned long p : returned)
        demand_[p]++;
}

bool CellRemap::map_unsettled(unsigned long p, unsigned long* out, Allocate allocate, void* data)
{
    // The very first pixel always gets a cell, whatever its demand; only
    // answers given under the real demand are final.
    bool first = pairs_.empty();
    int k = 1;
    if (!first) {
        auto it = demand_.find(p);
        k = it == demand_.end() ? 0 : it->second;
    }
    std::vector<size_t>& mine = made_[p];
    if (k <= 0) {
        *out = p;
    } else if (mine.size() >= static_cast<size_t>(k)) {
        *out = pairs_[mine[k - 1]].newPixel;
    } else {
        unsigned long fresh = 0;
        if (!allocate(p, &fresh, data))
            return false;
        mine.push_back(pairs_.size());
        pairs_.push_back({p, fresh, false});
        *out = fresh;
        if (mine.size() < static_cast<size_t>(k))
            return true;   // more cells to make for this pixel
    }
    if (!first && p < DIRECT) {
        settled_[p] = true;
        settledCell_[p] = *out;
    }
    return true;
}

std::vector<size_t> CellRemap::rewrite_pixels(std::vector<unsigned long>& pixels)
{
    std::vector<size_t> unmatched;
    for (size_t c = 0; c < pixels.size(); c++) {
        bool found = false;
        for (CellPair& pair : pairs_) {
            if (!pair.used && pair.oldPixel == pixels[c]) {
                pair.used = true;
                pixels[c] = pair.newPixel;
                found = true;
                break;
            }
        }
        if (!found)
            unmatched.push_back(c);
    }
    return unmatched;
}

std::vector<unsigned long> CellRemap::stray_cells() const
{
    std::vector<unsigned long> out;
    for (const CellPair& pair : pairs_)
        if (!demand_.count(pair.oldPixel))
            out.push_back(pair.newPixel);
    return out;
}
