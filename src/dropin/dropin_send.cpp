// The source side of the drop-in protocol: finding the drop site under the
// pointer, writing the dragged data into a transfer property of the site's
// window and announcing it, and taking transfer atoms back once the site
// has read them.
#include <X11/Xatom.h>

#include <forward_list>
#include <new>
#include <vector>

#include "core/error_trap.h"
#include "dropin/drop_data.h"
#include "dropin/dropin.h"
#include "dropin/dropin_internal.h"

namespace {

// One transfer property name; in use from the send until the site deletes
// the property or its window goes away. The record's address is part of
// the name, so records never move: a list, newest first.
struct TransferAtom {
    Atom atom;
    Window target;
    Boolean inUse;
};
std::forward_list<TransferAtom> chain;

// No X hierarchy is deeper than this; a guard against a server gone odd.
constexpr int maxWindowDepth = 256;
// Further accepted items of a site beyond this are not read.
constexpr long maxAccepted = 4096;
// The largest transfer sent, in items of its format.
constexpr unsigned long maxSendItems = 1048576;

constexpr EventMask targetMask = StructureNotifyMask | PropertyChangeMask;

struct FoundSite {
    Window window = None;
    std::vector<long> accepted;
};

// A window the toolkit knows as one of our widgets' own (not a foreign
// window handed to a widget with XtRegisterDrawable).
bool own_window(Display* dpy, Window w)
{
    Widget widget = XtWindowToWidget(dpy, w);
    return widget && XtWindow(widget) == w;
}

// The site a window advertises, and its further accepted items.
bool read_site_property(Display* dpy, Window w, FoundSite* found)
{
    Atom protocol = dropin_protocol_atom(dpy);
    Atom type = None;
    int format = 0;
    unsigned long n = 0, after = 0;
    unsigned char* data = nullptr;
    if (XGetWindowProperty(dpy, w, protocol, 0, 1, False, XA_WINDOW, &type, &format, &n, &after, &data) != Success)
        return false;
    bool isSite = data && type == XA_WINDOW && format == 32 && n >= 1 && reinterpret_cast<long*>(data)[0] != 0;
    Window site = isSite ? static_cast<Window>(reinterpret_cast<unsigned long*>(data)[0] & 0xffffffffUL) : None;
    if (data)
        XFree(data);
    if (!isSite)
        return false;
    *found = {site, {}};
    long rest = static_cast<long>(after / 4);
    if (rest <= 0)
        return true;
    if (rest > maxAccepted)
        rest = maxAccepted;
    data = nullptr;
    if (XGetWindowProperty(dpy, w, protocol, 1, rest, False, XA_WINDOW, &type, &format, &n, &after, &data) ==
            Success &&
        data && type == XA_WINDOW && format == 32 && n > 0) {
        // Without room for the list the site is still one, accepting nothing more.
        try {
            const long* items = reinterpret_cast<const long*>(data);
            found->accepted.assign(items, items + n);
        } catch (const std::bad_alloc&) {
            found->accepted.clear();
        }
    }
    if (data)
        XFree(data);
    return true;
}

// Walks down from the root through the windows under the pointer; the
// deepest one that advertises a site names it. Reaching one of our own
// windows means no site: a drop on ourselves is the local action's.
bool find_site(Display* dpy, const XButtonEvent& ev, FoundSite* found)
{
    Window w = ev.root;
    for (int depth = 0; depth < maxWindowDepth && w != None; depth++) {
        if (own_window(dpy, w))
            break;
        int x = 0, y = 0;
        Window child = None;
        if (!XTranslateCoordinates(dpy, ev.root, w, ev.x_root, ev.y_root, &x, &y, &child))
            break;
        read_site_property(dpy, w, found);
        if (child == None)
            return found->window != None;
        w = child;
    }
    *found = {};
    return false;
}

bool target_in_use(Window target, const TransferAtom* except)
{
    for (const TransferAtom& t : chain)
        if (&t != except && t.inUse && t.target == target)
            return true;
    return false;
}

TransferAtom* take_transfer_atom(Display* dpy, Window source)
{
    for (TransferAtom& t : chain)
        if (!t.inUse) {
            t.inUse = True;
            return &t;
        }
    try {
        chain.emplace_front();
    } catch (const std::bad_alloc&) {
        dropin_malloc_error("SendProperty", sizeof(TransferAtom));
    }
    TransferAtom& t = chain.front();
    std::string name = transfer_property_name("OXA_DROP_PROTOCOL", source, &t);
    t = {XInternAtom(dpy, name.c_str(), False), None, True};
    return &t;
}

TransferAtom* send_to(Display* dpy, Window source, Window site, const XButtonEvent& ev,
                      const DragOutRequest& request)
{
    int x = 0, y = 0;
    Window child = None;
    if (!XTranslateCoordinates(dpy, ev.root, site, ev.x_root, ev.y_root, &x, &y, &child))
        return nullptr;   // the site is on another screen, or gone
    int format = request.format == 16 || request.format == 32 ? request.format : 8;
    unsigned long nitems = request.data ? request.nitems : 0;
    if (nitems > maxSendItems)
        nitems = maxSendItems;
    TransferAtom* t = take_transfer_atom(dpy, source);
    bool watched = target_in_use(site, t);
    t->target = site;
    // Watch the site for the delete of the property and for its end.
    if (!watched)
        XSelectInput(dpy, site, targetMask);
    XChangeProperty(dpy, site, t->atom, request.type, format, PropModeReplace,
                    static_cast<unsigned char*>(request.data), static_cast<int>(nitems));
    XEvent message{};
    message.xclient.type = ClientMessage;
    message.xclient.display = dpy;
    message.xclient.window = site;
    message.xclient.message_type = dropin_protocol_atom(dpy);
    message.xclient.format = 32;
    DropWords words{ev.time, x, y, ev.state, false, request.type, t->atom};
    pack_drop_words(words, message.xclient.data.l);
    XSendEvent(dpy, site, False, 0, &message);
    return t;
}

// A site that vanished while we wrote to it will never delete the property
// nor report its destruction to us: its transfer atom is free again.
void forget_if_gone(Display* dpy, TransferAtom* t)
{
    XWindowAttributes attributes;
    bool gone;
    {
        ErrorTrap trap(dpy, ErrorTrap::Report::ReportOnce);
        gone = !XGetWindowAttributes(dpy, t->target, &attributes);
    }
    if (gone)
        t->inUse = False;
}

void release_target(Display* dpy, Window target)
{
    if (target_in_use(target, nullptr))
        return;
    ErrorTrap trap(dpy, ErrorTrap::Report::ReportOnce);
    XSelectInput(dpy, target, NoEventMask);
}

XtEventDispatchProc previousPropertyDispatch = nullptr;
XtEventDispatchProc previousDestroyDispatch = nullptr;
Display* dispatchDisplay = nullptr;

// Foreign windows are watched here rather than registered with a widget:
// the toolkit would take a site's ConfigureNotify for its own geometry.
// The event then goes on to the toolkit's dispatch as it would have.
Boolean transfer_dispatch(XEvent* event) noexcept
{
    Display* dpy = event->xany.display;
    if (event->type == PropertyNotify && event->xproperty.state == PropertyDelete) {
        for (TransferAtom& t : chain)
            if (t.inUse && t.atom == event->xproperty.atom && t.target == event->xproperty.window) {
                t.inUse = False;
                release_target(dpy, t.target);
                break;
            }
    } else if (event->type == DestroyNotify) {
        for (TransferAtom& t : chain)
            if (t.inUse && t.target == event->xdestroywindow.window)
                t.inUse = False;
    }
    XtEventDispatchProc previous =
        event->type == PropertyNotify ? previousPropertyDispatch : previousDestroyDispatch;
    return previous ? previous(event) : False;
}

}  // namespace

