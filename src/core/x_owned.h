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

// A pixmap or GC made for one piece of work on `dpy` and freed with it.
class ScratchPixmap {
public:
    ScratchPixmap(Display* dpy, Drawable on, unsigned width, unsigned height, unsigned depth)
        : dpy_(dpy), pixmap_(XCreatePixmap(dpy, on, width, height, depth))
    {
    }
    ~ScratchPixmap()
    {
        if (pixmap_)
            XFreePixmap(dpy_, pixmap_);
    }
    ScratchPixmap(const ScratchPixmap&) = delete;
    ScratchPixmap& operator=(const ScratchPixmap&) = delete;
    Pixmap get() const { return pixmap_; }
    // Hands the pixmap over to the caller, who frees it from now on.
    Pixmap release()
    {
        Pixmap p = pixmap_;
        pixmap_ = None;
        return p;
    }

private:
    Display* dpy_;
    Pixmap pixmap_;
};

class ScratchGC {
public:
    ScratchGC(Display* dpy, Drawable on, unsigned long mask = 0, XGCValues* values = nullptr)
        : dpy_(dpy), gc_(XCreateGC(dpy, on, mask, values))
    {
    }
    ~ScratchGC()
    {
        if (gc_)
            XFreeGC(dpy_, gc_);
    }
    ScratchGC(const ScratchGC&) = delete;
    ScratchGC& operator=(const ScratchGC&) = delete;
    GC get() const { return gc_; }

private:
    Display* dpy_;
    GC gc_;
};
