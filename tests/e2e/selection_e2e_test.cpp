// The select tool through the real program: its accelerators carry a selection to a second running copy of the
// program through the clipboard.
#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include "e2e_support.h"

namespace {

// Whether canvas cell (x, y) is shown in a dark colour.
bool dark_cell(E2eApp& app, const E2eDrawing& w, int x, int y)
{
    ImagePtr im = read_window(app.display(), w.shell, w.canvas, 256, 256);
    return im && dark(app.display(), XGetPixel(im.get(), e2e_cell(x), e2e_cell(y)));
}

}  // namespace

// A piece of a line lifted by a rubber band and copied with Ctrl+C pastes with Ctrl+V into a second program, at
// its top-left. (Moving by drag is shown in-process.)
TEST(SelectionE2e, CopyAndPasteIntoAnotherProgram)
{
    E2eApp first;
    ASSERT_TRUE(first.connected());
    E2eDrawing a = open_untitled(first, 32, 32, "+760+0");
    ASSERT_NE(a.canvas, 0u);
    ASSERT_EQ(a.tools.size(), 9u);

    XRaiseWindow(first.display(), a.shell);
    first.click(a.tools[1], 12, 12);   // line
    drag_cells(first, a.canvas, 1, 2, 4, 28, 4);
    first.click(a.tools[0], 12, 12);   // select
    drag_cells(first, a.canvas, 1, 1, 3, 10, 5);
    first.key(a.shell, "ctrl+c");

    E2eApp second;
    E2eDrawing b = open_untitled(second, 32, 32, "+760+420");
    ASSERT_NE(b.canvas, 0u);
    ASSERT_EQ(b.tools.size(), 9u);
    second.key(b.shell, "ctrl+v");
    second.click(b.tools[2], 12, 12);   // another tool lays it down
    second.screenshot("selection_pasted");
    EXPECT_TRUE(dark_cell(second, b, 4, 1)) << "pasted line";
    EXPECT_TRUE(dark_cell(second, b, 8, 1));
    EXPECT_FALSE(dark_cell(second, b, 4, 10));
    EXPECT_FALSE(dark_cell(second, b, 14, 1)) << "only what was copied";
}
