// Cheap looks at an image file, taken before Xlib or libXpm read it: its
// size and its first bytes must show a file that could hold a drawing, and
// its declared size must fit, so that no file, however large or hostile,
// keeps a reader busy or makes it allocate more than a drawing needs.
// Pure logic.
#pragma once

#include <string_view>

// The largest drawing the program makes.
constexpr unsigned MAX_IMAGE_WIDTH = 512;
constexpr unsigned MAX_IMAGE_HEIGHT = 720;

// Every colour of a drawing is a cell of the default colormap, so a table
// can hold at most as many colours as the colormap has cells. The protocol
// gives colormap sizes in 16 bits: no display has more cells than this.
constexpr unsigned long MAX_XPM_COLOURS = 65536;
// Writers use as few characters a pixel as name every colour: libXpm's 92
// characters name 65536 colours in 3, hexadecimal digits in 4. Eight leaves
// room for a writer that spells a colour's RGB in its key.
constexpr unsigned long MAX_CHARS_PER_PIXEL = 8;

// The largest XPM file a drawing with a table of `colours` can be:
// a colour line holds the key and at most the five "key value" pairs
// (m, s, g4, g, c) with names of up to 40 characters; a pixel row the
// characters of the widest drawing besides quotes, comma, line end and
// indentation; and a megabyte covers the declaration, comments and
// extensions, far more than any writer puts there.
constexpr unsigned long long XPM_COLOUR_LINE_BYTES = 256;
constexpr unsigned long long XPM_ROW_EXTRA_BYTES = 16;
constexpr unsigned long long XPM_SLACK_BYTES = 1ull << 20;
constexpr unsigned long long max_xpm_file_bytes(unsigned long colours)
{
    return colours * XPM_COLOUR_LINE_BYTES +
           MAX_IMAGE_HEIGHT * (MAX_IMAGE_WIDTH * MAX_CHARS_PER_PIXEL + XPM_ROW_EXTRA_BYTES) +
           XPM_SLACK_BYTES;
}
// The largest XBM file: every byte of the tallest, widest bitmap as
// "0x00, " with room for a line of its own, and 64 kilobytes for the
// defines and comments.
constexpr unsigned long long MAX_XBM_FILE_BYTES =
    (MAX_IMAGE_WIDTH + 7) / 8 * MAX_IMAGE_HEIGHT * 16ull + (64u << 10);

// How much of a file the checks look at. Both formats name themselves in
// their first line (XPM) or first few lines (XBM); a file whose header is
// not within this many bytes is refused.
constexpr unsigned long IMAGE_HEAD_BYTES = 16384;

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

// What the first bytes of a file (`head`: its first IMAGE_HEAD_BYTES bytes,
// or all of it when shorter) and its `size` say about it as an XBM.
enum class XbmFileVerdict { NotXbm, Acceptable, Refuse };
XbmFileVerdict check_xbm_file(std::string_view head, unsigned long long size);

// TooManyColours: more colours than `colourLimit`, yet not beyond
// MAX_XPM_COLOURS; the caller says so as running out of colour cells.
enum class XpmHeaderVerdict { Unknown, Acceptable, TooManyColours, Refuse };

// Finds the values ("width height colours chars-per-pixel ...") of an XPM 3,
// XPM 2 or XPM 1 file in its first bytes, where libXpm would take them.
// Unknown when there are none to see.
XpmHeaderVerdict check_xpm_header(std::string_view head, unsigned long colourLimit = MAX_XPM_COLOURS);

// Whether the first line holds the two words libXpm wants before anything
// else: "#define name_format", or any word followed by "XPM" or "XPM2".
bool xpm_header_words(std::string_view head);

// The whole judgement of a file (the stream after decompression, for a
// compressed one) as an XPM, on a display whose colormap has
// `colormapEntries` cells.
enum class XpmFileVerdict { Read, TooManyColours, Refuse };
XpmFileVerdict check_xpm_file(std::string_view head, unsigned long long size, unsigned long colormapEntries);

// A hotspot that lies outside the image means no hotspot.
bool hotspot_inside(long x, long y, unsigned width, unsigned height);
