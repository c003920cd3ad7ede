// The drop-in protocol against a real server: a second connection plays the
// desktop (dropping files on a drawing window) and a foreign drop site
// (receiving what the program drags out). Every fixture is generated here.
#include "x_env.h"

#include <X11/Xatom.h>
#include <Xm/Xm.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "app/message.h"
#include "dropin/drop_data.h"
#include "dropin/dropin.h"
#include "files_support.h"

using namespace filetest;

namespace {

// The other client: its own connection, its own atoms.
struct Peer {
    Display* dpy = XOpenDisplay(DisplayString(app().display));
    ~Peer()
    {
        if (dpy)
            XCloseDisplay(dpy);
    }
    Atom atom(const char* name) { return XInternAtom(dpy, name, False); }

    // Writes a transfer property on `site` and announces it; returns its atom.
    Atom drop(Window site, Atom type, int format, const std::string& bytes, int messageFormat = 32,
              const char* propertyName = "OXA_DROP_PROTOCOL_77_abc")
    {
        Atom property = atom(propertyName);
        int n = static_cast<int>(bytes.size()) / (format / 8);
        XChangeProperty(dpy, site, property, type, format, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(bytes.data()), n);
        announce(site, property, type, messageFormat);
        return property;
    }

    void announce(Window site, Atom property, Atom type, int messageFormat = 32)
    {
        XEvent m{};
        m.xclient.type = ClientMessage;
        m.xclient.window = site;
        m.xclient.message_type = atom("OXA_DROP_PROTOCOL");
        m.xclient.format = messageFormat;
        DropWords w{CurrentTime, 5, 6, 0, false, type, property};
        pack_drop_words(w, m.xclient.data.l);
        XSendEvent(dpy, site, False, 0, &m);
        XSync(dpy, False);
        pump();
    }

    bool has_property(Window w, Atom property)
    {
        Atom type = None;
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(dpy, w, property, 0, 0, False, AnyPropertyType, &type, &format, &n, &after, &data);
        if (data)
            XFree(data);
        return type != None;
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
        return w;
    }

    // The next drop message that reached `w`, waiting a little for it.
    bool next_message(Window w, XEvent* out)
    {
        for (int i = 0; i < 50; i++) {
            pump(1);
            XSync(dpy, False);
            if (XCheckTypedWindowEvent(dpy, w, ClientMessage, out))
                return true;
            usleep(10000);
        }
        return false;
    }

    std::string string_property(Window w, Atom property, Atom* type)
    {
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(dpy, w, property, 0, 1024, False, AnyPropertyType, type, &format, &n, &after, &data);
        std::string s = data ? std::string(reinterpret_cast<char*>(data), n) : "";
        if (data)
            XFree(data);
        return s;
    }
};

std::string host_and_files(const std::vector<const char*>& files)
{
    size_t length = 0;
    char* joined = join_host_files("somehost", files.data(), static_cast<int>(files.size()), &length);
    std::string bytes(joined, length);
    free(joined);
    return bytes;
}

bool error_shown() { return message_dialog(0) && XtIsManaged(message_dialog(0)); }
void dismiss_error()
{
    if (error_shown())
        XtUnmanageChild(message_dialog(0));
    pump();
}

// A drag out ending with a button release at root position (x, y).
void drag_out(Widget w, int x, int y)
{
    XEvent release{};
    release.xbutton.type = ButtonRelease;
    release.xbutton.display = app().display;
    release.xbutton.window = XtWindow(w);
    release.xbutton.root = app().root;
    release.xbutton.x_root = x;
    release.xbutton.y_root = y;
    release.xbutton.button = 2;
    release.xbutton.state = Button2Mask | ShiftMask;
    release.xbutton.time = 4242;
    XtCallActionProc(w, "StartDropOut", &release, nullptr, 0);
    XtCallActionProc(w, "CompleteDropOut", &release, nullptr, 0);
    pump();
}

}  // namespace

