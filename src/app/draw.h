// Making, opening, naming and closing drawings: the drawing window built
// around each record of the registry.
#pragma once

#include <X11/Intrinsic.h>

#include "core/drawing.h"
#include "core/x_owned.h"

struct DrawingXpmInfo;

// The single constructor. Returns null (after showing "Too many drawings")
// when eight drawings are open. `sourceCopy` is the source's contents as
// they would be read back, when the caller holds them (see create_image).
Drawing* create_drawing(const char* name, int width, int height, int depth,
                        Pixmap source, int hotspotX, int hotspotY,
                        const DrawingXpmInfo* xpm, ImagePtr sourceCopy = nullptr);

// An empty drawing; a null name formats untitledFormatString with the next
// slot number, zero sizes take drawAreaWidth/Height.
Drawing* new_untitled_drawing(const char* name, int width, int height);

// Returned by open_file when eight drawings are open; the message has
// already been shown.
constexpr int OPEN_TOO_MANY = 100;

// Reads a file and makes a drawing of it, named `name` (the path when
// null); returns the reader's status (0 success), which the caller reports
// with report_read_status().
int open_file(const char* path, const char* name = nullptr);

void set_name(Drawing* d, const char* name);
// Shows d->name where the window shows it: title, icon name and the titles
// of the dialogs that belong to the drawing.
void show_name(Drawing* d);
void close_drawing(Drawing* d);
void after_close(Drawing* d);
