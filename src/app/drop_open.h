// What the program does with the drop-in protocol: a dropped file opens as
// a drawing; a drag out carries only the word "unimplemented".
#pragma once

#include <X11/Intrinsic.h>

#include "dropin/dropin.h"

// The drop-in callback: opens the first file a drop names, when it is a
// regular file, and reports a file that cannot be read.
void drop_open_cb(Widget site, XtPointer clientData, DropRecord* drop);

// The drag-out provider: STRING, 8, "unimplemented", not freed.
void drop_reply(const long* accepted, int count, String* params, Cardinal nparams, DragOutRequest* request);

// Makes a widget (the top-level, a drawing's shell) a drop site with the pair above.
void register_drop_site(Widget w);
