// The shell pieces on a real server: typed and stand-alone message dialogs, the picture converters and their
// frowning face, template dialogs, cursors, the status line, the version dialog and the Help menu.
#include <gtest/gtest.h>

#include <X11/Xatom.h>
#include <X11/xpm.h>
#include <Xm/Label.h>
#include <Xm/MessageB.h>
#include <Xm/Xm.h>
#include <cstring>
#include <string>
#include <vector>

#include "app/cursors.h"
#include "app/message.h"
#include "app/status.h"
#include "colour/converters.h"
#include "help/help_menu.h"
#include "files_support.h"
#include "x_env.h"

using namespace filetest;

namespace {

std::string label_text(Widget label) { return xm_resource_text(label, XmNlabelString); }

struct Answer {
    int calls = 0;
    int code = -1;
};

void record_cb(Widget, XtPointer clientData, XtPointer callData)
{
    auto* a = static_cast<Answer*>(clientData);
    a->calls++;
    a->code = static_cast<XmAnyCallbackStruct*>(callData)->reason;
}

Pixmap convert_picture(Widget w, const char* value, const char* toType)
{
    XrmValue from{static_cast<unsigned>(strlen(value) + 1), const_cast<char*>(value)};
    Pixmap result = None;
    XrmValue to{sizeof(Pixmap), reinterpret_cast<XPointer>(&result)};
    if (!XtConvertAndStore(w, XtRString, &from, const_cast<char*>(toType), &to))
        return None;
    return result;
}

const char* const smallXbm =
    "#define t_width 8\n#define t_height 2\nstatic unsigned char t_bits[] = {\n   0x01, 0x80 };\n";

unsigned pixmap_size(Pixmap p, unsigned* height, unsigned* depth)
{
    Window root;
    int x, y;
    unsigned w = 0, border;
    XGetGeometry(app().display, p, &root, &x, &y, &w, height, &border, depth);
    return w;
}

}  // namespace

// A second message reuses the same "Error" dialog and shows the second text.
TEST(ShellMessage, SecondMessageReusesDialogWithNewText)
{
    ASSERT_EQ(show_message(nullptr, "first message", 0, nullptr, nullptr), 0);
    pump();
    Widget first = message_dialog(0);
    ASSERT_NE(first, nullptr);
    EXPECT_STREQ(XtName(first), "Error");
    EXPECT_TRUE(XtIsManaged(first));
    ASSERT_EQ(show_message(nullptr, "second message", 0, nullptr, nullptr), 0);
    pump();
    EXPECT_EQ(message_dialog(0), first);
    EXPECT_EQ(dialog_message(first), "second message");
    EXPECT_TRUE(XtIsManaged(XmMessageBoxGetChild(first, XmDIALOG_MESSAGE_LABEL)));
    // Every set has its own dialog, also named "Error"; no set above 5.
    Widget yesNo = message_dialog(2);
    ASSERT_NE(yesNo, nullptr);
    EXPECT_NE(yesNo, first);
    EXPECT_STREQ(XtName(yesNo), "Error");
    EXPECT_EQ(message_dialog(6), nullptr);
    EXPECT_EQ(show_message(nullptr, "nowhere", 6, nullptr, nullptr), -1);
}

// A second show before the first is answered replaces the pending response;
// the answer carries the pressed button's code and the dialog goes away.
TEST(ShellMessage, SecondShowReplacesPendingResponse)
{
    Answer first, second;
    show_message(nullptr, "question one", 4, record_cb, &first);
    show_message(nullptr, "question two", 4, record_cb, &second);
    pump();
    Widget dialog = message_dialog(4);
    press(dialog, "Cancel");
    EXPECT_EQ(first.calls, 0);
    EXPECT_EQ(second.calls, 1);
    EXPECT_EQ(second.code, MSG_CANCEL);
    EXPECT_FALSE(XtIsManaged(dialog));

    Answer third;
    show_message(nullptr, "question three", 4, record_cb, &third);
    pump();
    press(dialog, "Yes");
    EXPECT_EQ(third.code, MSG_YES);
}

