// The program's help book: the installed file named after the helpBook
// resource when it is there and sound, else the copy compiled in.
#pragma once

#include "help/help_book.h"

// Loaded at first use and kept; never empty.
const HelpBook& help_book();
