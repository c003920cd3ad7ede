#include "help/help_window.h"

#include "core/message.h"

int help_window_show(Widget from, const char* topic)
{
    // Placeholder until the help book lands.
    show_message(from, topic ? topic : "", 0, nullptr, nullptr);
    return 0;
}
