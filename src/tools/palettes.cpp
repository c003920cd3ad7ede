// The tools and patterns radio boxes of a drawing window, the process-wide
// pattern table with its stipples and GCs, and the changes of tool and
// pattern that the toggles report.
#include "tools/palettes.h"

#include <Xm/RowColumn.h>
#include <Xm/ToggleB.h>
#include <Xm/Xm.h>

#include <climits>
#include <cstdint>
#include <cstdio>

#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "tools/cached_bits.h"
#include "tools/palette_tips.h"
#include "tools/shapes.h"
#include "tools/text.h"
#include "tools/tool_table.h"

const unsigned char patternBits[PATTERN_COUNT][8] = {
    {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00},
    {0x44, 0x22, 0x11, 0x88, 0x44, 0x22, 0x11, 0x88},
    {0x11, 0x22, 0x44, 0x88, 0x11, 0x22, 0x44, 0x88},
    {0x55, 0x22, 0x55, 0x88, 0x55, 0x22, 0x55, 0x88},
    {0x55, 0xaa, 0x55, 0xaa, 0x55, 0xaa, 0x55, 0xaa},
    {0xdd, 0xee, 0x77, 0xbb, 0xdd, 0xee, 0x77, 0xbb},
    {0xee, 0xdd, 0xbb, 0x77, 0xee, 0xdd, 0xbb, 0x77},
    {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff},
};

