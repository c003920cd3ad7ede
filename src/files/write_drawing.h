// Writing a drawing to a file, XPM or XBM, through a private staging folder.
#pragma once

struct Drawing;

// Writes the drawing to `target`; 0 on success, the file then being whole
// and read back as the drawing. `bw` writes the black-and-white rendering
// as XBM and leaves the drawing's name alone; otherwise the drawing takes
// the target's name.
int write_drawing(Drawing* d, const char* target, bool bw);