// Without a response OK still hides the dialog; a drawing's window is the
// parent the dialog is centred over.
TEST(ShellMessage, OkWithoutResponseHidesAndCentresOverParent)
{
    Drawing* d = make_drawing(32, 32);
    show_message(d->shell, "notice", 0, nullptr, nullptr);
    pump(6);
    Widget dialog = message_dialog(0);
    ASSERT_TRUE(XtIsManaged(dialog));
    Window child;
    int px, py, dx, dy;
    XWindowAttributes pa, da;
    XGetWindowAttributes(app().display, XtWindow(d->shell), &pa);
    XGetWindowAttributes(app().display, XtWindow(XtParent(dialog)), &da);
    XTranslateCoordinates(app().display, XtWindow(d->shell), app().root, 0, 0, &px, &py, &child);
    XTranslateCoordinates(app().display, XtWindow(XtParent(dialog)), app().root, 0, 0, &dx, &dy, &child);
    EXPECT_NEAR(dx + da.width / 2, px + pa.width / 2, 2);
    EXPECT_NEAR(dy + da.height / 2, py + pa.height / 2, 2);
    press(dialog, "OK");
    EXPECT_FALSE(XtIsManaged(dialog));
}

// Two warnings in a row show one "Warning Dialog" window with the second
// text; OK hides it and the next warning brings it back.
TEST(ShellMessage, StandAloneWarningIsReused)
{
    show_warning("first %d", 1);
    show_warning("second %d", 2);
    pump();
    std::vector<Window> found;
    Window root, parent, *children = nullptr;
    unsigned n = 0;
    XQueryTree(app().display, app().root, &root, &parent, &children, &n);
    for (unsigned i = 0; i < n; i++) {
        char* name = nullptr;
        XWindowAttributes a;
        if (XGetWindowAttributes(app().display, children[i], &a) && a.map_state == IsViewable &&
            XFetchName(app().display, children[i], &name) && std::string(name) == "Warning Dialog")
            found.push_back(children[i]);
        XFree(name);
    }
    XFree(children);
    ASSERT_EQ(found.size(), 1u);
    Widget shell = XtWindowToWidget(app().display, found[0]);
    ASSERT_NE(shell, nullptr);
    Widget box = XtNameToWidget(shell, "Warning Dialog");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(dialog_message(box), "second 2");

    auto viewable = [&] {
        XWindowAttributes a;
        XGetWindowAttributes(app().display, found[0], &a);
        return a.map_state == IsViewable;
    };
    XmAnyCallbackStruct cs{};
    cs.reason = XmCR_OK;
    XtCallCallbacks(box, XmNokCallback, &cs);
    pump();
    EXPECT_FALSE(viewable());
    show_warning("third");
    pump();
    EXPECT_TRUE(viewable());
    EXPECT_EQ(dialog_message(box), "third");
}

// A picture name is cut at its first blank or tab before it is looked up;
// missing and "unspecified_pixmap" names give the frowning face.
TEST(ShellConverters, NamesAreCutAndMissingOnesFrown)
{
    Widget w = app().topLevel;
    Pixmap face = builtin_icon_pixmap(w);
    ASSERT_NE(face, None);
    for (const char* name : {"rectfilled.xpm", "rectfilled.xpm  the filled rectangle", "ovalfilled.xpm\tcomment"}) {
        Pixmap p = convert_picture(w, name, XmRPrimForegroundPixmap);
        EXPECT_NE(p, None) << name;
        EXPECT_NE(p, XmUNSPECIFIED_PIXMAP) << name;
        EXPECT_NE(p, face) << name << " was not found";
    }
    for (const char* name : {"no-such-picture.xpm", "unspecified_pixmap", "   "})
        EXPECT_EQ(convert_picture(w, name, XmRPrimForegroundPixmap), face) << "'" << name << "'";
    // The start-up resources found the application defaults' pictures.
    EXPECT_NE(res().rectfilled_labelPixmap, face);
    EXPECT_NE(res().ovalfilled_selectPixmap, face);
    EXPECT_NE(res().rectfilled_labelPixmap, XmUNSPECIFIED_PIXMAP);

    // The face's built-in rows: black outline, white face.
    unsigned height = 0, depth = 0;
    EXPECT_EQ(pixmap_size(face, &height, &depth), 16u);
    EXPECT_EQ(height, 16u);
    EXPECT_EQ(window_pixel(face, 6, 1), app().blackPixel);   // "      ....      "
    EXPECT_EQ(window_pixel(face, 5, 5), app().blackPixel);   // " .XXX.XXXX.XXX. " eye
    EXPECT_EQ(window_pixel(face, 2, 5), app().whitePixel);
    EXPECT_EQ(window_pixel(face, 6, 8), app().blackPixel);   // " .XXXX....XXXX. " frown
    EXPECT_EQ(window_pixel(face, 6, 7), app().whitePixel);
}

