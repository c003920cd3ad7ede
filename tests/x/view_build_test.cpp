// The actual-size and black-and-white views are built when first shown: a
// window that never shows them does without them, and one that does gets
// views that take part like those of a window built with them.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include "app/commands.h"

// Nothing is built before the first show; once shown, the small view's area follows the pointer in the status line,
// as the canvas does.
TEST(SmallView, BuiltAtFirstShowAndFollowedByTheReadout)
{
    Drawing* d = make_drawing(24, 20);
    set_zoom(d, 2);
    EXPECT_EQ(d->smallViewDialog, nullptr);
    EXPECT_EQ(d->bwDialog, nullptr);

    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    run_command(d, CMD_SHOW_BW_VIEW, nullptr, True);
    pump();
    ASSERT_TRUE(d->smallArea && XtIsRealized(d->smallArea));
    ASSERT_TRUE(d->bwDialog && XtIsManaged(d->bwDialog));
    send_motion(XtWindow(d->smallArea), 5, 6, 0);
    EXPECT_NE(d->pointerText.find("X - 5, Y - 6"), std::string::npos) << d->pointerText;
}
