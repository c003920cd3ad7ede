// A drawing's colour list and its dialog (none for a bitmap), the symbolic colours, running out of cells, and the
// colour editor's live editing of a read/write cell, against the 8-bit PseudoColor test server.
#include "canvas_support.h"   // first: gtest before Xlib's macros
#include "files_support.h"

#include <X11/extensions/XTest.h>
#include <Xm/DrawnB.h>
#include <Xm/Scale.h>

#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

#include "app/commands.h"
#include "colour/color_editor.h"
#include "colour/color_list.h"
#include "files/image_io.h"

namespace {

using filetest::rgb_of_pixel;

Colormap cmap() { return app().colormap; }

std::vector<ColorEntry*> entries(Drawing* d)
{
    std::vector<ColorEntry*> out;
    for (ColorEntry* e = color_list_of(d)->anchor->next; e; e = e->next)
        out.push_back(e);
    return out;
}

// Storing into a freed (or read-only) cell is refused with BadAccess.
bool cell_writable(Pixel p)
{
    XColor c{p};
    XQueryColor(app().display, cmap(), &c);
    c.flags = DoRed | DoGreen | DoBlue;
    ErrorTrap trap(app().display);
    XStoreColor(app().display, cmap(), &c);
    return trap.error() == 0;
}

void activate(Widget w, int clicks = 1)
{
    XmDrawnButtonCallbackStruct cbs{XmCR_ACTIVATE, nullptr, 0, clicks};
    XtCallCallbacks(w, XmNactivateCallback, &cbs);
    pump();
}

unsigned char shadow_of(Widget w)
{
    unsigned char s = 0;
    XtVaGetValues(w, XmNshadowType, &s, nullptr);
    return s;
}

Widget editor_child(const char* path) { return XtNameToWidget(color_editor_dialog(), path); }

void press_editor(const char* button) { filetest::press(color_editor_dialog(), button); }

void set_value(int value, int reason = XmCR_VALUE_CHANGED)
{
    XmScaleCallbackStruct cbs{reason, nullptr, value};
    XtCallCallbacks(editor_child("*Value"), reason == XmCR_DRAG ? XmNdragCallback : XmNvalueChangedCallback, &cbs);
    pump();
}

void click_wheel(int x, int y)
{
    post_pointer(XtWindow(hsv_state()->hueSat), ButtonRelease, 1, x, y);
    pump();
}

int scale_value()
{
    int v = -1;
    XmScaleGetValue(editor_child("*Value"), &v);
    return v;
}

}  // namespace

// A new drawing has exactly transparent, white and black, each in a read/write cell of its own; black paints with
// button 1 and white with button 3, and the empty image is transparent.
TEST(Colour, NewDrawingColoursAndTheirCells)
{
    Drawing* d = make_drawing(16, 16);
    ColorList* list = color_list_of(d);
    std::vector<ColorEntry*> e = entries(d);
    ASSERT_EQ(e.size(), 3u);
    Pixel dialogBackground = 0;
    XtVaGetValues(d->colourList, XmNbackground, &dialogBackground, nullptr);
    EXPECT_EQ(e[0]->pixel, list->transparentPixel);
    EXPECT_EQ(res().background, list->transparentPixel) << "the program's transparent pixel follows";
    EXPECT_EQ((std::vector<unsigned>{rgb_of_pixel(e[0]->pixel), rgb_of_pixel(e[1]->pixel), rgb_of_pixel(e[2]->pixel)}),
              (std::vector<unsigned>{rgb_of_pixel(dialogBackground), 0xFFFFFFu, 0u}));
    EXPECT_EQ((std::vector<Pixel>{e[0]->mapsTo, e[1]->mapsTo, e[2]->mapsTo}),
              (std::vector<Pixel>{list->transparentPixel, app().whitePixel, app().blackPixel}));
    for (ColorEntry* entry : e)
        EXPECT_TRUE(cell_writable(entry->pixel)) << "every colour is a read/write cell";
    EXPECT_EQ(foreground_pixel(d), e[2]->pixel);
    EXPECT_EQ(background_pixel(d), e[1]->pixel);
    EXPECT_EQ(image_pixel(d, 3, 3), list->transparentPixel);

    // Each drawing's transparent cell is its own and goes back when it closes, so drawings opened and closed do not
    // drain the colormap, and the program's transparent pixel never names a freed cell.
    Drawing* second = make_drawing(8, 8);
    Pixel secondTransparent = color_list_of(second)->transparentPixel;
    ASSERT_NE(secondTransparent, list->transparentPixel);
    close_drawing(second);
    pump();
    EXPECT_FALSE(cell_writable(secondTransparent)) << "the closed drawing's transparent cell leaks";
    EXPECT_NE(res().background, secondTransparent);
    EXPECT_TRUE(cell_writable(list->transparentPixel)) << "the open drawing keeps its own";
}

