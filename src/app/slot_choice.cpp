// Choosing the registry slot for the next drawing.
#include "app/slot_choice.h"

int choose_next_slot(const SlotState states[], int count, int taking)
{
    int firstEmpty = -1;
    for (int i = 0; i < count; i++) {
        if (i == taking)
            continue;
        if (states[i] == SlotState::Closed)
            return i;
        if (states[i] == SlotState::Empty && firstEmpty < 0)
            firstEmpty = i;
    }
    return firstEmpty;
}
