// The shared cells of an XPM image's colours, allocated in one go. The
// server handles the requests in the order sent, so each reply is exactly
// what the same XAllocColor would have returned at its turn; what changes
// is that the client waits once instead of once per colour.
#include "files/xpm_colours.h"

#include <X11/Xlib-xcb.h>
#include <strings.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

namespace {

// What libXpm does without an allocator of ours.
int allocate_one(Display* dpy, Colormap colormap, const char* name, XColor* colour)
{
    if (name && !XParseColor(dpy, colormap, name, colour))
        return -1;
    return XAllocColor(dpy, colormap, colour) ? 1 : 0;
}

void give_back(PrefetchedColours* p, size_t from)
{
    std::vector<unsigned long> cells;
    for (size_t i = from; i < p->entries.size(); i++)
        if (!p->entries[i].given)
            cells.push_back(p->entries[i].colour.pixel);
    if (!cells.empty())
        XFreeColors(p->dpy, p->colormap, cells.data(), static_cast<int>(cells.size()), 0);
    for (size_t i = from; i < p->entries.size(); i++)
        p->entries[i].given = true;
}

int allocate_prefetched(Display* dpy, Colormap colormap, char* name, XColor* colour, void* closure)
{
    auto* p = static_cast<PrefetchedColours*>(closure);
    if (p->next < p->entries.size()) {
        PrefetchedColours::Entry& e = p->entries[p->next];
        if (name && e.name == name && !e.given) {
            *colour = e.colour;
            e.given = true;
            p->next++;
            return 1;
        }
        // Not the colour foreseen: the cells allocated ahead for this one
        // and the later ones go back first, so that from here on every
        // request meets the colormap a one-at-a-time reading would have.
        give_back(p, p->next);
        p->next = p->entries.size();
    }
    return allocate_one(dpy, colormap, name, colour);
}

}  // namespace

bool prefetch_xpm_colours(Display* dpy, Colormap colormap, const XpmImage& image, PrefetchedColours* out)
{
    out->dpy = dpy;
    out->colormap = colormap;
    out->entries.clear();
    out->next = 0;
    // In table order, each colour's "c" string, but for the transparent
    // ones; "#" forms are parsed without the server.
    for (unsigned i = 0; i < image.ncolors; i++) {
        const char* c = image.colorTable[i].c_color;
        if (!c)
            return false;
        if (!strcasecmp(c, "None"))
            continue;
        XColor colour{};
        if (c[0] != '#' || !XParseColor(dpy, colormap, c, &colour))
            return false;
        // Marked as given until its cell comes back: a table refused
        // half way has allocated nothing that could be given back.
        out->entries.push_back({c, colour, true});
    }
    if (out->entries.empty())
        return false;

    xcb_connection_t* conn = XGetXCBConnection(dpy);
    if (!conn)
        return false;
    std::vector<xcb_alloc_color_cookie_t> cookies;
    cookies.reserve(out->entries.size());
    for (const PrefetchedColours::Entry& e : out->entries)
        cookies.push_back(xcb_alloc_color(conn, static_cast<xcb_colormap_t>(colormap), e.colour.red,
                                          e.colour.green, e.colour.blue));
    bool all = true;
    for (size_t i = 0; i < cookies.size(); i++) {
        xcb_generic_error_t* error = nullptr;
        xcb_alloc_color_reply_t* reply = xcb_alloc_color_reply(conn, cookies[i], &error);
        PrefetchedColours::Entry& e = out->entries[i];
        if (reply) {
            e.colour.pixel = reply->pixel;
            e.colour.red = reply->red;
            e.colour.green = reply->green;
            e.colour.blue = reply->blue;
            e.colour.flags = DoRed | DoGreen | DoBlue;
            e.given = false;
        } else {
            all = false;
        }
        std::free(reply);
        std::free(error);
    }
    if (!all) {
        // libXpm meets a refused colour with requests of its own, between
        // this one and the next: only one at a time gives the same cells.
        give_back(out, 0);
        out->entries.clear();
        return false;
    }
    return true;
}

void use_prefetched_colours(XpmAttributes* attributes, PrefetchedColours* prefetched)
{
    attributes->valuemask |= XpmAllocColor | XpmColorClosure;
    attributes->alloc_color = allocate_prefetched;
    attributes->color_closure = prefetched;
}

void release_unused_colours(PrefetchedColours* prefetched)
{
    give_back(prefetched, 0);
}
