// The shell pieces on a real server: typed message dialogs, the picture converters and their frowning face,
// cursors, the status line, the version dialog and the Help menu.
#include <gtest/gtest.h>

#include <X11/xpm.h>
#include <Xm/MessageB.h>
#include <Xm/Text.h>
#include <cstring>
#include <string>

#include "app/cursors.h"
#include "app/status.h"
#include "colour/converters.h"
#include "core/message.h"
#include "files_support.h"
#include "help/help_menu.h"
#include "help/help_window.h"
#include "tools/shape_state.h"
#include "x_env.h"

using namespace filetest;

namespace {

std::string label_text(Widget label) { return xm_resource_text(label, XmNlabelString); }

// A resource conversion through the toolkit; T{} when it fails.
template <class T>
T convert(Widget w, const char* fromType, const void* value, unsigned size, const char* toType)
{
    T result{};
    XrmValue from{size, static_cast<XPointer>(const_cast<void*>(value))};
    XrmValue to{sizeof(T), reinterpret_cast<XPointer>(&result)};
    return XtConvertAndStore(w, fromType, &from, const_cast<char*>(toType), &to) ? result : T{};
}

Pixmap convert_picture(Widget w, const char* name, const char* toType)
{
    return convert<Pixmap>(w, XtRString, name, static_cast<unsigned>(strlen(name) + 1), toType);
}

unsigned pixmap_width(Pixmap p, unsigned* depth)
{
    Window root;
    int x, y;
    unsigned w = 0, h, border;
    XGetGeometry(app().display, p, &root, &x, &y, &w, &h, &border, depth);
    return w;
}

}  // namespace

// A drawing's message appears centred over its window; a second message reuses the same "Error" dialog with the
// second text, and OK without a response hides it.
TEST(ShellMessage, SecondMessageReusesDialogWithNewText)
{
    Drawing* d = make_drawing(32, 32);
    ASSERT_EQ(show_message(d->shell, "first message", 0, nullptr, nullptr), 0);
    pump(6);
    Widget first = message_dialog(0);
    ASSERT_NE(first, nullptr);
    EXPECT_STREQ(XtName(first), "Error");
    ASSERT_TRUE(XtIsManaged(first));
    EXPECT_TRUE(centred_over(XtParent(first), d->shell));

    ASSERT_EQ(show_message(nullptr, "second message", 0, nullptr, nullptr), 0);
    pump();
    EXPECT_EQ(message_dialog(0), first);
    EXPECT_EQ(dialog_message(first), "second message");
    EXPECT_TRUE(XtIsManaged(XmMessageBoxGetChild(first, XmDIALOG_MESSAGE_LABEL)));
    press(first, "OK");
    EXPECT_FALSE(XtIsManaged(first));
}

// A picture name is cut at its first blank or tab before it is looked up; missing and "unspecified_pixmap" names
// give the built-in frowning face, and the filled shapes' resources find the application defaults' pictures.
TEST(ShellConverters, NamesAreCutAndMissingOnesFrown)
{
    Widget w = app().topLevel;
    Pixmap face = builtin_icon_pixmap(w);
    ASSERT_NE(face, None);
    for (const char* name : {"rectfilled.xpm", "rectfilled.xpm  the filled rectangle", "ovalfilled.xpm\tcomment"}) {
        Pixmap p = convert_picture(w, name, XmRPrimForegroundPixmap);
        EXPECT_TRUE(p != None && p != XmUNSPECIFIED_PIXMAP && p != face) << name << " was not found";
    }
    for (const char* name : {"no-such-picture.xpm", "unspecified_pixmap", "   "})
        EXPECT_EQ(convert_picture(w, name, XmRPrimForegroundPixmap), face) << "'" << name << "'";
    read_filled_picture_resources();
    EXPECT_NE(res().rectfilled_labelPixmap, face);
    EXPECT_NE(res().rectfilled_labelPixmap, XmUNSPECIFIED_PIXMAP);

    unsigned depth = 0;
    EXPECT_EQ(pixmap_width(face, &depth), 16u);
    EXPECT_EQ(window_pixel(face, 5, 5), app().blackPixel);   // " .XXX.XXXX.XXX. " eye
    EXPECT_EQ(window_pixel(face, 2, 5), app().whitePixel);
    EXPECT_EQ(window_pixel(face, 6, 8), app().blackPixel);   // " .XXXX....XXXX. " frown

    // Bitmaps, icons and in-memory XPM data convert too; bad input gives the replacement instead of failing. An
    // icon made from an X bitmap takes the given colours and has no mask; a missing file gives none.
    ScratchDir dir;
    std::string xbm = dir.file("t.xbm", "#define t_width 8\n#define t_height 2\n"
                                        "static char t_bits[] = {\n0x01, 0x80};\n");
    EXPECT_EQ(pixmap_width(convert_picture(w, xbm.c_str(), XtRBitmap), &depth), 8u);
    EXPECT_EQ(depth, 1u);
    EXPECT_EQ(convert_picture(w, "no-such-bitmap.xbm", XtRBitmap), None);

    for (const char* name : {"ovalfilled.xpm", "missing-icon.xpm"}) {
        Icon* icon = convert<Icon*>(w, XtRString, name, static_cast<unsigned>(strlen(name) + 1), "Icon");
        ASSERT_NE(icon, nullptr) << name;
        EXPECT_EQ(icon->pixmap == builtin_icon_pixmap(w), name[0] == 'm') << name;
    }
    static const char* good[] = {"2 1 2 1", "a c black", "b c white", "ab"};
    static const char* bad[] = {"not xpm at all"};
    Pixmap fromGood = convert<Pixmap>(w, "Bits", good, sizeof(char**), XtRPixmap);
    EXPECT_TRUE(fromGood != None && fromGood != XmUNSPECIFIED_PIXMAP);
    EXPECT_EQ(convert<Pixmap>(w, "Bits", bad, sizeof(char**), XtRPixmap), XmUNSPECIFIED_PIXMAP);

    Icon* icon = make_icon_from_file(w, xbm.c_str(), app().blackPixel, app().whitePixel);
    ASSERT_NE(icon, nullptr);
    EXPECT_TRUE(icon->width == 8 && icon->height == 2 && icon->mask == None);
    EXPECT_EQ(window_pixel(icon->pixmap, 0, 0), app().blackPixel);
    EXPECT_EQ(window_pixel(icon->pixmap, 1, 0), app().whitePixel);
    free_icon(icon);
    EXPECT_EQ(make_icon_from_file(w, "no-such-file.xpm", 0, 0), nullptr);
}

