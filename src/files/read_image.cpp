// Reading an image file: XBM first (read as XReadBitmapFile reads it),
// then XPM through libXpm, giving every XPM colour a private read/write
// cell so that the colour editor can later change it in place with
// XStoreColor.
//
// Every step that can fail undoes what the read made so far: pixmaps,
// images, GCs and, above all, colour cells, which are scarce on the 8-bit
// displays this program runs on.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/xpm.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/app_state.h"
#include "core/message.h"
#include "core/x_owned.h"
#include "files/cell_remap.h"
#include "files/colour_fit.h"
#include "files/file_look.h"
#include "files/image_header.h"
#include "files/image_io.h"
#include "files/mono_names.h"
#include "files/xpm_colours.h"
#include "files/xbm_parse.h"
#include "files/xpm_parse.h"

namespace {

constexpr int NOT_XBM = 2;   // internal: go on with the XPM reader
constexpr unsigned UPLOAD_BAND_BYTES = 32768;

// --- XBM ----------------------------------------------------------------

// The whole text of a file no larger than `limit` bytes; false when it
// cannot be read or is larger.
bool read_whole(const char* fileName, unsigned long long limit, std::string* text)
{
    std::unique_ptr<FILE, int (*)(FILE*)> f(std::fopen(fileName, "r"), std::fclose);
    if (!f)
        return false;
    // Room for the whole file at once: grown by doubling, the text was
    // copied three or four times into fresh pages, each a page fault, which
    // for a 511 x 719 bitmap cost more than its reading.
    struct stat st;
    if (fstat(fileno(f.get()), &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0 &&
        static_cast<unsigned long long>(st.st_size) <= limit)
        text->reserve(static_cast<size_t>(st.st_size));
    char buffer[65536];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f.get())) > 0) {
        if (text->size() + n > limit)
            return false;
        text->append(buffer, n);
    }
    return !std::ferror(f.get());
}

