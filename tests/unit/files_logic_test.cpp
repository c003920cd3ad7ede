// The XPM header check of the image reader (the rest of the reader is checked against the X server).
#include <gtest/gtest.h>

#include <string>

#include "files/image_header.h"

// The values line decides before libXpm allocates: a few bytes claiming fifty million colours would keep it busy for
// seconds, so a header in any form libXpm reads (XPM 1 defines, "XPM2" natural and C, past comments) is judged.
TEST(ImageHeader, XpmValuesLine)
{
    using V = XpmHeaderVerdict;
    const struct {
        const char* text;
        V verdict;
    } cases[] = {
        {"/* XPM */\nstatic char *a[] = {\n\"512 720 2 1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n\"4 4 2 1 -1 -1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n/* width height ncolors cpp */\n\"4 4 2 1\",\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n/* \"values\" */\n\"4 4 2 1\",\n", V::Acceptable},
        {"! XPM2\n! note\n6 2 2 1\n", V::Acceptable},
        {"! XPM2 C\n\"6 2 2 1\"\n", V::Acceptable},
        {"/* XPM */\nstatic char *a[] = {\n\"513 1 2 1\"", V::Refuse},
        {"/* XPM */\nstatic char *a[] = {\n\"0 1 2 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 0 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 99999999 1\"", V::Refuse},
        {"/* XPM */\n\"4 4 2 0\"", V::Refuse},
        {"! XPM2\n600 2 2 1\n", V::Refuse},
        {"/* XPM */\nstatic char *a[] = {\n/* \"1 1 1 1\" */\n\"2 2 50000000 1\",\n", V::Refuse},
        {"/* XPM \"1 1 1 1\" */\n\"2 2 50000000 1\"\n", V::Refuse},
        {"xx XPM\n\"2 2 50000000 1\"\n", V::Refuse},
        {"! XPM2 C\n\"2 2 50000000 1\"\n", V::Refuse},
        {"/* XPM2 C */\n\"2 2 50000000 1\"\n", V::Refuse},
        {"! XPM2 Lisp\n; \"1 1 1 1\"\n\"2 2 50000000 1\"\n", V::Refuse},
        {"#define a_format 1\n#define a_width 2\n#define a_height 2\n#define a_ncolors 50000000\n", V::Refuse},
        {"#define a_format 1\n#define a_width 20000\n", V::Refuse},
        {"#define a_format 1\n#define a_chars_per_pixel 0\n", V::Refuse},
        {"", V::Unknown},
        {"\x7f" "ELF\x02\x01", V::Unknown},
        {"/* XPM */\n\"4 4", V::Unknown},   // cut short: libXpm refuses it
        // An XPM 1 file within the limits is left to libXpm; strings after its defines are colours.
        {"#define a_format 1\n#define a_width 4\n#define a_height 4\n#define a_ncolors 2\n#define a_chars_per_pixel 1\n"
         "static char * a_colors[] = {\n\"9999 9999 9 9\"\n", V::Unknown},
    };
    for (const auto& c : cases)
        EXPECT_EQ(check_xpm_header(c.text), c.verdict) << c.text;
}
