// Shared between the site side and the source side of the protocol unit.
#pragma once

#include "dropin/dropin.h"

namespace dropin {

struct Site {
    Widget widget;
    DragOutProvider provider;
    DropInCallback callback;
    XtPointer clientData;
    bool registered;         // its window carries the site property
};

// The protocol's widget's registration (the first one), or null.
Site* protocol_site();

// The source side: sends the provider's data to the site under a button
// release. Used by CompleteDropOut.
void send_drop_out(Site* site, XEvent* event, String* params, Cardinal nparams);

// Hands the source side the property and destroy notifications of windows
// it is sending to. Installed once per display.
void install_transfer_dispatch(Display* dpy);

}  // namespace dropin