// A click on a well selects it, New adds white mapped to black into the
// selected well, a double click does not select, and a chosen swatch becomes the colour the well's GC paints with.
TEST(Colour, DialogWellsNewAndSwatches)
{
    Drawing* d = make_drawing(8, 8);
    ColorList* list = color_list_of(d);
    Widget dialog = d->colourList;
    EXPECT_FALSE(XtIsManaged(dialog)) << "not shown until asked for";
    EXPECT_EQ(cmd_show_colors(d, nullptr, False), 0);
    pump();
    ASSERT_TRUE(XtIsManaged(dialog));

    EXPECT_EQ(list->selectedWell, list->foregroundButton);
    Pixel oldBackground = background_pixel(d);
    activate(list->backgroundButton);
    EXPECT_EQ(list->selectedWell, list->backgroundButton);
    EXPECT_EQ(shadow_of(list->backgroundButton), XmSHADOW_IN);
    EXPECT_EQ(shadow_of(list->foregroundButton), XmSHADOW_OUT);
    filetest::press(dialog, "New");
    std::vector<ColorEntry*> e = entries(d);
    ASSERT_EQ(e.size(), 4u);
    EXPECT_EQ(list->backgroundEntry, e[3]);
    EXPECT_EQ(rgb_of_pixel(e[3]->pixel), 0xFFFFFFu);
    EXPECT_EQ(e[3]->mapsTo, app().blackPixel);
    EXPECT_NE(e[3]->pixel, e[1]->pixel) << "a cell of its own";
    EXPECT_EQ(background_pixel(d), oldBackground) << "the GC keeps its colour until a swatch is chosen";
    activate(list->foregroundButton, 2);
    EXPECT_EQ(list->selectedWell, list->backgroundButton) << "a double click does not select";

    activate(list->foregroundButton);
    activate(e[1]->button);   // white into the foreground well
    XFillRectangle(app().display, d->image, d->foregroundGC, 0, 0, 4, 4);
    EXPECT_EQ(image_pixel(d, 2, 2), e[1]->pixel);
    activate(list->backgroundButton);
    activate(e[2]->button);   // black into the background well
    EXPECT_EQ(list->foregroundEntry, e[1]) << "the other well is left alone";
    XFillRectangle(app().display, d->image, d->backgroundGC, 4, 4, 4, 4);
    EXPECT_EQ(image_pixel(d, 5, 5), e[2]->pixel);
}

