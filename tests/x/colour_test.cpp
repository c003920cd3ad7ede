// The colour list of a drawing, its dialog, the symbolic colours and the
// screen grab, against the 8-bit PseudoColor test server.
#include "canvas_support.h"   // first: gtest before Xlib's macros
#include "files_support.h"

#include <X11/extensions/XTest.h>
#include <Xm/DrawnB.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "colour/color_list.h"
#include "colour/grab.h"
#include "files/image_io.h"

namespace {

Colormap cmap() { return DefaultColormap(app().display, app().screen); }

XColor query(Pixel p)
{
    XColor c{};
    c.pixel = p;
    XQueryColor(app().display, cmap(), &c);
    return c;
}

bool same_rgb(Pixel a, Pixel b)
{
    XColor x = query(a), y = query(b);
    return x.red == y.red && x.green == y.green && x.blue == y.blue;
}

std::vector<ColorEntry*> entries(ColorList* list)
{
    std::vector<ColorEntry*> out;
    for (ColorEntry* e = list->anchor->next; e; e = e->next)
        out.push_back(e);
    return out;
}

// Whether the cell is still allocated to us: storing into a freed (or
// read-only) cell is refused with BadAccess.
bool cell_writable(Pixel p)
{
    XColor c = query(p);
    c.flags = DoRed | DoGreen | DoBlue;
    XErrorTrap trap;
    XStoreColor(app().display, cmap(), &c);
    return trap.errors() == 0;
}

void activate(Widget w, int clicks)
{
    XmDrawnButtonCallbackStruct cbs{};
    cbs.reason = XmCR_ACTIVATE;
    cbs.click_count = clicks;
    XtCallCallbacks(w, XmNactivateCallback, &cbs);
    pump();
}

unsigned char shadow_of(Widget w)
{
    unsigned char s = 0;
    XtVaGetValues(w, XmNshadowType, &s, nullptr);
    return s;
}

}  // namespace

// A new drawing has exactly transparent, white and black, each in a cell of its own; black paints with button 1 and
// white with button 3, and the empty image is transparent.
TEST(Colour, NewDrawingHasTransparentWhiteBlack)
{
    Drawing* d = make_drawing(16, 16);
    ColorList* list = color_list_of(d);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->anchor->pixel, 3u) << "the anchor counts the colours";
    std::vector<ColorEntry*> e = entries(list);
    ASSERT_EQ(e.size(), 3u);

    Pixel dialogBackground = 0;
    XtVaGetValues(d->colourList, XmNbackground, &dialogBackground, nullptr);
    EXPECT_EQ(e[0]->pixel, list->transparentPixel);
    EXPECT_EQ(e[0]->mapsTo, list->transparentPixel);
    EXPECT_EQ(res().background, list->transparentPixel) << "the program's transparent pixel follows";
    EXPECT_TRUE(same_rgb(e[0]->pixel, dialogBackground)) << "transparent shows the dialog background";
    for (int i : {1, 2}) {
        Pixel want = i == 1 ? app().whitePixel : app().blackPixel;
        EXPECT_TRUE(same_rgb(e[i]->pixel, want)) << i;
        EXPECT_EQ(e[i]->mapsTo, want) << i;
    }
    for (ColorEntry* entry : e) {
        EXPECT_TRUE(cell_writable(entry->pixel)) << "every colour is a read/write cell";
        ASSERT_NE(entry->button, nullptr);
        EXPECT_STREQ(XtName(entry->button), "ColorListEntry");
    }

    EXPECT_EQ(list->foregroundEntry, e[2]);
    EXPECT_EQ(list->backgroundEntry, e[1]);
    EXPECT_EQ(foreground_pixel(d), e[2]->pixel);
    EXPECT_EQ(background_pixel(d), e[1]->pixel);
    EXPECT_EQ(image_pixel(d, 3, 3), list->transparentPixel);
}