// Bitmaps, icons and in-memory XPM data convert, and icons are made from files; bad input gives the
// documented replacement instead of failing.
TEST(ShellConverters, BitmapIconAndBitsConversions)
{
    Widget w = app().topLevel;
    ScratchDir dir;
    std::string xbm = dir.file("t.xbm", smallXbm);
    Pixmap bitmap = convert_picture(w, xbm.c_str(), XtRBitmap);
    ASSERT_NE(bitmap, None);
    unsigned height = 0, depth = 0;
    EXPECT_EQ(pixmap_size(bitmap, &height, &depth), 8u);
    EXPECT_EQ(depth, 1u);
    EXPECT_EQ(convert_picture(w, "no-such-bitmap.xbm", XtRBitmap), None);

    for (const char* name : {"ovalfilled.xpm", "missing-icon.xpm"}) {
        Icon* icon = nullptr;
        XrmValue from{static_cast<unsigned>(strlen(name) + 1), const_cast<char*>(name)};
        XrmValue to{sizeof(Icon*), reinterpret_cast<XPointer>(&icon)};
        ASSERT_TRUE(XtConvertAndStore(w, XtRString, &from, const_cast<char*>("Icon"), &to));
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(icon->width, 16u) << name;
        EXPECT_EQ(icon->pixmap == builtin_icon_pixmap(w), name[0] == 'm') << name;
    }

    static const char* good[] = {"2 1 2 1", "a c black", "b c white", "ab"};
    static const char* bad[] = {"not xpm at all"};
    for (auto [data, ok] : {std::pair{good, true}, std::pair{bad, false}}) {
        Pixmap p = None;
        XrmValue f{sizeof(char**), reinterpret_cast<XPointer>(data)};
        XrmValue t{sizeof(Pixmap), reinterpret_cast<XPointer>(&p)};
        ASSERT_TRUE(XtConvertAndStore(w, "Bits", &f, XtRPixmap, &t));
        EXPECT_EQ(p == XmUNSPECIFIED_PIXMAP, !ok);
    }

    // An icon made from an X bitmap takes the given colours and has no mask; an XPM gives its own size; a
    // missing file gives nothing.
    Icon* icon = make_icon_from_file(w, xbm.c_str(), app().blackPixel, app().whitePixel);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->width, 8u);
    EXPECT_EQ(icon->height, 2u);
    EXPECT_EQ(icon->mask, None);
    EXPECT_EQ(window_pixel(icon->pixmap, 0, 0), app().blackPixel);
    EXPECT_EQ(window_pixel(icon->pixmap, 1, 0), app().whitePixel);
    free_icon(icon);

    Icon* xpm = make_icon_from_file(w, "rectfilled.xpm", app().blackPixel, app().whitePixel);
    ASSERT_NE(xpm, nullptr);
    EXPECT_EQ(xpm->width, 16u);
    free_icon(xpm);
    EXPECT_EQ(make_icon_from_file(w, "no-such-file.xpm", 0, 0), nullptr);
    free_icon(nullptr);
}

static void fill_with_label(Widget form) { XtVaCreateManagedWidget("inside", xmLabelWidgetClass, form, nullptr); }

// A template dialog has its work area form "main" filled by the caller,
// one button per row, and a message label that shows only with a text.
TEST(ShellTemplateDialog, ButtonsWorkAreaAndMessage)
{
    Answer a;
    const DialogButton buttons[] = {{"Apply", record_cb, &a}, {"Dismiss", nullptr, nullptr}, {nullptr, nullptr, nullptr}};
    Widget dialog = template_dialog(app().topLevel, "TestDialog", fill_with_label, nullptr, 0, buttons);
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(XtIsManaged(dialog));
    EXPECT_NE(XtNameToWidget(dialog, "main.inside"), nullptr);
    Widget label = XmMessageBoxGetChild(dialog, XmDIALOG_MESSAGE_LABEL);
    EXPECT_FALSE(XtIsManaged(label));
    set_dialog_message(dialog, "hello");
    EXPECT_TRUE(XtIsManaged(label));
    EXPECT_EQ(dialog_message(dialog), "hello");
    set_dialog_message(dialog, nullptr);
    EXPECT_FALSE(XtIsManaged(label));

    set_default_button(dialog, "Dismiss");
    Widget def = nullptr;
    XtVaGetValues(dialog, XmNdefaultButton, &def, nullptr);
    EXPECT_EQ(def, XtNameToWidget(dialog, "Dismiss"));
    set_default_button(dialog, "NoSuchButton");
    press(dialog, "Apply");
    EXPECT_EQ(a.calls, 1);

    Widget box = message_box(app().topLevel, "TestBox", nullptr, nullptr, 0, buttons);
    ASSERT_NE(box, nullptr);
    EXPECT_NE(XtNameToWidget(box, "Apply"), nullptr);
    EXPECT_NE(XtNameToWidget(box, "main"), nullptr);
}

