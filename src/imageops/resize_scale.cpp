// Resize and scale of a whole picture held in a plain buffer, the hotspot's
// way through them, and the size fields of their dialogs.
#include "imageops/resize_scale.h"

#include <algorithm>
#include <cctype>

Anchor anchor_of_index(int index)
{
    if (index < 0 || index > 8)
        index = 0;
    return Anchor{index % 3, index / 3};
}

Point resize_offset(int oldWidth, int oldHeight, int width, int height, Anchor anchor)
{
    // Halving towards minus infinity keeps the lean the same way whether the
    // picture grows or shrinks.
    auto share = [](int grow, int part) {
        int n = grow * part;
        return n >= 0 ? n / 2 : -((-n + 1) / 2);
    };
    return Point{share(width - oldWidth, anchor.column), share(height - oldHeight, anchor.row)};
}

PixelBuffer resize_pixels(const PixelBuffer& src, int width, int height, Anchor anchor,
                          unsigned long background)
{
    PixelBuffer dst(width, height);
    std::fill(dst.pixels.begin(), dst.pixels.end(), background);
    Point off = resize_offset(src.width, src.height, dst.width, dst.height, anchor);
    for (int y = 0; y < dst.height; y++) {
        int sy = y - off.y;
        if (sy < 0 || sy >= src.height)
            continue;
        for (int x = 0; x < dst.width; x++) {
            int sx = x - off.x;
            if (sx >= 0 && sx < src.width)
                dst.set(x, y, src.at(sx, sy));
        }
    }
    return dst;
}

PixelBuffer scale_pixels(const PixelBuffer& src, int width, int height)
{
    PixelBuffer dst(width, height);
    if (src.width <= 0 || src.height <= 0)
        return dst;
    // The centre of new pixel x lies at (x + 1/2) * src / new in the old picture.
    for (int y = 0; y < dst.height; y++) {
        int sy = static_cast<int>((2LL * y + 1) * src.height / (2LL * dst.height));
        for (int x = 0; x < dst.width; x++) {
            int sx = static_cast<int>((2LL * x + 1) * src.width / (2LL * dst.width));
            dst.set(x, y, src.at(sx, sy));
        }
    }
    return dst;
}

Point resize_hotspot(Point hotspot, int oldWidth, int oldHeight, int width, int height, Anchor anchor)
{
    if (hotspot.x < 0 || hotspot.y < 0)
        return Point{-1, -1};
    Point off = resize_offset(oldWidth, oldHeight, width, height, anchor);
    Point moved{hotspot.x + off.x, hotspot.y + off.y};
    if (moved.x < 0 || moved.y < 0 || moved.x >= width || moved.y >= height)
        return Point{-1, -1};
    return moved;
}

Point scale_hotspot(Point hotspot, int oldWidth, int oldHeight, int width, int height)
{
    if (hotspot.x < 0 || hotspot.y < 0 || oldWidth <= 0 || oldHeight <= 0 || hotspot.x >= oldWidth ||
        hotspot.y >= oldHeight)
        return Point{-1, -1};
    return Point{static_cast<int>(1LL * hotspot.x * width / oldWidth),
                 static_cast<int>(1LL * hotspot.y * height / oldHeight)};
}

SizeField parse_size_field(const char* text, int max, int* value)
{
    if (!text)
        return SizeField::NotNumber;
    const char* p = text;
    while (std::isspace(static_cast<unsigned char>(*p)))
        p++;
    long n = 0;
    int digits = 0;
    for (; std::isdigit(static_cast<unsigned char>(*p)); p++, digits++)
        if (n <= max)   // past the limit the rest only has to be digits
            n = n * 10 + (*p - '0');
    while (std::isspace(static_cast<unsigned char>(*p)))
        p++;
    if (digits == 0 || *p)
        return SizeField::NotNumber;
    if (n < 1)
        return SizeField::TooSmall;
    if (n > max)
        return SizeField::TooLarge;
    if (value)
        *value = static_cast<int>(n);
    return SizeField::Ok;
}

int proportional_side(int value, int from, int to)
{
    if (from <= 0)
        return to > 0 ? to : 1;
    long long n = (2LL * value * to + from) / (2LL * from);
    return n < 1 ? 1 : static_cast<int>(n);
}
