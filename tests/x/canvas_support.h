// Helpers of the canvas and tool tests: strokes through the canvas input path, zoom, display checks.
#pragma once

#include "x_env.h"   // first: gtest before Xlib's macros

#include <X11/Xutil.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "core/error_trap.h"   // the tests trap X errors as the program does
#include "core/x_owned.h"

struct Drawing;

struct ImagePoint { int x, y; };


// Calls the active area's input callback (press, release) or motion handler directly, at window coordinates.
void area_button(Drawing* d, int type, unsigned button, int wx, int wy, unsigned state = 0);
void area_motion(Drawing* d, int wx, int wy, unsigned state);

// Window position of the middle of an image pixel's cell at the current zoom.
int cell_centre(Drawing* d, int v);

// Press at the first image point, move through the rest, release at the last.
void stroke(Drawing* d, unsigned button, std::initializer_list<ImagePoint> points, unsigned state = 0);

// "" when every listed image pixel is `want`, else the first that is not.
std::string pixels_are(Drawing* d, unsigned long want, const std::vector<ImagePoint>& points);

// Pumps the event loop, timers included, until `done` or a second passes; returns `done()`.
bool wait_for(const std::function<bool()>& done);

// Sets the zoom and lays the canvas out again, then pumps.
void set_zoom(Drawing* d, int zoom);

// Fills a rectangle of the image with pixel value `v` through a private GC (the drawing's GCs stay untouched).
void put_pixels(Drawing* d, unsigned long v, int x, int y, int w = 1, int h = 1);

// Draws a picture of many pixel values into the image with a private GC and refreshes it.
void paint_test_picture(Drawing* d);

// "" when every visible cell of the active area shows its pixel in the square and the background in the grid.
std::string check_display(Drawing* d);

// Compares imageCopy with the image pixel for pixel ("" when equal).
std::string check_image_copy(Drawing* d);

// The drawing's whole image, read back from the server.
ImagePtr image_of(Drawing* d);
// "" when the top-left w x h of `got` holds `want`'s pixels (each through `shown` when given: how a view shows an
// image pixel), else the first pixel that differs.
std::string first_difference(const XImage* got, const XImage* want, int w, int h,
                             const std::function<unsigned long(unsigned long)>& shown = {});

// The pixels that the drawing's foreground and background GCs paint.
unsigned long foreground_pixel(Drawing* d);
unsigned long background_pixel(Drawing* d);

// Holds the server grabbed while alive (nested), so no other window covers ours while pixels are read back.
class ServerGrab {
public:
    ServerGrab();
    ~ServerGrab();
};

// Whether the drawing's menu item of the command exists and is sensitive.
bool item_sensitive(Drawing* d, int command);
// Whether Edit > Undo is sensitive, as the user sees it.
bool undo_sensitive(Drawing* d);
