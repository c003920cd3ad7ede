// The suffix rule of the save dialogs.
#include <gtest/gtest.h>

#include "files/suffix_rule.h"

// Colour drawings (mode 2 and up) keep ".px" and ".xpm" and otherwise get ".px"; bitmaps (modes 0 and 1) always
// end in ".xbm"; suffixes are case-sensitive and a name that is only a suffix gets one added.
TEST(SuffixRule, ColourAndBitmapNames)
{
    const struct {
        int mode;
        const char *name, *offered;
    } cases[] = {
        {8, "pic", "pic.px"},           {8, "pic.xpm", "pic.xpm"},      {8, "pic.px", "pic.px"},
        {8, "pic.xbm", "pic.xbm.px"},   {8, "pic.XPM", "pic.XPM.px"},   {8, "dir.xpm/pic", "dir.xpm/pic.px"},
        {1, "pic.xpm", "pic.xpm.xbm"},  {1, "pic.xbm", "pic.xbm"},      {1, "pic.px", "pic.px.xbm"},
        {1, "pic", "pic.xbm"},          {0, "pic", "pic.xbm"},          {2, "pic", "pic.px"},
        {1, ".xbm", ".xbm.xbm"},        {8, ".px", ".px.px"},           {8, ".xpm", ".xpm.px"},
        {8, "", ".px"},                 {1, "", ".xbm"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(apply_suffix(c.mode, c.name), c.offered) << c.mode << " " << c.name;
}
