// The colour editor against the 8-bit PseudoColor server: its widgets,
// live editing of an entry's cell through the wheel and the value scale,
// the black-and-white mapping, Undo, and a drawing closed under it.
#include "x_env.h"

#include <Xm/DrawingA.h>
#include <Xm/DrawnB.h>
#include <Xm/Scale.h>
#include <Xm/Xm.h>

#include <X11/extensions/XTest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "colour/color_editor.h"
#include "colour/color_list.h"

namespace {

Colormap cmap() { return DefaultColormap(app().display, app().screen); }

XColor query(Pixel p)
{
    XColor c{};
    c.pixel = p;
    XQueryColor(app().display, cmap(), &c);
    return c;
}

::testing::AssertionResult has_rgb(Pixel p, unsigned short r, unsigned short g, unsigned short b)
{
    XColor c = query(p);
    if (c.red == r && c.green == g && c.blue == b)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "cell " << p << " holds " << c.red << "," << c.green
                                         << "," << c.blue << ", not " << r << "," << g << "," << b;
}

std::vector<ColorEntry*> entries(ColorList* list)
{
    std::vector<ColorEntry*> out;
    for (ColorEntry* e = list->anchor->next; e; e = e->next)
        out.push_back(e);
    return out;
}

Widget child(const char* path)
{
    Widget w = XtNameToWidget(color_editor_dialog(), path);
    EXPECT_NE(w, nullptr) << path;
    return w;
}

void press(Widget w)
{
    XtCallCallbacks(w, XmNactivateCallback, nullptr);
    pump();
}

void activate(Widget w, int clicks)
{
    XmDrawnButtonCallbackStruct cbs{};
    cbs.reason = XmCR_ACTIVATE;
    cbs.click_count = clicks;
    XtCallCallbacks(w, XmNactivateCallback, &cbs);
    pump();
}

void set_value(int value, int reason = XmCR_VALUE_CHANGED)
{
    XmScaleCallbackStruct cbs{};
    cbs.reason = reason;
    cbs.value = value;
    XtCallCallbacks(child("*Value"), reason == XmCR_DRAG ? XmNdragCallback : XmNvalueChangedCallback,
                    &cbs);
    pump();
}

void click_wheel(int type, int x, int y)
{
    Widget area = child("*HueSat");
    XEvent ev{};
    ev.xbutton.type = type;
    ev.xbutton.display = app().display;
    ev.xbutton.window = XtWindow(area);
    ev.xbutton.x = x;
    ev.xbutton.y = y;
    ev.xbutton.button = Button1;
    XmDrawingAreaCallbackStruct cbs{};
    cbs.reason = XmCR_INPUT;
    cbs.event = &ev;
    cbs.window = XtWindow(area);
    XtCallCallbacks(area, XmNinputCallback, &cbs);
    pump();
}

unsigned char shadow_of(Widget w)
{
    unsigned char s = 0;
    XtVaGetValues(w, XmNshadowType, &s, nullptr);
    return s;
}

int xErrors = 0;
int count_error(Display*, XErrorEvent*)
{
    xErrors++;
    return 0;
}

}  // namespace

