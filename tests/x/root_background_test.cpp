// The root window's background from a drawing or its selection, and taking a picked window's picture into a drawing.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <X11/extensions/XTest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/commands.h"
#include "canvas/image_store.h"
#include "files_support.h"
#include "tools/palettes.h"
#include "tools/selection.h"
#include "tools/tool_table.h"

namespace {

// Column x of the drawing gets value base + x (a bitmap: odd columns set).
void paint_columns(Drawing* d, unsigned long base)
{
    for (int x = 0; x < d->width; x++)
        put_pixels(d, d->depth == 1 ? static_cast<unsigned long>(x & 1) : base + x, x, 0, 1, d->height);
    commit(d);
}

Window plain_window(int x, int y, int w, int h, unsigned long pixel)
{
    XSetWindowAttributes a;
    a.override_redirect = True;
    a.background_pixel = pixel;
    Window win = XCreateWindow(app().display, app().root, x, y, static_cast<unsigned>(w), static_cast<unsigned>(h),
                               0, CopyFromParent, InputOutput, CopyFromParent, CWOverrideRedirect | CWBackPixel, &a);
    XMapRaised(app().display, win);
    XSync(app().display, False);
    pump();
    return win;
}

}  // namespace

// The root is tiled with the image or a selection alone, without the text caret or the blinking hotspot marker.
TEST(RootBackground, TilesImageOrSelectionWithoutCaretOrMarker)
{
    ServerGrab grab;   // no other client's window may cover the root while it is read
    Drawing* d = make_drawing(64, 64);
    paint_columns(d, 20);
    select_tool(d, TOOL_ALPHA);
    pump();
    stroke(d, Button1, {{5, 20}});
    ASSERT_EQ(image_pixel(d, 7, 20), foreground_pixel(d)) << "the caret is shown";
    ASSERT_EQ(run_command(d, CMD_SET_ROOT_WINDOW, nullptr, False), 0);
    pump();
    EXPECT_EQ(window_pixel(app().root, 64 * 18 + 7, 64 * 15 + 20), 27u) << "the caret went to the desktop";

    select_tool(d, TOOL_SELECT);
    pump();
    stroke(d, Button1, {{0, 0}, {9, 9}});
    ASSERT_EQ(run_command(d, CMD_SET_ROOT_WINDOW, nullptr, False), 0);
    pump();
    for (int x = 1200; x < 1220; x++)
        EXPECT_EQ(window_pixel(app().root, x, 1010), 20u + static_cast<unsigned>(x % 10)) << x;

    // A bitmap tiles black on white; its hotspot at (1, 2) blinks white over a set bit.
    Drawing* bits = create_drawing("bits", 8, 8, 1, None, -1, -1, nullptr);
    ASSERT_NE(bits, nullptr);
    paint_columns(bits, 0);
    select_tool(bits, TOOL_HOTSPOT);
    stroke(bits, Button1, {{1, 2}});
    ASSERT_TRUE(wait_for([&] { return image_pixel(bits, 1, 2) == 0; })) << "the marker is shown";
    ASSERT_EQ(run_command(bits, CMD_SET_ROOT_WINDOW, nullptr, False), 0);
    pump();
    EXPECT_EQ(window_pixel(app().root, 1201, 1010), app().blackPixel) << "the marker went to the desktop";
    EXPECT_EQ(window_pixel(app().root, 1202, 1010), app().whitePixel);
}

// A click during the pick pastes the topmost window's picture as a floating selection; bitmaps refuse the command.
TEST(RootBackground, PickWindowTakesPicture)
{
    Drawing* bits = create_drawing("bits", 8, 8, 1, None, -1, -1, nullptr);
    ASSERT_NE(bits, nullptr);
    EXPECT_NE(run_command(bits, CMD_PICK_WINDOW, nullptr, False), 0);

    Drawing* d = make_drawing(64, 64);
    Window low = plain_window(1090, 890, 60, 60, app().whitePixel);
    Window target = plain_window(1100, 900, 30, 20, app().blackPixel);
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
        XCloseDisplay(other);
        _exit(0);
    }
    int status = run_command(d, CMD_PICK_WINDOW, nullptr, False);
    waitpid(child, nullptr, 0);
    pump();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(d->currentTool, TOOL_SELECT);
    ASSERT_TRUE(selection_exists(d));
    EXPECT_EQ(d->selection->current.width, 30);
    EXPECT_EQ(d->selection->current.height, 20);
    select_tool(d, TOOL_PENCIL);
    pump();
    EXPECT_EQ(filetest::rgb_of_pixel(image_pixel(d, 5, 5)), 0u) << "the black of the window on top";
    XDestroyWindow(app().display, target);
    XDestroyWindow(app().display, low);
    XSync(app().display, False);
}