// A bitmap that takes over the window of a closed colour drawing finds that drawing's colour list dialog kept with
// the window, but has no colour list: the View item is insensitive and the command shows nothing, the kept list
// holds none of the bitmap's GCs, and its New, Edit Color and wells do nothing, so button 1 still paints set bits.
// A colour drawing taking the window back has its list again.
TEST(Colour, BitmapInAColourDrawingsWindowHasNoList)
{
    Drawing* keep = make_drawing(8, 8);   // the program must not end when the others close
    Drawing* d = make_drawing(8, 8);
    ASSERT_TRUE(keep && d);
    EXPECT_EQ(cmd_show_colors(d, nullptr, False), 0);
    pump();
    Widget dialog = d->colourList;
    close_drawing(d);
    pump();

    Drawing* b = create_drawing("bits", 8, 8, 1, None, -1, -1, nullptr);
    pump();
    ASSERT_EQ(b, d) << "the bitmap takes the closed drawing's record and window";
    ASSERT_EQ(b->colourList, dialog) << "the dialog stays with the window";
    ColorList* kept = color_list_of_dialog(dialog);
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(color_list_of(b), nullptr);
    EXPECT_FALSE(item_sensitive(b, CMD_SHOW_COLORS));
    EXPECT_NE(cmd_show_colors(b, nullptr, False), 0);
    pump();
    EXPECT_FALSE(XtIsManaged(dialog)) << "no colour list shown for a bitmap";
    EXPECT_EQ(kept->foregroundGC, nullptr) << "the kept list holds the freed GCs of the colour drawing";
    EXPECT_EQ(kept->backgroundGC, nullptr);

    filetest::press(dialog, "New");
    EXPECT_EQ(kept->anchor->pixel, 0u) << "New added a colour to a bitmap";
    EXPECT_EQ(kept->anchor->next, nullptr);
    filetest::press(dialog, "EditColor");
    activate(kept->foregroundButton, 2);
    activate(kept->backgroundButton);
    EXPECT_TRUE(!color_editor_dialog() || !XtIsManaged(color_editor_dialog())) << "an editor for a bitmap";
    EXPECT_EQ(kept->selectedWell, kept->foregroundButton) << "a well was selected";
    XFillRectangle(app().display, b->image, b->foregroundGC, 0, 0, 8, 8);
    XFillRectangle(app().display, b->image, b->backgroundGC, 4, 4, 4, 4);
    EXPECT_EQ(image_pixel(b, 1, 1), 1u) << "button 1 paints set bits";
    EXPECT_EQ(image_pixel(b, 5, 5), 0u) << "button 3 paints clear bits";

    close_drawing(b);
    pump();
    Drawing* c = make_drawing(8, 8);
    ASSERT_EQ(c, d);
    EXPECT_TRUE(item_sensitive(c, CMD_SHOW_COLORS));
    EXPECT_EQ(color_list_of(c), kept);
    EXPECT_EQ(kept->foregroundGC, c->foregroundGC);
    EXPECT_EQ(entries(c).size(), 3u);
    filetest::press(dialog, "New");
    EXPECT_EQ(entries(c).size(), 4u) << "New works again for the colour drawing";
    activate(entries(c)[1]->button);   // white into the foreground well
    EXPECT_EQ(foreground_pixel(c), entries(c)[1]->pixel);
    EXPECT_EQ(cmd_show_colors(c, nullptr, False), 0);
}

// The black-and-white mapping of an image's monochrome keys, and a list loaded from a colour table: the dialog
// background first as transparent, then the image's colours in table order, the first of them the foreground. The
// replaced colours' cells go back to the colormap, but never the transparent one.
TEST(Colour, ImageTableLoadsWithMonoKeys)
{
    const std::pair<const char*, Pixel> keys[] = {{"white", app().whitePixel}, {"w", app().whitePixel},
                                                  {"black", app().blackPixel}, {nullptr, app().blackPixel},
                                                  {"none", 77}, {"None", 77}};
    for (auto [key, want] : keys)
        EXPECT_EQ(bw_mapping(key, 77), want) << (key ? key : "a missing key");

    Drawing* d = make_drawing(8, 8);
    std::vector<ColorEntry*> old = entries(d);
    auto c = [](const char* s) { return const_cast<char*>(s); };
    XpmColor colours[4] = {{nullptr, nullptr, c("w"), nullptr, nullptr, c("#FF0000")},
                           {nullptr, nullptr, c("b"), nullptr, nullptr, c("#00FF00")},
                           {nullptr, nullptr, c("None"), nullptr, nullptr, c("None")},
                           {nullptr, nullptr, nullptr, nullptr, nullptr, c("#0000FF")}};
    XpmColor* table[4] = {&colours[0], &colours[1], &colours[2], &colours[3]};
    Pixel pixels[4];
    ASSERT_TRUE(XAllocColorCells(app().display, cmap(), False, nullptr, 0, pixels, 4));
    DrawingXpmInfo info{};
    info.colourCount = 4;
    info.colours = table;
    info.pixels = pixels;
    Pixel p = 0, transparent = old[0]->pixel, white = old[1]->pixel, black = old[2]->pixel;
    XtVaGetValues(d->colourList, XmNbackground, &p, nullptr);
    ASSERT_EQ(load_color_list(d->colourList, &info), 0);
    ColorList* list = color_list_of(d);
    std::vector<ColorEntry*> e = entries(d);
    ASSERT_EQ(e.size(), 5u) << "loading replaces the three colours of the new drawing";
    EXPECT_EQ(e[0]->pixel, list->transparentPixel);
    const Pixel maps[] = {app().whitePixel, app().blackPixel, p, app().blackPixel};
    for (int i = 0; i < 4; i++) {
        EXPECT_EQ(e[i + 1]->pixel, pixels[i]) << "colours keep their cells, in table order";
        EXPECT_EQ(e[i + 1]->mapsTo, maps[i]) << i << ": the image's None is a colour mapped to transparent";
    }
    EXPECT_EQ(foreground_pixel(d), pixels[0]);
    EXPECT_EQ(background_pixel(d), list->transparentPixel);
    EXPECT_TRUE(cell_writable(transparent)) << "the transparent cell is never freed";
    EXPECT_FALSE(cell_writable(white));
    EXPECT_FALSE(cell_writable(black));
}

