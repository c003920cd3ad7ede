// Cheap looks at an image file's declared size, taken before Xlib or libXpm
// allocate anything for it, so that a hostile header cannot ask for a
// gigantic pixmap. Pure logic.
#pragma once

#include <string_view>

// The largest drawing the program makes.
constexpr unsigned MAX_IMAGE_WIDTH = 512;
constexpr unsigned MAX_IMAGE_HEIGHT = 720;
// No colormap the program runs on has more entries than this.
constexpr unsigned long MAX_XPM_COLOURS = 65536;

// Follows XReadBitmapFile's reading of an XBM file, line by line, up to the
// line that opens the bits: it accepts, refuses (a size the program cannot
// hold, which Xlib would still try to allocate) or finds no XBM.
struct XbmHeaderScan {
    enum State { Reading, Accept, Refuse, NotXbm };
    State state = Reading;
    unsigned width = 0;
    unsigned height = 0;

    // One line as fgets returns it with a buffer of XBM_LINE_BUFFER bytes.
    void feed(const char* line);
    // End of file before the bits: not an XBM.
    void finish();
};
constexpr int XBM_LINE_BUFFER = 255;

enum class XpmHeaderVerdict { Unknown, Acceptable, Refuse };

// Finds the values ("width height colours chars-per-pixel ...") of an XPM 3,
// XPM 2 or XPM 1 file in its first bytes, where libXpm would take them.
// Unknown when there are none to see.
XpmHeaderVerdict check_xpm_header(std::string_view head);

// A hotspot that lies outside the image means no hotspot.
bool hotspot_inside(long x, long y, unsigned width, unsigned height);
