// Window-manager and session protocols. Delete is an ordinary close; a
// session manager ends the program with prepare-to-die (close every
// drawing without Cancel, and stay alive) followed by closedown (exit when
// nothing is open), and asks for the restart command with save-yourself.
#include "app/session.h"

#include <Xm/AtomMgr.h>
#include <Xm/Protocols.h>
#include <Xm/Xm.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "app/draw.h"
#include "app/restart_command.h"
#include "core/app_state.h"
#include "app/new_close.h"

namespace {

struct SessionAtoms {
    Atom protocols, saveYourself, deleteWindow, prepareToDie, closedown;
};

const SessionAtoms& atoms()
{
    static SessionAtoms a{};
    if (!a.protocols) {
        Display* dpy = app().display;
        a.protocols = XmInternAtom(dpy, const_cast<char*>("WM_PROTOCOLS"), False);
        a.saveYourself = XmInternAtom(dpy, const_cast<char*>("WM_SAVE_YOURSELF"), False);
        a.deleteWindow = XmInternAtom(dpy, const_cast<char*>("WM_DELETE_WINDOW"), False);
        a.prepareToDie = XmInternAtom(dpy, const_cast<char*>("WM_PREPARE_TO_DIE"), False);
        a.closedown = XmInternAtom(dpy, const_cast<char*>("WM_CLOSEDOWN"), False);
    }
    return a;
}

std::string current_dir()
{
    char buf[1026];
    return getcwd(buf, sizeof buf) ? std::string(buf) : std::string();
}

bool executable(const std::string& candidate)
{
    return eaccess(candidate.c_str(), X_OK) == 0;
}

// Raising also de-iconifies, so the user sees which drawing is asking.
// A closed drawing's window is down for good: a late or repeated message
// (a second click on the frame's close button) must not map it again.
void raise_shell(Drawing* d)
{
    if (!drawing_is_open(d) && !d->sessionClosed)
        return;
    if (d->shell && XtIsRealized(d->shell))
        XMapRaised(XtDisplay(d->shell), XtWindow(d->shell));
}

void save_yourself_cb(Widget, XtPointer client, XtPointer) noexcept
{
    // Only the command is brought up to date; the image is not saved
    // behind the user's back.
    update_restart_command(static_cast<Drawing*>(client));
}

void delete_window_cb(Widget, XtPointer client, XtPointer) noexcept
{
    Drawing* d = static_cast<Drawing*>(client);
    raise_shell(d);
    request_close(d);
}

void prepare_to_die_cb(Widget, XtPointer client, XtPointer) noexcept
{
    Drawing* d = static_cast<Drawing*>(client);
    // A drawing already closed for this session stays closed: closing it
    // again would count it twice.
    if (!drawing_is_open(d) || d->sessionClosed)
        return;
    raise_shell(d);
    d->closing = 1;
    request_close(d);
}

void closedown_cb(Widget, XtPointer client, XtPointer) noexcept
{
    Drawing* d = static_cast<Drawing*>(client);
    raise_shell(d);
    d->closing = 0;
    after_close(d);
}

}  // namespace

std::string program_path()
{
    const char* argv0 = res().programName ? res().programName : "pictrel";
    return ::program_path(argv0, getenv("PATH"), current_dir(), executable);
}

void install_protocols(Drawing* d)
{
    if (!d || !d->shell)
        return;
    const SessionAtoms& a = atoms();
    Atom list[] = {a.saveYourself, a.deleteWindow, a.prepareToDie, a.closedown};
    XmAddProtocols(d->shell, a.protocols, list, XtNumber(list));
    XmAddProtocolCallback(d->shell, a.protocols, a.saveYourself, save_yourself_cb, d);
    XmAddProtocolCallback(d->shell, a.protocols, a.deleteWindow, delete_window_cb, d);
    XmAddProtocolCallback(d->shell, a.protocols, a.prepareToDie, prepare_to_die_cb, d);
    XmAddProtocolCallback(d->shell, a.protocols, a.closedown, closedown_cb, d);
    update_restart_command(d);
}

void update_restart_command(Drawing* d)
{
    if (!d || !d->shell)
        return;
    std::string file;
    if (!d->name.empty() && d->hasFile == 1)
        file = absolute_path(d->name, current_dir());
    std::vector<std::string> command = restart_command(program_path(), file, d->zoom);
    std::vector<char*> argv;
    for (std::string& s : command)
        argv.push_back(s.data());
    int argc = static_cast<int>(argv.size());
    if (!XtIsRealized(d->shell)) {
        // The toolkit copies the list and writes WM_COMMAND when it
        // realises the shell.
        XtVaSetValues(d->shell, XmNargc, argc, XmNargv, argv.data(), nullptr);
        return;
    }
    XSetCommand(XtDisplay(d->shell), XtWindow(d->shell), argv.data(), argc);
}

std::string shell_geometry(Widget w)
{
    if (!w)
        return "";
    Dimension width = 0, height = 0;
    Position x = 0, y = 0;
    XtVaGetValues(w, XmNwidth, &width, XmNheight, &height, XmNx, &x, XmNy, &y, nullptr);
    char buf[81];
    snprintf(buf, sizeof buf, "%dx%d+%d+%d", width, height, x, y);
    return buf;
}