// The symbolic colour table is filled once: a later widget with other colours does not change it, only a given
// transparent pixel does.
TEST(Colour, SymbolicColoursFilledOnce)
{
    Drawing* d = make_drawing(8, 8);
    int n = 0;
    ASSERT_EQ(symbolic_colors(d->shell, nullptr, &n), symbolicColors);
    ASSERT_EQ(n, 18);
    EXPECT_NE(symbolicColors[0].pixel, 9999u) << "filled, even without a desktop scheme";
    EXPECT_EQ(symbolicColors[14].pixel, app().whitePixel);
    EXPECT_EQ(symbolicColors[15].pixel, app().blackPixel);
    std::vector<XpmColorSymbol> before(symbolicColors, symbolicColors + 18);
    Widget other = XtVaCreateWidget("other", xmDrawnButtonWidgetClass, d->mainWindow,
                                    XmNbackground, app().blackPixel, XmNforeground, app().whitePixel, nullptr);
    symbolic_colors(other, nullptr, &n);
    for (int i = 0; i < 18; i++)
        EXPECT_EQ(symbolicColors[i].pixel, before[i].pixel) << "entry " << i << " was read again";
    Pixel transparent = 42;
    symbolic_colors(other, &transparent, &n);
    for (int i = 0; i < 18; i++)
        EXPECT_EQ(symbolicColors[i].pixel, i == 8 || i == 10 || i >= 16 ? 42u : before[i].pixel) << "entry " << i;
}

// Closing a colour drawing puts its swatches aside (unmanaged, with no entry) instead of destroying them, and the next
// drawing of the slot takes them back in list order and shows its own colours on them; a colour added later takes the
// spare left over. Motif keeps a record of every label-class widget it makes for good, so swatches made afresh for
// every file opened would grow the program without end.
TEST(Colour, SwatchesReusedByTheNextDrawingOfTheSlot)
{
    ASSERT_NE(make_drawing(8, 8), nullptr) << "one stays open: closing the last drawing ends the program";
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    ASSERT_EQ(cmd_show_colors(d, nullptr, False), 0);   // the swatches are made when the list is first shown
    ASSERT_NE(add_color(list, app().whitePixel, app().blackPixel, 1), nullptr);
    std::vector<Widget> swatches;
    for (ColorEntry* e : entries(d))
        swatches.push_back(e->button);
    ASSERT_EQ(swatches.size(), 4u);
    auto children = [&] {
        WidgetList kids = nullptr;
        Cardinal n = 0;
        XtVaGetValues(list->entryBox, XmNchildren, &kids, XmNnumChildren, &n, nullptr);
        return std::vector<Widget>(kids, kids + n);
    };
    auto entry_of = [](Widget w) {
        XtPointer data = nullptr;
        XtVaGetValues(w, XmNuserData, &data, nullptr);
        return static_cast<ColorEntry*>(data);
    };

    close_drawing(d);
    pump();
    ASSERT_EQ(children(), swatches) << "the swatches stay in the entry box";
    for (Widget w : swatches) {
        EXPECT_FALSE(XtIsManaged(w));
        EXPECT_EQ(entry_of(w), nullptr) << "a put-aside swatch names no freed entry";
    }

    Drawing* again = make_drawing(8, 8);
    ASSERT_EQ(again, d) << "the closed slot is taken again";
    std::vector<ColorEntry*> e = entries(again);
    ASSERT_EQ(e.size(), 3u);
    for (size_t i = 0; i < e.size(); i++) {
        EXPECT_EQ(e[i]->button, swatches[i]) << "swatch " << i << " in list order";
        EXPECT_EQ(entry_of(swatches[i]), e[i]);
        EXPECT_TRUE(XtIsManaged(swatches[i]));
    }
    EXPECT_FALSE(XtIsManaged(swatches[3])) << "the spare stays aside";
    EXPECT_EQ(children().size(), 4u) << "no swatch was made";

    ASSERT_EQ(cmd_show_colors(again, nullptr, False), 0);
    pump();
    Dimension width = 0, height = 0;
    XtVaGetValues(e[2]->button, XmNwidth, &width, XmNheight, &height, nullptr);
    EXPECT_EQ(window_pixel(XtWindow(e[2]->button), width / 3, height / 2), e[2]->pixel) << "the new entry's colour";
    ColorEntry* added = add_color(list, app().whitePixel, app().blackPixel, 1);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->button, swatches[3]) << "a new colour takes the spare";
    EXPECT_TRUE(XtIsManaged(swatches[3]));
    EXPECT_EQ(children().size(), 4u);
}

