// Reading XBM and XPM files into the pieces a drawing is made from, and
// writing a colour drawing as XPM.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/xpm.h>

struct ColourFit;
struct Drawing;

// What a drawing keeps of the XPM file it was read from.
struct DrawingXpmInfo {
    void* reserved;
    unsigned int colourCount;
    XpmColor** colours;        // six strings each, libXpm order; mono and colour filled
    Pixel* pixels;             // private cell of each file colour
    char* hintsCmt;
    char* colorsCmt;
    char* pixelsCmt;
    const char* rgbFileName;
    unsigned int tableCount;   // records in `colours` and entries in `pixels`
    // What the file carries beyond its pixels, written back on save: the
    // symbolic name ("s" key) of the colour in each cell of `pixels` (null
    // where none; tableCount entries), that of the transparent colour, and
    // the XPMEXT extensions.
    char** symbolicNames;
    char* transparentName;
    XpmExtension* extensions;
    unsigned int extensionCount;
};

void init_xpm_info(DrawingXpmInfo* info);
DrawingXpmInfo* new_xpm_info();
void release_xpm_info(DrawingXpmInfo* info);
// Deep copy of `from` into `to` (which is released first).
void copy_xpm_info(DrawingXpmInfo* to, const DrawingXpmInfo* from);
// Keeps what a file carries beyond its pixels in a record whose `pixels`
// are already set from libXpm's pixel list for `image`.
void keep_file_extras(DrawingXpmInfo* info, const XpmImage& image, const XpmExtension* extensions,
                      unsigned extensionCount);
// The symbolic name a file gave the colour now in `pixel`: the transparent
// colour's name when `pixel` is `transparent`. Null when none.
const char* symbolic_name_of(const DrawingXpmInfo* info, Pixel pixel, Pixel transparent);
// Copies of libXpm's extensions, taken and freed with the toolkit's allocator.
XpmExtension* copy_xpm_extensions(const XpmExtension* from, unsigned count);
void free_xpm_extensions(XpmExtension* extensions, unsigned count);

// Status: 0 success, -1 neither a readable XBM nor XPM, 1 no colour cell.
// With `fit` (files/colour_fit.h), an XPM whose colours need more cells
// than are free is not refused: it returns READ_TOO_MANY_COLOURS with the
// counts, or is read with its colours reduced when fit->reduceTo says so.
// With `picture`, a successful read may also hand over (for the caller to
// destroy) the client-side picture it uploaded into the pixmap: the same
// pixels, laid out as the reader had them; null otherwise.
int read_image_file(const char* fileName, int* width, int* height, int* depth,
                    Pixmap* pixmap, int* hotspotX, int* hotspotY, DrawingXpmInfo* info,
                    ColourFit* fit = nullptr, XImage** picture = nullptr);

// Returns libXpm's status of the file write (0 XpmSuccess), or
// XpmFileInvalid when the file written does not read back as the drawing.
int write_xpm_file(Drawing* d, const char* fileName);
