// The colour editor against the 8-bit PseudoColor server: live editing of
// an entry's cell through the wheel, the value scale and the screen grab,
// the black-and-white mapping, Undo, and a drawing closed under it.
#include "x_env.h"

#include <X11/extensions/XTest.h>
#include <Xm/DrawingA.h>
#include <Xm/DrawnB.h>
#include <Xm/Scale.h>
#include <Xm/Xm.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "colour/color_editor.h"
#include "colour/color_list.h"

namespace {

XColor query(Pixel p)
{
    XColor c{};
    c.pixel = p;
    XQueryColor(app().display, app().colormap, &c);
    return c;
}

::testing::AssertionResult has_rgb(Pixel p, unsigned short r, unsigned short g, unsigned short b)
{
    XColor c = query(p);
    if (c.red == r && c.green == g && c.blue == b)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "cell " << p << " holds " << c.red << "," << c.green << "," << c.blue;
}

std::vector<ColorEntry*> entries(Drawing* d)
{
    std::vector<ColorEntry*> out;
    for (ColorEntry* e = color_list_of(d)->anchor->next; e; e = e->next)
        out.push_back(e);
    return out;
}

Widget child(const char* path)
{
    Widget w = XtNameToWidget(color_editor_dialog(), path);
    EXPECT_NE(w, nullptr) << path;
    return w;
}

void activate(Widget w, int clicks = 1)
{
    XmDrawnButtonCallbackStruct cbs{XmCR_ACTIVATE, nullptr, 0, clicks};
    XtCallCallbacks(w, XmNactivateCallback, &cbs);
    pump();
}

void set_value(int value, int reason = XmCR_VALUE_CHANGED)
{
    XmScaleCallbackStruct cbs{reason, nullptr, value};
    XtCallCallbacks(child("*Value"), reason == XmCR_DRAG ? XmNdragCallback : XmNvalueChangedCallback, &cbs);
    pump();
}

void click_wheel(int type, int x, int y)
{
    XEvent ev{};
    ev.xbutton.type = type;
    ev.xbutton.x = x;
    ev.xbutton.y = y;
    XmDrawingAreaCallbackStruct cbs{XmCR_INPUT, &ev, 0};
    XtCallCallbacks(child("*HueSat"), XmNinputCallback, &cbs);
    pump();
}

int scale_value()
{
    int v = -1;
    XmScaleGetValue(child("*Value"), &v);
    return v;
}

unsigned char shadow_of(Widget w)
{
    unsigned char s = 0;
    XtVaGetValues(w, XmNshadowType, &s, nullptr);
    return s;
}

int xErrors = 0;
int count_error(Display*, XErrorEvent*) { return ++xErrors, 0; }

}  // namespace