// EditColor opens the one editor on the selected well's colour with the
// widget tree the defaults file addresses; the wheel is painted in its own
// cells round the edited colour.
TEST(ColorEditor, OpensOnTheSelectedWell)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    ASSERT_NE(list, nullptr);
    cmd_show_colors(d, nullptr, False);
    pump();
    press(XtNameToWidget(d->colourList, "EditColor"));

    Widget dialog = color_editor_dialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_STREQ(XtName(dialog), "ColorPickerDialog");
    EXPECT_TRUE(XtIsManaged(dialog));
    EXPECT_TRUE(XtIsManaged(d->colourList)) << "the colour list stays up";
    ColorEditor* ed = color_editor();
    XtPointer data = nullptr;
    XtVaGetValues(dialog, XmNuserData, &data, nullptr);
    EXPECT_EQ(data, ed);
    for (const char* path : {"main.frame.HSV.Value", "main.frame.HSV.HueSatFrame.HueSat",
                             "main.grabButton", "main.sep", "main.MapsToLabel", "main.BWLabel",
                             "main.colorSample", "main.blackSample", "main.whiteSample",
                             "main.transparentSample", "Undo", "Close"})
        child(path);
    EXPECT_EQ(ed->modeForm, child("main.frame.HSV"));
    EXPECT_EQ(ed->mode, 0);
    EXPECT_EQ(shadow_of(ed->colorSample), XmSHADOW_ETCHED_IN);

    ColorEntry* black = list->foregroundEntry;
    EXPECT_EQ(ed->list, list);
    EXPECT_EQ(ed->saved.pixel, black->pixel);
    EXPECT_EQ(ed->mapping, app().blackPixel);
    EXPECT_EQ(shadow_of(ed->blackSample), XmSHADOW_IN);
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_OUT);
    int value = -1;
    XmScaleGetValue(child("*Value"), &value);
    EXPECT_EQ(value, 0) << "the scale shows black's value";
    EXPECT_FALSE(d->modified) << "opening the editor is not an edit";

    HsvState* s = hsv_state();
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->editedPixel, black->pixel);
    EXPECT_EQ(s->markerX, 80) << "a grey sits at the centre";
    Window wheel = XtWindow(s->hueSat);
    EXPECT_EQ(window_pixel(wheel, 140, 76), s->hueSatCells[0]) << "outer ring, first sector";
    EXPECT_EQ(window_pixel(wheel, 80, 20), s->hueSatCells[2]) << "outer ring, 80..120 degrees";
    EXPECT_EQ(window_pixel(wheel, 2, 2), black->pixel) << "the edited colour shows round the wheel";
    EXPECT_EQ(window_pixel(XtWindow(ed->blackSample), 10, 10), app().blackPixel);
    EXPECT_EQ(window_pixel(XtWindow(ed->whiteSample), 10, 10), app().whitePixel);
    Dimension sw = 0, sh = 0;
    XtVaGetValues(ed->colorSample, XmNwidth, &sw, XmNheight, &sh, nullptr);
    EXPECT_GE(sw, 40) << "samples are big enough to see";
    EXPECT_GE(sh, 20);
    EXPECT_EQ(window_pixel(XtWindow(ed->colorSample), 10, 10), black->pixel);

    press(child("Close"));
    EXPECT_FALSE(XtIsManaged(dialog));
}

// The value scale and the wheel write the colour straight into the
// entry's cell, which every pixel of the drawing shows; Undo puts the
// loaded colour back.
TEST(ColorEditor, EditsTheCellLiveAndUndoes)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    ColorEntry* black = list->foregroundEntry;
    XFillRectangle(app().display, d->image, d->foregroundGC, 0, 0, 4, 4);
    ASSERT_EQ(image_pixel(d, 1, 1), black->pixel);
    activate(list->foregroundButton, 2);
    ColorEditor* ed = color_editor();
    ASSERT_NE(ed, nullptr);
    ASSERT_EQ(ed->saved.pixel, black->pixel);
    HsvState* s = hsv_state();

    set_value(255);
    EXPECT_TRUE(has_rgb(black->pixel, 65535, 65535, 65535)) << "full value at the centre is white";
    EXPECT_TRUE(has_rgb(s->hueSatCells[0], 65535, 21845, 0)) << "the wheel brightens with the value";
    EXPECT_TRUE(d->modified) << "a finished edit marks the drawing";

    click_wheel(ButtonRelease, 150, 80);
    EXPECT_TRUE(has_rgb(black->pixel, 65535, 0, 0)) << "right edge of the wheel: pure red";
    EXPECT_EQ(s->markerX, 150);
    EXPECT_EQ(s->markerY, 80);
    click_wheel(ButtonPress, 80, 10);
    EXPECT_EQ(s->hue, 90);
    EXPECT_EQ(s->saturation, 255);
    EXPECT_EQ(s->markerX, 150) << "the marker waits for the release";
    EXPECT_EQ(image_pixel(d, 1, 1), black->pixel) << "the image keeps its cell; the cell changes";
    send_motion(XtWindow(s->hueSat), 10, 80, Button1Mask);
    EXPECT_EQ(s->hue, 180) << "dragging follows the pointer";
    EXPECT_TRUE(has_rgb(black->pixel, 0, 65535, 65535));
    EXPECT_EQ(s->markerX, 150) << "dragging leaves the marker";
    send_motion(XtWindow(s->hueSat), 80, 80, 0);
    EXPECT_EQ(s->hue, 180) << "moving without the button changes nothing";

    set_value(128, XmCR_DRAG);
    EXPECT_EQ(s->value, 128);
    EXPECT_TRUE(has_rgb(black->pixel, 0, 128 * 257, 128 * 257)) << "cyan at half value";

    press(child("Undo"));
    EXPECT_TRUE(has_rgb(black->pixel, 0, 0, 0));
    int value = -1;
    XmScaleGetValue(child("*Value"), &value);
    EXPECT_EQ(value, 0) << "the controls show the restored colour";
    press(child("Close"));
}

