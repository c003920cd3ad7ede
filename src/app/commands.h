// Command numbers of the menu table and the commands they dispatch to.
// Menu callbacks, accelerators and tests all call the same functions.
#pragma once

#include <X11/Intrinsic.h>

struct Drawing;

enum Command {
    CMD_FILE = 1, CMD_NEW = 2, CMD_OPEN = 3, CMD_SAVE = 5, CMD_SAVE_AS = 6,
    CMD_SAVE_AS_BW = 7, CMD_QUIT = 9,
    CMD_EDIT = 10, CMD_UNDO = 11, CMD_CUT = 12, CMD_COPY = 13, CMD_PASTE = 14,
    CMD_CLEAR = 15, CMD_SELECT_ALL = 16,
    CMD_VIEW = 17, CMD_ZOOM_IN = 18, CMD_ZOOM_OUT = 19, CMD_SHOW_SMALL_VIEW = 20,
    CMD_SHOW_BW_VIEW = 21, CMD_SET_ROOT_WINDOW = 22,
    CMD_TOOLS = 23, CMD_DRAW_FILLED = 24, CMD_FONTS = 25, CMD_INVERT = 26,
    CMD_ROTATE = 27, CMD_FLIP_HORIZONTAL = 28, CMD_FLIP_VERTICAL = 29,
    CMD_NUDGE_UP = 30, CMD_NUDGE_RIGHT = 31, CMD_NUDGE_DOWN = 32, CMD_NUDGE_LEFT = 33,
    CMD_UPDATE_SENSITIVITY = 34, CMD_PICK_WINDOW = 35, CMD_HELP = 36,
    CMD_SHOW_COLORS = 37,   // View > Colors: opens the colour list dialog
    CMD_CLOSE = 38,         // File > Close: closes this drawing, asking when modified
    CMD_SHOW_GRID = 39,     // View > Grid: the magnified canvas with or without its grid
    CMD_RESIZE_IMAGE = 41,  // Tools > Resize Image...: crops or extends the picture
    CMD_SCALE_IMAGE = 42,   // Tools > Scale Image...: scales the picture
};

// A command: the drawing, the X event that triggered it (may be null) and,
// for toggles, the new state. Returns 0 on success.
using CommandFn = int (*)(Drawing* d, XEvent* event, Boolean set);

// Runs command `number` on the drawing; returns -1 for an unknown number.
int run_command(Drawing* d, int number, XEvent* event, Boolean set);

// Commands whose work has not been built yet land here and do nothing.
int cmd_not_built_yet(Drawing* d, XEvent* event, Boolean set);
