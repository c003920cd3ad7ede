// Helpers of the canvas and tool tests: strokes delivered through the canvas input path, zoom changes, an X error
// trap, and a cell-by-cell check of the magnified display against the image.
#pragma once

#include "x_env.h"   // first: gtest before Xlib's macros

#include <X11/Xutil.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

struct Drawing;

struct ImagePoint { int x, y; };

struct ImageDeleter {
    void operator()(XImage* im) const { XDestroyImage(im); }
};
using ImagePtr = std::unique_ptr<XImage, ImageDeleter>;

// Calls the canvas input callback (press, release) or motion handler of the drawing's active area directly, with
// window coordinates.
void area_button(Drawing* d, int type, unsigned button, int wx, int wy, unsigned state = 0);
void area_motion(Drawing* d, int wx, int wy, unsigned state);

// Window position of the middle of an image pixel's cell at the current zoom.
int cell_centre(Drawing* d, int v);

// Press at the first point, move through the rest, release at the last; all in image pixels, delivered in window
// coordinates of the active area.
void stroke(Drawing* d, unsigned button, std::initializer_list<ImagePoint> points,
            unsigned state = 0);

// "" when every listed image pixel is `want`, else the first that is not.
std::string pixels_are(Drawing* d, unsigned long want, const std::vector<ImagePoint>& points);

// Sets the zoom and lays the canvas out again, then pumps.
void set_zoom(Drawing* d, int zoom);

// Draws a picture of many pixel values into the image with a private GC (the drawing's GCs stay untouched) and
// refreshes it.
void paint_test_picture(Drawing* d);

// Compares every fully visible cell of the active area's window with the image: the square in the image pixel's
// colour, the grid in the window background. Returns "" when they agree, else the first difference.
std::string check_display(Drawing* d);

// Compares imageCopy with the image pixel for pixel ("" when equal).
std::string check_image_copy(Drawing* d);

// Counts X protocol errors while alive; the count is read after a sync.
class XErrorTrap {
public:
    XErrorTrap();
    ~XErrorTrap();
    int errors();
private:
    XErrorHandler old_;
};

// The pixels that the drawing's foreground and background GCs paint.
unsigned long foreground_pixel(Drawing* d);
unsigned long background_pixel(Drawing* d);

// Holds the server grabbed while alive (nested grabs count), so no other client's window covers ours while pixels
// are read back.
class ServerGrab {
public:
    ServerGrab();
    ~ServerGrab();
};

// Whether the drawing's menu item of the command exists and is sensitive.
bool item_sensitive(Drawing* d, int command);
