// The client of an external help server. It asks the server to show a
// topic of our book; whatever goes wrong, the caller shows the topic in the
// built-in window instead, within a second, without an error message (but
// for a server program that exists and cannot run, which is worth saying).
//
// The exchange, over properties and client messages on one display:
//
//   _ORV_HELP_SERVER   a selection; its owner's window is the server's. No
//                      owner, no server: we start the program named by the
//                      helpServerProgram resource ("-cshelpservermode"
//                      "-display" <display>) and wait a while for it to
//                      take the selection.
//   _ORV_HELP_REQUEST  a STRING property the client writes on its own
//                      (unmapped, input-only) window: the request's text
//                      (see help_protocol.h). The client then sends the
//                      server's window a ClientMessage of this type, format
//                      32: l[0] the client's window, l[1] the request's
//                      serial, l[2] the property's atom. The server reads
//                      the property and deletes it.
//   _ORV_HELP_REPLY    a STRING property the server writes on the client's
//                      window: serial and status. The client waits for it
//                      half a second at most, reads and deletes it; a reply
//                      to an older request is passed over.
//   _ORV_HELP_VERSION  a ClientMessage the server may send the client's
//                      window at any time: the program opens its version
//                      dialog (the server's "On Version").
//
// A goodbye is a request of kind "goodbye", sent when the program ends and
// not answered. The server's window may vanish at any moment: every request
// that names it runs under the error trap, and its DestroyNotify ends a wait.
#include "help/help_client.h"

#include <X11/StringDefs.h>
#include <X11/Shell.h>
#include <X11/Xatom.h>
#include <X11/cursorfont.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/app_state.h"
#include "core/error_trap.h"
#include "core/message.h"
#include "core/safe_format.h"
#include "help/help_cursor.h"
#include "help/help_protocol.h"
#include "help/help_spawn.h"
#include "help/help_trace.h"

