// The tool toggles' pictures, which Motif's pixmap cache makes from the icons' bits: each shows the icon in the
// palette's colours, the label picture foreground on background and the select picture the other way round.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <Xm/Xm.h>

#include "tools/tool_handlers.h"
#include "tools/tool_table.h"
#include "x_env.h"

TEST(PalettePictures, ToolPicturesShowTheIconBitsInThePaletteColours)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(d->toolsBox, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    ASSERT_GE(count, 1u);
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
