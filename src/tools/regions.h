// Region helpers shared by the shape tools and the selection: a region set
// to one box, the grown frame difference of two boxes, and a copy limited
// to a region.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "tools/geometry.h"

// Empties the region, then adds the box.
void set_region_to_box(Region region, Box box);
// Adds the box to the region.
void union_box(Region region, Box box);
// out = region(a) XOR region(b), then grown by (growX, growY).
void frame_difference(Box a, Box b, int growX, int growY, Region out);
// Copies the region's clip box from source to destination through `gc`
// clipped to the region; nothing for an empty region. The GC's clip mask is
// None again afterwards.
void copy_region(Display* dpy, Drawable source, Drawable destination, GC gc, Region region);
// out = a minus b.
void box_difference(Box a, Box b, Region out);
// out = a intersected with b.
void box_intersection(Box a, Box b, Region out);
// out = region minus b (out may be the region itself).
void subtract_box(Region region, Box b, Region out);
// Fills the region's clip box through `gc` clipped to the region; nothing
// for an empty region, and the clip mask is None again afterwards.
void fill_region(Display* dpy, Drawable drawable, GC gc, Region region);
// One of three scratch regions (index 0..2), created on first use and kept.
Region scratch_region(int index);
// The scratch region a tool's motion repaints: rebuilt from nothing at
// every motion, so one serves every tool and drawing.
Region damage_region();
