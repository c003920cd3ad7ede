// The tool toggles' pictures, which Motif's pixmap cache makes from the icons' bits: each shows the icon in the
// palette's colours, the label picture foreground on background and the select picture the other way round.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <Xm/Xm.h>

#include <string>
#include <vector>

#include "canvas_support.h"
#include "core/x_owned.h"
#include "tools/geometry.h"
#include "tools/palettes.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"
#include "x_env.h"

namespace {

std::vector<Widget> children_of(Widget box)
{
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(box, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    return std::vector<Widget>(children, children + count);
}

// "" when the top-left w x h of the two pixmaps are the same pixels.
std::string pixmap_difference(Pixmap got, Pixmap want, int w, int h)
{
    Display* dpy = app().display;
    ImagePtr a(XGetImage(dpy, got, 0, 0, w, h, AllPlanes, ZPixmap));
    ImagePtr b(XGetImage(dpy, want, 0, 0, w, h, AllPlanes, ZPixmap));
    return first_difference(a.get(), b.get(), w, h);
}

}  // namespace

TEST(PalettePictures, ToolPicturesShowTheIconBitsInThePaletteColours)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    std::vector<Widget> children = children_of(d->toolsBox);
    ASSERT_FALSE(children.empty());
    Pixel fg = 0, bg = 0;
    XtVaGetValues(d->toolsBox, XmNforeground, &fg, XmNbackground, &bg, nullptr);
    ASSERT_NE(fg, bg);
    Display* dpy = app().display;
    for (const ToolIcon* icon : {&toolIcons[0], &toolIcons[2], &toolIcons[8], &rectFilledIcon}) {
        Pixmap label = None, select = None;
        icon_pixmaps(children[0], icon, &label, &select);
        ASSERT_NE(label, None);
        ASSERT_NE(select, None);
        XImage* l = XGetImage(dpy, label, 0, 0, icon->width, icon->height, AllPlanes, ZPixmap);
        XImage* s = XGetImage(dpy, select, 0, 0, icon->width, icon->height, AllPlanes, ZPixmap);
        ASSERT_TRUE(l && s);
        int bytesPerRow = (icon->width + 7) / 8;
        for (int y = 0; y < icon->height; y++)
            for (int x = 0; x < icon->width; x++) {
                bool bit = (icon->bits[y * bytesPerRow + x / 8] >> (x % 8)) & 1;
                ASSERT_EQ(XGetPixel(l, x, y), bit ? fg : bg) << "label " << x << "," << y;
                ASSERT_EQ(XGetPixel(s, x, y), bit ? bg : fg) << "select " << x << "," << y;
            }
        XDestroyImage(l);
        XDestroyImage(s);
        // Asked again, the same pictures come back.
        Pixmap again = None, againSelect = None;
        icon_pixmaps(children[0], icon, &again, &againSelect);
        EXPECT_EQ(again, label);
        EXPECT_EQ(againSelect, select);
    }
}

// The pattern toggles' pictures, made as bits on the client, are pixel for pixel what drawing them on the server
// gives: white, a black frame on the select picture, the pattern as an opaque stipple from the picture's origin
// inside a black outline.
TEST(PalettePictures, PatternPicturesMatchTheServerDrawnSwatch)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    std::vector<Widget> children = children_of(d->patternsBox);
    ASSERT_EQ(children.size(), static_cast<size_t>(PATTERN_COUNT));
    Display* dpy = app().display;
    const int w = 24, h = 22;
    GC plain = XCreateGC(dpy, app().root, 0, nullptr);
    for (int p = 0; p < PATTERN_COUNT; p++) {
        Pixmap label = None, select = None;
        XtVaGetValues(children[p], XmNlabelPixmap, &label, XmNselectPixmap, &select, nullptr);
        Pixmap stipple = XCreateBitmapFromData(dpy, app().root, reinterpret_cast<const char*>(patternBits[p]), 8, 8);
        XGCValues v;
        v.fill_style = FillOpaqueStippled;
        v.stipple = stipple;
        v.foreground = app().blackPixel;
        v.background = app().whitePixel;
        GC stippled = XCreateGC(dpy, app().root, GCFillStyle | GCStipple | GCForeground | GCBackground, &v);
        for (bool framed : {false, true}) {
            Pixmap want = XCreatePixmap(dpy, app().root, w, h, static_cast<unsigned>(app().screenDepth));
            XSetForeground(dpy, plain, app().whitePixel);
            XFillRectangle(dpy, want, plain, 0, 0, w, h);
            XSetForeground(dpy, plain, app().blackPixel);
            if (framed)
                XDrawRectangle(dpy, want, plain, 0, 0, w - 1, h - 1);
            XFillRectangle(dpy, want, stippled, 2, 2, w - 5, h - 5);
            XDrawRectangle(dpy, want, plain, 2, 2, w - 5, h - 5);
            EXPECT_EQ(pixmap_difference(framed ? select : label, want, w, h), "")
                << "pattern " << p << (framed ? " select" : " label");
            XFreePixmap(dpy, want);
        }
        XFreeGC(dpy, stippled);
        XFreePixmap(dpy, stipple);
    }
    XFreeGC(dpy, plain);
}

// The line-width toggles' pictures, made as bits on the client, are pixel for pixel the server's own drawing: a
// wide bar from x 6 to the right edge and, on the select picture, the filled triangle beside it.
TEST(PalettePictures, WidthPicturesMatchTheServerDrawnBars)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    std::vector<Widget> children = children_of(d->lineWidthBox);
    ASSERT_EQ(children.size(), 5u);
    Display* dpy = app().display;
    Pixel fg = 0, bg = 0;
    XtVaGetValues(d->lineWidthBox, XmNforeground, &fg, XmNbackground, &bg, nullptr);
    GC gc = XCreateGC(dpy, app().root, 0, nullptr);
    for (size_t i = 0; i < children.size(); i++) {
        unsigned width = lineWidths[i];
        WidthPicture g = width_picture(width);
        Pixmap label = None, select = None;
        XtVaGetValues(children[i], XmNlabelPixmap, &label, XmNselectPixmap, &select, nullptr);
        for (bool marked : {false, true}) {
            Pixmap want = XCreatePixmap(dpy, app().root, g.width, g.height, static_cast<unsigned>(app().screenDepth));
            XSetForeground(dpy, gc, bg);
            XFillRectangle(dpy, want, gc, 0, 0, g.width, g.height);
            XSetForeground(dpy, gc, fg);
            XSetLineAttributes(dpy, gc, width, LineSolid, CapButt, JoinMiter);
            XDrawLine(dpy, want, gc, 6, g.mid, g.width, g.mid);
            if (marked) {
                XSetLineAttributes(dpy, gc, 1, LineSolid, CapButt, JoinMiter);
                XPoint tri[3] = {{4, static_cast<short>(g.triangleY)},
                                 {1, static_cast<short>(g.triangleY - 3)},
                                 {1, static_cast<short>(g.triangleY + 3)}};
                XFillPolygon(dpy, want, gc, tri, 3, Convex, CoordModeOrigin);
            }
            EXPECT_EQ(pixmap_difference(marked ? select : label, want, g.width, g.height), "")
                << "width " << width << (marked ? " select" : " label");
            XFreePixmap(dpy, want);
        }
    }
    XFreeGC(dpy, gc);
}
