// Making the first shell, Motif reads its virtual key bindings and, for
// every binding (some 35 of them), asks the server for the keysyms of that
// one key with XGetKeyboardMapping: a round trip each, about a third of
// all the round trips of a start. While the first shell is made, the
// program's own XGetKeyboardMapping reads the whole map once, in one
// request, and answers every such question from that copy, which holds
// exactly what the server would answer for any key. At any other time the
// call goes on to Xlib's, which asks the server as always.
#include "app/startup_keymap.h"

#include <X11/Xlib.h>
#include <dlfcn.h>

#include <cstdlib>
#include <cstring>

namespace {

using KeymapRead = KeySym* (*)(Display*, KeyCode, int, int*);

KeymapRead xlib_read()
{
    static KeymapRead read = reinterpret_cast<KeymapRead>(dlsym(RTLD_NEXT, "XGetKeyboardMapping"));
    return read;
}

// The whole map of one display, read once while answering is on.
struct KeymapCopy {
    bool answering = false;
    Display* dpy = nullptr;
    KeySym* keysyms = nullptr;
    int minCode = 0;
    int maxCode = 0;
    int perKeycode = 0;
};
KeymapCopy copy;

void forget_copy()
{
    if (copy.keysyms)
        XFree(copy.keysyms);
    copy = KeymapCopy{copy.answering};
}

bool have_copy(Display* dpy, KeymapRead read)
{
    if (copy.keysyms && copy.dpy == dpy)
        return true;
    forget_copy();
    int minCode = 0, maxCode = 0;
    XDisplayKeycodes(dpy, &minCode, &maxCode);
    if (minCode < 8 || maxCode < minCode || maxCode > 255)
        return false;
    int per = 0;
    KeySym* all = read(dpy, static_cast<KeyCode>(minCode), maxCode - minCode + 1, &per);
    if (!all || per <= 0) {
        if (all)
            XFree(all);
        return false;
    }
    copy.dpy = dpy;
    copy.keysyms = all;
    copy.minCode = minCode;
    copy.maxCode = maxCode;
    copy.perKeycode = per;
    return true;
}

// Keys first..first+count-1 from the copy, allocated as Xlib allocates its
// answer (the caller frees it with XFree); null when the copy cannot say.
KeySym* from_copy(Display* dpy, int first, int count, int* perKeycode, KeymapRead read)
{
    if (!have_copy(dpy, read) || count <= 0 || first < copy.minCode || first + count - 1 > copy.maxCode)
        return nullptr;
    size_t per = static_cast<size_t>(copy.perKeycode);
    size_t n = static_cast<size_t>(count) * per;
    auto* keysyms = static_cast<KeySym*>(std::malloc(n * sizeof(KeySym)));
    if (!keysyms)
        return nullptr;
    std::memcpy(keysyms, copy.keysyms + static_cast<size_t>(first - copy.minCode) * per, n * sizeof(KeySym));
    *perKeycode = copy.perKeycode;
    return keysyms;
}

}  // namespace

void answer_keymap_from_copy(bool on)
{
    copy.answering = on;
    if (!on)
        forget_copy();
}

extern "C" KeySym* XGetKeyboardMapping(Display* dpy, KeyCode first, int count, int* perKeycode)
{
    KeymapRead read = xlib_read();
    if (!read)
        return nullptr;
    if (copy.answering && dpy && perKeycode)
        if (KeySym* keysyms = from_copy(dpy, first, count, perKeycode, read))
            return keysyms;
    return read(dpy, first, count, perKeycode);
}