// The program's top-level widget and every drawing shell advertise
// themselves, item 0 naming their own window.
TEST(DropIn, SitesAdvertised)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    Peer peer;
    ASSERT_NE(peer.dpy, nullptr);
    for (Widget w : {app().topLevel, d->shell}) {
        Atom type = None;
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(peer.dpy, XtWindow(w), peer.atom("OXA_DROP_PROTOCOL"), 0, 16, False, AnyPropertyType,
                           &type, &format, &n, &after, &data);
        ASSERT_NE(data, nullptr) << XtName(w);
        EXPECT_EQ(type, XA_WINDOW);
        EXPECT_EQ(format, 32);
        EXPECT_EQ(n, 1u) << "no list of further accepted items";
        EXPECT_EQ(static_cast<Window>(reinterpret_cast<long*>(data)[0]), XtWindow(w));
        XFree(data);
    }
}

// A file list opens its first file and only that; dropped text naming a
// file opens it too; the site takes the property off its window.
TEST(DropIn, DroppedFilesOpen)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    ScratchDir dir;
    std::string first = dir.file("first.xpm", xpm_text(pattern_xpm(5, 4, 3, 1)));
    std::string second = dir.file("second.xbm", xbm_text(pattern_xbm(9, 7)));
    Peer peer;
    ASSERT_NE(peer.dpy, nullptr);
    Window site = XtWindow(d->shell);
    int before = open_count();

    Atom property = peer.drop(site, peer.atom("HOST_AND_FILE_NAME"), 8, host_and_files({first.c_str(), second.c_str()}));
    Drawing* opened = drawing_named(first);
    ASSERT_NE(opened, nullptr) << "the first dropped file opens";
    EXPECT_EQ(opened->width, 5);
    EXPECT_EQ(opened->height, 4);
    EXPECT_EQ(drawing_named(second), nullptr) << "only one file of a drop opens";
    EXPECT_FALSE(peer.has_property(site, property)) << "the site deletes the transfer property";
    EXPECT_EQ(open_count(), before + 1);

    peer.drop(app().topLevel ? XtWindow(app().topLevel) : site, XA_STRING, 8, second + "\n");
    Drawing* text = drawing_named(second);
    ASSERT_NE(text, nullptr) << "a STRING drop is a file name";
    EXPECT_EQ(text->depth, 1);
    EXPECT_EQ(text->width, 9);
    EXPECT_FALSE(error_shown());
}

// Messages and data of every wrong shape leave the program as it was: no
// drawing, no other property taken, and a message only where a file list
// named something that cannot be read.
TEST(DropIn, HostileDropsDoNothing)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    ScratchDir dir;
    std::string image = dir.file("good.xbm", xbm_text(pattern_xbm(4, 4)));
    std::string junk = dir.file("junk.xpm", "this is not an image\n");
    Peer peer;
    ASSERT_NE(peer.dpy, nullptr);
    Window site = XtWindow(d->shell);
    Atom hf = peer.atom("HOST_AND_FILE_NAME");
    int before = open_count();
    std::string good = host_and_files({image.c_str()});

    // Message of the wrong format: the property is not even read.
    Atom p = peer.drop(site, hf, 8, good, 8);
    EXPECT_TRUE(peer.has_property(site, p));
    XDeleteProperty(peer.dpy, site, p);

    // A message naming another property of the window, a missing atom, None.
    Atom wmName = peer.atom("WM_NAME");
    ASSERT_TRUE(peer.has_property(site, wmName));
    peer.announce(site, wmName, XA_STRING);
    EXPECT_TRUE(peer.has_property(site, wmName)) << "only transfer properties are taken";
    peer.announce(site, peer.atom("OXA_DROP_PROTOCOL"), XA_WINDOW);
    EXPECT_TRUE(peer.has_property(site, peer.atom("OXA_DROP_PROTOCOL"))) << "the site property stays";
    peer.announce(site, 0x1fffffff, XA_STRING);
    peer.announce(site, None, XA_STRING);
    peer.announce(site, peer.atom("OXA_DROP_PROTOCOL_1_1"), XA_STRING);   // named right, never written

    // Right name, wrong data: another type, format 32, only a host, nothing.
    p = peer.drop(site, XA_INTEGER, 8, image);
    EXPECT_FALSE(peer.has_property(site, p)) << "read and deleted even when unusable";
    peer.drop(site, hf, 32, good + std::string(4 - good.size() % 4, '\0'));
    peer.drop(site, hf, 8, host_and_files({}));
    peer.drop(site, hf, 8, "");
    peer.drop(site, XA_STRING, 8, std::string(100000, 'x'));
    peer.drop(site, XA_STRING, 8, dir.dir);                 // a directory
    peer.drop(site, XA_STRING, 8, dir.path("missing.xpm"));  // text naming no file: silence
    EXPECT_EQ(open_count(), before);
    EXPECT_FALSE(error_shown());

    // A file list naming a missing file or a file that is not an image.
    for (const std::string& bad : {dir.path("missing.xpm"), junk}) {
        peer.drop(site, hf, 8, host_and_files({bad.c_str()}));
        ASSERT_TRUE(error_shown()) << bad;
        EXPECT_EQ(dialog_message(message_dialog(0)), "Can't open the file " + bad + ".");
        dismiss_error();
    }
    EXPECT_EQ(open_count(), before) << "nothing half made";

    // After all that, a good drop still works.
    peer.drop(site, hf, 8, good);
    EXPECT_NE(drawing_named(image), nullptr);
}

