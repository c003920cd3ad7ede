// Pixel-buffer transforms behind Rotate, the flips, Invert and the trim of
// a fresh selection.
#include "imageops/pixel_ops.h"

PixelBuffer rotate_quarter(const PixelBuffer& src)
{
    PixelBuffer dst(src.height, src.width);
    for (int y = 0; y < src.height; y++)
        for (int x = 0; x < src.width; x++)
            dst.set(y, src.width - 1 - x, src.at(x, y));
    return dst;
}

PixelBuffer flip_horizontal(const PixelBuffer& src)
{
    PixelBuffer dst(src.width, src.height);
    for (int y = 0; y < src.height; y++)
        for (int x = 0; x < src.width; x++)
            dst.set(src.width - 1 - x, y, src.at(x, y));
    return dst;
}

PixelBuffer flip_vertical(const PixelBuffer& src)
{
    PixelBuffer dst(src.width, src.height);
    for (int y = 0; y < src.height; y++)
        for (int x = 0; x < src.width; x++)
            dst.set(x, src.height - 1 - y, src.at(x, y));
    return dst;
}

void invert_bits(PixelBuffer& buf)
{
    for (unsigned long& v : buf.pixels)
        v = v == 0 ? 1 : 0;
}

Box trim_box(const PixelBuffer& buf, unsigned long background)
{
    int minX = 99999, minY = 99999, maxX = -1, maxY = -1;
    for (int y = 0; y < buf.height; y++)
        for (int x = 0; x < buf.width; x++) {
            if (buf.at(x, y) == background)
                continue;
            if (x < minX) minX = x;
            if (x > maxX) maxX = x;
            if (y < minY) minY = y;
            if (y > maxY) maxY = y;
        }
    if (maxX < 0)
        return Box{0, 0, 0, 0};
    return Box{minX, minY, maxX - minX + 1, maxY - minY + 1};
}
