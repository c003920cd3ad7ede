// The pictures of the nine tool toggles (and the filled rectangle and oval
// shown while DrawFilled is on), drawn here as 16 x 16 art and packed into
// XBM bit order at compile time.
#include <X11/Xlib.h>
#include <Xm/Xm.h>

#include <array>
#include <cstdio>

#include "core/app_state.h"
#include "tools/cached_bits.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

// Not constexpr on purpose: reaching it while packing an icon stops the
// compile. It is never defined because it is never called at run time.
void icon_row_must_have_16_characters();

namespace {

constexpr int ICON_SIZE = 16;
using IconBits = std::array<unsigned char, ICON_SIZE * ICON_SIZE / 8>;
using IconArt = std::array<const char*, ICON_SIZE>;

constexpr int art_length(const char* row)
{
    int n = 0;
    while (row[n])
        n++;
    return n;
}

// '#' is a set bit; XBM order puts the leftmost pixel in the least
// significant bit of each byte.
consteval IconBits pack(const IconArt& art)
{
    IconBits bits{};
    for (int y = 0; y < ICON_SIZE; y++) {
        if (art_length(art[y]) != ICON_SIZE)
            icon_row_must_have_16_characters();
        for (int x = 0; x < ICON_SIZE; x++)
            if (art[y][x] == '#')
                bits[y * 2 + x / 8] |= static_cast<unsigned char>(1u << (x % 8));
    }
    return bits;
}

constexpr IconBits selectBits = pack({
    "                ",
    "                ",
    " ##  ##  ##  ## ",
    "                ",
    "                ",
    " #            # ",
    " #            # ",
    "                ",
    "                ",
    " #            # ",
    " #            # ",
    "                ",
    "                ",
    " ##  ##  ##  ## ",
    "                ",
    "                ",
});

constexpr IconBits lineBits = pack({
    "                ",
    "                ",
    "             ## ",
    "            ##  ",
    "           ##   ",
    "          ##    ",
    "         ##     ",
    "        ##      ",
    "       ##       ",
    "      ##        ",
    "     ##         ",
    "    ##          ",
    "   ##           ",
    "  ##            ",
    "                ",
    "                ",
});

constexpr IconBits pencilBits = pack({
    "                ",
    "            #   ",
    "           # #  ",
    "          #   # ",
    "         # # #  ",
    "        #   #   ",
    "       #   #    ",
    "      #   #     ",
    "     #   #      ",
    "    #   #       ",
    "   #   #        ",
    "  #   #         ",
    "  #  #          ",
    " ####           ",
    " ##             ",
    "                ",
});

constexpr IconBits bucketBits = pack({
    "                ",
    "      ####      ",
    "     #    #     ",
    "    #      #    ",
    "  ############  ",
    "  #          ## ",
    "  #          ## ",
    "   #        # # ",
    "   #        # # ",
    "   #        # # ",
    "   #        # # ",
    "    #      # ###",
    "    #      # ###",
    "    ########  # ",
    "                ",
    "                ",
});

constexpr IconBits eraserBits = pack({
    "                ",
    "                ",
    "                ",
    "     ########## ",
    "    #        ## ",
    "   #        # # ",
    "  ##########  # ",
    "  #        #  # ",
    "  #        #  # ",
    "  #        #  # ",
    "  ########## #  ",
    "  ###########   ",
    "  ##########    ",
    "                ",
    "                ",
    "                ",
});

constexpr IconBits alphaBits = pack({
    "                ",
    "      ####      ",
    "      ####      ",
    "     ##  ##     ",
    "     ##  ##     ",
    "    ##    ##    ",
    "    ##    ##    ",
    "   ##########   ",
    "   ##########   ",
    "   ##      ##   ",
    "  ##        ##  ",
    "  ##        ##  ",
    " ###        ### ",
    "                ",
    "                ",
    "                ",
});

constexpr IconBits rectBits = pack({
    "                ",
    "                ",
    "                ",
    " ############## ",
    " #            # ",
    " #            # ",
    " #            # ",
    " #            # ",
    " #            # ",
    " #            # ",
    " #            # ",
    " #            # ",
    " ############## ",
    "                ",
    "                ",
    "                ",
});

constexpr IconBits rectFilledBits = pack({
    "                ",
    "                ",
    "                ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    "                ",
    "                ",
    "                ",
});

constexpr IconBits ovalBits = pack({
    "                ",
    "                ",
    "                ",
    "    ########    ",
    "   #        #   ",
    "  #          #  ",
    " #            # ",
    " #            # ",
    " #            # ",
    " #            # ",
    "  #          #  ",
    "   #        #   ",
    "    ########    ",
    "                ",
    "                ",
    "                ",
});

constexpr IconBits ovalFilledBits = pack({
    "                ",
    "                ",
    "                ",
    "    ########    ",
    "   ##########   ",
    "  ############  ",
    " ############## ",
    " ############## ",
    " ############## ",
    " ############## ",
    "  ############  ",
    "   ##########   ",
    "    ########    ",
    "                ",
    "                ",
    "                ",
});

constexpr IconBits hotspotBits = pack({
    "       #        ",
    "       #        ",
    "     #####      ",
    "    #  #  #     ",
    "   #   #   #    ",
    "  #    #    #   ",
    "  #         #   ",
    "###### # ###### ",
    "  #         #   ",
    "  #    #    #   ",
    "   #   #   #    ",
    "    #  #  #     ",
    "     #####      ",
    "       #        ",
    "       #        ",
    "                ",
});

// Pictures already made, keyed by icon and colours: drawing windows of one
// program share them, and the rectangle and oval tools keep them.
struct IconPictures {
    const ToolIcon* icon;
    Pixel foreground, background;
    Pixmap label, select;
};
constexpr int MAX_PICTURES = 64;
IconPictures pictures[MAX_PICTURES];
int pictureCount;
const ToolIcon* installed[MAX_PICTURES];   // icons whose image Motif's cache holds
int installedCount;

}  // namespace

