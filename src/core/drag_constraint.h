// Which way a Shift-drag is held: decided by the first motion after a
// Shift-press that moves far enough, and kept for the rest of the stroke.
// Pure.
#pragma once

// Free while nothing holds the drag ("None" would clash with Xlib's macro).
enum class DragConstraint : unsigned char { Free, Horizontal, Vertical };