// EditColor opens the one editor on the selected well's colour, its wheel
// painted in cells of its own round the edited colour; the scale, clicks
// and drags on the wheel write straight into the entry's cell, which every
// pixel of the image shows, and Undo puts the loaded colour back.
TEST(ColorEditor, OpensAndEditsTheCellLive)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    ColorList* list = color_list_of(d);
    ColorEntry* black = list->foregroundEntry;
    XFillRectangle(app().display, d->image, d->foregroundGC, 0, 0, 4, 4);
    XtCallCallbacks(XtNameToWidget(d->colourList, "EditColor"), XmNactivateCallback, nullptr);
    pump();
    ColorEditor* ed = color_editor();
    ASSERT_NE(ed, nullptr);
    ASSERT_TRUE(XtIsManaged(color_editor_dialog()));
    EXPECT_STREQ(XtName(color_editor_dialog()), "ColorPickerDialog");
    for (const char* path : {"main.frame.HSV.HueSatFrame.HueSat", "main.grabButton", "main.sep",
                             "main.MapsToLabel", "main.BWLabel", "main.colorSample", "Undo", "Close"})
        child(path);
    EXPECT_EQ(ed->modeForm, child("main.frame.HSV"));
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
    EXPECT_TRUE(has_rgb(black->pixel, 65535, 65535, 65535)) << "full value at the centre";
    EXPECT_TRUE(has_rgb(s->hueSatCells[0], 65535, 21845, 0)) << "the wheel follows the value";
    EXPECT_TRUE(d->modified);
    click_wheel(ButtonRelease, 150, 80);
    EXPECT_TRUE(has_rgb(black->pixel, 65535, 0, 0)) << "right edge: red";
    EXPECT_EQ(s->markerX, 150);
    send_motion(wheel, 10, 80, Button1Mask);
    EXPECT_TRUE(has_rgb(black->pixel, 0, 65535, 65535)) << "dragging to the left edge: cyan";
    EXPECT_EQ(s->markerX, 150) << "the marker waits for the release";
    send_motion(wheel, 80, 80, 0);
    EXPECT_EQ(s->hue, 180) << "moving without the button changes nothing";
    set_value(128, XmCR_DRAG);
    EXPECT_TRUE(has_rgb(black->pixel, 0, 128 * 257, 128 * 257));
    EXPECT_EQ(image_pixel(d, 1, 1), black->pixel) << "the image keeps its cell; the cell changes";

    XtCallCallbacks(child("Undo"), XmNactivateCallback, nullptr);
    pump();
    EXPECT_TRUE(has_rgb(black->pixel, 0, 0, 0));
    EXPECT_EQ(scale_value(), 0) << "the controls show the restored colour";
    XtCallCallbacks(child("Close"), XmNactivateCallback, nullptr);
    EXPECT_FALSE(XtIsManaged(color_editor_dialog()));
}

// The samples set the mapping of the selected well's entry and redraw its
// swatch; Undo brings the loaded mapping back; choosing another swatch
// while the editor is open reloads it, moving the Undo point.
TEST(ColorEditor, MappingSamplesAndReload)
{
    Drawing* d = make_drawing(16, 16);
    ASSERT_NE(d, nullptr);
    cmd_show_colors(d, nullptr, False);
    pump();
    ColorEntry* white = entries(d)[1];
    ColorEntry* black = entries(d)[2];
    activate(white->button);
    activate(white->button, 2);
    ColorEditor* ed = color_editor();
    ASSERT_NE(ed, nullptr);
    ASSERT_EQ(ed->saved.pixel, white->pixel);
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_IN);

    activate(ed->blackSample);
    EXPECT_EQ(white->mapsTo, app().blackPixel);
    EXPECT_EQ(shadow_of(ed->whiteSample), XmSHADOW_OUT);
    XmString shown = nullptr, black_label = nullptr;
    XtVaGetValues(ed->mapLabel, XmNlabelString, &shown, nullptr);
    XtVaGetValues(ed->blackSample, XmNlabelString, &black_label, nullptr);
    EXPECT_TRUE(XmStringCompare(shown, black_label)) << "BWLabel names the mapping";
    XmStringFree(shown);
    XmStringFree(black_label);
    EXPECT_TRUE(d->modified);
    Dimension width = 0, height = 0;
    XtVaGetValues(white->button, XmNwidth, &width, XmNheight, &height, nullptr);
    EXPECT_EQ(window_pixel(XtWindow(white->button), width - 6, height / 2), app().blackPixel)
        << "the swatch's strip shows the new mapping";
    activate(ed->transparentSample);
    EXPECT_EQ(white->mapsTo, color_list_of(d)->transparentPixel);
    XtCallCallbacks(child("Undo"), XmNactivateCallback, nullptr);
    EXPECT_EQ(white->mapsTo, app().whitePixel);

    activate(black->button);
    EXPECT_EQ(ed->saved.pixel, black->pixel) << "the open editor follows the chosen colour";
    set_value(255);
    XtCallCallbacks(child("Undo"), XmNactivateCallback, nullptr);
    EXPECT_TRUE(has_rgb(black->pixel, 0, 0, 0));
    EXPECT_TRUE(has_rgb(white->pixel, 65535, 65535, 65535));
}

