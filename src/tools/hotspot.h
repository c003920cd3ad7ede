// The hotspot tool's marker, which blinks in the image itself while the
// tool is chosen.
#pragma once

struct Drawing;

// Puts the real pixel back under the marker, so that what is written to a
// file is the picture and not the marker; the next blink shows it again.
void hotspot_hide_marker(Drawing* d);
