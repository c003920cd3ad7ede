// Where windows go: a dialog centred over the window that asked for it, a
// new drawing window cascaded from the last one, a view beside its
// drawing, and every one of them kept on the screen. Plain arithmetic over
// rectangles in root coordinates, so that it can be tested without a server.
#pragma once

#include <vector>

// Origin, along one axis, of a box of `size` centred on the span [pos,
// pos + span), pulled back inside [0, screen) so that a dialog wider than a
// small drawing window never starts off the screen's edge, where no window
// manager brings it back. A box larger than the screen starts at 0.
int centred_on_screen(int pos, int span, int size, int screen);

// A window's outer rectangle (border included) on the screen.
struct WindowBox {
    int x, y, width, height;
};

struct Origin {
    int x, y;
    bool operator==(const Origin&) const = default;
};

// How far a new drawing window steps from the last one: enough to show
// the title bar and left edge of the window under it.
constexpr int CASCADE_STEP = 32;
// Space left between a window and the one placed beside it.
constexpr int BESIDE_GAP = 12;

// The nearest origin to (x, y) at which a width x height box lies wholly on
// a screen of screenWidth x screenHeight; a box larger than the screen
// starts at its top or left edge.
Origin clamped_on_screen(int x, int y, int width, int height, int screenWidth, int screenHeight);

// Where a new drawing window of width x height goes, given the windows of
// the drawings already open, the last opened last. It steps down and right
// from the last one; a step that would leave the screen at the bottom
// starts again at the top, one step further right, and one that would
// leave it at the right starts again at the left edge. An origin another
// window already has is stepped over, so no window hides another exactly.
// With no window open it is the screen's corner.
Origin cascade_origin(const std::vector<WindowBox>& open, int width, int height, int screenWidth, int screenHeight);

// Where a width x height window that belongs to `owner` (a view of a
// drawing, its colour list) goes: beside the owner, right of it or else
// left of it, at the owner's top or below one of the `taken` windows on
// that side, the first such place that is wholly on the screen and
// overlaps neither the owner nor a taken window. Failing all of them it
// goes right of the owner, pulled onto the screen: over the owner's right
// side, where the canvas is, rather than over its palettes on the left.
Origin beside_owner(const WindowBox& owner, const std::vector<WindowBox>& taken, int width, int height, int screenWidth,
                    int screenHeight);