// A drag out ending over a foreign site writes "unimplemented" into a
// transfer property of the site's window and announces it; a second drag
// before the first is read takes a second atom, and a deleted or destroyed
// target gives its atom back.
TEST(DropIn, DragOutToForeignSite)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    Peer peer;
    ASSERT_NE(peer.dpy, nullptr);
    Window site = peer.make_site(1100, 900);
    pump();

    XEvent m{};
    drag_out(d->shell, 1110, 920);
    ASSERT_TRUE(peer.next_message(site, &m)) << "the site hears of the drop";
    EXPECT_EQ(m.xclient.message_type, peer.atom("OXA_DROP_PROTOCOL"));
    EXPECT_EQ(m.xclient.format, 32);
    DropWords w = unpack_drop_words(m.xclient.data.l);
    EXPECT_EQ(w.time, 4242u);
    EXPECT_EQ(w.x, 10);
    EXPECT_EQ(w.y, 20);
    EXPECT_EQ(w.state, static_cast<unsigned>(Button2Mask | ShiftMask));
    EXPECT_FALSE(w.flag);
    EXPECT_EQ(w.type, XA_STRING);
    char* name = XGetAtomName(peer.dpy, w.property);
    ASSERT_NE(name, nullptr);
    EXPECT_TRUE(is_transfer_property_name("OXA_DROP_PROTOCOL", name)) << name;
    EXPECT_NE(std::string(name).find("_" + std::to_string(XtWindow(app().topLevel)) + "_"), std::string::npos)
        << "the source window is named in decimal: " << name;
    XFree(name);
    Atom type = None;
    EXPECT_EQ(peer.string_property(site, w.property, &type), "unimplemented");
    EXPECT_EQ(type, XA_STRING);
    Atom first = w.property;

    drag_out(d->shell, 1120, 930);
    ASSERT_TRUE(peer.next_message(site, &m));
    Atom second = unpack_drop_words(m.xclient.data.l).property;
    EXPECT_NE(second, first) << "the first transfer is still unread";

    XDeleteProperty(peer.dpy, site, first);
    XSync(peer.dpy, False);
    pump();
    drag_out(d->shell, 1120, 930);
    ASSERT_TRUE(peer.next_message(site, &m));
    EXPECT_EQ(unpack_drop_words(m.xclient.data.l).property, first) << "a read transfer's atom is reused";

    // The site goes away without reading: both atoms come back.
    XDestroyWindow(peer.dpy, site);
    XSync(peer.dpy, False);
    pump();
    Window other = peer.make_site(1000, 900);
    pump();
    drag_out(d->shell, 1010, 910);
    ASSERT_TRUE(peer.next_message(other, &m));
    Atom reused = unpack_drop_words(m.xclient.data.l).property;
    EXPECT_TRUE(reused == first || reused == second);
}

