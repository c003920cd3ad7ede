// The select tool through the real program: a piece of a line lifted by a rubber band and copied with Ctrl+C pastes
// with Ctrl+V into a second running copy of the program, at its top-left. (Moving by drag is shown in-process.)
#include <gtest/gtest.h>

#include "e2e_support.h"

TEST(SelectionE2e, CopyAndPasteIntoAnotherProgram)
{
    E2eApp first;
    E2eDrawing a = open_untitled(first, 32, 32);
    ASSERT_TRUE(a.canvas && a.tools.size() == 9u);
    XRaiseWindow(first.display(), a.shell);
    first.click(a.tools[1], 12, 12);   // line
    drag_cells(first, a, 1, 2, 4, 28, 4);
    first.click(a.tools[0], 12, 12);   // select
    drag_cells(first, a, 1, 1, 3, 10, 5);
    first.key(a.shell, "ctrl+c");

    E2eApp second;
    E2eDrawing b = open_untitled(second, 32, 32, "+760+420");
    ASSERT_TRUE(b.canvas && b.tools.size() == 9u);
    second.key(b.shell, "ctrl+v");
    second.click(b.tools[2], 12, 12);   // another tool lays it down
    EXPECT_EQ(dark_cells(second, b, 0, 0, 31, 31), 9) << "the copied piece, row 1 from column 1 to 9, and nothing else";
    EXPECT_EQ(dark_cells(second, b, 1, 1, 9, 1), 9);
}