// With every cell of the colormap taken, adding fails cleanly: the list keeps its count and chain, a new drawing is
// refused, and the drawings already open keep painting.
TEST(Colour, RunningOutOfCells)
{
    Drawing* d = make_drawing(8, 8);
    ColorList* list = color_list_of(d);
    std::vector<Pixel> taken;
    Pixel p;
    while (taken.size() < 256 && XAllocColorCells(app().display, cmap(), False, nullptr, 0, &p, 1))
        taken.push_back(p);

    EXPECT_EQ(add_color(list, app().whitePixel, app().blackPixel, 1), nullptr);
    Pixel background = 0;
    XtVaGetValues(list->entryBox, XmNbackground, &background, nullptr);
    EXPECT_EQ(add_color(list, background, background, 1), nullptr) << "nor a transparent colour";
    filetest::press(d->colourList, "New");
    EXPECT_EQ(list->anchor->pixel, 3u);
    EXPECT_EQ(entries(d).size(), 3u) << "no uncounted entry is left in the chain";
    EXPECT_EQ(make_drawing(8, 8, true), nullptr) << "a new drawing needs cells";
    EXPECT_EQ(registry().openCount, 1);

    ColorEntry* black = entries(d)[2];
    choose_color_entry(list, black);
    XFillRectangle(app().display, d->image, d->foregroundGC, 0, 0, 2, 2);
    EXPECT_EQ(image_pixel(d, 1, 1), black->pixel);
    if (!taken.empty())
        XFreeColors(app().display, cmap(), taken.data(), int(taken.size()), 0);
    pump();
    EXPECT_NE(add_color(list, app().whitePixel, app().blackPixel, 1), nullptr);
    EXPECT_EQ(list->anchor->pixel, 4u);
}