// Nothing is sent without a drag under way, over no site, or over one of
// the program's own windows; the local action hands the provider's data
// straight to the drop-in callback.
TEST(DropIn, NoSiteAndLocalDrops)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    Peer peer;
    ASSERT_NE(peer.dpy, nullptr);
    Window site = peer.make_site(1100, 800);
    pump();
    XEvent m{};

    XtCallActionProc(d->shell, "AbortDropOut", nullptr, nullptr, 0);
    EXPECT_FALSE(dropin_dragging());
    XEvent release{};
    release.xbutton.type = ButtonRelease;
    release.xbutton.root = app().root;
    release.xbutton.x_root = 1110;
    release.xbutton.y_root = 810;
    XtCallActionProc(d->shell, "CompleteDropOut", &release, nullptr, 0);
    EXPECT_FALSE(peer.next_message(site, &m)) << "no drag under way";

    XtCallActionProc(d->shell, "StartDropOut", &release, nullptr, 0);
    EXPECT_TRUE(dropin_dragging());
    XtCallActionProc(d->shell, "AbortDropOut", &release, nullptr, 0);
    EXPECT_FALSE(dropin_dragging());

    Window child;
    int sx = 0, sy = 0;
    XTranslateCoordinates(app().display, XtWindow(d->shell), app().root, 2, 2, &sx, &sy, &child);
    drag_out(d->shell, sx, sy);
    drag_out(d->shell, 1279, 5);   // the bare root
    EXPECT_FALSE(peer.next_message(site, &m)) << "own window or no site: nothing sent";

    // The provider's text is a file name like any dropped text: with a
    // file of that name in the working directory, the local drop opens it.
    ScratchDir dir;
    dir.file("unimplemented", xbm_text(pattern_xbm(3, 3)));
    char* old = getcwd(nullptr, 0);
    ASSERT_EQ(chdir(dir.dir.c_str()), 0);
    XtCallActionProc(d->shell, "LocalDropInOut", &release, nullptr, 0);
    pump();
    EXPECT_EQ(chdir(old), 0);
    free(old);
    EXPECT_NE(drawing_named("unimplemented"), nullptr);
    EXPECT_FALSE(peer.next_message(site, &m)) << "a local drop never goes through the server";
}

// The application defaults bind the drag to button 2 on a drawing's status
// line: real pointer input there drags "unimplemented" out to a site.
TEST(DropIn, StatusLineDragsOut)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    ASSERT_NE(d->statusLabel, nullptr);
    Peer peer;
    ASSERT_NE(peer.dpy, nullptr);
    Window site = peer.make_site(1150, 950);
    pump();

    xtest_move(XtWindow(d->statusLabel), 3, 3);
    xtest_button(2, true);
    EXPECT_TRUE(dropin_dragging());
    xtest_move(site, 10, 10);
    xtest_button(2, false);
    EXPECT_FALSE(dropin_dragging());
    XEvent m{};
    ASSERT_TRUE(peer.next_message(site, &m));
    Atom type = None;
    EXPECT_EQ(peer.string_property(site, unpack_drop_words(m.xclient.data.l).property, &type), "unimplemented");

    // Button 3 cancels: the release then sends nothing.
    xtest_move(XtWindow(d->statusLabel), 3, 3);
    xtest_button(2, true);
    xtest_button(3, true);
    xtest_button(3, false);
    EXPECT_FALSE(dropin_dragging());
    xtest_move(site, 10, 10);
    xtest_button(2, false);
    EXPECT_FALSE(peer.next_message(site, &m));
}