// The dialog's widget tree: names and parents the application defaults address, the selected foreground well, a
// hidden message and buttons that leave the dialog up.
TEST(Colour, DialogTreeAndShowing)
{
    Drawing* d = make_drawing(16, 16);
    Widget dialog = d->colourList;
    ColorList* list = color_list_of(d);
    EXPECT_STREQ(XtName(dialog), "ColorListDialog");
    for (const char* name : {"main.Foreground_Label", "main.Background_Label", "New", "EditColor"})
        EXPECT_NE(XtNameToWidget(dialog, name), nullptr) << name;
    EXPECT_EQ(list->foregroundButton, XtNameToWidget(dialog, "main.Foreground_Button"));
    EXPECT_EQ(list->backgroundButton, XtNameToWidget(dialog, "main.Background_Button"));
    EXPECT_EQ(list->entryBox, XtNameToWidget(dialog, "main.ColorListRCW"));
    EXPECT_EQ(list->selectedWell, list->foregroundButton);
    EXPECT_EQ(shadow_of(list->foregroundButton), XmSHADOW_IN);
    EXPECT_EQ(shadow_of(list->backgroundButton), XmSHADOW_OUT);

    EXPECT_FALSE(XtIsManaged(dialog)) << "not shown until asked for";
    EXPECT_EQ(cmd_show_colors(d, nullptr, False), 0);
    pump();
    EXPECT_TRUE(XtIsManaged(dialog));
    Position sx = 0, sy = 0, dx = 0, dy = 0;
    Dimension sw = 0;
    XtTranslateCoords(d->shell, 0, 0, &sx, &sy);
    XtTranslateCoords(dialog, 0, 0, &dx, &dy);
    XtVaGetValues(d->shell, XmNwidth, &sw, nullptr);
    EXPECT_GE(dx, sx + Position(sw)) << "placed beside the drawing window, not over it";

    // The swatch shows its colour with the mapping strip at its right.
    ColorEntry* white = entries(list)[1];
    Dimension width = 0, height = 0;
    XtVaGetValues(white->button, XmNwidth, &width, XmNheight, &height, nullptr);
    EXPECT_GE(width, 40) << "swatches are readable";
    EXPECT_GE(height, 12);
    Window w = XtWindow(white->button);
    EXPECT_EQ(window_pixel(w, width / 3, height / 2), white->pixel);
    EXPECT_EQ(window_pixel(w, width - 6, height / 2), white->mapsTo);

    filetest::press(dialog, "EditColor");
    EXPECT_TRUE(XtIsManaged(dialog)) << "buttons leave the dialog up";
    EXPECT_EQ(cmd_show_colors(nullptr, nullptr, False), 1);
}

