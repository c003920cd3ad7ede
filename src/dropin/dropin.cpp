// The site side of the drop-in protocol and its actions: registering drop
// sites, receiving drops from other clients, the four drag actions, and the
// error trap around every exchange with another client.
#include "dropin/dropin.h"

#include <X11/Xatom.h>
#include <X11/StringDefs.h>
#include <X11/cursorfont.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

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

dropin::Site* sites = nullptr;           // every registration, oldest first
dropin::Site* protocolSite = nullptr;    // the first one
bool actionsAdded = false;
bool dragging = false;
DropRecord remoteDrop;
DropRecord localDrop;

int lastErrorCode = 0;
int trapDepth = 0;
XErrorHandler previousHandler = nullptr;

// A window that vanished under an exchange is reported once per distinct
// error and otherwise ignored: the other client is gone, we are not.
int dropin_error_handler(Display* dpy, XErrorEvent* e) noexcept
{
    if (e->error_code == lastErrorCode)
        return 0;
    char text[80];
    XGetErrorText(dpy, e->error_code, text, sizeof text);
    fprintf(stderr, "*** Error: %s ***\n", text);
    char number[16];
    snprintf(number, sizeof number, "%d", e->request_code);
    XGetErrorDatabaseText(dpy, "XRequest", number, "", text, sizeof text);
    fprintf(stderr, "    Request Major Code %s  %s\n", number, text);
    lastErrorCode = e->error_code;
    return 0;
}

// Reads and deletes the transfer property a drop message names. Returns
// the data (to XFree) or null; only properties named the protocol's way are
// touched, so a message cannot take any other property off the window.
unsigned char* take_transfer_property(Display* dpy, Window site, Atom property, Atom* type, int* format,
                                      unsigned long* nitems)
{
    if (property == None)
        return nullptr;
    dropin_trap_errors(dpy);
    char* name = XGetAtomName(dpy, property);
    bool named = name && is_transfer_property_name(protocolName, name);
    if (name)
        XFree(name);
    unsigned char* data = nullptr;
    unsigned long after = 0;
    int status = named ? XGetWindowProperty(dpy, site, property, 0, transferLongs, True, AnyPropertyType, type,
                                            format, nitems, &after, &data)
                       : BadAtom;
    if (status == Success && after > 0) {
        // Too long for the protocol: refuse it, and do not leave it behind.
        XDeleteProperty(dpy, site, property);
        if (data)
            XFree(data);
        data = nullptr;
    }
    dropin_untrap_errors(dpy);
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
    for (dropin::Site** p = &sites; *p; p = &(*p)->next)
        if (*p == site) {
            *p = site->next;
            break;
        }
    if (protocolSite == site)
        protocolSite = sites;
    free(site);
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
    if (protocolSite)
        dropin::send_drop_out(protocolSite, event, params, *nparams);
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
    dropin::Site* site = protocolSite;
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

Site* protocol_site() { return protocolSite; }

}  // namespace dropin

Atom dropin_protocol_atom(Display* dpy) { return atoms_of(dpy).protocol; }
Atom dropin_host_and_file_atom(Display* dpy) { return atoms_of(dpy).hostAndFile; }
bool dropin_dragging() { return dragging; }

void dropin_trap_errors(Display* dpy)
{
    if (trapDepth++ > 0)
        return;
    XSync(dpy, False);   // errors of earlier requests are not ours to hide
    lastErrorCode = 0;
    previousHandler = XSetErrorHandler(dropin_error_handler);
}

int dropin_untrap_errors(Display* dpy)
{
    if (trapDepth == 0 || --trapDepth > 0)
        return 0;
    XSync(dpy, False);
    XSetErrorHandler(previousHandler);
    previousHandler = nullptr;
    return lastErrorCode;
}

int dropin_register(Widget w, DragOutProvider provider, DropInCallback callback, XtPointer clientData)
{
    if (!w)
        return -1;
    for (dropin::Site* s = sites; s; s = s->next)
        if (s->widget == w)
            return 0;
    if (!actionsAdded) {
        XtAppAddActions(XtWidgetToApplicationContext(w), actions, XtNumber(actions));
        actionsAdded = true;
    }
    auto* site = static_cast<dropin::Site*>(malloc(sizeof(dropin::Site)));
    if (!site) {
        printf("dropin malloc error (callback_data, %d)\n", static_cast<int>(sizeof(dropin::Site)));
        fflush(stdout);
        exit(1);
    }
    *site = {w, provider, callback, clientData, false, nullptr};
    dropin::Site** tail = &sites;
    while (*tail)
        tail = &(*tail)->next;
    *tail = site;
    if (!protocolSite)
        protocolSite = site;
    XtAddCallback(w, XtNdestroyCallback, site_destroyed_cb, site);
    if (XtIsRealized(w))
        register_now(site);
    else
        XtAddEventHandler(w, deferredMask, False, deferred_register_eh, site);
    return 0;
}