// EditColor opens the editor on the selected well's colour, its wheel painted in cells of its own round the edited
// colour; the scale, clicks and drags on the wheel write straight into the entry's cell, which every pixel of the
// image shows, and Undo puts the loaded colour back. The samples set the entry's mapping and redraw its swatch;
// choosing another swatch while the editor is open reloads it, moving the Undo point.
TEST(ColorEditor, EditsTheCellAndMappingLive)
{
    Drawing* d = make_drawing(16, 16);
    cmd_show_colors(d, nullptr, False);
    ColorEntry* white = entries(d)[1];
    ColorEntry* black = color_list_of(d)->foregroundEntry;
    XFillRectangle(app().display, d->image, d->foregroundGC, 0, 0, 4, 4);
    filetest::press(d->colourList, "EditColor");
    ColorEditor* ed = color_editor();
    ASSERT_TRUE(ed && XtIsManaged(color_editor_dialog()));
    EXPECT_EQ(ed->saved.pixel, black->pixel);
    EXPECT_EQ(shadow_of(ed->blackSample), XmSHADOW_IN) << "black's mapping is selected";
    EXPECT_EQ(scale_value(), 0);
    EXPECT_FALSE(d->modified) << "opening the editor is not an edit";

    HsvState* s = hsv_state();
    Window wheel = XtWindow(s->hueSat);
    EXPECT_EQ(window_pixel(wheel, 140, 76), s->hueSatCells[0]) << "outer ring, first sector";
    EXPECT_EQ(window_pixel(wheel, 80, 20), s->hueSatCells[2]) << "outer ring, 80..120 degrees";
    EXPECT_EQ(window_pixel(wheel, 2, 2), black->pixel) << "the edited colour round the wheel";
    EXPECT_EQ(window_pixel(XtWindow(ed->colorSample), 10, 10), black->pixel);

    set_value(255);
    EXPECT_EQ(rgb_of_pixel(black->pixel), 0xFFFFFFu) << "full value at the centre";
    EXPECT_EQ(rgb_of_pixel(s->hueSatCells[0]), 0xFF5500u) << "the wheel follows the value";
    EXPECT_TRUE(d->modified);
    click_wheel(150, 80);
    EXPECT_EQ(rgb_of_pixel(black->pixel), 0xFF0000u) << "right edge: red";
    EXPECT_EQ(s->markerX, 150);
    send_motion(wheel, 10, 80, Button1Mask);
    EXPECT_EQ(rgb_of_pixel(black->pixel), 0x00FFFFu) << "dragging to the left edge: cyan";
    EXPECT_EQ(s->markerX, 150) << "the marker waits for the release";
    send_motion(wheel, 80, 80, 0);
    EXPECT_EQ(s->hue, 180) << "moving without the button changes nothing";
    set_value(128, XmCR_DRAG);
    EXPECT_EQ(rgb_of_pixel(black->pixel), 0x008080u);
    EXPECT_EQ(image_pixel(d, 1, 1), black->pixel) << "the image keeps its cell; the cell changes";

    press_editor("Undo");
    EXPECT_EQ(rgb_of_pixel(black->pixel), 0x000000u);
    EXPECT_EQ(scale_value(), 0) << "the controls show the restored colour";

    d->modified = 0;
    activate(white->button);
    activate(white->button, 2);
    ASSERT_EQ(ed->saved.pixel, white->pixel) << "a double click on a swatch edits it";
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_IN);

    activate(ed->blackSample);
    EXPECT_EQ(white->mapsTo, app().blackPixel);
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_OUT);
    EXPECT_EQ(filetest::xm_resource_text(ed->mapLabel, XmNlabelString),
              filetest::xm_resource_text(ed->blackSample, XmNlabelString));
    EXPECT_TRUE(d->modified);
    Dimension width = 0, height = 0;
    XtVaGetValues(white->button, XmNwidth, &width, XmNheight, &height, nullptr);
    EXPECT_EQ(window_pixel(XtWindow(white->button), width / 3, height / 2), white->pixel) << "the swatch's colour";
    EXPECT_EQ(window_pixel(XtWindow(white->button), width - 6, height / 2), app().blackPixel)
        << "the swatch's strip shows the new mapping";
    activate(ed->transparentSample);
    EXPECT_EQ(white->mapsTo, color_list_of(d)->transparentPixel);
    press_editor("Undo");
    EXPECT_EQ(white->mapsTo, app().whitePixel);

    activate(black->button);
    EXPECT_EQ(ed->saved.pixel, black->pixel) << "the open editor follows the chosen colour";
    set_value(255);
    press_editor("Undo");
    EXPECT_EQ(rgb_of_pixel(black->pixel), 0x000000u);
    EXPECT_EQ(rgb_of_pixel(white->pixel), 0xFFFFFFu);
    press_editor("Close");
    EXPECT_FALSE(XtIsManaged(color_editor_dialog()));
}

