// The message a user sees for the status of a failed read.
#pragma once

#include <X11/Intrinsic.h>

// Shows the message of a failed read's status (see read_image_file) for
// `fileName` over `parent`; a status it does not know is "Unknown Error.".
void report_read_status(Widget parent, int status, const char* fileName);