// The samples set the mapping of the selected well's entry and redraw its
// swatch; Undo brings the loaded mapping back, and choosing another swatch
// while the editor is open reloads it (moving the Undo point).
TEST(ColorEditor, MappingSamplesAndReload)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    std::vector<ColorEntry*> e = entries(list);
    ASSERT_EQ(e.size(), 3u);
    cmd_show_colors(d, nullptr, False);
    pump();
    ColorEntry* white = e[1];
    activate(white->button, 1);
    activate(white->button, 2);
    ColorEditor* ed = color_editor();
    ASSERT_NE(ed, nullptr);
    ASSERT_EQ(ed->saved.pixel, white->pixel);
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_IN);

    auto label_of = [](Widget w) {
        XmString s = nullptr;
        XtVaGetValues(w, XmNlabelString, &s, nullptr);
        char* text = nullptr;
        std::string out;
        if (s && XmStringGetLtoR(s, const_cast<char*>(XmFONTLIST_DEFAULT_TAG), &text) && text) {
            out = text;
            XtFree(text);
        }
        if (s)
            XmStringFree(s);
        return out;
    };
    EXPECT_EQ(label_of(ed->mapLabel), label_of(ed->whiteSample));

    activate(ed->blackSample, 1);
    EXPECT_EQ(white->mapsTo, app().blackPixel);
    EXPECT_EQ(shadow_of(ed->blackSample), XmSHADOW_IN);
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_OUT);
    EXPECT_EQ(label_of(ed->mapLabel), label_of(ed->blackSample));
    EXPECT_TRUE(d->modified);
    Dimension width = 0, height = 0;
    XtVaGetValues(white->button, XmNwidth, &width, XmNheight, &height, nullptr);
    EXPECT_EQ(window_pixel(XtWindow(white->button), width - 6, height / 2), app().blackPixel)
        << "the swatch's strip shows the new mapping";

    activate(ed->transparentSample, 1);
    EXPECT_EQ(white->mapsTo, list->transparentPixel);
    press(child("Undo"));
    EXPECT_EQ(white->mapsTo, app().whitePixel);
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_IN);

    ColorEntry* black = e[2];
    activate(black->button, 1);
    EXPECT_EQ(ed->saved.pixel, black->pixel) << "the open editor follows the chosen colour";
    set_value(255);
    press(child("Undo"));
    EXPECT_TRUE(has_rgb(black->pixel, 0, 0, 0));
    EXPECT_TRUE(has_rgb(white->pixel, 65535, 65535, 65535)) << "the earlier colour is left alone";
    press(child("Close"));
}

// Closing the drawing being edited closes the editor and lets go of its
// cells: the controls then write nothing, and the editor opens again on
// another drawing.
TEST(ColorEditor, DrawingClosedUnderTheEditor)
{
    Drawing* keep = make_drawing(8, 8);
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(keep, nullptr);
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    activate(list->foregroundButton, 2);
    ColorEditor* ed = color_editor();
    ASSERT_NE(ed, nullptr);
    Pixel edited = list->foregroundEntry->pixel;

    close_drawing(d);
    pump();
    EXPECT_FALSE(XtIsManaged(color_editor_dialog()));
    EXPECT_EQ(ed->list, nullptr);
    EXPECT_FALSE(hsv_state()->live);

    // A cell given back may be handed to the next drawing: take it again
    // and watch that the stale controls leave it alone.
    Drawing* next = make_drawing(8, 8);
    ASSERT_NE(next, nullptr);
    std::vector<XColor> before;
    for (ColorEntry* e : entries(color_list_of(next)))
        before.push_back(query(e->pixel));
    XSync(app().display, False);
    XErrorHandler old = XSetErrorHandler(count_error);
    xErrors = 0;
    set_value(200);
    click_wheel(ButtonRelease, 150, 80);
    press(child("Undo"));
    activate(ed->whiteSample, 1);
    XSync(app().display, False);
    XSetErrorHandler(old);
    EXPECT_EQ(xErrors, 0);
    std::vector<ColorEntry*> after = entries(color_list_of(next));
    for (size_t i = 0; i < after.size() && i < before.size(); i++) {
        EXPECT_TRUE(has_rgb(after[i]->pixel, before[i].red, before[i].green, before[i].blue))
            << "entry " << i << (after[i]->pixel == edited ? " (the old edited cell)" : "");
    }
    EXPECT_NE(color_list_of(next)->foregroundEntry->mapsTo, app().whitePixel);

    ColorList* keptList = color_list_of(keep);
    activate(keptList->foregroundButton, 2);
    EXPECT_TRUE(XtIsManaged(color_editor_dialog()));
    EXPECT_EQ(ed->list, keptList);
    set_value(255);
    EXPECT_TRUE(has_rgb(keptList->foregroundEntry->pixel, 65535, 65535, 65535));
    press(child("Close"));
}