namespace {

constexpr int PATTERN_WHO = 100;   // toggle ids of patterns start here
constexpr int PICTURE_WIDTH = 24, PICTURE_HEIGHT = 22;

// Shared by every drawing: one stipple and two opaque-stipple GCs per
// pattern, made with the first patterns box.
struct PatternEntry {
    Pixmap stipple;
    GC bitmapGC;
    GC colourGC;
};
PatternEntry patterns[PATTERN_COUNT];
bool patternsMade;

void make_pattern_table()
{
    if (patternsMade)
        return;
    patternsMade = true;
    for (int p = 0; p < PATTERN_COUNT; p++) {
        StippleGCs gcs = make_stipple_gcs(patternBits[p]);
        patterns[p] = PatternEntry{gcs.stipple, gcs.bitmap, gcs.colour};
    }
}

// A pattern swatch, one bit a pixel (1 black, 0 white): white, optionally
// framed, with the pattern inside a black outline. The pattern's stipple
// sits at the picture's origin, as an opaque stipple fill of it would.
// XBM layout: rows of whole bytes, least significant bit leftmost.
constexpr int PICTURE_ROW_BYTES = (PICTURE_WIDTH + 7) / 8;
unsigned char patternPictureBits[PATTERN_COUNT][2][PICTURE_ROW_BYTES * PICTURE_HEIGHT];

void draw_pattern_bits(int p, bool framed, unsigned char* bits)
{
    auto set = [&](int x, int y, bool black) {
        unsigned char& byte = bits[y * PICTURE_ROW_BYTES + x / 8];
        byte = static_cast<unsigned char>(black ? byte | (1 << (x % 8)) : byte & ~(1 << (x % 8)));
    };
    const int w = PICTURE_WIDTH, h = PICTURE_HEIGHT;
    for (int y = 0; y < h; y++)
        for (int x = 0; x < w; x++) {
            bool frame = framed && (x == 0 || y == 0 || x == w - 1 || y == h - 1);
            bool inside = x >= 2 && x < w - 3 && y >= 2 && y < h - 3;
            bool outline = x >= 2 && x <= w - 3 && y >= 2 && y <= h - 3 &&
                           (x == 2 || y == 2 || x == w - 3 || y == h - 3);
            bool stipple = (patternBits[p][y % 8] >> (x % 8)) & 1;
            set(x, y, frame || outline || (inside && stipple));
        }
}

// The swatch's picture from Motif's pixmap cache, which knows the size of
// what it made (a toggle given a pixmap of its own would ask the server),
// and shares one pixmap between the drawings.
Pixmap pattern_picture(int p, unsigned depth, bool framed)
{
    Display* dpy = app().display;
    char name[40];
    std::snprintf(name, sizeof name, "pictrel pattern %d%s", p, framed ? " framed" : "");
    static bool installed[PATTERN_COUNT][2];
    if (!installed[p][framed]) {
        unsigned char* bits = patternPictureBits[p][framed];
        draw_pattern_bits(p, framed, bits);
        if (!install_cached_bits(name, bits, PICTURE_WIDTH, PICTURE_HEIGHT))
            return None;
        installed[p][framed] = true;
    }
    Pixmap pix = XmGetPixmapByDepth(ScreenOfDisplay(dpy, app().screen), name, app().blackPixel, app().whitePixel,
                                    static_cast<int>(depth));
    return pix == XmUNSPECIFIED_PIXMAP ? None : pix;
}

void palette_toggle_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept
{
    int who = static_cast<int>(reinterpret_cast<intptr_t>(clientData));
    auto* cbs = static_cast<XmToggleButtonCallbackStruct*>(callData);
    Drawing* d = find_drawing_of_widget(w);
    if (!d)
        return;
    bool set = cbs ? cbs->set == XmSET : XmToggleButtonGetState(w);
    toggle_changed(d, who, set);
}

Widget child_at(Widget box, int index)
{
    if (!box || index < 0)
        return nullptr;
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(box, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    return static_cast<Cardinal>(index) < count ? children[index] : nullptr;
}

int initial_index(Widget box, int fallback)
{
    if (!box)
        return fallback;
    XtPointer data = nullptr;
    XtVaGetValues(box, XmNuserData, &data, nullptr);
    return data ? static_cast<int>(reinterpret_cast<intptr_t>(data)) - 1 : fallback;
}

// The box remembers the choice it started with, so a reused drawing can go
// back to it.
void remember_initial(Widget box, int index)
{
    XtVaSetValues(box, XmNuserData, reinterpret_cast<XtPointer>(static_cast<intptr_t>(index + 1)),
                  nullptr);
}

// Two columns, so that nine tools and eight patterns stand beside a canvas
// of any size without pushing the window taller than the screen.
Widget create_palette_box(Widget form, const char* name)
{
    Arg args[4];
    Cardinal n = 0;
    XtSetArg(args[n], XmNorientation, XmVERTICAL), n++;
    XtSetArg(args[n], XmNpacking, XmPACK_COLUMN), n++;
    XtSetArg(args[n], XmNnumColumns, 2), n++;
    XtSetArg(args[n], XmNadjustLast, False), n++;
    return XmCreateRadioBox(form, const_cast<char*>(name), args, n);
}

}  // namespace

StippleGCs make_stipple_gcs(const unsigned char bits[8])
{
    Display* dpy = app().display;
    StippleGCs out{};
    out.stipple = XCreateBitmapFromData(dpy, app().root, reinterpret_cast<const char*>(bits), 8, 8);
    XGCValues v;
    v.function = GXcopy;
    v.fill_style = FillOpaqueStippled;
    v.stipple = out.stipple;
    v.graphics_exposures = False;
    unsigned long mask = GCFunction | GCFillStyle | GCStipple | GCForeground | GCBackground |
                         GCGraphicsExposures;
    v.foreground = app().blackPixel;
    v.background = app().whitePixel;
    out.colour = XCreateGC(dpy, app().root, mask, &v);
    v.foreground = 1;
    v.background = 0;
    out.bitmap = XCreateGC(dpy, out.stipple, mask, &v);
    return out;
}

Widget create_tools_box(Widget form, Drawing* d)
{
    if (!form)
        return nullptr;
    Widget box = create_palette_box(form, "tools");
    XtManageChild(box);
    if (!d)
        d = find_drawing_of_widget(form);
    if (!d)
        return box;
    d->toolsBox = box;
    int remembered = -1;
    Widget toggles[16] = {};
    for (int t = 0; t < toolCount && t < 16; t++) {
        Arg args[3];
        Cardinal n = 0;
        XtSetArg(args[n], XmNlabelType, XmPIXMAP), n++;
        XtSetArg(args[n], XmNindicatorOn, False), n++;
        no_tip_yet(&args[n]), n++;
        Widget tb = XmCreateToggleButton(box, const_cast<char*>(toolTable[t].name), args, n);
        XtManageChild(tb);
        toggles[t] = tb;
        XtAddCallback(tb, XmNvalueChangedCallback, palette_toggle_cb,
                      reinterpret_cast<XtPointer>(static_cast<intptr_t>(t)));
        if (toolTable[t].input) {
            d->currentTool = t;
            send_tool_event(d, tb, TOOL_CREATED, t);
        }
        Boolean set = False;
        XtVaGetValues(tb, XmNset, &set, nullptr);
        if (set)
            remembered = t;
    }
    tips_on_first_entry(box);
    d->currentTool = remembered >= 0 ? remembered : TOOL_PENCIL;
    XtVaSetValues(toggles[d->currentTool], XmNset, True, nullptr);
    remember_initial(box, d->currentTool);
    return box;
}

Widget create_patterns_box(Widget form, Drawing* d)
{
    if (!form)
        return nullptr;
    Widget box = create_palette_box(form, "patterns");
    XtManageChild(box);
    if (!d)
        d = find_drawing_of_widget(form);
    if (!d)
        return box;
    d->patternsBox = box;
    make_pattern_table();
    d->currentPattern = 0;
    int depth = 0;
    XtVaGetValues(box, XmNdepth, &depth, nullptr);
    unsigned pictureDepth = static_cast<unsigned>(DefaultDepth(app().display, app().screen));
    if (depth > 0)
        pictureDepth = static_cast<unsigned>(depth);
    for (int p = 0; p < PATTERN_COUNT; p++) {
        Pixmap select = pattern_picture(p, pictureDepth, true);
        Pixmap label = pattern_picture(p, pictureDepth, false);
        char name[32];
        std::snprintf(name, sizeof name, "pattern %d", p);
        Arg args[5];
        Cardinal n = 0;
        XtSetArg(args[n], XmNlabelType, XmPIXMAP), n++;
        XtSetArg(args[n], XmNlabelPixmap, label), n++;
        XtSetArg(args[n], XmNselectPixmap, select), n++;
        XtSetArg(args[n], XmNindicatorOn, False), n++;
        no_tip_yet(&args[n]), n++;
        Widget tb = XmCreateToggleButton(box, name, args, n);
        XtManageChild(tb);
        XtAddCallback(tb, XmNvalueChangedCallback, palette_toggle_cb,
                      reinterpret_cast<XtPointer>(static_cast<intptr_t>(PATTERN_WHO + p)));
        Boolean set = False;
        XtVaGetValues(tb, XmNset, &set, nullptr);
        if (set)
            d->currentPattern = p;
    }
    tips_on_first_entry(box);
    if (Widget current = child_at(box, d->currentPattern))
        XtVaSetValues(current, XmNset, True, nullptr);
    remember_initial(box, d->currentPattern);
    return box;
}

GC pattern_gc(int pattern, int depth)
{
    if (pattern < 0 || pattern >= PATTERN_COUNT)
        return nullptr;
    const PatternEntry& e = patterns[pattern];
    return depth == 1 ? e.bitmapGC : e.colourGC;
}

void toggle_changed(Drawing* d, int who, bool set)
{
    if (!d)
        return;
    if (res().debug)
        std::fprintf(stderr, "ToggleToolPat who %d set %d \n", who, set ? 1 : 0);
    if (who >= PATTERN_WHO) {
        if (set && who - PATTERN_WHO < PATTERN_COUNT)
            d->currentPattern = who - PATTERN_WHO;
        return;
    }
    if (who < 0 || who >= toolCount)
        return;
    if (set)
        d->currentTool = who;
    if (toolTable[who].input)
        send_tool_event(d, nullptr, set ? TOOL_SELECTED : TOOL_DESELECTED, who);
}

void select_tool(Drawing* d, int tool)
{
    if (!d || tool < 0 || tool >= toolCount)
        return;
    Widget tb = d->toolsBox ? XtNameToWidget(d->toolsBox, toolTable[tool].name) : nullptr;
    if (tb)
        XmToggleButtonSetState(tb, True, True);
    else
        d->currentTool = tool;
}

void reset_tool_state(Drawing* d)
{
    if (!d)
        return;
    d->constraint = DragConstraint::Free;
    d->pressOffersUndo = false;
    d->lastMotionX = d->lastMotionY = INT_MIN;
    d->chosenGC = d->foregroundGC;
    // Shapes go back to outlines, with the menu toggle to match.
    if (d->rectFilled)
        set_rectangle_filled(d, false);
    if (d->ovalFilled)
        toggle_oval_filled(d);
    tell_toggle_changed(d, WindowToggle::DrawFilled, false);

    select_tool(d, initial_index(d->toolsBox, TOOL_PENCIL));
    if (Widget tb = child_at(d->patternsBox, initial_index(d->patternsBox, 0)))
        XmToggleButtonSetState(tb, True, True);
    d->currentPattern = initial_index(d->patternsBox, 0);
    if (Widget tb = child_at(d->lineWidthBox, 0))
        XmToggleButtonSetState(tb, True, True);
    d->lineWidth = lineWidths[0];
    text_reset(d);
    set_undo_available(d, false);
}
