// The key list of On Keys, laid out from what the menus say. Pure: the
// X side (help_keys.cpp) reads the menus and hands the entries here.
#pragma once

#include <string>
#include <vector>

struct KeyEntry {
    std::string keys;    // "Ctrl+I", as the item shows it
    std::string where;   // "Tools > Invert"
};

// One line per entry, keys in a column wide enough for the longest, under
// `heading`; entries without keys are left out. Empty when none has keys.
std::string format_key_list(const std::string& heading, const std::vector<KeyEntry>& entries);

// An item's keys as a user reads them: its accelerator text when it has
// one, else its accelerator translation made readable ("Ctrl<Key>r" gives
// "Ctrl+r"), else empty.
std::string readable_keys(const std::string& acceleratorText, const std::string& accelerator);
