// Scan-line seed fill. Each segment is a run of a line still to be looked
// at, with the run of the neighbouring line it was found from, so that a
// run is searched back towards its parent only where it sticks out beyond
// it: no line is scanned more than a few times.
#include "tools/seed_fill.h"


#include <climits>
#include <cstdlib>

int fill_stack_init(FillStack* s)
{
    s->top = -1;
    if (s->records && s->capacity >= FILL_STACK_START)
        return 0;
    auto* r = static_cast<FillSegment*>(std::realloc(s->records, FILL_STACK_START * sizeof(FillSegment)));
    if (!r)
        return 1;
    s->records = r;
    s->capacity = FILL_STACK_START;
    return 0;
}

int fill_stack_push(FillStack* s, const FillSegment& segment)
{
    if (s->top + 1 >= s->capacity) {
        if (s->capacity > INT_MAX / 2)
            return 1;
        int grown = s->capacity < 2 ? FILL_STACK_START : s->capacity + s->capacity / 2;
        auto* r = static_cast<FillSegment*>(std::realloc(s->records, sizeof(FillSegment) * static_cast<size_t>(grown)));
        if (!r)
            return 1;
        s->records = r;
        s->capacity = grown;
    }
    s->records[++s->top] = segment;
    return 0;
}

bool fill_stack_pop(FillStack* s, FillSegment* out)
{
    if (s->top < 0)
        return false;
    *out = s->records[s->top--];
    return true;
}

void fill_stack_shrink(FillStack* s)
{
    s->top = -1;
    if (s->capacity <= FILL_STACK_START)
        return;
    if (auto* r = static_cast<FillSegment*>(std::realloc(s->records, FILL_STACK_START * sizeof(FillSegment)))) {
        s->records = r;
        s->capacity = FILL_STACK_START;
    }
}

void fill_stack_free(FillStack* s)
{
    std::free(s->records);
    *s = FillStack{};
}

namespace {

struct Filler {
    const std::vector<unsigned long>& pixels;
    int width, height;
    unsigned long seed;
    std::vector<uint8_t>& mask;
    FillStack* stack;
    long marked = 0;
    bool overflow = false;

    size_t at(int x, int y) const { return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x); }

    bool inside(int x, int y) const
    {
        if (x < 0 || x >= width || y < 0 || y >= height)
            return false;
        size_t i = at(x, y);
        return pixels[i] == seed && !mask[i];
    }

    void mark(int x, int y)
    {
        mask[at(x, y)] = 1;
        marked++;
    }

    void push(int l, int r, int pl, int pr, int y, int d)
    {
        if (fill_stack_push(stack, FillSegment{l, r, pl, pr, y, d}) != 0)
            overflow = true;
    }

    // A run (s, e) found on line y while moving in direction d from the
    // parent span (pl, pr): go on the same way, and look back the other
    // way only where the run reaches past its parent.
    void emit(int s, int e, int pl, int pr, int y, int d)
    {
        push(s, e, s - 1, e + 1, y + d, d);
        if (e > pr)
            push(pr + 1, e, s - 1, e + 1, y - d, -d);
        if (s < pl)
            push(s, pl - 1, s - 1, e + 1, y - d, -d);
    }

    void scan(const FillSegment& g)
    {
        int l = g.left, r = g.right, y = g.y;
        int s = l;
        bool inRun = inside(l, y);
        if (inRun) {
            mark(l, y);
            while (inside(s - 1, y)) {
                s--;
                mark(s, y);
            }
        }
        int x = l + 1;
        for (; x < width; x++) {
            if (!inRun) {
                if (x > r)
                    break;
                if (inside(x, y)) {
                    mark(x, y);
                    s = x;
                    inRun = true;
                }
            } else if (!inside(x, y)) {
                emit(s, x - 1, g.parentLeft, g.parentRight, y, g.direction);
                inRun = false;
            } else {
                mark(x, y);
            }
        }
        if (inRun)
            emit(s, x - 1, g.parentLeft, g.parentRight, y, g.direction);
    }
};

}  // namespace

long seed_fill(const std::vector<unsigned long>& pixels, int width, int height, int x, int y,
               bool everywhere, FillStack* stack, std::vector<uint8_t>* mask)
{
    if (width <= 0 || height <= 0 || !stack || !mask)
        return 0;
    size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    if (pixels.size() < count)
        return 0;
    mask->assign(count, 0);
    if (x < 0 || x >= width || y < 0 || y >= height)
        return 0;
    Filler f{pixels, width, height, pixels[static_cast<size_t>(y) * width + x], *mask, stack};

    if (everywhere) {
        for (size_t i = 0; i < count; i++)
            if (pixels[i] == f.seed) {
                (*mask)[i] = 1;
                f.marked++;
            }
        return f.marked;
    }

    if (fill_stack_init(stack) != 0)
        return -1;
    f.mark(x, y);
    int l = x, r = x;
    while (f.inside(l - 1, y))
        f.mark(--l, y);
    while (f.inside(r + 1, y))
        f.mark(++r, y);
    f.push(l, r, l, r, y + 1, +1);
    f.push(l, r, l, r, y - 1, -1);

    FillSegment g;
    while (!f.overflow && fill_stack_pop(stack, &g))
        if (g.y >= 0 && g.y < height)
            f.scan(g);
    stack->top = -1;
    return f.overflow ? -1 : f.marked;
}
