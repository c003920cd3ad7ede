// The clipboard item "orvbit": one format private to the program holding a
// 4-byte pixmap identifier. The pixmap on the clipboard lives as long as it
// is there (another client may paste it at any time while this program
// runs); it is freed when this program puts the next one in its place.
#include "imageops/clipboard.h"

#include <Xm/CutPaste.h>
#include <Xm/Xm.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "canvas/image_store.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/error_trap.h"
#include "tools/selection.h"
#include "core/x_owned.h"

namespace {

char formatName[] = "PICTREL_PIXMAP";

struct ClipboardState {
    Window window = None;   // the first one used serves every later call
    Pixmap owned = None;
    long dataId = 0;
};
ClipboardState clip;

enum class Step { Copy, Retrieve };

void debug_status(int status, Step step)
{
    if (!res().debug)
        return;
    const char* text = "total fuckup \n";
    switch (status) {
    case ClipboardSuccess:
        if (step == Step::Retrieve)
            return;
        text = "Sucess\n";
        break;
    case ClipboardTruncate:
        text = step == Step::Copy ? "Truncated\n" : "truncated\n";
        break;
    case ClipboardLocked:
        text = step == Step::Copy ? "Locked\n" : "locked\n";
        break;
    case ClipboardNoData:
        text = "no data\n";
        break;
    default:
        break;
    }
    std::fputs(text, stdout);
    std::fflush(stdout);
}

// The length the server has on record for our format, -1 when unknown.
long registered_length(Display* dpy)
{
    std::string name = std::string("_MOTIF_CLIP_FORMAT_") + formatName;
    Atom property = XInternAtom(dpy, name.c_str(), True);
    if (property == None)
        return -1;
    Atom type;
    int format = 0;
    unsigned long count = 0, after = 0;
    unsigned char* data = nullptr;
    long length = -1;
    if (XGetWindowProperty(dpy, DefaultRootWindow(dpy), property, 0, 1, False, AnyPropertyType,
                           &type, &format, &count, &after, &data) == Success &&
        data && format == 32 && count == 1)
        length = reinterpret_cast<long*>(data)[0];
    if (data)
        XFree(data);
    return length;
}

Window clipboard_window(Drawing* d)
{
    if (!clip.window && d && d->shell && XtIsRealized(d->shell))
        clip.window = XtWindow(d->shell);
    if (!clip.window)
        return None;
    Display* dpy = app().display;
    // Bytes, not 32-bit items: the identifier travels as four bytes
    // whatever the size of a long, which 32-bit formats would widen.
    if (registered_length(dpy) != 8)
        XmClipboardRegisterFormat(dpy, formatName, 8);
    // Another client may register the name with another length at any
    // time, also after our first use; the toolkit would then store our
    // item unreadably and end the program on the next retrieve. Look
    // before every use and leave the clipboard alone instead.
    return registered_length(dpy) == 8 ? clip.window : None;
}

Time event_time(const XEvent* event)
{
    if (event) {
        switch (event->type) {
        case KeyPress:
        case KeyRelease:
            return event->xkey.time;
        case ButtonPress:
        case ButtonRelease:
            return event->xbutton.time;
        default:
            break;
        }
    }
    Time t = XtLastTimestampProcessed(app().display);
    return t ? t : CurrentTime;
}

// Another client holding the clipboard makes us wait for it, but not for
// ever: a client that died while holding the lock must not hang us.
template <typename Call>
int retry_while_locked(Call call)
{
    int status = ClipboardLocked;
    for (int tries = 0; tries < 500; tries++) {
        status = call();
        debug_status(status, Step::Copy);
        if (status != ClipboardLocked)
            break;
        usleep(10000);
    }
    return status;
}

Pixmap retrieve(Drawing* d)
{
    Window w = clipboard_window(d);
    if (!w)
        return None;
    Display* dpy = app().display;
    uint32_t id = 0;
    unsigned long got = 0;
    long privateId = 0;
    int status = XmClipboardRetrieve(dpy, w, formatName, reinterpret_cast<XtPointer>(&id),
                                     sizeof id, &got, &privateId);
    debug_status(status, Step::Retrieve);
    if (status == ClipboardLocked)
        XmClipboardUnlock(dpy, w, True);
    if (status != ClipboardSuccess || got != sizeof id)
        return None;
    return static_cast<Pixmap>(id);
}

}  // namespace

int clipboard_copy(Drawing* d, XEvent* event)
{
    if (!selection_exists(d) || !d->selection->pixels)
        return 1;
    Window w = clipboard_window(d);
    if (!w)
        return 1;
    Display* dpy = app().display;
    Pixmap copy = snapshot_drawable(dpy, d->selection->pixels, d->copyGC, nullptr, nullptr, nullptr);
    if (!copy)
        return 1;
    XmStringPtr label = localized("orvbit");
    long itemId = 0;
    Time t = event_time(event);
    int status = retry_while_locked(
        [&] { return XmClipboardStartCopy(dpy, w, label.get(), t, nullptr, nullptr, &itemId); });
    if (status != ClipboardSuccess) {
        XFreePixmap(dpy, copy);
        return 1;
    }
    uint32_t id = static_cast<uint32_t>(copy);
    long dataId = 0;
    status = retry_while_locked([&] {
        return XmClipboardCopy(dpy, w, itemId, formatName, reinterpret_cast<XtPointer>(&id),
                               sizeof id, 0, &dataId);
    });
    int end = retry_while_locked([&] { return XmClipboardEndCopy(dpy, w, itemId); });
    if (status != ClipboardSuccess || end != ClipboardSuccess) {
        XFreePixmap(dpy, copy);
        return 1;
    }
    // The clipboard now names the new copy, and a paste copies the pixels
    // at once, so the one put there before serves nobody: without this
    // every Copy would leave a pixmap in the server for the program's life.
    if (clip.owned && clip.owned != copy)
        XFreePixmap(dpy, clip.owned);
    clip.owned = copy;
    clip.dataId = dataId;
    return 0;
}

int clipboard_paste(Drawing* d, XEvent*)
{
    if (!d || !d->image)
        return 1;
    Pixmap p = retrieve(d);
    return p ? paste_pixmap(d, p) : 1;
}

bool clipboard_can_paste(Drawing* d)
{
    if (!d || !d->shell || !XtIsRealized(d->shell))
        return false;
    Pixmap p = retrieve(d);
    if (!p)
        return false;
    // The owner of the pixmap may have gone.
    unsigned w, h, depth;
    return pixmap_geometry(app().display, p, &w, &h, &depth) && depth == static_cast<unsigned>(d->depth);
}

int cmd_copy(Drawing* d, XEvent* event, Boolean)
{
    return clipboard_copy(d, event);
}

int cmd_cut(Drawing* d, XEvent* event, Boolean)
{
    if (clipboard_copy(d, event) != 0)
        return 1;
    return clear_selection(d);
}

int cmd_paste(Drawing* d, XEvent* event, Boolean)
{
    // The item stays sensitive while the menu is closed so that the
    // accelerator works: check here what the menu checks when it opens.
    if (!clipboard_can_paste(d))
        return 1;
    return clipboard_paste(d, event);
}
