// Helpers of the files tests: generated image files, a private directory, dialogs' texts and free colour cells.
#pragma once

#include <X11/Intrinsic.h>
#include <Xm/Xm.h>

#include <string>
#include <vector>

struct Drawing;

namespace filetest {

// One colour of a generated XPM: its "c" value ("#RRGGBB", "None", "#Transparent") and its "m" value (empty: none).
struct TestColour { std::string c, m; };

struct TestXpm {
    int width = 0, height = 0, cpp = 1;
    std::vector<TestColour> colours;
    std::vector<int> pixels;   // colour index per pixel, row by row
    int hotspotX = -1, hotspotY = -1;
};

// An XPM of `count` distinct colours in a pattern that uses every one of them.
TestXpm pattern_xpm(int width, int height, int count, int cpp);
std::string xpm_text(const TestXpm& xpm);

struct TestXbm {
    int width = 0, height = 0;
    std::vector<int> bits;   // 0/1 per pixel, row by row
    int hotspotX = -1, hotspotY = -1;
};
TestXbm pattern_xbm(int width, int height);
std::string xbm_text(const TestXbm& xbm, const char* name = "pic");

// An XBM file as Xlib reads it back.
struct XbmBack {
    int status = -1;
    unsigned width = 0, height = 0;
    int hx = -1, hy = -1;
    std::vector<int> bits;   // 0/1 per pixel, row by row
    int bit(int x, int y) const { return bits[static_cast<size_t>(y) * width + static_cast<size_t>(x)]; }
};
XbmBack read_xbm(const std::string& path);

class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    std::string file(const std::string& name, const std::string& contents) const;
    std::string path(const std::string& name) const { return dir + "/" + name; }
    std::string dir;
};

std::string read_file(const std::string& path);

// The text of a widget's XmString resource (line breaks as "\n"), and of a message box's XmNmessageString.
std::string xm_resource_text(Widget w, const char* resource);
inline std::string dialog_message(Widget d) { return d ? xm_resource_text(d, XmNmessageString) : "(no dialog)"; }
// Presses a push button of a dialog by its name (its activate callbacks), then pumps.
void press(Widget dialog, const char* buttonName);

// The text of a text or text field widget, and setting it.
std::string text_of(Widget w);
void set_text(Widget w, const std::string& v);
// The file dialog's text field; OK of the file dialog as the dialog itself calls it, after typing `typed` when
// given; a menu command run on a drawing as its menu item runs it. Each pumps afterwards.
std::string file_text();
void press_file_ok(const std::string& typed = "");
void command(Drawing* d, int cmd);
inline bool managed(Widget w) { return w && XtIsManaged(w); }

// Whether a dialog's shell is centred over a drawing's shell, to a pixel.
bool centred_over(Widget dialogShell, Widget drawingShell);

// The open drawing named `name`, or null.
Drawing* drawing_named(const std::string& name);
int open_count();

// Free read/write cells of the default colormap, found by allocating.
int free_cells();

// 8-bit RGB of a pixel of the default colormap, as 0xRRGGBB.
unsigned rgb_of_pixel(unsigned long pixel);
// 8-bit RGB of an XPM colour string "#RRGGBB" or "#RRRRGGGGBBBB" (the top two digits of a channel).
unsigned rgb_of_spec(const std::string& spec);

}  // namespace filetest
