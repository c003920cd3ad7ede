// Start-up's one-key reads of the keyboard map, answered from one read of
// the whole map.
#pragma once

// While on, XGetKeyboardMapping answers from a copy of the whole keyboard
// map read once, instead of a round trip to the server per question. On
// only while the first shell is made (see the .cpp for why); turning it
// off drops the copy.
void answer_keymap_from_copy(bool on);