namespace dropin {

void install_transfer_dispatch(Display* dpy)
{
    if (dispatchDisplay)
        return;
    dispatchDisplay = dpy;
    previousPropertyDispatch = XtSetEventDispatcher(dpy, PropertyNotify, transfer_dispatch);
    previousDestroyDispatch = XtSetEventDispatcher(dpy, DestroyNotify, transfer_dispatch);
}

void send_drop_out(Site* site, XEvent* event, String* params, Cardinal nparams)
{
    if (!site || !site->widget || !XtIsRealized(site->widget) || !event || event->type != ButtonRelease)
        return;
    Display* dpy = XtDisplay(site->widget);
    TransferAtom* sent = nullptr;
    bool failed;
    {
        ErrorTrap trap(dpy, ErrorTrap::Report::ReportOnce);
        FoundSite found;
        // A site property naming one of our own windows is not a foreign site.
        if (find_site(dpy, event->xbutton, &found) && !own_window(dpy, found.window)) {
            DragOutRequest request{XA_STRING, 8, nullptr, 0, True};
            if (site->provider)
                site->provider(found.accepted.data(), static_cast<int>(found.accepted.size()), params, nparams,
                               &request);
            sent = send_to(dpy, XtWindow(site->widget), found.window, event->xbutton, request);
            if (request.freeData && request.data)
                XFree(request.data);
        }
        failed = trap.error() != 0;
    }
    if (sent && failed)
        forget_if_gone(dpy, sent);
}

}  // namespace dropin
