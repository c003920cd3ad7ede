// The palette buttons' tooltips are fetched when the pointer first enters a palette, from the same resources the
// buttons would have read themselves; they go with the buttons when the drawing closes (the sanitizer tree sees any
// double free or loss).
#include <gtest/gtest.h>

#include <Xm/Xm.h>

#include <string>

#include "files_support.h"
#include "x_env.h"

using filetest::xm_resource_text;

namespace {

Widget button(Widget box, const char* name)
{
    Widget w = XtNameToWidget(box, name);
    EXPECT_NE(w, nullptr) << name;
    return w;
}

std::string first_line(const std::string& s)
{
    return s.substr(0, s.find('\n'));
}

}  // namespace

TEST(PaletteTips, FetchedOnFirstEntryFromTheButtonsOwnResources)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    Widget fill = button(d->toolsBox, "fill");
    Widget blank = button(d->patternsBox, "pattern 0");
    Widget striped = button(d->patternsBox, "pattern 3");
    Widget width = button(d->lineWidthBox, "lineWidth");
    ASSERT_TRUE(fill && blank && striped && width);
    EXPECT_EQ(xm_resource_text(fill, XmNtoolTipString), "") << "converted before it was wanted";

    for (Widget b : {fill, blank, width}) {
        xtest_move(XtWindow(b), 3, 3);
        pump();
    }
    EXPECT_EQ(first_line(xm_resource_text(fill, XmNtoolTipString)), "Fill");
    EXPECT_NE(xm_resource_text(fill, XmNtoolTipString).find("Control: every pixel of the clicked colour"),
              std::string::npos);
    // A button's own name wins over its class, as when the button fetched it.
    EXPECT_EQ(first_line(xm_resource_text(blank, XmNtoolTipString)), "Pattern: the background colour alone");
    EXPECT_EQ(first_line(xm_resource_text(striped, XmNtoolTipString)),
              "Pattern of the foreground and background colours");
    EXPECT_EQ(first_line(xm_resource_text(width, XmNtoolTipString)), "Line width");
    close_drawing(d);
    pump();
}
