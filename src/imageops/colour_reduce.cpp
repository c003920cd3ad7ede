// Colour reduction for images with more colours than the colormap has
// cells. The median cut gives a good start quickly: every split goes to the
// box with the largest squared error, along the axis and at the place that
// leaves the least error in the two halves. A few rounds of k-means over
// the distinct colours (weighted by their pixels) then move each palette
// colour to the mean of the colours nearest it, which is what lowers the
// mean error below that of a plain cut.
#include "imageops/colour_reduce.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <map>

namespace {

// Work for the k-means rounds is bounded by colours x palette x rounds,
// so that a file with tens of thousands of colours still opens promptly.
constexpr int MAX_ROUNDS = 24;
constexpr double ROUND_BUDGET = 2.0e8;

struct Weighted {
    std::array<double, 3> c;
    double w;
};

using Box = std::vector<size_t>;   // indices into the weighted colours

struct Sums {
    double w = 0, s[3] = {0, 0, 0}, sq = 0;
    void add(const Weighted& x)
    {
        w += x.w;
        for (int a = 0; a < 3; a++) {
            s[a] += x.w * x.c[a];
            sq += x.w * x.c[a] * x.c[a];
        }
    }
    void sub(const Sums& o)
    {
        w -= o.w;
        for (int a = 0; a < 3; a++)
            s[a] -= o.s[a];
        sq -= o.sq;
    }
    // Weighted squared distance of the members from their mean.
    double error() const
    {
        if (w <= 0)
            return 0;
        return std::max(0.0, sq - (s[0] * s[0] + s[1] * s[1] + s[2] * s[2]) / w);
    }
};

Sums sums_of(const std::vector<Weighted>& all, const Box& box)
{
    Sums t;
    for (size_t i : box)
        t.add(all[i]);
    return t;
}

// Splits `box` in two where the halves' errors add up least; false when
// all its colours are one.
bool split_box(const std::vector<Weighted>& all, Box& box, Box* other)
{
    Sums total = sums_of(all, box);
    double best = std::numeric_limits<double>::infinity();
    int bestAxis = -1;
    size_t bestAt = 0;
    for (int a = 0; a < 3; a++) {
        std::sort(box.begin(), box.end(), [&](size_t x, size_t y) { return all[x].c[a] < all[y].c[a]; });
        Sums left;
        for (size_t i = 0; i + 1 < box.size(); i++) {
            left.add(all[box[i]]);
            if (all[box[i]].c[a] == all[box[i + 1]].c[a])
                continue;   // never part colours that sit at one value
            Sums right = total;
            right.sub(left);
            double e = left.error() + right.error();
            if (e < best) {
                best = e;
                bestAxis = a;
                bestAt = i + 1;
            }
        }
    }
    if (bestAxis < 0)
        return false;
    std::sort(box.begin(), box.end(),
              [&](size_t x, size_t y) { return all[x].c[bestAxis] < all[y].c[bestAxis]; });
    other->assign(box.begin() + static_cast<std::ptrdiff_t>(bestAt), box.end());
    box.resize(bestAt);
    return true;
}

double distance2(const std::array<double, 3>& a, const std::array<double, 3>& b)
{
    double d0 = a[0] - b[0], d1 = a[1] - b[1], d2 = a[2] - b[2];
    return d0 * d0 + d1 * d1 + d2 * d2;
}

size_t nearest(const std::array<double, 3>& c, const std::vector<std::array<double, 3>>& centres)
{
    size_t best = 0;
    double bestD = std::numeric_limits<double>::infinity();
    for (size_t k = 0; k < centres.size(); k++) {
        double d = distance2(c, centres[k]);
        if (d < bestD) {
            bestD = d;
            best = k;
        }
    }
    return best;
}

std::array<double, 3> as_point(Rgb8 c) { return {double(c.r), double(c.g), double(c.b)}; }

uint8_t channel(double v) { return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L)); }