// The black-and-white mapping of the keys an image's colour table holds, and the order of a list loaded from one:
// the dialog background first as transparent, then the image's colours, the first of them the background.
TEST(Colour, ImageTableLoadsWithMonoKeys)
{
    const std::pair<const char*, Pixel> keys[] = {{"white", app().whitePixel}, {"w", app().whitePixel},
                                                  {"black", app().blackPixel}, {nullptr, app().blackPixel},
                                                  {"none", 77}, {"None", 77}};
    for (auto [key, want] : keys)
        EXPECT_EQ(bw_mapping(key, 77), want) << (key ? key : "a missing key");

    Drawing* d = make_drawing(8, 8);
    const char* mono[4] = {"w", "b", "None", nullptr};
    const char* colour[4] = {"#FF0000", "#00FF00", "None", "#0000FF"};
    XpmColor colours[4]{};
    XpmColor* table[4];
    Pixel pixels[4];
    unsigned long planes[1];
    ASSERT_TRUE(XAllocColorCells(app().display, cmap(), False, planes, 0, pixels, 4));
    for (int i = 0; i < 4; i++) {
        colours[i].m_color = const_cast<char*>(mono[i]);
        colours[i].c_color = const_cast<char*>(colour[i]);
        table[i] = &colours[i];
    }
    DrawingXpmInfo info{};
    info.colourCount = 4;
    info.colours = table;
    info.pixels = pixels;

    Pixel p = 0;
    XtVaGetValues(d->colourList, XmNbackground, &p, nullptr);
    ASSERT_EQ(load_color_list(d->colourList, &info), 0);
    ColorList* list = color_list_of(d);
    std::vector<ColorEntry*> e = entries(list);
    ASSERT_EQ(e.size(), 5u) << "loading again replaces the three colours of the new drawing";
    EXPECT_EQ(list->anchor->pixel, 5u);
    EXPECT_EQ(e[0]->pixel, list->transparentPixel);
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(e[i + 1]->pixel, pixels[i]) << "colours keep their cells, in table order";
    EXPECT_EQ(e[1]->mapsTo, app().whitePixel);
    EXPECT_EQ(e[2]->mapsTo, app().blackPixel);
    EXPECT_EQ(e[3]->mapsTo, p) << "the image's None is one of the colours, mapped to transparent";
    EXPECT_EQ(e[4]->mapsTo, app().blackPixel);
    EXPECT_EQ(list->backgroundEntry, e[0]);
    EXPECT_EQ(list->foregroundEntry, e[1]);
    EXPECT_EQ(foreground_pixel(d), pixels[0]);
    EXPECT_EQ(background_pixel(d), list->transparentPixel);
}