// Closing the drawing being edited closes the editor and lets go of its cells: the stale controls write nothing
// into cells handed to the next drawing, and the editor opens again on another drawing.
TEST(ColorEditor, DrawingClosedUnderTheEditor)
{
    Drawing* keep = make_drawing(8, 8);
    Drawing* d = make_drawing(8, 8);
    activate(color_list_of(d)->foregroundButton, 2);
    ColorEditor* ed = color_editor();
    ASSERT_NE(ed, nullptr);
    close_drawing(d);
    pump();
    EXPECT_FALSE(XtIsManaged(color_editor_dialog()));
    EXPECT_EQ(ed->list, nullptr);

    Drawing* next = make_drawing(8, 8);
    std::vector<unsigned> before;
    for (ColorEntry* e : entries(next))
        before.push_back(rgb_of_pixel(e->pixel));
    {
        ErrorTrap trap(app().display);
        set_value(200);
        click_wheel(150, 80);
        press_editor("Undo");
        activate(ed->whiteSample);
        XSync(app().display, False);
        EXPECT_EQ(trap.error(), 0);
    }
    std::vector<ColorEntry*> after = entries(next);
    ASSERT_EQ(after.size(), before.size());
    for (size_t i = 0; i < after.size(); i++)
        EXPECT_EQ(rgb_of_pixel(after[i]->pixel), before[i]) << "entry " << i;
    EXPECT_NE(color_list_of(next)->foregroundEntry->mapsTo, app().whitePixel);

    activate(color_list_of(keep)->foregroundButton, 2);
    EXPECT_TRUE(XtIsManaged(color_editor_dialog()));
    set_value(255);
    EXPECT_EQ(rgb_of_pixel(color_list_of(keep)->foregroundEntry->pixel), 0xFFFFFFu);
}

// Grab From Screen puts the exact colour of the pixel clicked anywhere on the screen into the edited cell and the
// controls follow it; the click goes to the grab, not to the window under it.
TEST(ColorEditor, GrabSetsTheEditedColour)
{
    Drawing* d = make_drawing(8, 8);
    activate(color_list_of(d)->foregroundButton, 2);
    Pixel edited = color_list_of(d)->foregroundEntry->pixel;
    Display* dpy = app().display;
    Pixel cell;
    ASSERT_TRUE(XAllocColorCells(dpy, cmap(), False, nullptr, 0, &cell, 1));
    XColor c{cell, 0x2000, 0xc000, 0x4000, DoRed | DoGreen | DoBlue, 0};
    XStoreColor(dpy, cmap(), &c);
    Window w = XCreateSimpleWindow(dpy, app().root, 0, 0, 60, 60, 0, cell, cell);
    XMapRaised(dpy, w);
    pump();
    xtest_move(w, 30, 30);

    // A second client plays the user and owns the window's button events, so a click that escaped the grab would
    // reach it. It clicks only once it sees the pointer grabbed: earlier input would be handled before the grab.
    Display* input = XOpenDisplay(DisplayString(dpy));
    ASSERT_NE(input, nullptr);
    XSelectInput(input, w, ButtonPressMask | ButtonReleaseMask);
    XSync(input, False);
    std::atomic<bool> clicked{false};
    std::thread user([&] {
        for (int i = 0; i < 1000 && !clicked; i++, usleep(10000)) {
            int status = XGrabPointer(input, DefaultRootWindow(input), False, ButtonPressMask,
                                      GrabModeAsync, GrabModeAsync, None, None, CurrentTime);
            if (status == AlreadyGrabbed) {
                XTestFakeButtonEvent(input, 1, True, 0);
                XTestFakeButtonEvent(input, 1, False, 0);
                clicked = true;
            } else if (status == GrabSuccess) {
                XUngrabPointer(input, CurrentTime);
            }
            XSync(input, False);
        }
    });
    alarm(30);   // a lost release would hang the grab
    XtCallCallbacks(editor_child("main.grabButton"), XmNactivateCallback, nullptr);
    alarm(0);
    user.join();
    pump();
    EXPECT_TRUE(clicked);
    XEvent ev;
    XSync(input, False);
    EXPECT_FALSE(XCheckWindowEvent(input, w, ButtonPressMask | ButtonReleaseMask, &ev))
        << "the click reached the window under the grab";
    XCloseDisplay(input);
    EXPECT_EQ(rgb_of_pixel(edited), rgb_of_pixel(cell));
    EXPECT_EQ(scale_value(), int(rgb_of_pixel(cell) >> 8 & 0xFF)) << "the scale shows the grabbed value (green)";
    press_editor("Undo");
    EXPECT_EQ(rgb_of_pixel(edited), 0x000000u);
    XDestroyWindow(dpy, w);
    XFreeColors(dpy, cmap(), &cell, 1, 0);
}
