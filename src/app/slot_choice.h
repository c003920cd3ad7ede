// Choosing the registry slot for the next drawing: pure logic.
#pragma once

enum class SlotState { Empty, Open, Closed };

// The slot the next drawing takes after `taking` is taken: the first closed
// record wins, then the first empty slot, else -1.
int choose_next_slot(const SlotState states[], int count, int taking);
