#include "core/placement.h"

#include <algorithm>

int centred_on_screen(int pos, int span, int size, int screen)
{
    int origin = pos + (span - size) / 2;
    return std::max(0, std::min(origin, screen - size));
}

Origin clamped_on_screen(int x, int y, int width, int height, int screenWidth, int screenHeight)
{
    return {std::max(0, std::min(x, screenWidth - width)), std::max(0, std::min(y, screenHeight - height))};
}

namespace {

bool overlaps(const WindowBox& a, const WindowBox& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

bool on_screen(const WindowBox& b, int screenWidth, int screenHeight)
{
    return b.x >= 0 && b.y >= 0 && b.x + b.width <= screenWidth && b.y + b.height <= screenHeight;
}

}  // namespace

Origin cascade_origin(const std::vector<WindowBox>& open, int width, int height, int screenWidth, int screenHeight)
{
    if (open.empty())
        return {0, 0};
    int maxX = std::max(0, screenWidth - width);
    int maxY = std::max(0, screenHeight - height);
    auto taken = [&](int x, int y) {
        return std::any_of(open.begin(), open.end(), [&](const WindowBox& b) { return b.x == x && b.y == y; });
    };
    int x = open.back().x + CASCADE_STEP;
    int y = open.back().y + CASCADE_STEP;
    // The walk from the last window; on a screen with little room it can
    // come round to places already taken, so it is bounded.
    int tries = (maxX / CASCADE_STEP + 2) * (maxY / CASCADE_STEP + 2);
    for (int i = 0; i < tries; i++) {
        if (y > maxY) {
            y = 0;
            x += CASCADE_STEP;
        }
        if (x > maxX)
            x = 0;
        if (!taken(x, y))
            return {x, y};
        x += CASCADE_STEP;
        y += CASCADE_STEP;
    }
    // Then any free place, row by row: coarse steps first, then fine ones.
    for (int step : {CASCADE_STEP, 1})
        for (int fy = 0; fy <= maxY; fy += step)
            for (int fx = 0; fx <= maxX; fx += step)
                if (!taken(fx, fy))
                    return {fx, fy};
    return clamped_on_screen(open.back().x + CASCADE_STEP, open.back().y + CASCADE_STEP, width, height,
                             screenWidth, screenHeight);
}

Origin beside_owner(const WindowBox& owner, const std::vector<WindowBox>& taken, int width, int height, int screenWidth,
                    int screenHeight)
{
    const int right = owner.x + owner.width + BESIDE_GAP;
    const int left = owner.x - width - BESIDE_GAP;
    for (int x : {right, left}) {
        // At the owner's top, then under each taken window, top to bottom.
        std::vector<int> tops{owner.y};
        for (const WindowBox& t : taken)
            tops.push_back(t.y + t.height + BESIDE_GAP);
        std::sort(tops.begin() + 1, tops.end());
        for (int y : tops) {
            WindowBox candidate{x, y, width, height};
            if (!on_screen(candidate, screenWidth, screenHeight) || overlaps(candidate, owner))
                continue;
            if (std::none_of(taken.begin(), taken.end(), [&](const WindowBox& t) { return overlaps(candidate, t); }))
                return {x, y};
        }
    }
    return clamped_on_screen(right, owner.y, width, height, screenWidth, screenHeight);
}
