// Region set operations used by the shape tools, the refresh of a region
// and the selection.
#include "tools/regions.h"

#include <algorithm>

namespace {

// Regions keep their edges in 16-bit fields, and a box's far edge or a
// later grow past them wraps round into a malformed region (the server
// rejects it as a clip with BadMatch). Images are far smaller than this
// range, so cutting both edges of a box to it loses nothing visible and
// leaves room to grow.
constexpr long EDGE_LIMIT = 16383;

XRectangle to_xrect(Box b)
{
    long x0 = std::clamp(static_cast<long>(b.x), -EDGE_LIMIT, EDGE_LIMIT);
    long y0 = std::clamp(static_cast<long>(b.y), -EDGE_LIMIT, EDGE_LIMIT);
    long x1 = std::clamp(static_cast<long>(b.x) + b.width, -EDGE_LIMIT, EDGE_LIMIT);
    long y1 = std::clamp(static_cast<long>(b.y) + b.height, -EDGE_LIMIT, EDGE_LIMIT);
    return XRectangle{static_cast<short>(x0), static_cast<short>(y0),
                      static_cast<unsigned short>(x1 - x0), static_cast<unsigned short>(y1 - y0)};
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
    if (r.width == 0 || r.height == 0)
        return;
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

namespace {

void combine_boxes(Box a, Box b, Region out, int (*op)(Region, Region, Region))
{
    if (!out)
        return;
    Region rb = XCreateRegion();
    set_region_to_box(out, a);
    set_region_to_box(rb, b);
    op(out, rb, out);
    XDestroyRegion(rb);
}

}  // namespace

void box_difference(Box a, Box b, Region out) { combine_boxes(a, b, out, XSubtractRegion); }

void box_intersection(Box a, Box b, Region out) { combine_boxes(a, b, out, XIntersectRegion); }

void subtract_box(Region region, Box b, Region out)
{
    if (!region || !out)
        return;
    Region rb = XCreateRegion();
    set_region_to_box(rb, b);
    XSubtractRegion(region, rb, out);
    XDestroyRegion(rb);
}

void fill_region(Display* dpy, Drawable drawable, GC gc, Region region)
{
    if (!region || XEmptyRegion(region))
        return;
    XRectangle box;
    XClipBox(region, &box);
    XSetRegion(dpy, gc, region);
    XFillRectangle(dpy, drawable, gc, box.x, box.y, box.width, box.height);
    XSetClipMask(dpy, gc, None);
}

Region damage_region()
{
    return scratch_region(0);
}

Region scratch_region(int index)
{
    if (index < 0 || index > 2)
        return nullptr;
    if (!scratch[index])
        scratch[index] = XCreateRegion();
    return scratch[index];
}
