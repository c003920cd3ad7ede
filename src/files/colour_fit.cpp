// Fitting a file's colours into the free cells: the X side of the colour
// reduction (parsing the file's colour names, rebuilding its colour table);
// the reduction itself is imageops/colour_reduce's.
#include "files/colour_fit.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "imageops/colour_reduce.h"

namespace {

// The colour libXpm shows on a colour visual: the "c" key, else the grey
// and monochrome keys in the order it falls back to them.
const char* colour_spec(const XpmColor& c)
{
    for (const char* s : {c.c_color, c.g_color, c.g4_color, c.m_color})
        if (s)
            return s;
    return nullptr;
}

char* dup(const char* s) { return s ? strdup(s) : nullptr; }

void free_colour(XpmColor& c)
{
    for (char* s : {c.string, c.symbolic, c.m_color, c.g4_color, c.g_color, c.c_color})
        free(s);
}

}  // namespace

unsigned count_free_cells(Display* dpy, Colormap colormap, unsigned limit)
{
    // The largest count that can be had at once, found by halving: each try
    // gives its cells straight back.
    unsigned low = 0, high = limit;
    std::vector<unsigned long> cells(limit);
    while (low < high) {
        unsigned mid = low + (high - low + 1) / 2;
        if (XAllocColorCells(dpy, colormap, False, nullptr, 0, cells.data(), mid)) {
            XFreeColors(dpy, colormap, cells.data(), static_cast<int>(mid), 0);
            low = mid;
        } else {
            high = mid - 1;
        }
    }
    return low;
}

int reduce_xpm_colours(Display* dpy, Colormap colormap, XpmImage& image, unsigned target)
{
    unsigned n = image.ncolors;
    size_t total = static_cast<size_t>(image.width) * image.height;
    std::vector<uint64_t> pixelsOf(n, 0);
    for (size_t i = 0; i < total; i++)
        if (image.data[i] < n)
            pixelsOf[image.data[i]]++;

    std::vector<unsigned> clear, opaque;
    std::vector<Rgb8> colours;
    std::vector<uint64_t> weights;
    for (unsigned i = 0; i < n; i++) {
        const char* spec = colour_spec(image.colorTable[i]);
        if (spec && !strcasecmp(spec, "None")) {
            clear.push_back(i);
            continue;
        }
        XColor x{};
        if (!spec || !XParseColor(dpy, colormap, spec, &x))
            return -1;
        colours.push_back({uint8_t(x.red >> 8), uint8_t(x.green >> 8), uint8_t(x.blue >> 8)});
        weights.push_back(pixelsOf[i]);
        opaque.push_back(i);
    }
    if (opaque.size() <= target)
        return 0;
    ColourReduction r = reduce_colours(colours, weights, target);

    // Each palette colour speaks for the file colour with the most pixels
    // among those it took in; a palette colour that took none is dropped.
    std::vector<int> lead(r.palette.size(), -1), named(r.palette.size(), -1);
    for (size_t j = 0; j < opaque.size(); j++) {
        uint32_t k = r.mapping[j];
        if (lead[k] < 0 || weights[j] > weights[size_t(lead[k])])
            lead[k] = static_cast<int>(j);
        if (image.colorTable[opaque[j]].symbolic && (named[k] < 0 || weights[j] > weights[size_t(named[k])]))
            named[k] = static_cast<int>(j);
    }

    std::vector<unsigned> newIndex(n, 0);
    std::vector<XpmColor> table;
    for (unsigned i : clear) {
        newIndex[i] = static_cast<unsigned>(table.size());
        table.push_back(image.colorTable[i]);
        image.colorTable[i] = XpmColor{};
    }
    std::vector<unsigned> slotOf(r.palette.size(), 0);
    for (size_t k = 0; k < r.palette.size(); k++) {
        if (lead[k] < 0)
            continue;
        const XpmColor& from = image.colorTable[opaque[size_t(lead[k])]];
        XpmColor c{};
        char spec[8];
        std::snprintf(spec, sizeof spec, "#%02X%02X%02X", r.palette[k].r, r.palette[k].g, r.palette[k].b);
        c.string = dup(from.string);
        c.c_color = dup(spec);
        c.m_color = dup(from.m_color);
        if (named[k] >= 0)
            c.symbolic = dup(image.colorTable[opaque[size_t(named[k])]].symbolic);
        slotOf[k] = static_cast<unsigned>(table.size());
        table.push_back(c);
    }
    for (size_t j = 0; j < opaque.size(); j++)
        newIndex[opaque[j]] = slotOf[r.mapping[j]];

    // The table is libXpm's to free (XpmFreeXpmImage): malloc'ed, as its own.
    auto* fresh = static_cast<XpmColor*>(calloc(table.size(), sizeof(XpmColor)));
    if (!fresh)
        return -1;
    for (size_t i = 0; i < table.size(); i++)
        fresh[i] = table[i];
    for (unsigned i = 0; i < n; i++)
        free_colour(image.colorTable[i]);
    free(image.colorTable);
    image.colorTable = fresh;
    image.ncolors = static_cast<unsigned>(table.size());
    for (size_t i = 0; i < total; i++)
        image.data[i] = image.data[i] < n ? newIndex[image.data[i]] : 0;
    return 0;
}

int fit_colours(Display* dpy, Colormap colormap, XpmImage& image, ColourFit* fit)
{
    if (fit->reduceTo == 0) {
        fit->colours = image.ncolors;
        int entries = DefaultVisual(dpy, DefaultScreen(dpy))->map_entries;
        fit->freeCells = count_free_cells(dpy, colormap, static_cast<unsigned>(entries > 0 ? entries : 256));
        return READ_TOO_MANY_COLOURS;
    }
    if (reduce_xpm_colours(dpy, colormap, image, fit->reduceTo) != 0)
        return -1;
    fit->reduced = true;
    return 0;
}
