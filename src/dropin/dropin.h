// The drop-in protocol: files dropped on the program by a desktop come in
// as properties on a drop site's window announced by a client message, and
// data dragged out of the program goes the same way to another client's
// site. Built on the atoms OXA_DROP_PROTOCOL and HOST_AND_FILE_NAME.
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

// A drop as handed to the drop-in callback. One record serves every remote
// drop and another every local drop; each drop overwrites it.
struct DropRecord {
    Atom type;               // the transfer property's actual type
    int format;              // 8, 16 or 32, as the property had it
    int x, y;                // in the site window (a local drop: root)
    unsigned state : 13;     // modifiers and buttons at the drop
    Time time;
    Boolean flag;            // bit 31 of the state word; never set locally
    Boolean valid;           // always True
    unsigned long nitems;
    XtPointer data;          // owned by the protocol; valid during the call
};

// What a drag-out provider fills in. Preset to STRING, 8, no data, freed.
struct DragOutRequest {
    Atom type;
    int format;
    XtPointer data;
    unsigned long nitems;
    Boolean freeData;        // XFree the data once it is sent
};

using DropInCallback = void (*)(Widget site, XtPointer clientData, DropRecord* drop);
// `accepted` is the site's list of further accepted items (null, 0 when it
// has none or for a local drop); `params` are the action's.
using DragOutProvider = void (*)(const long* accepted, int count, String* params, Cardinal nparams,
                                 DragOutRequest* request);

// Makes `w` a drop site: now if it is realised, else at its first event.
// The first widget registered becomes the protocol's widget, whose provider
// and callback the four actions use. Registering a widget twice does
// nothing. Returns 0, or -1 for a null widget.
int dropin_register(Widget w, DragOutProvider provider, DropInCallback callback, XtPointer clientData);

// The protocol's atoms on a display, interned on first use.
Atom dropin_protocol_atom(Display* dpy);
Atom dropin_host_and_file_atom(Display* dpy);

// True while a drag out is under way (between StartDropOut and its end).
bool dropin_dragging();

