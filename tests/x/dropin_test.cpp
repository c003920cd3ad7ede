// The drop-in protocol: a second connection plays the desktop dropping files and a foreign site receiving drags.
#include "x_env.h"

#include <X11/Xatom.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "core/message.h"
#include "dropin/drop_data.h"
#include "dropin/dropin.h"
#include "files_support.h"

using namespace filetest;

namespace {

// The other client, on its own connection.
struct Peer {
    Display* dpy = XOpenDisplay(DisplayString(app().display));
    ~Peer() { XCloseDisplay(dpy); }
    Atom atom(const char* name) { return XInternAtom(dpy, name, False); }

    // Writes a transfer property on `site` and announces it; returns its atom.
    Atom drop(Window site, Atom type, int format, const std::string& bytes, int messageFormat = 32)
    {
        Atom property = atom("OXA_DROP_PROTOCOL_77_abc");
        XChangeProperty(dpy, site, property, type, format, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size() / (format / 8));
        announce(site, property, type, messageFormat);
        return property;
    }
    void announce(Window site, Atom property, Atom type, int messageFormat = 32)
    {
        XEvent m{};
        m.xclient = {ClientMessage, 0, False, dpy, site, atom("OXA_DROP_PROTOCOL"), messageFormat, {}};
        pack_drop_words({CurrentTime, 5, 6, 0, false, type, property}, m.xclient.data.l);
        XSendEvent(dpy, site, False, 0, &m);
        XSync(dpy, False);
        pump();
    }
    // The property's bytes; `*type` None when it is not there.
    std::string property(Window w, Atom property, Atom* type)
    {
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(dpy, w, property, 0, 1024, False, AnyPropertyType, type, &format, &n, &after, &data);
        size_t size = format == 32 ? n * sizeof(long) : n * (format / 8);   // Xlib hands out longs
        std::string s = data ? std::string(reinterpret_cast<char*>(data), size) : "";
        XFree(data);
        return s;
    }
    bool has(Window w, Atom p)
    {
        Atom type = None;
        return property(w, p, &type), type != None;
    }
    // A mapped, unmanaged window that advertises itself as a drop site.
    Window make_site(int x, int y)
    {
        XSetWindowAttributes a{};
        a.override_redirect = True;
        Window w = XCreateWindow(dpy, DefaultRootWindow(dpy), x, y, 80, 60, 0, CopyFromParent, InputOutput,
                                 CopyFromParent, CWOverrideRedirect, &a);
        long self = static_cast<long>(w);
        XChangeProperty(dpy, w, atom("OXA_DROP_PROTOCOL"), XA_WINDOW, 32, PropModeReplace,
                        reinterpret_cast<unsigned char*>(&self), 1);
        XMapRaised(dpy, w);
        XSync(dpy, False);
        pump();
        return w;
    }
    // The words of the next drop message that reached `w`, waiting a little.
    bool next_message(Window w, DropWords* words)
    {
        XEvent e;
        for (int i = 0; i < 30; i++, usleep(10000)) {
            pump(1);
            XSync(dpy, False);
            if (XCheckTypedWindowEvent(dpy, w, ClientMessage, &e)) {
                EXPECT_EQ(e.xclient.message_type, atom("OXA_DROP_PROTOCOL"));
                EXPECT_EQ(e.xclient.format, 32);
                *words = unpack_drop_words(e.xclient.data.l);
                return true;
            }
        }
        return false;
    }
};

std::string host_and_files(std::vector<const char*> files)
{
    return join_host_files("somehost", std::vector<std::string>(files.begin(), files.end()));
}

bool error_shown() { return filetest::managed(message_dialog(0)); }

}  // namespace

// The top-level widget and every drawing shell advertise themselves; a file list dropped on a shell opens its first
// file only, dropped text naming a file opens it, and the site takes the transfer property off its window.
TEST(DropIn, DroppedFilesOpen)
{
    Drawing* d = make_drawing(8, 8);
    Peer peer;
    for (Widget w : {app().topLevel, d->shell}) {
        Atom type = None;
        std::string site = peer.property(XtWindow(w), peer.atom("OXA_DROP_PROTOCOL"), &type);
        EXPECT_EQ(type, XA_WINDOW);
        ASSERT_EQ(site.size(), sizeof(long)) << "item 0 and no further accepted items";
        EXPECT_EQ(*reinterpret_cast<const Window*>(site.data()), XtWindow(w));
    }

    ScratchDir dir;
    std::string first = dir.file("first.xpm", xpm_text(pattern_xpm(5, 4, 3, 1)));
    std::string second = dir.file("second.xbm", xbm_text(pattern_xbm(9, 7)));
    int before = open_count();
    Atom p = peer.drop(XtWindow(d->shell), peer.atom("HOST_AND_FILE_NAME"), 8,
                       host_and_files({first.c_str(), second.c_str()}));
    Drawing* opened = drawing_named(first);
    ASSERT_NE(opened, nullptr) << "the first dropped file opens";
    EXPECT_EQ(opened->width, 5);
    EXPECT_EQ(drawing_named(second), nullptr) << "only one file of a drop opens";
    EXPECT_EQ(open_count(), before + 1);
    EXPECT_FALSE(peer.has(XtWindow(d->shell), p)) << "the site deletes the transfer property";

    peer.drop(XtWindow(app().topLevel), XA_STRING, 8, second + "\n");
    ASSERT_NE(drawing_named(second), nullptr) << "a STRING drop is a file name";
    EXPECT_EQ(drawing_named(second)->depth, 1);
    EXPECT_FALSE(error_shown());
}

