#include "help/help_client.h"

#include "help/help_cursor.h"

int help_client_start(Widget, const char*, const char*, void (*)(Widget), HelpCursorProc setCursor)
{
    set_help_cursor_proc(setCursor);
    return 0;
}

int help_client_request(Widget, const char*) { return 1; }

void help_client_shutdown() {}
