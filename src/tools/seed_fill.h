// The fill tool's mask: a scan-line seed fill over plain pixel values, and
// the growable stack of line segments it works from. No X here, so the
// fill is tested on arrays.
#pragma once

#include <cstdint>
#include <vector>

struct FillSegment {
    int32_t left, right;              // the run to look at on line y
    int32_t parentLeft, parentRight;  // the run it came from
    int32_t y;
    int32_t direction;                // +1 down, -1 up
};

// Starts with room for 20 segments and grows by half when full; shrunk
// back to 20 when the fill tool is left, so a huge fill's memory goes back.
struct FillStack {
    FillSegment* records = nullptr;
    int capacity = 0;
    int top = -1;                     // -1 when empty
};

constexpr int FILL_STACK_START = 20;

// Returns 0, or 1 when memory runs out (the stack is then left empty).
int fill_stack_init(FillStack* s);
int fill_stack_push(FillStack* s, const FillSegment& segment);
bool fill_stack_pop(FillStack* s, FillSegment* out);
void fill_stack_shrink(FillStack* s);
void fill_stack_free(FillStack* s);

// Marks in `mask` (width x height, row major, 1 = to paint) every pixel of
// `pixels` that has the value of the pixel at (x, y) and is 4-connected to
// it, or with `everywhere` every pixel of that value. Returns how many
// pixels were marked: 0 when (x, y) is outside the image, -1 when the
// stack could not grow (the mask then holds what was found so far).
long seed_fill(const std::vector<unsigned long>& pixels, int width, int height, int x, int y,
               bool everywhere, FillStack* stack, std::vector<uint8_t>* mask);