// Messages and data of every wrong shape leave the program as it was: no drawing, no other property taken, and a
// message only where a file list named something that cannot be read.
TEST(DropIn, HostileDropsDoNothing)
{
    Drawing* d = make_drawing(8, 8);
    ScratchDir dir;
    std::string image = dir.file("good.xbm", xbm_text(pattern_xbm(4, 4)));
    Peer peer;
    Window site = XtWindow(d->shell);
    Atom hf = peer.atom("HOST_AND_FILE_NAME");
    std::string good = host_and_files({image.c_str()});
    int before = open_count();

    Atom p = peer.drop(site, hf, 8, good, 8);
    EXPECT_TRUE(peer.has(site, p)) << "a message of the wrong format is ignored";
    XDeleteProperty(peer.dpy, site, p);
    for (const char* name : {"WM_NAME", "OXA_DROP_PROTOCOL"}) {
        peer.announce(site, peer.atom(name), XA_STRING);
        EXPECT_TRUE(peer.has(site, peer.atom(name))) << "only transfer properties are taken: " << name;
    }
    for (Atom bad : {Atom(0x1fffffff), Atom(None), peer.atom("OXA_DROP_PROTOCOL_1_1")})   // the last never written
        peer.announce(site, bad, XA_STRING);
    EXPECT_FALSE(peer.has(site, peer.drop(site, XA_INTEGER, 8, image))) << "taken even when unusable";
    peer.drop(site, hf, 32, good + std::string(4 - good.size() % 4, '\0'));
    for (const std::string& bytes : {host_and_files({}), std::string()})
        peer.drop(site, hf, 8, bytes);
    // Text naming no file, a directory or nothing at all: silence.
    for (const std::string& text : {std::string(100000, 'x'), dir.dir, dir.path("missing.xpm")})
        peer.drop(site, XA_STRING, 8, text);
    EXPECT_EQ(open_count(), before);
    EXPECT_FALSE(error_shown());

    for (const std::string& bad : {dir.path("missing.xpm"), dir.file("junk.xpm", "this is not an image\n")}) {
        peer.drop(site, hf, 8, host_and_files({bad.c_str()}));
        ASSERT_TRUE(error_shown()) << bad;
        EXPECT_EQ(dialog_message(message_dialog(0)), "Can't open the file " + bad + ".");
        XtUnmanageChild(message_dialog(0));
    }
    EXPECT_EQ(open_count(), before) << "nothing half made";
    peer.drop(site, hf, 8, good);
    EXPECT_NE(drawing_named(image), nullptr) << "and a good drop still works";
}

// Button 2 on a status line drags out, button 3 cancels (real XTest input); released over a foreign site, the drag
// writes "unimplemented" into a transfer property of the site's window and announces it there.
TEST(DropIn, StatusLineDragsOut)
{
    Drawing* d = make_drawing(8, 8);
    Peer peer;
    Window site = peer.make_site(1150, 950);
    for (bool cancel : {true, false}) {
        xtest_move(XtWindow(d->statusLabel), 3, 3);
        xtest_button(2, true);
        EXPECT_TRUE(dropin_dragging());
        if (cancel) {
            xtest_button(3, true);
            xtest_button(3, false);
            EXPECT_FALSE(dropin_dragging());
        }
        xtest_move(site, 10, 12);
        xtest_button(2, false);
        EXPECT_FALSE(dropin_dragging());
        DropWords w{};
        ASSERT_EQ(peer.next_message(site, &w), !cancel);
        if (cancel)
            continue;
        EXPECT_EQ(std::pair(w.x, w.y), std::pair(10, 12));
        Atom type = None;
        EXPECT_EQ(peer.property(site, w.property, &type), "unimplemented");
        EXPECT_EQ(std::pair(type, w.type), std::pair(Atom(XA_STRING), Atom(XA_STRING)));
    }
}
