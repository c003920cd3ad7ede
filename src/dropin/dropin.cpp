// The site side of the drop-in protocol and its actions: registering drop
// sites, receiving drops from other clients and the four drag actions. Every
// exchange with another client runs under an error trap that reports.
#include "dropin/dropin.h"

#include <X11/Xatom.h>
#include <X11/StringDefs.h>
#include <X11/cursorfont.h>

#include <cstring>
#include <list>
#include <new>

#include "core/error_trap.h"
#include "dropin/drop_data.h"
#include "dropin/dropin_internal.h"

namespace {

const char protocolName[] = "OXA_DROP_PROTOCOL";
const char hostAndFileName[] = "HOST_AND_FILE_NAME";

// A drop carries at most this many 32-bit words; anything longer is refused.
constexpr long transferLongs = 1048576;

struct DisplayAtoms {
    Display* display;
    Atom protocol;
    Atom hostAndFile;
};
DisplayAtoms atoms[4];

const DisplayAtoms& atoms_of(Display* dpy)
{
    for (const DisplayAtoms& a : atoms)
        if (a.display == dpy)
            return a;
    for (DisplayAtoms& a : atoms)
        if (!a.display) {
            a.display = dpy;
            a.protocol = XInternAtom(dpy, protocolName, False);
            a.hostAndFile = XInternAtom(dpy, hostAndFileName, False);
            return a;
        }
    // More displays than the program ever opens: serve the last slot afresh.
    DisplayAtoms& last = atoms[3];
    last = {dpy, XInternAtom(dpy, protocolName, False), XInternAtom(dpy, hostAndFileName, False)};
    return last;
}

// Every registration, oldest first; the first is the protocol's. A list, so
// that a site's address (its callbacks' client data) stays put.
std::list<dropin::Site> sites;
bool actionsAdded = false;
bool dragging = false;
DropRecord remoteDrop;
DropRecord localDrop;

dropin::Site* first_site()
{
    return sites.empty() ? nullptr : &sites.front();
}

// Reads and deletes the transfer property a drop message names. Returns
// the data (to XFree) or null; only properties named the protocol's way are
// touched, so a message cannot take any other property off the window.
unsigned char* take_transfer_property(Display* dpy, Window site, Atom property, Atom* type, int* format,
                                      unsigned long* nitems)
{
    if (property == None)
        return nullptr;
    unsigned char* data = nullptr;
    int status;
    {
        // A window that vanished under the exchange is reported and
        // otherwise ignored: the other client is gone, we are not.
        ErrorTrap trap(dpy, ErrorTrap::Report::ReportOnce);
        char* name = XGetAtomName(dpy, property);
        bool named = name && is_transfer_property_name(protocolName, name);
        if (name)
            XFree(name);
        unsigned long after = 0;
        status = named ? XGetWindowProperty(dpy, site, property, 0, transferLongs, True, AnyPropertyType, type,
                                            format, nitems, &after, &data)
                       : BadAtom;
        if (status == Success && after > 0) {
            // Too long for the protocol: refuse it, and do not leave it behind.
            XDeleteProperty(dpy, site, property);
            if (data)
                XFree(data);
            data = nullptr;
        }
    }
    if (status != Success || *type == None || (*format != 8 && *format != 16 && *format != 32)) {
        if (data)
            XFree(data);
        return nullptr;
    }
    return data;
}

void receive_eh(Widget w, XtPointer clientData, XEvent* event, Boolean*) noexcept
{
    auto* site = static_cast<dropin::Site*>(clientData);
    if (event->type != ClientMessage || !XtIsRealized(w))
        return;
    Display* dpy = XtDisplay(w);
    if (event->xclient.message_type != atoms_of(dpy).protocol || event->xclient.format != 32)
        return;
    DropWords words = unpack_drop_words(event->xclient.data.l);
    Atom type = None;
    int format = 0;
    unsigned long nitems = 0;
    unsigned char* data = take_transfer_property(dpy, XtWindow(w), words.property, &type, &format, &nitems);
    if (!data)
        return;
    // The exchange is over once the property is taken: whatever the callback
    // does (open a drawing) runs under the program's usual error handling.
    remoteDrop.type = type;
    remoteDrop.format = format;
    remoteDrop.x = words.x;
    remoteDrop.y = words.y;
    remoteDrop.state = words.state;
    remoteDrop.time = words.time;
    remoteDrop.flag = words.flag;
    remoteDrop.valid = True;
    remoteDrop.nitems = nitems;
    remoteDrop.data = reinterpret_cast<XtPointer>(data);
    if (site->callback)
        site->callback(w, site->clientData, &remoteDrop);
    remoteDrop.data = nullptr;
    XFree(data);
}

void register_now(dropin::Site* site)
{
    Widget w = site->widget;
    Display* dpy = XtDisplay(w);
    const DisplayAtoms& a = atoms_of(dpy);
    dropin::install_transfer_dispatch(dpy);
    long self = static_cast<long>(XtWindow(w));
    XChangeProperty(dpy, XtWindow(w), a.protocol, XA_WINDOW, 32, PropModeReplace,
                    reinterpret_cast<unsigned char*>(&self), 1);
    XtAddEventHandler(w, NoEventMask, True, receive_eh, site);
    site->registered = true;
}

constexpr EventMask deferredMask =
    PointerMotionMask | KeymapStateMask | ExposureMask | SubstructureNotifyMask | PropertyChangeMask;

void deferred_register_eh(Widget w, XtPointer clientData, XEvent*, Boolean*) noexcept
{
    if (!XtIsRealized(w))
        return;
    XtRemoveEventHandler(w, deferredMask, False, deferred_register_eh, clientData);
    register_now(static_cast<dropin::Site*>(clientData));
}

void site_destroyed_cb(Widget, XtPointer clientData, XtPointer) noexcept
{
    auto* site = static_cast<dropin::Site*>(clientData);
    sites.remove_if([site](const dropin::Site& s) { return &s == site; });
}

Cursor cursor_named(Widget w, String name)
{
    Cursor cursor = None;
    XrmValue from{static_cast<unsigned>(strlen(name) + 1), reinterpret_cast<XPointer>(name)};
    XrmValue to{sizeof cursor, reinterpret_cast<XPointer>(&cursor)};
    if (!XtConvertAndStore(w, XtRString, &from, XtRCursor, &to))
        return None;
    return cursor;
}

constexpr unsigned grabMask = ButtonPressMask | ButtonReleaseMask | ButtonMotionMask;

void start_drop_out_action(Widget w, XEvent*, String* params, Cardinal* nparams) noexcept
{
    Display* dpy = XtDisplay(w);
    Cursor cursor = *nparams > 0 && params[0] ? cursor_named(w, params[0]) : None;
    if (cursor != None) {
        XChangeActivePointerGrab(dpy, grabMask, cursor, CurrentTime);
    } else {
        cursor = XCreateFontCursor(dpy, XC_exchange);   // font cursor 50
        XChangeActivePointerGrab(dpy, grabMask, cursor, CurrentTime);
        XFreeCursor(dpy, cursor);
    }
    dragging = true;
}

void abort_drop_out_action(Widget w, XEvent*, String*, Cardinal*) noexcept
{
    if (!dragging)
        return;
    XChangeActivePointerGrab(XtDisplay(w), grabMask, None, CurrentTime);
    dragging = false;
}

void complete_drop_out_action(Widget, XEvent* event, String* params, Cardinal* nparams) noexcept
{
    if (!dragging)
        return;
    if (dropin::Site* site = first_site())
        dropin::send_drop_out(site, event, params, *nparams);
    dragging = false;
}

// The root position, state and time of the events a drag can end with.
void event_place(const XEvent* e, int* x, int* y, unsigned* state, Time* time)
{
    *x = *y = 0;
    *state = 0;
    *time = CurrentTime;
    if (!e)
        return;
    switch (e->type) {
    case ButtonPress:
    case ButtonRelease:
        *x = e->xbutton.x_root, *y = e->xbutton.y_root, *state = e->xbutton.state, *time = e->xbutton.time;
        break;
    case MotionNotify:
        *x = e->xmotion.x_root, *y = e->xmotion.y_root, *state = e->xmotion.state, *time = e->xmotion.time;
        break;
    case KeyPress:
    case KeyRelease:
        *x = e->xkey.x_root, *y = e->xkey.y_root, *state = e->xkey.state, *time = e->xkey.time;
        break;
    case EnterNotify:
    case LeaveNotify:
        *x = e->xcrossing.x_root, *y = e->xcrossing.y_root, *state = e->xcrossing.state,
        *time = e->xcrossing.time;
        break;
    default:
        break;
    }
}

// A drop onto the program's own windows never goes through the server.
void local_drop_in_out_action(Widget, XEvent* event, String* params, Cardinal* nparams) noexcept
{
    dragging = false;
    dropin::Site* site = first_site();
    if (!site || !site->provider)
        return;
    DragOutRequest request{XA_STRING, 8, nullptr, 0, True};
    site->provider(nullptr, 0, params, *nparams, &request);
    unsigned state = 0;
    event_place(event, &localDrop.x, &localDrop.y, &state, &localDrop.time);
    localDrop.type = request.type;
    localDrop.format = request.format;
    localDrop.state = state & DROP_STATE_MASK;
    localDrop.flag = False;
    localDrop.valid = True;
    localDrop.nitems = request.data ? request.nitems : 0;
    localDrop.data = request.data;
    if (site->callback)
        site->callback(site->widget, site->clientData, &localDrop);
    localDrop.data = nullptr;
    if (request.freeData && request.data)
        XFree(request.data);
}

XtActionsRec actions[] = {
    {const_cast<String>("StartDropOut"), start_drop_out_action},
    {const_cast<String>("AbortDropOut"), abort_drop_out_action},
    {const_cast<String>("CompleteDropOut"), complete_drop_out_action},
    {const_cast<String>("LocalDropInOut"), local_drop_in_out_action},
};

}  // namespace

namespace dropin {

Site* protocol_site() { return first_site(); }

}  // namespace dropin

Atom dropin_protocol_atom(Display* dpy) { return atoms_of(dpy).protocol; }
Atom dropin_host_and_file_atom(Display* dpy) { return atoms_of(dpy).hostAndFile; }
bool dropin_dragging() { return dragging; }

int dropin_register(Widget w, DragOutProvider provider, DropInCallback callback, XtPointer clientData)
{
    if (!w)
        return -1;
    for (const dropin::Site& s : sites)
        if (s.widget == w)
            return 0;
    if (!actionsAdded) {
        XtAppAddActions(XtWidgetToApplicationContext(w), actions, XtNumber(actions));
        actionsAdded = true;
    }
    try {
        sites.push_back({w, provider, callback, clientData, false});
    } catch (const std::bad_alloc&) {
        dropin_malloc_error("callback_data", sizeof(dropin::Site));
    }
    dropin::Site* site = &sites.back();
    XtAddCallback(w, XtNdestroyCallback, site_destroyed_cb, site);
    if (XtIsRealized(w))
        register_now(site);
    else
        XtAddEventHandler(w, deferredMask, False, deferred_register_eh, site);
    return 0;
}
