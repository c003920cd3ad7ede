// libXpm's colours of an XPM image asked for all at once: libXpm allocates
// a shared cell per colour with one XAllocColor each, a round trip per
// colour. Where the colours libXpm will ask for, and their order, can be
// told from the table beforehand, the same requests go out together and
// their replies are handed to libXpm as it asks.
#pragma once

#include <X11/Xlib.h>
#include <X11/xpm.h>

#include <string>
#include <vector>

struct PrefetchedColours {
    Display* dpy = nullptr;
    Colormap colormap = None;
    struct Entry {
        std::string name;
        XColor colour;
        bool given;   // handed to libXpm
    };
    std::vector<Entry> entries;
    size_t next = 0;
};

// Sends the allocations libXpm will make for `image` on a colour visual and
// collects their replies; false (nothing allocated) when the colours cannot
// be told beforehand: a colour without a "c" key, one named rather than
// given in "#" form, or one the server refused.
bool prefetch_xpm_colours(Display* dpy, Colormap colormap, const XpmImage& image, PrefetchedColours* out);

// Makes libXpm take its colours from `prefetched` (attributes valuemask and
// allocator); a request that departs from the order foreseen gives back the
// rest and goes on one colour at a time, as libXpm itself would.
void use_prefetched_colours(XpmAttributes* attributes, PrefetchedColours* prefetched);

// Gives back the cells allocated beforehand that libXpm never asked for.
void release_unused_colours(PrefetchedColours* prefetched);
