#include "help/help_show.h"

#include "help/help_client.h"
#include "help/help_window.h"

void help_show(Widget from, const char* topic)
{
    // The server has the first word; whatever it cannot or will not
    // answer, the built-in window does, without an error message.
    if (help_client_request(from, topic) != 0)
        help_window_show(from, topic);
}