// Freeing a list gives its cells back but never the program's transparent
// cell, and leaves an empty, reloadable list.
TEST(Colour, FreeKeepsTheTransparentCell)
{
    Drawing* d = make_drawing(8, 8);
    ColorList* list = color_list_of(d);
    std::vector<ColorEntry*> e = entries(list);
    ASSERT_EQ(e.size(), 3u);
    Pixel transparent = e[0]->pixel, white = e[1]->pixel, black = e[2]->pixel;
    ASSERT_EQ(transparent, res().background);

    free_all_colors(list);
    pump();
    EXPECT_EQ(list->anchor->pixel, 0u);
    EXPECT_EQ(list->anchor->next, nullptr);
    EXPECT_EQ(list->foregroundEntry, nullptr);
    EXPECT_EQ(list->backgroundEntry, nullptr);
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(list->entryBox, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    EXPECT_EQ(count, 0u) << "the swatches are destroyed";
    EXPECT_TRUE(cell_writable(transparent)) << "the background cell is never freed";
    EXPECT_FALSE(cell_writable(white)) << "other cells go back to the colormap";
    EXPECT_FALSE(cell_writable(black));

    ASSERT_EQ(load_color_list(d->colourList, nullptr), 0);
    EXPECT_EQ(list->anchor->pixel, 3u);
}

// Every drawing takes a transparent cell of its own; closing the drawing gives it back with the other cells, so
// opening and closing drawings does not drain the colormap, and the program's transparent pixel never names a cell
// that went back.
TEST(Colour, CloseGivesTheTransparentCellBack)
{
    Drawing* first = make_drawing(8, 8);
    Pixel firstTransparent = color_list_of(first)->transparentPixel;
    Drawing* second = make_drawing(8, 8);
    Pixel secondTransparent = color_list_of(second)->transparentPixel;
    ASSERT_NE(firstTransparent, secondTransparent);
    ASSERT_EQ(secondTransparent, res().background);

    close_drawing(second);
    pump();
    EXPECT_FALSE(cell_writable(secondTransparent)) << "the closed drawing's transparent cell leaks";
    EXPECT_NE(res().background, secondTransparent);
    EXPECT_TRUE(cell_writable(firstTransparent)) << "the open drawing keeps its own";

    close_drawing(first);
    pump();
    EXPECT_FALSE(cell_writable(firstTransparent));
    Drawing* again = make_drawing(8, 8);
    ASSERT_NE(again, nullptr) << "the drawing after them still gets its colours";
    EXPECT_EQ(entries(color_list_of(again)).size(), 3u);
    EXPECT_TRUE(cell_writable(res().background));
}

// The symbolic colour table is filled once: a later widget with other
// colours does not change it, only a given transparent pixel does.
TEST(Colour, SymbolicColoursFilledOnce)
{
    Drawing* d = make_drawing(8, 8);
    int n = 0;
    XpmColorSymbol* first = symbolic_colors(d->shell, nullptr, &n);
    ASSERT_EQ(n, 18);
    ASSERT_EQ(first, symbolicColors);
    EXPECT_NE(first[0].pixel, 9999u) << "filled, even without a desktop scheme";
    EXPECT_EQ(first[14].pixel, app().whitePixel);
    EXPECT_EQ(first[15].pixel, app().blackPixel);
    Pixel before[18];
    for (int i = 0; i < 18; i++)
        before[i] = first[i].pixel;

    XColor red{};
    red.red = 65535;
    ASSERT_TRUE(XAllocColor(app().display, cmap(), &red));
    Widget other = XtVaCreateWidget("other", xmDrawnButtonWidgetClass, d->mainWindow,
                                    XmNbackground, red.pixel, XmNforeground, red.pixel, nullptr);
    symbolic_colors(other, nullptr, &n);
    for (int i = 0; i < 18; i++)
        EXPECT_EQ(symbolicColors[i].pixel, before[i]) << "entry " << i << " was read again";

    Pixel transparent = 42;
    symbolic_colors(other, &transparent, &n);
    for (int i : {8, 10, 16, 17})
        EXPECT_EQ(symbolicColors[i].pixel, 42u) << "entry " << i;
    for (int i : {0, 9, 11, 12, 13})
        EXPECT_EQ(symbolicColors[i].pixel, before[i]) << "entry " << i;
    XtDestroyWidget(other);
}

// New adds white mapped to black and gives it to the selected well, whose GC keeps its colour until a swatch is
// chosen; a chosen swatch paints.
TEST(Colour, NewGoesToTheSelectedWellAndSwatchesPaint)
{
    Drawing* d = make_drawing(8, 8);
    ColorList* list = color_list_of(d);
    Pixel oldBackground = background_pixel(d);

    activate(list->backgroundButton, 1);
    EXPECT_EQ(list->selectedWell, list->backgroundButton);
    EXPECT_EQ(shadow_of(list->backgroundButton), XmSHADOW_IN);
    EXPECT_EQ(shadow_of(list->foregroundButton), XmSHADOW_OUT);
    activate(list->backgroundButton, 1);
    EXPECT_EQ(shadow_of(list->backgroundButton), XmSHADOW_IN) << "clicking it again changes nothing";

    filetest::press(d->colourList, "New");
    std::vector<ColorEntry*> e = entries(list);
    ASSERT_EQ(e.size(), 4u);
    ColorEntry* added = e[3];
    EXPECT_EQ(list->backgroundEntry, added);
    EXPECT_TRUE(same_rgb(added->pixel, app().whitePixel));
    EXPECT_EQ(added->mapsTo, app().blackPixel);
    EXPECT_NE(added->pixel, e[1]->pixel) << "a cell of its own";
    EXPECT_EQ(background_pixel(d), oldBackground);

    activate(added->button, 2);   // double click: the editor, not built yet
    activate(list->foregroundButton, 2);
    EXPECT_EQ(list->selectedWell, list->backgroundButton) << "a double click does not select";

    // Choosing a swatch changes the selected well's GC, so the next stroke paints with the chosen colour.
    activate(list->foregroundButton, 1);
    activate(e[1]->button, 1);   // white into the foreground well
    EXPECT_EQ(list->foregroundEntry, e[1]);
    XFillRectangle(app().display, d->image, d->foregroundGC, 0, 0, 4, 4);
    EXPECT_EQ(image_pixel(d, 2, 2), e[1]->pixel);

    activate(list->backgroundButton, 1);
    activate(e[2]->button, 1);   // black into the background well
    EXPECT_EQ(list->backgroundEntry, e[2]);
    EXPECT_EQ(list->foregroundEntry, e[1]) << "the other well is left alone";
    XFillRectangle(app().display, d->image, d->backgroundGC, 4, 4, 4, 4);
    EXPECT_EQ(image_pixel(d, 5, 5), e[2]->pixel);

    choose_color_entry(list, nullptr);   // no entry: the well's own
    EXPECT_EQ(list->backgroundEntry, e[2]);
}

// With every cell of the colormap taken, adding fails cleanly: the list keeps its count and chain, a new drawing is
// refused, and the drawings already open keep painting.
TEST(Colour, RunningOutOfCells)
{
    Drawing* d = make_drawing(8, 8);
    ColorList* list = color_list_of(d);
    std::vector<Pixel> taken;
    unsigned long planes[1];
    Pixel p;
    while (taken.size() < 256 && XAllocColorCells(app().display, cmap(), False, planes, 0, &p, 1))
        taken.push_back(p);

    EXPECT_EQ(add_color(list, app().whitePixel, app().blackPixel, 1), nullptr);
    Pixel background = 0;
    XtVaGetValues(list->entryBox, XmNbackground, &background, nullptr);
    EXPECT_EQ(add_color(list, background, background, 1), nullptr) << "nor a transparent colour";
    filetest::press(d->colourList, "New");
    EXPECT_EQ(list->anchor->pixel, 3u);
    EXPECT_EQ(entries(list).size(), 3u) << "no uncounted entry is left in the chain";

    int open = registry().openCount;
    EXPECT_EQ(make_drawing(8, 8, true), nullptr) << "a new drawing needs cells";
    EXPECT_EQ(registry().openCount, open);

    ColorEntry* black = entries(list)[2];
    choose_color_entry(list, black);
    XFillRectangle(app().display, d->image, d->foregroundGC, 0, 0, 2, 2);
    EXPECT_EQ(image_pixel(d, 1, 1), black->pixel);

    if (!taken.empty())
        XFreeColors(app().display, cmap(), taken.data(), int(taken.size()), 0);
    pump();
    EXPECT_NE(add_color(list, app().whitePixel, app().blackPixel, 1), nullptr);
    EXPECT_EQ(list->anchor->pixel, 4u);
}

// The grab takes the pixel under the pointer at the release of any button,
// and the click goes to the grab, not to the window under it.
TEST(Colour, GrabReadsThePixelUnderThePointer)
{
    Display* dpy = app().display;
    Cursor cursor = grab_pixel_cursor(dpy);
    EXPECT_NE(cursor, None);
    EXPECT_EQ(grab_pixel_cursor(dpy), cursor) << "made once and kept";

    Pixel cell;
    unsigned long planes[1];
    ASSERT_TRUE(XAllocColorCells(dpy, cmap(), False, planes, 0, &cell, 1));
    XColor c{cell, 0x1234, 0xfedc, 0x8000, DoRed | DoGreen | DoBlue, 0};
    XStoreColor(dpy, cmap(), &c);
    // The window goes under the pointer where it is, so that the test moves
    // nothing that tests running beside it might be using.
    Window rootReturn, childReturn;
    int px = 0, py = 0, wx, wy;
    unsigned mask;
    XQueryPointer(dpy, app().root, &rootReturn, &childReturn, &px, &py, &wx, &wy, &mask);
    int left = std::clamp(px - 30, 0, DisplayWidth(dpy, app().screen) - 60);
    int top = std::clamp(py - 30, 0, DisplayHeight(dpy, app().screen) - 60);
    XSetWindowAttributes attrs{};
    attrs.background_pixel = cell;
    attrs.override_redirect = True;
    Window w = XCreateWindow(dpy, app().root, left, top, 60, 60, 0, CopyFromParent, InputOutput,
                             CopyFromParent, CWBackPixel | CWOverrideRedirect, &attrs);
    XMapRaised(dpy, w);
    pump();

    // A second client plays the user. It owns the button events of the window, so a click that escaped the grab
    // would go to it and the grab would never end. It clicks only once the grab is seen to be active: fake input
    // sent before grab_pixel would be handled before the grab.
    Display* input = XOpenDisplay(DisplayString(dpy));
    ASSERT_NE(input, nullptr);
    XSelectInput(input, w, ButtonPressMask | ButtonReleaseMask);
    XSync(input, False);
    std::atomic<bool> clicked{false};
    std::thread user([&] {
        Window root = DefaultRootWindow(input);
        for (int i = 0; i < 1000; i++) {
            int status = XGrabPointer(input, root, False, ButtonPressMask, GrabModeAsync,
                                      GrabModeAsync, None, None, CurrentTime);
            if (status == AlreadyGrabbed) {
                XTestFakeButtonEvent(input, 3, True, 0);
                XTestFakeButtonEvent(input, 3, False, 0);
                XSync(input, False);
                clicked = true;
                return;
            }
            if (status == GrabSuccess)
                XUngrabPointer(input, CurrentTime);
            XSync(input, False);
            usleep(10000);
        }
    });
    alarm(30);   // a lost release would hang the grab loop
    Pixel got = grab_pixel(dpy);
    alarm(0);
    user.join();
    EXPECT_TRUE(clicked);
    EXPECT_EQ(got, cell);

    XEvent ev;
    XSync(input, False);
    EXPECT_FALSE(XCheckWindowEvent(input, w, ButtonPressMask | ButtonReleaseMask, &ev))
        << "the click reached the window under the grab";
    XCloseDisplay(input);
    XDestroyWindow(dpy, w);
    XFreeColors(dpy, cmap(), &cell, 1, 0);
}

// A file's transparent colour: the dialog background still comes first as the list's transparent colour, the file's
// pixels of "None" hold it, and the other colours keep their file order and monochrome keys.
TEST(Colour, FileWithTransparentColour)
{
    filetest::ScratchDir dir;
    std::string path = dir.file("pic.xpm", "/* XPM */\nstatic char * pic[] = {\n\"4 2 3 1\",\n\". c None m None\",\n"
                                           "\"r c #FF0000 m black\",\n\"w c #FFFFFF m white\",\n\".rw.\",\n\"wr..\"};\n");
    ASSERT_EQ(open_file(path.c_str()), 0);
    Drawing* d = first_open_drawing();
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    ASSERT_NE(list, nullptr);
    std::vector<ColorEntry*> e = entries(list);
    ASSERT_GE(e.size(), 3u);
    EXPECT_EQ(list->anchor->pixel, e.size());
    EXPECT_EQ(e[0]->pixel, list->transparentPixel);
    EXPECT_EQ(e[0]->mapsTo, list->transparentPixel);
    EXPECT_EQ(image_pixel(d, 0, 0), list->transparentPixel) << "the file's None pixels are transparent";
    Pixel red = image_pixel(d, 1, 0), white = image_pixel(d, 2, 0);
    EXPECT_EQ(image_pixel(d, 1, 1), red);
    for (auto [pixel, mapsTo] : {std::pair{red, app().blackPixel}, {white, app().whitePixel}}) {
        auto found = std::find_if(e.begin(), e.end(), [&](ColorEntry* entry) { return entry->pixel == pixel; });
        ASSERT_NE(found, e.end()) << "the painted cell " << pixel << " is in the list";
        EXPECT_EQ((*found)->mapsTo, mapsTo);
    }
    XColor c = query(red);
    EXPECT_EQ(c.red, 0xffff);
    EXPECT_EQ(c.green, 0);
    EXPECT_EQ(list->backgroundEntry, e[0]);
    EXPECT_EQ(list->foregroundEntry, e[1]);
    EXPECT_EQ(foreground_pixel(d), e[1]->pixel);
}
