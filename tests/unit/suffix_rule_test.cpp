// The suffix rule of the save dialogs.
#include <gtest/gtest.h>

#include "files/suffix_rule.h"
#include "files/staging.h"

// Colour drawings keep ".px" and ".xpm" and otherwise get ".px"; bitmaps
// always end in ".xbm"; a name that is only a suffix gets one added.
TEST(SuffixRule, ColourAndBitmapNames)
{
    const int colour = 8, bitmap = 1, bw = 1;
    EXPECT_EQ(apply_suffix(colour, "pic"), "pic.px");
    EXPECT_EQ(apply_suffix(colour, "pic.xpm"), "pic.xpm");
    EXPECT_EQ(apply_suffix(colour, "pic.px"), "pic.px");
    EXPECT_EQ(apply_suffix(colour, "pic.xbm"), "pic.xbm.px");
    EXPECT_EQ(apply_suffix(colour, "dir.xpm/pic"), "dir.xpm/pic.px");
    EXPECT_EQ(apply_suffix(colour, "pic.XPM"), "pic.XPM.px") << "suffixes are case-sensitive";
    EXPECT_EQ(apply_suffix(bitmap, "pic.xpm"), "pic.xpm.xbm");
    EXPECT_EQ(apply_suffix(bitmap, "pic.xbm"), "pic.xbm");
    EXPECT_EQ(apply_suffix(bitmap, "pic.px"), "pic.px.xbm");
    EXPECT_EQ(apply_suffix(bw, "pic"), "pic.xbm");
    EXPECT_EQ(apply_suffix(0, "pic"), "pic.xbm") << "mode 0 counts as a bitmap";
    EXPECT_EQ(apply_suffix(2, "pic"), "pic.px") << "mode 2 is the first colour mode";

    EXPECT_EQ(apply_suffix(bitmap, ".xbm"), ".xbm.xbm");
    EXPECT_EQ(apply_suffix(colour, ".px"), ".px.px");
    EXPECT_EQ(apply_suffix(colour, ".xpm"), ".xpm.px");
    EXPECT_EQ(apply_suffix(colour, "a.px"), "a.px");
    EXPECT_EQ(apply_suffix(bitmap, "a.xbm"), "a.xbm");
    EXPECT_EQ(apply_suffix(colour, ""), ".px");
    EXPECT_EQ(apply_suffix(bitmap, ""), ".xbm");
}

// The staged file is named after the target's last component cut at its
// first '.', which is where the identifiers inside the file come from.
TEST(SuffixRule, StagingBaseName)
{
    EXPECT_EQ(staging_base_name("/home/u/a.b.px"), "a");
    EXPECT_EQ(staging_base_name("pic.xpm"), "pic");
    EXPECT_EQ(staging_base_name("/x.y/pic"), "pic");
    EXPECT_EQ(staging_base_name("/home/u/.hidden"), "image") << "nothing left: a usable name";
    EXPECT_EQ(staging_base_name("dir/"), "image");
    EXPECT_EQ(staging_base_name("/x/my pic-2.xbm"), "my_pic_2") << "blanks would make an unreadable XBM";
}