namespace {

// How long a server has to answer one request, and a program we started to
// become a server. The first is the user's wait for every F1 when a server
// is stuck; the second only comes once, when the program starts.
constexpr int replyWaitMs = 500;
constexpr int startWaitMs = 1500;

struct Client {
    Widget top = nullptr;
    std::string book, program;
    void (*showVersion)(Widget parent) = nullptr;
    Window window = None;   // ours: requests are written, replies read here
    Atom server = None, request = None, reply = None, version = None;
    unsigned long serial = 0;
    Cursor busy = None;
    bool over = false;      // shut down: every later request is answered built in
};

Client client;
XtEventDispatchProc previousClientMessageDispatch = nullptr;

struct ProgramResource {
    String helpServerProgram;
};

XtResource programResources[] = {
    {(char*)"helpServerProgram", (char*)"HelpServerProgram", XtRString, sizeof(String),
     XtOffsetOf(ProgramResource, helpServerProgram), XtRString, (XtPointer) "/usr/bin/X11/orvhelp"},
};

Display* display() { return XtDisplay(client.top); }

long long now_ms()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// The drawing window (or the top-level shell) over which messages appear.
Widget shell_of(Widget w)
{
    while (w && !XtIsApplicationShell(w))
        w = XtParent(w);
    return w;
}

Boolean version_dispatch(XEvent* e) noexcept
{
    if (e->xclient.window == client.window && client.window != None && e->xclient.message_type == client.version) {
        help_trace("the server asks for the version dialog");
        if (client.showVersion)
            client.showVersion(nullptr);
        return True;
    }
    return previousClientMessageDispatch ? previousClientMessageDispatch(e) : False;
}

// Our window and atoms, made at the first contact.
void make_window()
{
    if (client.window != None)
        return;
    Display* dpy = display();
    client.server = XInternAtom(dpy, "_ORV_HELP_SERVER", False);
    client.request = XInternAtom(dpy, "_ORV_HELP_REQUEST", False);
    client.reply = XInternAtom(dpy, "_ORV_HELP_REPLY", False);
    client.version = XInternAtom(dpy, "_ORV_HELP_VERSION", False);
    XSetWindowAttributes a{};
    a.event_mask = PropertyChangeMask;
    client.window = XCreateWindow(dpy, DefaultRootWindow(dpy), -1, -1, 1, 1, 0, 0, InputOnly, CopyFromParent,
                                  CWEventMask, &a);
    previousClientMessageDispatch = XtSetEventDispatcher(dpy, ClientMessage, version_dispatch);
    // The server we may start must open a connection of its own.
    fcntl(ConnectionNumber(dpy), F_SETFD, FD_CLOEXEC);
}

class BusyCursor {
public:
    BusyCursor()
    {
        if (client.busy == None)
            client.busy = XCreateFontCursor(display(), XC_watch);
        help_cursor_everywhere(True, client.busy);
        XFlush(display());
    }
    ~BusyCursor() { help_cursor_everywhere(False, None); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

// Takes from the queue the first event `want` accepts, waiting until
// `deadline` at most; every other event stays for the toolkit.
bool next_event(Bool (*want)(Display*, XEvent*, XPointer), XPointer arg, long long deadline, XEvent* e)
{
    Display* dpy = display();
    for (;;) {
        if (XCheckIfEvent(dpy, e, want, arg))
            return true;
        long long left = deadline - now_ms();
        if (left <= 0)
            return false;
        pollfd p{ConnectionNumber(dpy), POLLIN, 0};
        poll(&p, 1, static_cast<int>(left < 50 ? left : 50));
    }
}

void say_cant_exec(Widget from, int value)
{
    help_trace("telling the user: couldn't exec, %d", value);
    std::string text = format_int(res().cantExecString, value, "Couldn't exec %d\n");
    show_message(shell_of(from), text.c_str(), 0, nullptr, nullptr);
}

// Starts the server program and waits for its window; None when it does
// not come. A program that is missing is the usual case and said nothing
// of; one that cannot run, or ends before serving, is reported with
// cantExecString: the errno of the failed exec, or the program's exit
// status (128 plus the signal when one killed it).
Window start_server(Widget from)
{
    ProgramResource r{};
    XtGetApplicationResources(client.top, &r, programResources, XtNumber(programResources), nullptr, 0);
    if (!r.helpServerProgram || !*r.helpServerProgram) {
        help_trace("no helpServerProgram to start");
        return None;
    }
    Display* dpy = display();
    BusyCursor busy;
    pid_t pid;
    int error;
    switch (help_spawn(r.helpServerProgram, DisplayString(dpy), &pid, &error)) {
    case HELP_NO_FORK:
        show_message(shell_of(from), res().cantForkString ? res().cantForkString : "Can't fork help!!!", 0,
                     nullptr, nullptr);
        return None;
    case HELP_NO_EXEC:
        if (error != ENOENT)
            say_cant_exec(from, error);
        return None;
    default:
        break;
    }
    const long long deadline = now_ms() + startWaitMs;
    bool exitedWell = false;
    for (;;) {
        if (Window owner = XGetSelectionOwner(dpy, client.server)) {
            help_trace("server 0x%lx appeared", owner);
            return owner;
        }
        int status;
        if (!exitedWell && !help_child_running(&status) && status >= 0) {
            help_trace("the server program ended with status %d", status);
            // A program that hands over to a server of its own ends with 0:
            // its server still has the rest of the wait to appear.
            if (status != 0) {
                say_cant_exec(from, status);
                return None;
            }
            exitedWell = true;
        }
        if (now_ms() >= deadline)
            break;
        usleep(20000);
    }
    help_trace("no server appeared in %d ms", startWaitMs);
    if (exitedWell)
        say_cant_exec(from, 0);
    return None;
}

// The server's window: the selection's owner, or one we start. A program
// of ours that runs but has not become a server yet is given no second
// chance at every request (nor a twin).
Window find_server(Widget from)
{
    Window owner = XGetSelectionOwner(display(), client.server);
    if (owner != None) {
        help_trace("server 0x%lx owns _ORV_HELP_SERVER", owner);
        return owner;
    }
    help_trace("no server owns _ORV_HELP_SERVER");
    if (pid_t pid = help_child_pid()) {
        help_trace("our server program (pid %d) runs but does not serve", static_cast<int>(pid));
        return None;
    }
    return start_server(from);
}

// Writes the request on our window and tells the server; false when the
// server's window is gone (or the request cannot be written).
bool send_request(Window server, const char* kind, const char* topic, unsigned long serial,
                  unsigned long* watchFrom = nullptr)
{
    char host[256] = "";
    gethostname(host, sizeof host - 1);
    HelpRequest r;
    r.kind = kind;
    r.serial = serial;
    r.book = client.book.c_str();
    r.topic = topic;
    r.program = client.program.c_str();
    r.host = host;
    r.window = client.window;
    std::string text;
    if (encode_help_request(r, &text) != 0) {
        help_trace("request %s of topic \"%s\" cannot be written", kind, topic);
        return false;
    }
    Display* dpy = display();
    XDeleteProperty(dpy, client.window, client.reply);
    XChangeProperty(dpy, client.window, client.request, XA_STRING, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    ErrorTrap trap(dpy);
    // Its DestroyNotify ends our wait; one of an earlier window that had
    // the same id (a server restarted) came before this request.
    if (watchFrom)
        *watchFrom = NextRequest(dpy);
    XSelectInput(dpy, server, StructureNotifyMask);
    XEvent m{};
    m.xclient.type = ClientMessage;
    m.xclient.window = server;
    m.xclient.message_type = client.request;
    m.xclient.format = 32;
    m.xclient.data.l[0] = static_cast<long>(client.window);
    m.xclient.data.l[1] = static_cast<long>(serial);
    m.xclient.data.l[2] = static_cast<long>(client.request);
    XSendEvent(dpy, server, False, NoEventMask, &m);
    if (trap.error()) {
        help_trace("server window 0x%lx is gone", server);
        return false;
    }
    help_trace("request %s serial %lu book %s topic \"%s\" to 0x%lx", kind, serial, client.book.c_str(), topic,
               server);
    return true;
}

struct ReplyWait {
    Window server;
    unsigned long since;   // the request that began watching it
};

Bool reply_or_gone(Display*, XEvent* e, XPointer arg)
{
    auto* w = reinterpret_cast<ReplyWait*>(arg);
    if (e->type == PropertyNotify)
        return e->xproperty.window == client.window && e->xproperty.atom == client.reply &&
               e->xproperty.state == PropertyNewValue;
    return e->type == DestroyNotify && e->xdestroywindow.window == w->server && e->xany.serial >= w->since;
}

// 0 when the server answered that it shows the topic.
int await_reply(Window server, unsigned long serial, unsigned long watchFrom)
{
    Display* dpy = display();
    BusyCursor busy;
    ReplyWait wait{server, watchFrom};
    const long long deadline = now_ms() + replyWaitMs;
    XEvent e;
    while (next_event(reply_or_gone, reinterpret_cast<XPointer>(&wait), deadline, &e)) {
        if (e.type == DestroyNotify) {
            help_trace("server window 0x%lx went away", server);
            return 1;
        }
        Atom type = None;
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(dpy, client.window, client.reply, 0, helpReplyLimit / 4 + 1, False, AnyPropertyType,
                           &type, &format, &n, &after, &data);
        XDeleteProperty(dpy, client.window, client.reply);
        if (type == None) {   // the event of a reply deleted since
            XFree(data);
            continue;
        }
        const bool isString = type == XA_STRING && format == 8 && after == 0;
        HelpVerdict verdict = judge_help_reply(reinterpret_cast<const char*>(data), isString ? n : 0, isString,
                                               serial);
        XFree(data);
        help_trace("reply to serial %lu: %s", serial, help_verdict_name(verdict));
        if (verdict == HelpVerdict::Shown)
            return 0;
        if (verdict != HelpVerdict::OtherSerial)
            return 1;
    }
    help_trace("no reply in %d ms", replyWaitMs);
    return 1;
}

// HELP_CLIENT_INITIALIZE=1 (any value but empty or "0")
bool initialize_at_start()
{
    const char* v = std::getenv("HELP_CLIENT_INITIALIZE");
    return v && *v && std::strcmp(v, "0") != 0;
}

}  // namespace

int help_client_start(Widget top, const char* book, const char* name, void (*showVersion)(Widget),
                      HelpCursorProc setCursor)
{
    set_help_cursor_proc(setCursor);
    client.top = top;
    client.book = book && *book ? book : "pictrel";
    client.program = name ? name : "";
    client.showVersion = showVersion;
    client.over = false;
    if (initialize_at_start() && top) {
        help_trace("HELP_CLIENT_INITIALIZE: contacting the server at start-up");
        make_window();
        find_server(top);
    }
    return 0;
}

int help_client_request(Widget from, const char* topic)
{
    if (!client.top || client.over || !topic || !*topic)
        return 1;
    make_window();
    Window server = find_server(from ? from : client.top);
    if (server == None)
        return 1;
    unsigned long serial = ++client.serial, watchFrom = 0;
    if (!send_request(server, "show", topic, serial, &watchFrom))
        return 1;
    return await_reply(server, serial, watchFrom);
}

void help_client_shutdown()
{
    if (!client.top || client.over)
        return;
    client.over = true;
    if (client.window != None) {
        Display* dpy = display();
        Window server = XGetSelectionOwner(dpy, client.server);
        if (server != None)
            send_request(server, "goodbye", "", ++client.serial);
        XSync(dpy, False);
    }
    // A server of ours that has ended is reaped here; one still running
    // serves on (it may have other clients) and init adopts it when we go.
    int status;
    if (!help_child_running(&status) && status >= 0)
        help_trace("our server program had ended with status %d", status);
}
