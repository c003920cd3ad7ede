// The root window's background from a drawing or its selection, and
// taking a picked window's picture into a drawing.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <X11/extensions/XTest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/app.h"
#include "app/commands.h"
#include "app/draw.h"
#include "canvas/image_store.h"
#include "imageops/root_background.h"
#include "tools/palettes.h"
#include "tools/selection.h"
#include "tools/tool_table.h"

namespace {

// Column x of the drawing gets value base + x.
void paint_columns(Drawing* d, int w, int h, unsigned long base)
{
    Display* dpy = app().display;
    GC gc = XCreateGC(dpy, d->image, 0, nullptr);
    for (int x = 0; x < w; x++) {
        XSetForeground(dpy, gc, d->depth == 1 ? static_cast<unsigned long>(x & 1) : base + static_cast<unsigned long>(x));
        XDrawLine(dpy, d->image, gc, x, 0, x, h - 1);
    }
    XFreeGC(dpy, gc);
}

Window plain_window(int x, int y, int w, int h, unsigned long pixel)
{
    Display* dpy = app().display;
    XSetWindowAttributes a;
    a.override_redirect = True;
    a.background_pixel = pixel;
    Window win = XCreateWindow(dpy, app().root, x, y, static_cast<unsigned>(w), static_cast<unsigned>(h), 0,
                               CopyFromParent, InputOutput, CopyFromParent,
                               CWOverrideRedirect | CWBackPixel, &a);
    XMapRaised(dpy, win);
    XSync(dpy, False);
    pump();
    return win;
}

}  // namespace

// With a 10 x 10 selection the root is tiled with those ten columns only;
// a bitmap tiles black on white.
TEST(RootBackground, TilesSelectionOrImage)
{
    Drawing* d = make_drawing(64, 64);
    ASSERT_NE(d, nullptr);
    paint_columns(d, 64, 64, 20);
    commit(d);
    select_tool(d, TOOL_SELECT);
    pump();
    stroke(d, Button1, {{0, 0}, {9, 9}});
    ASSERT_EQ(run_command(d, CMD_SET_ROOT_WINDOW, nullptr, False), 0);
    pump();
    {
        ServerGrab grab;
        for (int x = 1200; x < 1220; x++)
            EXPECT_EQ(window_pixel(app().root, x, 1010), 20u + static_cast<unsigned>(x % 10)) << x;
    }

    Drawing* bits = create_drawing("bits", 8, 8, 1, None, -1, -1, nullptr);
    ASSERT_NE(bits, nullptr);
    paint_columns(bits, 8, 8, 0);
    // A text caret standing at (1, 7) has its foot's dots on the clear
    // columns 2 and 4: the desktop gets the picture, not the caret.
    select_tool(bits, TOOL_ALPHA);
    stroke(bits, Button1, {{1, 7}});
    ASSERT_EQ(image_pixel(bits, 2, 7), 1u);
    ASSERT_EQ(run_command(bits, CMD_SET_ROOT_WINDOW, nullptr, False), 0);
    pump();
    ServerGrab grab;
    EXPECT_EQ(window_pixel(app().root, 1201, 1010), app().blackPixel);
    EXPECT_EQ(window_pixel(app().root, 1202, 1010), app().whitePixel);
    EXPECT_EQ(window_pixel(app().root, 1202, 1015), app().whitePixel) << "the caret went to the desktop";
}

// The text caret drawn into the image is not part of the background.
TEST(RootBackground, LeavesTheCaretOut)
{
    Drawing* d = make_drawing(64, 64);
    ASSERT_NE(d, nullptr);
    paint_columns(d, 64, 64, 20);
    commit(d);
    select_tool(d, TOOL_ALPHA);
    pump();
    stroke(d, Button1, {{5, 20}});
    ASSERT_EQ(image_pixel(d, 7, 20), foreground_pixel(d)) << "the caret is shown";
    ASSERT_EQ(run_command(d, CMD_SET_ROOT_WINDOW, nullptr, False), 0);
    pump();
    ServerGrab grab;
    EXPECT_EQ(window_pixel(app().root, 64 * 18 + 7, 64 * 15 + 20), 27u);
}

// The topmost viewable window under a point, edges included; none over
// the bare root or an unmapped window.
TEST(RootBackground, WindowAtPoint)
{
    Display* dpy = app().display;
    Window low = plain_window(1100, 900, 50, 50, 3);
    Window high = plain_window(1130, 930, 40, 40, 4);
    EXPECT_EQ(window_at_point(dpy, 1100, 900), low);
    EXPECT_EQ(window_at_point(dpy, 1150, 950), high);
    EXPECT_EQ(window_at_point(dpy, 1170, 970), high);
    XUnmapWindow(dpy, high);
    XSync(dpy, False);
    EXPECT_EQ(window_at_point(dpy, 1150, 950), low);
    EXPECT_EQ(window_at_point(dpy, 1275, 1020), 0u);
    XDestroyWindow(dpy, low);
    XDestroyWindow(dpy, high);
    XSync(dpy, False);
}

// A click on a window during the pick pastes its picture as a floating
// selection and switches to the select tool; bitmaps ignore the command.
TEST(RootBackground, PickWindowTakesPicture)
{
    Drawing* bits = create_drawing("bits", 8, 8, 1, None, -1, -1, nullptr);
    ASSERT_NE(bits, nullptr);
    EXPECT_NE(run_command(bits, CMD_PICK_WINDOW, nullptr, False), 0);

    Drawing* d = make_drawing(64, 64);
    ASSERT_NE(d, nullptr);
    select_tool(d, TOOL_PENCIL);
    pump();
    Window target = plain_window(1100, 900, 30, 20, 9);
    XClearWindow(app().display, target);
    XSync(app().display, False);
    const char* name = DisplayString(app().display);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Another client clicks once the pick has grabbed the pointer.
        Display* other = XOpenDisplay(name);
        if (!other)
            _exit(1);
        usleep(300000);
        XTestFakeMotionEvent(other, -1, 1110, 910, CurrentTime);
        XTestFakeButtonEvent(other, 1, True, CurrentTime);
        XTestFakeButtonEvent(other, 1, False, CurrentTime);
        XSync(other, False);
        XCloseDisplay(other);
        _exit(0);
    }
    int status = run_command(d, CMD_PICK_WINDOW, nullptr, False);
    int childStatus = 0;
    waitpid(child, &childStatus, 0);
    pump();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(d->currentTool, TOOL_SELECT);
    ASSERT_TRUE(selection_exists(d));
    EXPECT_EQ(d->selection->current.width, 30);
    EXPECT_EQ(d->selection->current.height, 20);
    select_tool(d, TOOL_PENCIL);
    pump();
    // The window's colour, in a cell of the drawing's own.
    XColor want{}, got{};
    want.pixel = 9;
    got.pixel = image_pixel(d, 5, 5);
    XQueryColor(app().display, app().colormap, &want);
    XQueryColor(app().display, app().colormap, &got);
    EXPECT_EQ(got.red, want.red);
    EXPECT_EQ(got.green, want.green);
    EXPECT_EQ(got.blue, want.blue);
    XDestroyWindow(app().display, target);
    XSync(app().display, False);
}