// The tool cursors exist and differ; setting one on a drawing whose views are not all realised, or one out of
// range, is harmless.
TEST(ShellCursors, CursorsDefinedAndSetSafely)
{
    for (int i = 0; i < CURSOR_COUNT; i++)
        for (int j = 0; j <= i; j++)
            EXPECT_TRUE(tool_cursor(i) != None && (i == j || tool_cursor(i) != tool_cursor(j))) << i << " " << j;
    EXPECT_EQ(tool_cursor(CURSOR_COUNT), None);
    EXPECT_EQ(tool_cursor(-1), None);
    Drawing* d = make_drawing(16, 16);
    set_cursor(d, CURSOR_BUCKET);
    set_cursor(d, 99);
    set_cursor(nullptr, 0);
    pump();
}

// The status line's format is a resource; one with the wrong conversions falls back to the built-in one.
TEST(ShellStatus, StatusFollowsTheFormatAndSurvivesABadOne)
{
    Drawing* d = make_drawing(32, 16);
    String saved = res().widthHeightString;
    res().widthHeightString = const_cast<String>("%dx%d");
    update_status(d);
    EXPECT_EQ(label_text(d->statusLabel), "32x16");
    res().widthHeightString = const_cast<String>("%s by %s");
    update_status(d);
    EXPECT_EQ(label_text(d->statusLabel), "Width - 32, Height - 16");
    res().widthHeightString = saved;
}

// Help > On Version makes the version dialog once, showing "5.1.1", and OK only hides it; On Keys shows the keys
// in the help window.
TEST(ShellHelpMenu, HelpCascadeVersionAndKeys)
{
    Drawing* d = make_drawing(16, 16);
    Widget help = nullptr, pulldown = nullptr;
    XtVaGetValues(d->menuBar, XmNmenuHelpWidget, &help, nullptr);
    ASSERT_NE(help, nullptr);
    XtVaGetValues(help, XmNsubMenuId, &pulldown, nullptr);
    ASSERT_NE(pulldown, nullptr);
    EXPECT_EQ(version_dialog(), nullptr);
    press(pulldown, "HelpOnVersion");
    Widget dialog = version_dialog();
    ASSERT_TRUE(dialog && XtIsManaged(dialog));
    EXPECT_EQ(label_text(XtNameToWidget(dialog, "main.date")), "5.1.1");
    press(dialog, "OK");
    EXPECT_FALSE(XtIsManaged(dialog));
    show_version();
    EXPECT_EQ(version_dialog(), dialog);

    press(pulldown, "HelpOnKeys");
    Widget helpWindow = help_window_dialog();
    ASSERT_TRUE(helpWindow && XtIsManaged(helpWindow));
    char* keys = XmTextGetString(XtNameToWidget(helpWindow, "*helpText"));
    EXPECT_NE(std::string(keys).find("Ctrl+Q"), std::string::npos) << keys;
    XtFree(keys);
}
