#include "app/placement.h"

#include <algorithm>

int centred_on_screen(int pos, int span, int size, int screen)
{
    int origin = pos + (span - size) / 2;
    return std::max(0, std::min(origin, screen - size));
}
