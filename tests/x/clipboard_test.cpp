// Copy, cut and paste of selections between drawings through the Motif clipboard, and Paste of data it cannot use.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <X11/Xatom.h>
#include <Xm/CutPaste.h>
#include <Xm/Xm.h>

#include <cstdint>

#include "app/commands.h"
#include "canvas/undo.h"
#include "colour/color_list.h"
#include "files_support.h"
#include "imageops/clipboard.h"
#include "tools/palettes.h"
#include "tools/selection.h"
#include "tools/tool_table.h"

namespace {

// Puts an arbitrary identifier on the clipboard as another copy of the program would.
void offer_identifier(Drawing* d, uint32_t id)
{
    Display* dpy = app().display;
    Window w = XtWindow(d->shell);
    XmString label = XmStringCreateLocalized(const_cast<char*>("orvbit"));
    long item = 0, data = 0;
    ASSERT_EQ(XmClipboardStartCopy(dpy, w, label, CurrentTime, nullptr, nullptr, &item), ClipboardSuccess);
    XmClipboardCopy(dpy, w, item, const_cast<char*>("PICTREL_PIXMAP"), &id, sizeof id, 0, &data);
    XmClipboardEndCopy(dpy, w, item);
    XmStringFree(label);
}

uint32_t clipboard_identifier(Drawing* d)
{
    uint32_t id = 0;
    unsigned long got = 0;
    long privateId = 0;
    XmClipboardRetrieve(app().display, XtWindow(d->shell), const_cast<char*>("PICTREL_PIXMAP"), &id, sizeof id,
                        &got, &privateId);
    return got == sizeof id ? id : 0;
}

bool in_list(Drawing* d, unsigned long pixel)
{
    ColorList* list = color_list_of(d);
    for (ColorEntry* e = list ? list->anchor->next : nullptr; e; e = e->next)
        if (e->pixel == pixel)
            return true;
    return false;
}

}  // namespace

// A copied selection pastes into another drawing at the top-left of its visible canvas as a floating copy in that
// drawing's own colour cells; Cut leaves background behind and Undo brings the cut pixels back.
TEST(Clipboard, CopyAndCutBetweenDrawings)
{
    Drawing* a = make_drawing(24, 16);
    Drawing* b = make_drawing(24, 16);
    ASSERT_TRUE(a && b);
    select_tool(a, TOOL_SELECT);
    pump();
    // A's own black, and a colour only A has.
    ColorEntry* black = add_color(color_list_of(a), app().blackPixel, app().blackPixel, 1);
    ColorEntry* odd = add_color(color_list_of(a), app().blackPixel, app().blackPixel, 1);
    ASSERT_TRUE(black && odd);
    XColor unique{odd->pixel, 0x1200, 0x3400, 0x5600, DoRed | DoGreen | DoBlue, 0};
    XStoreColor(app().display, app().colormap, &unique);
    put_pixels(a, black->pixel, 5, 6);
    put_pixels(a, odd->pixel, 6, 7);
    stroke(a, Button1, {{5, 6}, {6, 7}});
    ASSERT_EQ(run_command(a, CMD_COPY, nullptr, False), 0);
    pump();
    EXPECT_TRUE(clipboard_can_paste(b));
    ASSERT_EQ(run_command(b, CMD_PASTE, nullptr, False), 0);
    pump();
    EXPECT_EQ(b->currentTool, TOOL_SELECT);
    ASSERT_TRUE(selection_exists(b));
    EXPECT_EQ(b->selection->current.x, 0);
    EXPECT_EQ(b->selection->current.width, 2);
    EXPECT_FALSE(undo_sensitive(b)) << "a paste leaves nothing to undo";
    select_tool(b, TOOL_PENCIL);   // lay it down
    pump();
    unsigned long p0 = image_pixel(b, 0, 0), p1 = image_pixel(b, 1, 1);
    EXPECT_TRUE(in_list(b, p0) && in_list(b, p1) && p0 != black->pixel && p1 != odd->pixel) << "B's own cells";
    EXPECT_EQ(filetest::rgb_of_pixel(p0), 0u);
    EXPECT_EQ(filetest::rgb_of_pixel(p1), 0x123456u) << "a new entry of B with the same RGB";

    // The pixmap of the earlier copy, no longer on the clipboard, is not left behind in the server.
    uint32_t earlier = clipboard_identifier(a);
    ASSERT_NE(earlier, 0u);
    ASSERT_EQ(run_command(a, CMD_CUT, nullptr, False), 0);
    pump();
    EXPECT_NE(clipboard_identifier(a), earlier);
    {
        ErrorTrap trap(app().display);
        Window root;
        int x;
        unsigned u;
        EXPECT_FALSE(XGetGeometry(app().display, earlier, &root, &x, &x, &u, &u, &u, &u));
    }
    EXPECT_FALSE(selection_exists(a));
    EXPECT_EQ(pixels_are(a, background_pixel(a), {{5, 6}, {6, 7}}), "");
    ASSERT_TRUE(undo_sensitive(a));
    cmd_undo(a, nullptr, False);
    pump();
    EXPECT_EQ(std::pair(image_pixel(a, 5, 6), image_pixel(a, 6, 7)), std::pair(black->pixel, odd->pixel));
}

// A bitmap's selection cannot go into a colour drawing; an identifier naming no pixmap is refused without X errors;
// the format registered by another client with another length (the toolkit would crash on it) is left alone.
TEST(Clipboard, BadOrVanishedDataIsRefused)
{
    Drawing* colour = make_drawing(16, 16);
    Drawing* bits = create_drawing("bits", 16, 16, 1, None, -1, -1, nullptr);
    ASSERT_TRUE(colour && bits);
    pump();
    run_command(bits, CMD_SELECT_ALL, nullptr, False);
    ASSERT_EQ(run_command(bits, CMD_COPY, nullptr, False), 0);
    pump();
    EXPECT_TRUE(clipboard_can_paste(bits));
    EXPECT_FALSE(clipboard_can_paste(colour));
    EXPECT_NE(run_command(colour, CMD_PASTE, nullptr, False), 0);
    EXPECT_FALSE(selection_exists(colour));

    Display* dpy = app().display;
    Pixmap gone = XCreatePixmap(dpy, app().root, 4, 4, static_cast<unsigned>(colour->depth));
    XFreePixmap(dpy, gone);
    {
        ErrorTrap trap(app().display);
        offer_identifier(colour, static_cast<uint32_t>(gone));
        pump();
        EXPECT_FALSE(clipboard_can_paste(colour));
        EXPECT_NE(run_command(colour, CMD_PASTE, nullptr, False), 0);
        pump();
        EXPECT_FALSE(selection_exists(colour));
        EXPECT_EQ(trap.error(), 0);
    }

    Atom property = XInternAtom(dpy, "_MOTIF_CLIP_FORMAT_PICTREL_PIXMAP", False);
    auto set_length = [&](long length) {
        XChangeProperty(dpy, app().root, property, XA_INTEGER, 32, PropModeReplace,
                        reinterpret_cast<unsigned char*>(&length), 1);
        XSync(dpy, False);
    };
    run_command(colour, CMD_SELECT_ALL, nullptr, False);
    set_length(32);
    EXPECT_NE(run_command(colour, CMD_COPY, nullptr, False), 0);
    EXPECT_FALSE(clipboard_can_paste(colour));
    EXPECT_NE(run_command(colour, CMD_PASTE, nullptr, False), 0);
    set_length(8);
}