// Grab From Screen takes the colour of the pixel clicked anywhere on the
// screen into the edited cell, exactly, and the controls follow it.
TEST(ColorEditor, GrabSetsTheEditedColour)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    activate(list->foregroundButton, 2);
    ASSERT_NE(color_editor(), nullptr);
    Pixel edited = list->foregroundEntry->pixel;

    Display* dpy = app().display;
    Pixel cell;
    unsigned long planes[1];
    ASSERT_TRUE(XAllocColorCells(dpy, cmap(), False, planes, 0, &cell, 1));
    XColor c{};
    c.pixel = cell;
    c.red = 0x2000;
    c.green = 0xc000;
    c.blue = 0x4000;
    c.flags = DoRed | DoGreen | DoBlue;
    XStoreColor(dpy, cmap(), &c);
    XColor want = query(cell);
    // A window of that colour under the pointer where it already is.
    Window rootReturn, childReturn;
    int px = 0, py = 0, wx, wy;
    unsigned mask;
    XQueryPointer(dpy, app().root, &rootReturn, &childReturn, &px, &py, &wx, &wy, &mask);
    XSetWindowAttributes attrs{};
    attrs.background_pixel = cell;
    attrs.override_redirect = True;
    Window w = XCreateWindow(dpy, app().root, std::clamp(px - 30, 0, DisplayWidth(dpy, app().screen) - 60),
                             std::clamp(py - 30, 0, DisplayHeight(dpy, app().screen) - 60), 60, 60, 0,
                             CopyFromParent, InputOutput, CopyFromParent,
                             CWBackPixel | CWOverrideRedirect, &attrs);
    XMapRaised(dpy, w);
    pump();

    // A second client clicks once the grab is seen to be active.
    Display* input = XOpenDisplay(DisplayString(dpy));
    ASSERT_NE(input, nullptr);
    std::atomic<bool> clicked{false};
    std::thread user([&] {
        Window root = DefaultRootWindow(input);
        for (int i = 0; i < 1000 && !clicked; i++) {
            int status = XGrabPointer(input, root, False, ButtonPressMask, GrabModeAsync,
                                      GrabModeAsync, None, None, CurrentTime);
            if (status == AlreadyGrabbed) {
                XTestFakeButtonEvent(input, 1, True, 0);
                XTestFakeButtonEvent(input, 1, False, 0);
                clicked = true;
            } else if (status == GrabSuccess) {
                XUngrabPointer(input, CurrentTime);
            }
            XSync(input, False);
            usleep(10000);
        }
    });
    alarm(30);   // a lost release would hang the grab
    press(child("main.grabButton"));
    alarm(0);
    user.join();
    XCloseDisplay(input);
    EXPECT_TRUE(clicked);
    EXPECT_TRUE(has_rgb(edited, want.red, want.green, want.blue));
    int value = -1;
    XmScaleGetValue(child("*Value"), &value);
    EXPECT_EQ(value, want.green / 257) << "the scale shows the grabbed value";
    EXPECT_TRUE(d->modified);

    press(child("Undo"));
    EXPECT_TRUE(has_rgb(edited, 0, 0, 0));
    XDestroyWindow(dpy, w);
    XFreeColors(dpy, cmap(), &cell, 1, 0);
    press(child("Close"));
}