// Median cut then k-means: the centres of the reduced colours.
std::vector<std::array<double, 3>> cluster(const std::vector<Weighted>& all, unsigned target)
{
    std::vector<Box> boxes(1);
    for (size_t i = 0; i < all.size(); i++)
        boxes[0].push_back(i);
    std::vector<double> errors{sums_of(all, boxes[0]).error()};
    while (boxes.size() < target) {
        size_t worst = static_cast<size_t>(std::max_element(errors.begin(), errors.end()) - errors.begin());
        if (errors[worst] <= 0)
            break;
        Box other;
        if (!split_box(all, boxes[worst], &other)) {
            errors[worst] = 0;
            continue;
        }
        errors[worst] = sums_of(all, boxes[worst]).error();
        errors.push_back(sums_of(all, other).error());
        boxes.push_back(std::move(other));
    }
    std::vector<std::array<double, 3>> centres;
    for (const Box& b : boxes) {
        Sums s = sums_of(all, b);
        centres.push_back({s.s[0] / s.w, s.s[1] / s.w, s.s[2] / s.w});
    }

    std::vector<size_t> member(all.size(), centres.size());
    double perRound = double(all.size()) * double(centres.size());
    int rounds = static_cast<int>(std::min<double>(MAX_ROUNDS, ROUND_BUDGET / std::max(perRound, 1.0)));
    for (int round = 0; round < std::max(rounds, 1); round++) {
        bool moved = false;
        for (size_t i = 0; i < all.size(); i++) {
            size_t k = nearest(all[i].c, centres);
            moved = moved || k != member[i];
            member[i] = k;
        }
        if (!moved)
            break;
        std::vector<Sums> next(centres.size());
        for (size_t i = 0; i < all.size(); i++)
            next[member[i]].add(all[i]);
        // A centre nobody is nearest to keeps its place; it is dropped
        // below if it stays empty.
        for (size_t k = 0; k < centres.size(); k++)
            if (next[k].w > 0)
                centres[k] = {next[k].s[0] / next[k].w, next[k].s[1] / next[k].w, next[k].s[2] / next[k].w};
    }
    std::vector<bool> used(centres.size(), false);
    for (size_t i = 0; i < all.size(); i++)
        used[nearest(all[i].c, centres)] = true;
    std::vector<std::array<double, 3>> kept;
    for (size_t k = 0; k < centres.size(); k++)
        if (used[k])
            kept.push_back(centres[k]);
    return kept;
}

uint32_t key_of(Rgb8 c) { return uint32_t(c.r) << 16 | uint32_t(c.g) << 8 | c.b; }

}  // namespace

ColourReduction reduce_colours(const std::vector<Rgb8>& colours, const std::vector<uint64_t>& weights,
                               unsigned target)
{
    target = std::max(target, 1u);
    ColourReduction out;
    // The distinct colours and their weights; when none has a pixel, every
    // colour counts alike.
    std::map<uint32_t, uint64_t> distinct, weighted;
    bool anyWeight = false;
    for (size_t i = 0; i < colours.size(); i++)
        anyWeight = anyWeight || (i < weights.size() && weights[i] > 0);
    for (size_t i = 0; i < colours.size(); i++) {
        uint64_t w = anyWeight ? (i < weights.size() ? weights[i] : 0) : 1;
        distinct[key_of(colours[i])] += w;
        if (w > 0)
            weighted[key_of(colours[i])] += w;
    }

    std::vector<Rgb8> palette;
    auto from_key = [](uint32_t k) { return Rgb8{uint8_t(k >> 16), uint8_t(k >> 8), uint8_t(k)}; };
    if (distinct.size() <= target) {
        for (const auto& [k, w] : distinct)
            palette.push_back(from_key(k));
    } else if (weighted.size() <= target) {
        for (const auto& [k, w] : weighted)
            palette.push_back(from_key(k));
    } else {
        std::vector<Weighted> all;
        for (const auto& [k, w] : weighted)
            all.push_back({as_point(from_key(k)), double(w)});
        std::map<uint32_t, bool> seen;
        for (const auto& c : cluster(all, target)) {
            Rgb8 p{channel(c[0]), channel(c[1]), channel(c[2])};
            if (!seen[key_of(p)]) {
                seen[key_of(p)] = true;
                palette.push_back(p);
            }
        }
    }

    std::vector<std::array<double, 3>> points;
    for (Rgb8 p : palette)
        points.push_back(as_point(p));
    std::map<uint32_t, uint32_t> index;
    for (Rgb8 c : colours) {
        auto it = index.find(key_of(c));
        if (it == index.end())
            it = index.emplace(key_of(c), static_cast<uint32_t>(nearest(as_point(c), points))).first;
        out.mapping.push_back(it->second);
    }
    out.palette = std::move(palette);
    return out;
}

double mean_colour_error(const std::vector<Rgb8>& a, const std::vector<Rgb8>& b)
{
    size_t n = std::min(a.size(), b.size());
    if (n == 0)
        return 0;
    double sum = 0;
    for (size_t i = 0; i < n; i++)
        sum += std::sqrt(distance2(as_point(a[i]), as_point(b[i])));
    return sum / double(n);
}
