// Region set operations used by the shape tools, the refresh of a region
// and (later) the selection.
#include "tools/regions.h"

#include <algorithm>
#include <climits>

namespace {

XRectangle to_xrect(Box b)
{
    // XRectangle holds 16-bit fields; keep absurd boxes inside them rather
    // than letting them wrap around.
    auto clampShort = [](long v) { return static_cast<short>(std::clamp(v, static_cast<long>(SHRT_MIN), static_cast<long>(SHRT_MAX))); };
    auto clampUShort = [](long v) { return static_cast<unsigned short>(std::clamp(v, 0L, static_cast<long>(USHRT_MAX))); };
    return XRectangle{clampShort(b.x), clampShort(b.y), clampUShort(b.width), clampUShort(b.height)};
}

Region scratch[3];

}  // namespace

void set_region_to_box(Region region, Box box)
{
    if (!region)
        return;
    XSubtractRegion(region, region, region);
    union_box(region, box);
}

void union_box(Region region, Box box)
{
    if (!region || box.width <= 0 || box.height <= 0)
        return;
    XRectangle r = to_xrect(box);
    XUnionRectWithRegion(&r, region, region);
}

void frame_difference(Box a, Box b, int growX, int growY, Region out)
{
    if (!out)
        return;
    Region ra = XCreateRegion();
    Region rb = XCreateRegion();
    set_region_to_box(ra, a);
    set_region_to_box(rb, b);
    XXorRegion(ra, rb, out);
    // A negative shrink grows the region.
    XShrinkRegion(out, -growX, -growY);
    XDestroyRegion(ra);
    XDestroyRegion(rb);
}

void copy_region(Display* dpy, Drawable source, Drawable destination, GC gc, Region region)
{
    if (!region || XEmptyRegion(region))
        return;
    XRectangle box;
    XClipBox(region, &box);
    XSetRegion(dpy, gc, region);
    XCopyArea(dpy, source, destination, gc, box.x, box.y, box.width, box.height, box.x, box.y);
    XSetClipMask(dpy, gc, None);
}

Region scratch_region(int index)
{
    if (index < 0 || index > 2)
        return nullptr;
    if (!scratch[index])
        scratch[index] = XCreateRegion();
    return scratch[index];
}