const ToolIcon toolIcons[9] = {
    {ICON_SIZE, ICON_SIZE, selectBits.data()}, {ICON_SIZE, ICON_SIZE, lineBits.data()},
    {ICON_SIZE, ICON_SIZE, pencilBits.data()}, {ICON_SIZE, ICON_SIZE, bucketBits.data()},
    {ICON_SIZE, ICON_SIZE, eraserBits.data()}, {ICON_SIZE, ICON_SIZE, alphaBits.data()},
    {ICON_SIZE, ICON_SIZE, rectBits.data()},   {ICON_SIZE, ICON_SIZE, ovalBits.data()},
    {ICON_SIZE, ICON_SIZE, hotspotBits.data()},
};
const ToolIcon rectFilledIcon = {ICON_SIZE, ICON_SIZE, rectFilledBits.data()};
const ToolIcon ovalFilledIcon = {ICON_SIZE, ICON_SIZE, ovalFilledBits.data()};

namespace {

// The icon's bits as an image in Motif's cache, under `name`: laid out
// as XBM data, one bit a pixel, rows of whole bytes, least significant
// bit first. Installed once; the image then belongs to the cache.
bool install_icon_image(const ToolIcon* icon, const char* name)
{
    for (int i = 0; i < installedCount; i++)
        if (installed[i] == icon)
            return true;
    if (installedCount >= MAX_PICTURES)
        return false;
    if (!install_cached_bits(name, const_cast<unsigned char*>(icon->bits), icon->width, icon->height))
        return false;
    installed[installedCount++] = icon;
    return true;
}

}  // namespace

void icon_pixmaps(Widget toggle, const ToolIcon* icon, Pixmap* label, Pixmap* select)
{
    *label = *select = None;
    if (!toggle || !icon || !icon->bits)
        return;
    Pixel fg = 0, bg = 0;
    Widget box = XtParent(toggle);
    XtVaGetValues(box ? box : toggle, XmNforeground, &fg, XmNbackground, &bg, nullptr);
    for (int i = 0; i < pictureCount; i++) {
        const IconPictures& p = pictures[i];
        if (p.icon == icon && p.foreground == fg && p.background == bg) {
            *label = p.label;
            *select = p.select;
            return;
        }
    }
    Display* dpy = app().display;
    int depth = DefaultDepth(dpy, app().screen);
    // Through Motif's pixmap cache, which knows the size of what it made:
    // a toggle given a pixmap of its own would ask the server for it.
    char name[48];
    std::snprintf(name, sizeof name, "pictrel tool icon %p", static_cast<const void*>(icon));
    if (!install_icon_image(icon, name))
        return;
    Screen* screen = ScreenOfDisplay(dpy, app().screen);
    *label = XmGetPixmapByDepth(screen, name, fg, bg, depth);
    *select = XmGetPixmapByDepth(screen, name, bg, fg, depth);
    if (*label == XmUNSPECIFIED_PIXMAP || *select == XmUNSPECIFIED_PIXMAP) {
        *label = *select = None;
        return;
    }
    if (pictureCount < MAX_PICTURES)
        pictures[pictureCount++] = IconPictures{icon, fg, bg, *label, *select};
}

void set_tool_picture(Widget toggle, int tool)
{
    if (!toggle || tool < 0 || tool >= toolCount)
        return;
    Pixmap label, select;
    icon_pixmaps(toggle, toolTable[tool].icon, &label, &select);
    if (label == None)
        return;
    XtVaSetValues(toggle, XmNlabelType, XmPIXMAP, XmNlabelPixmap, label, XmNselectPixmap,
                  select, nullptr);
}
