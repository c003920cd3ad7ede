// The actual-size and black-and-white views, and the colour list's swatches,
// are built when first shown: a window that never shows them does without
// them, and one that does gets them taking part as if built with it.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <Xm/Xm.h>

#include <vector>

#include "app/commands.h"
#include "colour/color_list.h"

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

// A list never shown has its entries but no swatches; the first show makes one per entry, in list order, in the entry
// box, and a colour added after gets its own at once.
TEST(Colour, SwatchesMadeWhenTheListIsFirstShown)
{
    Drawing* d = make_drawing(8, 8);
    ColorList* list = color_list_of(d);
    ASSERT_TRUE(list && list->anchor);
    ASSERT_NE(add_color(list, app().whitePixel, app().blackPixel, 1), nullptr);
    std::vector<ColorEntry*> entries;
    for (ColorEntry* e = list->anchor->next; e; e = e->next)
        entries.push_back(e);
    ASSERT_EQ(entries.size(), 4u);
    for (ColorEntry* e : entries)
        EXPECT_EQ(e->button, nullptr);

    ASSERT_EQ(cmd_show_colors(d, nullptr, False), 0);
    pump();
    WidgetList kids = nullptr;
    Cardinal n = 0;
    XtVaGetValues(list->entryBox, XmNchildren, &kids, XmNnumChildren, &n, nullptr);
    ASSERT_EQ(n, entries.size());
    for (size_t i = 0; i < entries.size(); i++) {
        EXPECT_EQ(entries[i]->button, kids[i]) << i;
        XtPointer data = nullptr;
        XtVaGetValues(kids[i], XmNuserData, &data, nullptr);
        EXPECT_EQ(data, entries[i]) << i;
        EXPECT_TRUE(XtIsManaged(kids[i])) << i;
    }
    Dimension width = 0, height = 0;
    XtVaGetValues(entries[3]->button, XmNwidth, &width, XmNheight, &height, nullptr);
    EXPECT_EQ(window_pixel(XtWindow(entries[3]->button), width / 3, height / 2), entries[3]->pixel);
    ColorEntry* added = add_color(list, app().blackPixel, app().blackPixel, 1);
    ASSERT_NE(added, nullptr);
    EXPECT_TRUE(added->button && XtIsManaged(added->button));
}