// Whether a file opens as the XPM 3 files that parse_xpm_text reads do:
// any other is left to libXpm unread here, which may refuse it at once.
bool starts_as_xpm3(const char* fileName)
{
    int fd = open(fileName, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    static constexpr char head[] = "/* XPM */";
    char got[sizeof head - 1];
    bool same = read(fd, got, sizeof got) == static_cast<ssize_t>(sizeof got) && !std::memcmp(got, head, sizeof got);
    close(fd);
    return same;
}

// parse_xpm over a file, read a part at a time.
bool parse_xpm_file(const char* fileName, XpmImage* image, XpmParsed* info)
{
    int fd = open(fileName, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    XpmSource source{[](void* data, char* into, size_t n) -> size_t {
                         int from = *static_cast<int*>(data);
                         ssize_t got;
                         do
                             got = read(from, into, n);
                         while (got < 0 && errno == EINTR);
                         return got > 0 ? static_cast<size_t>(got) : 0;
                     },
                     &fd};
    bool read = parse_xpm(source, image, info);
    close(fd);
    return read;
}

// Called once the first bytes have shown an XBM header within the limits.
// The bits are read as XReadBitmapFile reads them, from the text in memory.
int read_xbm(const char* fileName, int* width, int* height, Pixmap* pixmap,
             int* hotspotX, int* hotspotY, XImage** picture)
{
    App& a = app();
    std::string text;
    XbmBits xbm;
    if (!read_whole(fileName, MAX_XBM_FILE_BYTES, &text) || !parse_xbm(text, &xbm))
        return NOT_XBM;
    unsigned w = xbm.width, h = xbm.height;
    if (w > MAX_IMAGE_WIDTH || h > MAX_IMAGE_HEIGHT)
        return -1;
    Pixmap bitmap = XCreateBitmapFromData(a.display, a.root, reinterpret_cast<const char*>(xbm.rows.data()), w, h);
    if (!bitmap)
        return NOT_XBM;
    if (picture && xbm.rows.size() >= static_cast<size_t>((w + 7) / 8) * h) {
        // The bits as they were uploaded, for the drawing's client-side copy.
        // XCreateBitmapFromData reads them so: rows of whole bytes, the
        // first pixel in the low bit.
        size_t bytes = xbm.rows.size();
        auto* data = static_cast<char*>(std::malloc(bytes ? bytes : 1));
        XImage* rows = data ? XCreateImage(a.display, nullptr, 1, XYBitmap, 0, data, w, h, 8,
                                           static_cast<int>((w + 7) / 8))
                            : nullptr;
        if (rows) {
            std::memcpy(data, xbm.rows.data(), bytes);
            rows->byte_order = rows->bitmap_bit_order = LSBFirst;
            rows->bitmap_unit = 8;
            *picture = rows;
        } else {
            std::free(data);
        }
    }
    int hx = xbm.hotX, hy = xbm.hotY;
    if (!hotspot_inside(hx, hy, w, h))
        hx = hy = -1;
    *width = static_cast<int>(w);
    *height = static_cast<int>(h);
    *pixmap = bitmap;
    *hotspotX = hx;
    *hotspotY = hy;
    return 0;
}

// --- XPM ----------------------------------------------------------------

// Gives libXpm's shared cells back and frees the list of them. The list
// is ours to free: XpmFreeAttributes frees it only while its count is
// non-zero, so a count zeroed to keep the cells from being freed twice, or
// an image that took no cell, would otherwise leave it behind on every read.
void give_back_shared_cells(Display* dpy, XpmAttributes* attrs)
{
    if (attrs->nalloc_pixels > 0)
        XFreeColors(dpy, app().colormap, attrs->alloc_pixels, attrs->nalloc_pixels, 0);
    XpmFree(attrs->alloc_pixels);
    attrs->alloc_pixels = nullptr;
    attrs->nalloc_pixels = 0;
}

// Everything libXpm returned in the attributes, the shared cells included.
// The list of pixels has the same flaw as the list of cells: an image whose
// only colour is transparent returns it with a count of zero.
void release_attributes(Display* dpy, XpmAttributes* attrs)
{
    give_back_shared_cells(dpy, attrs);
    XpmFree(attrs->pixels);
    attrs->pixels = nullptr;
    attrs->npixels = 0;
    XpmFreeAttributes(attrs);
}

// Everything an XPM read holds, released in one place whatever the outcome.
struct XpmRead {
    Display* dpy = nullptr;
    XpmImage image{};
    bool haveImage = false;
    XpmAttributes attrs{};
    bool haveAttrs = false;
    // libXpm's picture in its shared cells and its shape (none when the
    // file has no transparent colour), both client-side: the picture goes
    // to the server once, in its private cells.
    ImagePtr picture, shape;
    Pixmap result = None;
    GC gc = nullptr;
    std::vector<unsigned long> privateCells;   // given back on failure
    // The colours of libXpm's cells, kept once those cells are given back,
    // and the transparent cell's.
    std::unordered_map<unsigned long, XColor> colourOf;
    // The private cells, taken in one request before the remap hands them
    // out in order, and the colours they are given, stored in one request.
    std::vector<unsigned long> cellsTaken;
    size_t cellsHandedOut = 0;
    std::vector<XColor> colourStores;
    unsigned cellsNeeded = 0;   // a private cell per opaque colour, and the transparent one
    bool keepCells = false;
    bool haveNewBackground = false;
    Pixel oldBackground = 0;
    Pixel newBackground = 0;
    // The file's extensions, handed to the drawing's record on success.
    XpmExtension* extensions = nullptr;
    unsigned extensionCount = 0;

    ~XpmRead()
    {
        free_xpm_extensions(extensions, extensionCount);
        if (gc)
            XFreeGC(dpy, gc);
        // libXpm's shared cells served only to build the first pixmap; the
        // drawing uses private cells from here on.
        if (haveAttrs)
            release_attributes(dpy, &attrs);
        if (haveImage)
            XpmFreeXpmImage(&image);
        if (!keepCells) {
            if (result)
                XFreePixmap(dpy, result);
            if (!privateCells.empty())
                XFreeColors(dpy, app().colormap, privateCells.data(),
                            static_cast<int>(privateCells.size()), 0);
            if (haveNewBackground) {
                XFreeColors(dpy, app().colormap, &newBackground, 1, 0);
                res().background = oldBackground;
            }
        }
    }
};

// True when the colormap has `count` read/write cells free right now.
bool cells_available(Display* dpy, unsigned count)
{
    if (count == 0)
        return true;
    std::vector<unsigned long> probe(count);
    if (!XAllocColorCells(dpy, app().colormap, False, nullptr, 0, probe.data(), count))
        return false;
    XFreeColors(dpy, app().colormap, probe.data(), static_cast<int>(count), 0);
    return true;
}

// Colours that take a cell: every one but the transparent ones.
unsigned opaque_colours(const XpmImage& image)
{
    unsigned n = 0;
    for (unsigned i = 0; i < image.ncolors; i++) {
        const char* c = image.colorTable[i].c_color;
        if (!c || strcasecmp(c, "None"))
            n++;
    }
    return n;
}

void show_alloc_error()
{
    show_message(nullptr, res().allocColorErr ? res().allocColorErr : "Unable to allocate color.",
                 0, nullptr, nullptr);
}

// The remap's allocator: the next of the cells taken beforehand, which
// will hold the colour of `oldPixel` (a shared cell, or the transparent
// cell for the very first pixel).
bool allocate_copy(unsigned long oldPixel, unsigned long* newPixel, void* data)
{
    auto* read = static_cast<XpmRead*>(data);
    unsigned long cell = 0;
    if (read->cellsHandedOut < read->cellsTaken.size()) {
        cell = read->cellsTaken[read->cellsHandedOut++];
    } else {
        // More than foreseen: the next one, as one at a time gives it.
        if (!XAllocColorCells(read->dpy, app().colormap, False, nullptr, 0, &cell, 1))
            return false;
        read->privateCells.push_back(cell);
    }
    XColor colour{};
    auto known = read->colourOf.find(oldPixel);
    if (known != read->colourOf.end())
        colour = known->second;
    colour.pixel = cell;
    colour.flags = DoRed | DoGreen | DoBlue;
    read->colourStores.push_back(colour);
    *newPixel = cell;
    return true;
}


// Status after libXpm failed to make the pixmap: running out of cells is a
// colour failure (1, told to the user), anything else an unreadable file.
int colour_failure_status(Display* dpy, int xpmStatus, unsigned cellsNeeded)
{
    if ((xpmStatus == XpmColorError || xpmStatus == XpmColorFailed) &&
        !cells_available(dpy, cellsNeeded)) {
        show_alloc_error();
        return 1;
    }
    return -1;
}

XpmColor* make_record(const char* colour, const char* mono)
{
    auto* rec = reinterpret_cast<XpmColor*>(XtCalloc(1, sizeof(XpmColor)));
    rec->c_color = colour ? XtNewString(colour) : nullptr;
    rec->m_color = mono ? XtNewString(mono) : nullptr;
    return rec;
}

// The parse and what it decides before any server resource is taken: the
// file is refused, reported as having too many colours (1, told to the
// user), or read, with the hotspot of its values line. Returns 0 when the
// reading goes on.
int parse_xpm(const char* fileName, const FileLook& plain, XpmRead& r, int* hotspotX, int* hotspotY,
              ColourFit* fit)
{
    App& a = app();
    unsigned long colormapEntries = static_cast<unsigned long>(std::max(a.visual->map_entries, 1));
    int stream = -1;
    XpmFileVerdict verdict = xpm_file_verdict(fileName, plain, colormapEntries, &stream);
    // A compressed file was decompressed whole to judge it; its stream is
    // read from there rather than through gzip a second time.
    std::string source = stream >= 0 ? descriptor_path(stream) : std::string(fileName);
    struct Closer {
        int fd;
        ~Closer() { if (fd >= 0) close(fd); }
    } closer{stream};
    switch (verdict) {
    case XpmFileVerdict::Refuse:
        return -1;
    case XpmFileVerdict::TooManyColours:
        // A caller that can have the colours reduced takes any table a
        // drawing's file may hold; it is judged again as such.
        if (fit && xpm_file_verdict(fileName, plain, MAX_XPM_COLOURS) == XpmFileVerdict::Read)
            break;
        // What running out of cells after the parse would say.
        show_alloc_error();
        return 1;
    case XpmFileVerdict::Read:
        break;
    }

    // The parse comes first: it touches no server resource, and what it
    // finds decides whether the file may go any further.
    // The common form is read here from the text in memory, as libXpm
    // would read it; libXpm reads every other file itself.
    XpmParsed quick;
    bool parsedHotspot;
    int parsedX, parsedY;
    if (starts_as_xpm3(source.c_str()) && parse_xpm_file(source.c_str(), &r.image, &quick)) {
        r.haveImage = true;
        parsedHotspot = quick.hotspot;
        parsedX = static_cast<int>(quick.hotX);
        parsedY = static_cast<int>(quick.hotY);
    } else {
        XpmInfo parsed{};
        parsed.valuemask = XpmReturnInfos | XpmReturnExtensions;
        if (XpmReadFileToXpmImage(source.data(), &r.image, &parsed) != XpmSuccess)
            return -1;
        r.haveImage = true;
        parsedHotspot = (parsed.valuemask & XpmHotspot) != 0;
        parsedX = static_cast<int>(parsed.x_hotspot);
        parsedY = static_cast<int>(parsed.y_hotspot);
        if (parsed.valuemask & XpmExtensions) {
            r.extensions = copy_xpm_extensions(parsed.extensions, parsed.nextensions);
            r.extensionCount = r.extensions ? parsed.nextensions : 0;
        }
        XpmFreeXpmInfo(&parsed);
    }
    XpmImage& img = r.image;
    if (img.width == 0 || img.height == 0 || img.width > MAX_IMAGE_WIDTH ||
        img.height > MAX_IMAGE_HEIGHT || img.ncolors == 0 || !img.colorTable)
        return -1;

    // How a file names its transparent colour.
    for (unsigned i = 0; i < img.ncolors; i++) {
        char*& c = img.colorTable[i].c_color;
        if (c && !std::strcmp(c, "#Transparent")) {
            XpmFree(c);
            c = strdup("None");
        }
    }

    // A private cell per colour plus the transparent one: refuse a table
    // the colormap cannot hold before allocating any of it.
    r.cellsNeeded = opaque_colours(img) + 1;
    if (!cells_available(r.dpy, r.cellsNeeded) && fit) {
        // Asked first, or reduced to what the user agreed to.
        if (int status = fit_colours(r.dpy, a.colormap, img, fit))
            return status;
        r.cellsNeeded = opaque_colours(img) + 1;
    }
    if (!cells_available(r.dpy, r.cellsNeeded)) {
        show_alloc_error();
        return 1;
    }

    // The hotspot is the values line's, as this parse read it: a second
    // read of the file as an image would find the same line, and only
    // fail where this one already stood in for it.
    *hotspotX = parsedHotspot ? parsedX : -1;
    *hotspotY = parsedHotspot ? parsedY : -1;
    return 0;
}

// The transparent cell: a fresh copy of the current transparent colour,
// which becomes the program's transparent pixel from now on (and goes back
// to the old one if the read fails).
bool take_transparent_cell(XpmRead& r)
{
    Display* dpy = r.dpy;
    Pixel cell = 0;
    if (!XAllocColorCells(dpy, app().colormap, False, nullptr, 0, &cell, 1))
        return false;
    XColor bg{};
    bg.pixel = res().background;
    XQueryColor(dpy, app().colormap, &bg);
    bg.pixel = cell;
    bg.flags = DoRed | DoGreen | DoBlue;
    XStoreColor(dpy, app().colormap, &bg);
    r.colourOf[cell] = bg;
    r.haveNewBackground = true;
    r.oldBackground = res().background;
    r.newBackground = cell;
    res().background = cell;
    return true;
}

// Pixel access to the client-side pictures: 8-bit pictures and 1-bit
// shapes are read in place, anything else through Xlib.
struct PixelRows {
    XImage* image;
    bool bytes;   // one byte a pixel
    explicit PixelRows(XImage* im)
        : image(im), bytes(im && im->format == ZPixmap && im->bits_per_pixel == 8) {}
    unsigned long get(unsigned x, unsigned y) const
    {
        if (bytes)
            return reinterpret_cast<unsigned char*>(image->data)[y * static_cast<unsigned>(image->bytes_per_line) + x];
        return XGetPixel(image, static_cast<int>(x), static_cast<int>(y));
    }
    void put(unsigned x, unsigned y, unsigned long p)
    {
        if (bytes)
            reinterpret_cast<unsigned char*>(image->data)[y * static_cast<unsigned>(image->bytes_per_line) + x] =
                static_cast<unsigned char>(p);
        else
            XPutPixel(image, static_cast<int>(x), static_cast<int>(y), p);
    }
};

struct ShapeBits {
    XImage* image;
    bool packed;   // a plain bitmap: one bit a pixel, rows of whole bytes
    explicit ShapeBits(XImage* im)
        : image(im), packed(im && im->depth == 1 && im->bits_per_pixel == 1 && im->xoffset == 0) {}
    // Whether (x, y) is opaque; with no shape every pixel is.
    bool opaque(unsigned x, unsigned y) const
    {
        if (!image)
            return true;
        if (!packed)
            return XGetPixel(image, static_cast<int>(x), static_cast<int>(y)) != 0;
        unsigned char byte =
            reinterpret_cast<unsigned char*>(image->data)[y * static_cast<unsigned>(image->bytes_per_line) + x / 8];
        unsigned bit = image->bitmap_bit_order == LSBFirst ? x % 8 : 7 - x % 8;
        return (byte >> bit) & 1;
    }
};

// The picture in libXpm's shared cells, with the transparent pixel where
// the file has its transparent colour, on the client side.
void fill_transparent(XpmRead& r, unsigned w, unsigned h)
{
    if (!r.shape)
        return;
    PixelRows picture(r.picture.get());
    ShapeBits shape(r.shape.get());
    for (unsigned y = 0; y < h; y++)
        for (unsigned x = 0; x < w; x++)
            if (!shape.opaque(x, y))
                picture.put(x, y, r.newBackground);
}

// Runs the remap over the picture, column by column, and then over the
// table colours the picture never uses, with `allocate` for the cells.
// Each opaque pixel takes its new value; a transparent one keeps the
// transparent pixel whatever the remap says of it.
bool remap_picture(XpmRead& r, unsigned w, unsigned h, CellRemap& remap, CellRemap::Allocate allocate,
                   void* data, std::vector<unsigned long>& colourPixels, std::vector<size_t>* unmatched)
{
    PixelRows picture(r.picture.get());
    ShapeBits shape(r.shape.get());
    if (picture.bytes) {
        // The common case, a byte a pixel, walked down each column in place.
        auto* column = reinterpret_cast<unsigned char*>(r.picture->data);
        size_t stride = static_cast<size_t>(r.picture->bytes_per_line);
        for (unsigned x = 0; x < w; x++, column++) {
            unsigned char* at = column;
            for (unsigned y = 0; y < h; y++, at += stride) {
                unsigned long p = *at, q = p;
                if (!remap.map(p, &q, allocate, data))
                    return false;
                if (q != p && shape.opaque(x, y))
                    *at = static_cast<unsigned char>(q);
            }
        }
    } else {
        for (unsigned x = 0; x < w; x++) {
            for (unsigned y = 0; y < h; y++) {
                unsigned long p = picture.get(x, y);
                unsigned long q = p;
                if (!remap.map(p, &q, allocate, data))
                    return false;
                if (q != p && shape.opaque(x, y))
                    picture.put(x, y, q);
            }
        }
    }
    *unmatched = remap.rewrite_pixels(colourPixels);
    for (size_t c : *unmatched) {
        unsigned long cell = 0;
        if (!allocate(colourPixels[c], &cell, data))
            return false;
        colourPixels[c] = cell;
    }
    return true;
}

// Moves every colour from libXpm's shared cells to private cells of its
// own: the pixels of the picture, then the colours of the table (one the
// picture never uses still gets a cell). `colourPixels` comes in as
// libXpm's list of pixels and goes out as the private cell of each colour.
// The cells are the ones that taking them one at a time, as the remap asks
// for them, would give: they are counted beforehand, taken in one request,
// handed out lowest first and filled in another request.
// Returns false, having told the user, when the cells run out.
bool remap_to_private_cells(XpmRead& r, unsigned w, unsigned h, std::vector<unsigned long>& colourPixels)
{
    Display* dpy = r.dpy;
    const std::vector<unsigned long> returned = colourPixels;

    // Remember the colours of libXpm's shared cells and give the cells back
    // before the private ones are taken, so that a file needs its colours'
    // worth of free cells once, not twice.
    std::vector<XColor> shared(returned.size());
    for (size_t i = 0; i < returned.size(); i++)
        shared[i].pixel = returned[i];
    if (!shared.empty())
        XQueryColors(dpy, app().colormap, shared.data(), static_cast<int>(shared.size()));
    for (const XColor& c : shared)
        r.colourOf[c.pixel] = c;
    give_back_shared_cells(dpy, &r.attrs);

    // Every colour of libXpm's list ends with a cell of its own, and the
    // very first pixel visited takes one even when it stands for no colour.
    unsigned long first = PixelRows(r.picture.get()).get(0, 0);
    unsigned long needed = returned.size() +
                           (std::find(returned.begin(), returned.end(), first) == returned.end() ? 1 : 0);
    r.cellsTaken.resize(needed);
    if (needed && !XAllocColorCells(dpy, app().colormap, False, nullptr, 0, r.cellsTaken.data(),
                                    static_cast<unsigned>(needed))) {
        r.cellsTaken.clear();
        show_alloc_error();
        return false;
    }
    std::sort(r.cellsTaken.begin(), r.cellsTaken.end());
    r.privateCells = r.cellsTaken;

    CellRemap remap(returned);
    std::vector<size_t> unmatched;
    if (!remap_picture(r, w, h, remap, allocate_copy, &r, colourPixels, &unmatched)) {
        show_alloc_error();
        return false;
    }
    // Cells taken beforehand and not handed out go back (none, unless the
    // count above was wrong).
    for (size_t i = r.cellsHandedOut; i < r.cellsTaken.size(); i++) {
        XFreeColors(dpy, app().colormap, &r.cellsTaken[i], 1, 0);
        std::erase(r.privateCells, r.cellsTaken[i]);
    }
    if (!r.colourStores.empty())
        XStoreColors(dpy, app().colormap, r.colourStores.data(), static_cast<int>(r.colourStores.size()));
    // In bands: libXpm pads rows to bytes, the server to words, and Xlib
    // keeps the buffer it repacks a request in for the rest of the program.
    unsigned band = std::max(1u, UPLOAD_BAND_BYTES / std::max(1u, static_cast<unsigned>(r.picture->bytes_per_line)));
    for (unsigned y = 0; y < h; y += band)
        XPutImage(dpy, r.result, r.gc, r.picture.get(), 0, static_cast<int>(y), 0, static_cast<int>(y), w,
                  std::min(band, h - y));

    // A cell made for a pixel that stands for no colour (the transparent
    // fill) is never seen: give it back.
    for (unsigned long stray : remap.stray_cells()) {
        XFreeColors(dpy, app().colormap, &stray, 1, 0);
        std::erase(r.privateCells, stray);
    }
    return true;
}

// Success: the colour table and cells go to the drawing's XPM record.
void hand_over(XpmRead& r, const MonoNaming& naming, size_t pixelCount,
               const std::vector<unsigned long>& colourPixels, DrawingXpmInfo* info)
{
    const XpmImage& img = r.image;
    unsigned ncolours = img.ncolors;
    release_xpm_info(info);
    init_xpm_info(info);
    info->tableCount = ncolours;
    // More than one transparent colour leaves fewer pixels than the count
    // the names give; never count a colour that has no pixel.
    info->colourCount = std::min<unsigned>(naming.colourCount, static_cast<unsigned>(pixelCount));
    info->colours = reinterpret_cast<XpmColor**>(XtCalloc(ncolours, sizeof(XpmColor*)));
    for (unsigned i = 0; i < ncolours; i++)
        info->colours[i] = make_record(img.colorTable[i].c_color, naming.names[i]);
    // One pixel per record, so that whoever walks the table by colourCount
    // never reads past the list; slots without a colour of their own (a
    // second transparent colour) hold the transparent pixel.
    info->pixels = reinterpret_cast<Pixel*>(XtMalloc(ncolours * sizeof(Pixel)));
    for (unsigned i = 0; i < ncolours; i++)
        info->pixels[i] = i < colourPixels.size() ? colourPixels[i] : r.newBackground;
    keep_file_extras(info, img, r.extensions, r.extensionCount);
    r.keepCells = true;
}

int read_xpm(const char* fileName, const FileLook& plain, int* width, int* height, int* depth,
             Pixmap* pixmap, int* hotspotX, int* hotspotY, DrawingXpmInfo* info, ColourFit* fit,
             XImage** handedPicture)
{
    App& a = app();
    XpmRead r;
    r.dpy = a.display;
    int hx = -1, hy = -1;
    if (int status = parse_xpm(fileName, plain, r, &hx, &hy, fit))
        return status;
    XpmImage& img = r.image;

    r.attrs.valuemask = XpmVisual | XpmColormap | XpmDepth | XpmReturnPixels | XpmReturnAllocPixels;
    r.attrs.visual = a.visual;
    r.attrs.colormap = a.colormap;
    r.attrs.depth = static_cast<unsigned>(a.screenDepth);
    // The same colours, cells and status as making the pixmap, which is
    // this plus an upload of the picture: it is uploaded once, remapped.
    XImage* picture = nullptr;
    XImage* shape = nullptr;
    PrefetchedColours prefetched;
    if (prefetch_xpm_colours(r.dpy, a.colormap, img, &prefetched))
        use_prefetched_colours(&r.attrs, &prefetched);
    int status = XpmCreateImageFromXpmImage(r.dpy, &img, &picture, &shape, &r.attrs);
    release_unused_colours(&prefetched);
    r.picture.reset(picture);
    r.shape.reset(shape);
    r.haveAttrs = true;
    if (status != XpmSuccess)
        return colour_failure_status(r.dpy, status, r.cellsNeeded);

    unsigned w = img.width, h = img.height;
    unsigned d = r.attrs.depth ? r.attrs.depth : static_cast<unsigned>(a.screenDepth);

    // The colour table the drawing keeps: colour strings and monochrome names.
    std::vector<const char*> monoStrings(img.ncolors), colourStrings(img.ncolors);
    for (unsigned i = 0; i < img.ncolors; i++) {
        monoStrings[i] = img.colorTable[i].m_color;
        colourStrings[i] = img.colorTable[i].c_color;
    }
    MonoNaming naming = mono_names_of_table(monoStrings, colourStrings);

    if (!take_transparent_cell(r))
        return 1;
    if (!r.picture)
        return -1;
    fill_transparent(r, w, h);
    r.result = XCreatePixmap(r.dpy, a.root, w, h, d);
    r.gc = XCreateGC(r.dpy, r.result, 0, nullptr);
    std::vector<unsigned long> colourPixels(r.attrs.pixels, r.attrs.pixels + r.attrs.npixels);
    size_t pixelCount = colourPixels.size();
    if (!remap_to_private_cells(r, w, h, colourPixels))
        return 1;
    hand_over(r, naming, pixelCount, colourPixels, info);

    if (!hotspot_inside(hx, hy, w, h))
        hx = hy = -1;
    *width = static_cast<int>(w);
    *height = static_cast<int>(h);
    *depth = static_cast<int>(d);
    *pixmap = r.result;
    *hotspotX = hx;
    *hotspotY = hy;
    if (handedPicture)
        *handedPicture = r.picture.release();
    return 0;
}

}  // namespace

int read_image_file(const char* fileName, int* width, int* height, int* depth,
                    Pixmap* pixmap, int* hotspotX, int* hotspotY, DrawingXpmInfo* info,
                    ColourFit* fit, XImage** picture)
{
    if (picture)
        *picture = nullptr;
    *width = 0;
    *height = 0;
    *depth = 1;
    *pixmap = None;
    *hotspotX = -1;
    *hotspotY = -1;
    if (!fileName || !*fileName || !app().display || !openable(fileName))
        return -1;

    // One look at the first bytes decides which readers may see the file:
    // no reader goes through a file larger than any drawing's or one that
    // does not begin like an image.
    FileLook plain = look_at(fileName);
    int status = NOT_XBM;
    switch (plain.seen ? check_xbm_file(plain.head, plain.size) : XbmFileVerdict::NotXbm) {
    case XbmFileVerdict::Refuse:
        return -1;
    case XbmFileVerdict::Acceptable:
        status = read_xbm(fileName, width, height, pixmap, hotspotX, hotspotY, picture);
        break;
    case XbmFileVerdict::NotXbm:
        break;
    }
    if (status != NOT_XBM)
        return status;

    DrawingXpmInfo scratch;
    bool own = !info;
    if (own) {
        init_xpm_info(&scratch);
        info = &scratch;
    }
    status = read_xpm(fileName, plain, width, height, depth, pixmap, hotspotX, hotspotY, info, fit, picture);
    if (status != 0)
        *depth = 1;
    if (own)
        release_xpm_info(&scratch);
    return status;
}
