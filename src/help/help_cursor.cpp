#include "help/help_cursor.h"

#include "core/drawing.h"

namespace {
HelpCursorProc cursorProc = nullptr;
}

void set_help_cursor_proc(HelpCursorProc proc) { cursorProc = proc; }

void help_cursor_everywhere(Boolean busy, Cursor cursor)
{
    if (!cursorProc)
        return;
    for (Drawing* d : registry().slots)
        if (d && drawing_is_open(d))
            cursorProc(d->shell, busy, cursor);
}