// Closing the drawing being edited closes the editor and lets go of its
// cells: the stale controls write nothing into cells handed to the next
// drawing, and the editor opens again on another drawing.
TEST(ColorEditor, DrawingClosedUnderTheEditor)
{
    Drawing* keep = make_drawing(8, 8);
    Drawing* d = make_drawing(8, 8);
    ASSERT_TRUE(keep && d);
    activate(color_list_of(d)->foregroundButton, 2);
    ColorEditor* ed = color_editor();
    ASSERT_NE(ed, nullptr);
    close_drawing(d);
    pump();
    EXPECT_FALSE(XtIsManaged(color_editor_dialog()));
    EXPECT_EQ(ed->list, nullptr);

    Drawing* next = make_drawing(8, 8);
    ASSERT_NE(next, nullptr);
    std::vector<XColor> before;
    for (ColorEntry* e : entries(next))
        before.push_back(query(e->pixel));
    XSync(app().display, False);
    XErrorHandler old = XSetErrorHandler(count_error);
    set_value(200);
    click_wheel(ButtonRelease, 150, 80);
    XtCallCallbacks(child("Undo"), XmNactivateCallback, nullptr);
    activate(ed->whiteSample);
    XSync(app().display, False);
    XSetErrorHandler(old);
    EXPECT_EQ(xErrors, 0);
    std::vector<ColorEntry*> after = entries(next);
    for (size_t i = 0; i < after.size() && i < before.size(); i++)
        EXPECT_TRUE(has_rgb(after[i]->pixel, before[i].red, before[i].green, before[i].blue)) << "entry " << i;
    EXPECT_NE(color_list_of(next)->foregroundEntry->mapsTo, app().whitePixel);

    activate(color_list_of(keep)->foregroundButton, 2);
    EXPECT_TRUE(XtIsManaged(color_editor_dialog()));
    set_value(255);
    EXPECT_TRUE(has_rgb(color_list_of(keep)->foregroundEntry->pixel, 65535, 65535, 65535));
}

// Grab From Screen puts the exact colour of the pixel clicked anywhere on
// the screen into the edited cell, and the controls follow it.
TEST(ColorEditor, GrabSetsTheEditedColour)
{
    Drawing* d = make_drawing(8, 8);
    ASSERT_NE(d, nullptr);
    activate(color_list_of(d)->foregroundButton, 2);
    Pixel edited = color_list_of(d)->foregroundEntry->pixel;
    Display* dpy = app().display;
    Pixel cell;
    unsigned long planes[1];
    ASSERT_TRUE(XAllocColorCells(dpy, app().colormap, False, planes, 0, &cell, 1));
    XColor c{cell, 0x2000, 0xc000, 0x4000, DoRed | DoGreen | DoBlue, 0};
    XStoreColor(dpy, app().colormap, &c);
    XColor want = query(cell);
    // Under the pointer where it already is, so nothing is moved.
    Window root, inside;
    int px = 0, py = 0, wx, wy;
    unsigned mask;
    XQueryPointer(dpy, app().root, &root, &inside, &px, &py, &wx, &wy, &mask);
    XSetWindowAttributes attrs{};
    attrs.background_pixel = cell;
    attrs.override_redirect = True;
    Window w = XCreateWindow(dpy, app().root, std::max(px - 30, 0), std::max(py - 30, 0), 60, 60, 0,
                             CopyFromParent, InputOutput, CopyFromParent, CWBackPixel | CWOverrideRedirect, &attrs);
    XMapRaised(dpy, w);
    pump();

    // A second client clicks once it sees the pointer grabbed.
    Display* input = XOpenDisplay(DisplayString(dpy));
    ASSERT_NE(input, nullptr);
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
    XtCallCallbacks(child("main.grabButton"), XmNactivateCallback, nullptr);
    alarm(0);
    user.join();
    XCloseDisplay(input);
    pump();
    EXPECT_TRUE(clicked);
    EXPECT_TRUE(has_rgb(edited, want.red, want.green, want.blue));
    EXPECT_EQ(scale_value(), want.green / 257) << "the scale shows the grabbed value";
    XtCallCallbacks(child("Undo"), XmNactivateCallback, nullptr);
    EXPECT_TRUE(has_rgb(edited, 0, 0, 0));
    XDestroyWindow(dpy, w);
    XFreeColors(dpy, app().colormap, &cell, 1, 0);
}