// The five tool cursors exist and differ; setting one on a drawing whose
// views are not all realised (or on none) is harmless.
TEST(ShellCursors, CursorsDefinedAndSetSafely)
{
    for (int i = 0; i < CURSOR_COUNT; i++) {
        EXPECT_NE(tool_cursor(i), None) << i;
        for (int j = 0; j < i; j++)
            EXPECT_NE(tool_cursor(i), tool_cursor(j));
    }
    EXPECT_EQ(tool_cursor(CURSOR_COUNT), None);
    EXPECT_EQ(tool_cursor(-1), None);
    Drawing* d = make_drawing(16, 16);
    set_cursor(d, CURSOR_BUCKET);
    set_cursor(d, 99);
    set_cursor(nullptr, 0);
    help_cursor_cb(d->shell, True, tool_cursor(CURSOR_TEXT));
    help_cursor_cb(d->mainWindow, False, None);
    help_cursor_cb(app().topLevel, False, None);
    pump();
}

// The status line reads the image size through the resource format; a
// format with the wrong conversions falls back to the built-in one.
TEST(ShellStatus, StatusShowsSizeAndSurvivesBadFormat)
{
    Drawing* d = make_drawing(32, 16);
    EXPECT_EQ(label_text(d->statusLabel), "Width - 32, Height - 16");
    Widget logoLabel = XtNameToWidget(XtParent(d->statusLabel), "orvlogo");
    ASSERT_NE(logoLabel, nullptr);
    Pixmap logo = XmUNSPECIFIED_PIXMAP;
    XtVaGetValues(logoLabel, XmNlabelPixmap, &logo, nullptr);
    unsigned height = 0, depth = 0;
    EXPECT_EQ(pixmap_size(logo, &height, &depth), 85u);
    EXPECT_EQ(height, 31u);

    String saved = res().widthHeightString;
    res().widthHeightString = const_cast<String>("%s by %s");
    update_status(d);
    EXPECT_EQ(label_text(d->statusLabel), "Width - 32, Height - 16");
    res().widthHeightString = const_cast<String>("%dx%d");
    update_status(d);
    EXPECT_EQ(label_text(d->statusLabel), "32x16");
    res().widthHeightString = saved;
}

// The Help cascade is the menu bar's help widget and holds the six items; On Version makes the version dialog
// once, showing "5.1.1", and OK only hides it; On Keys shows the message dialog.
TEST(ShellHelpMenu, HelpCascadeVersionAndKeys)
{
    Drawing* d = make_drawing(16, 16);
    Widget help = nullptr, pulldown = nullptr;
    XtVaGetValues(d->menuBar, XmNmenuHelpWidget, &help, nullptr);
    ASSERT_NE(help, nullptr);
    EXPECT_STREQ(XtName(help), "Help");
    XtVaGetValues(help, XmNsubMenuId, &pulldown, nullptr);
    ASSERT_NE(pulldown, nullptr);
    for (const char* item : {"HelpOnContext", "HelpOnWindow", "HelpOnKeys", "HelpIndex", "HelpOnHelp", "HelpOnVersion"})
        EXPECT_NE(XtNameToWidget(pulldown, item), nullptr) << item;

    EXPECT_EQ(version_dialog(), nullptr);
    press(pulldown, "HelpOnVersion");
    Widget dialog = version_dialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(XtIsManaged(dialog));
    ASSERT_NE(XtNameToWidget(dialog, "main.date"), nullptr);
    EXPECT_EQ(label_text(XtNameToWidget(dialog, "main.date")), "5.1.1");
    press(dialog, "OK");
    EXPECT_FALSE(XtIsManaged(dialog));
    show_version();
    pump();
    EXPECT_EQ(version_dialog(), dialog);
    EXPECT_TRUE(XtIsManaged(dialog));

    press(pulldown, "HelpOnKeys");
    Widget msg = message_dialog(0);
    ASSERT_NE(msg, nullptr);
    EXPECT_TRUE(XtIsManaged(msg));
    EXPECT_NE(dialog_message(msg).find("Ctrl+Q"), std::string::npos) << dialog_message(msg);
}
