// Reading XBM and XPM files into the pieces a drawing is made from, and
// writing a colour drawing as XPM.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/xpm.h>

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
};

void init_xpm_info(DrawingXpmInfo* info);
DrawingXpmInfo* new_xpm_info();
void release_xpm_info(DrawingXpmInfo* info);
// Deep copy of `from` into `to` (which is released first).
void copy_xpm_info(DrawingXpmInfo* to, const DrawingXpmInfo* from);

// Status: 0 success, -1 neither a readable XBM nor XPM, 1 no colour cell.
int read_image_file(const char* fileName, int* width, int* height, int* depth,
                    Pixmap* pixmap, int* hotspotX, int* hotspotY, DrawingXpmInfo* info);

// Returns libXpm's status of the file write (0 XpmSuccess), or
// XpmFileInvalid when the file written does not read back as the drawing.
int write_xpm_file(Drawing* d, const char* fileName);
