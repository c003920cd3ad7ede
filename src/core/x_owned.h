// What a function owns on the client side, or makes on the server for its
// own scratch work, freed when it goes out of scope whichever way it leaves:
// client-side images, compound strings, scratch pixmaps and GCs. Widgets
// are not here (the toolkit owns them), nor anything kept past the call.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <Xm/Xm.h>

#include <memory>
#include <type_traits>

// XDestroyImage is a macro, so the deleter is a small function object.
struct ImageDeleter {
    void operator()(XImage* image) const
    {
        if (image)
            XDestroyImage(image);
    }
};
using ImagePtr = std::unique_ptr<XImage, ImageDeleter>;

struct XmStringDeleter {
    void operator()(XmString s) const { XmStringFree(s); }
};
using XmStringPtr = std::unique_ptr<std::remove_pointer_t<XmString>, XmStringDeleter>;

// A compound string of `text` in the default character set.
inline XmStringPtr localized(const char* text)
{
    return XmStringPtr(XmStringCreateLocalized(const_cast<char*>(text)));
}

// The same, its newlines starting new lines of a label.
inline XmStringPtr multiline(const char* text)
{
    return XmStringPtr(XmStringCreateLtoR(const_cast<char*>(text), const_cast<char*>(XmFONTLIST_DEFAULT_TAG)));
}

// A server resource made for one piece of work on `dpy` and freed with it:
//     ScratchPixmap mask(dpy, XCreatePixmap(dpy, drawable, w, h, 1));
template <typename Handle, int (*Free)(Display*, Handle)>
class Scratch {
public:
    Scratch(Display* dpy, Handle handle) : dpy_(dpy), handle_(handle) {}
    ~Scratch()
    {
        if (handle_)
            Free(dpy_, handle_);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    Handle get() const { return handle_; }

private:
    Display* dpy_;
    Handle handle_;
};
using ScratchPixmap = Scratch<Pixmap, XFreePixmap>;
using ScratchGC = Scratch<GC, XFreeGC>;
