// Slot choice: a closed record is reused before an empty slot is taken.
#include <gtest/gtest.h>

#include "app/slot_choice.h"

TEST(SlotChoice, ClosedRecordBeforeEmptySlotSkippingTheOneTaken)
{
    using S = SlotState;
    S states[8] = {S::Open, S::Open, S::Closed, S::Open, S::Open, S::Empty, S::Empty, S::Empty};
    EXPECT_EQ(choose_next_slot(states, 8, 5), 2) << "closed slot 2 wins over empty 6";
    EXPECT_EQ(choose_next_slot(states, 8, 2), 5) << "the slot being taken is skipped";
    S full[8] = {S::Open, S::Open, S::Open, S::Open, S::Open, S::Open, S::Open, S::Empty};
    EXPECT_EQ(choose_next_slot(full, 8, 7), -1) << "eight open: no next slot";
    S fresh[8] = {S::Empty, S::Empty, S::Empty, S::Empty, S::Empty, S::Empty, S::Empty, S::Empty};
    EXPECT_EQ(choose_next_slot(fresh, 8, 0), 1);
}
