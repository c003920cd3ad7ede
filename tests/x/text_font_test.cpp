// The text tool and the font chooser, checked against the same strings drawn by Xlib.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/keysym.h>
#include <Xm/List.h>
#include <Xm/ToggleB.h>

#include <cstring>

#include "app/commands.h"
#include "canvas/input.h"
#include "canvas/undo.h"
#include "core/message.h"
#include "app/open_save.h"
#include "files_support.h"
#include "fonts/font_dialog.h"
#include "fonts/font_names.h"
#include "tools/palettes.h"
#include "tools/text.h"
#include "tools/tool_table.h"
#include "files/write_drawing.h"

namespace {

// Types through the canvas key handler: '\n' is Return, '\b' BackSpace.
void type(Drawing* d, const char* text)
{
    Display* dpy = app().display;
    for (const char* p = text; *p; p++) {
        KeySym sym = *p == '\n' ? XK_Return : *p == '\b' ? XK_BackSpace : static_cast<KeySym>(*p);
        KeyCode code = XKeysymToKeycode(dpy, sym);
        unsigned state = XkbKeycodeToKeysym(dpy, code, 0, 0) != sym ? ShiftMask : 0;
        XEvent ev{};
        ev.xkey = {KeyPress, 0, False, dpy, XtWindow(d->activeArea), app().root, None, CurrentTime, 0, 0, 0, 0,
                   state, code, True};
        Boolean cont = True;
        canvas_key_eh(d->activeArea, d, &ev, &cont);
    }
    pump();
}

struct Line { int x, y; const char* text; };

// "" when the image, caret hidden, is the blank image with the lines drawn by XDrawString; else the first difference.
std::string text_is(Drawing* d, XFontStruct* font, std::initializer_list<Line> lines)
{
    Display* dpy = app().display;
    text_hide_caret(d);
    Pixmap p = XCreatePixmap(dpy, d->image, d->width, d->height, static_cast<unsigned>(d->depth));
    GC gc = XCreateGC(dpy, p, 0, nullptr);
    XSetForeground(dpy, gc, image_pixel(d, 0, 0));   // no text reaches the corner
    XFillRectangle(dpy, p, gc, 0, 0, d->width, d->height);
    XSetForeground(dpy, gc, foreground_pixel(d));
    XSetFont(dpy, gc, font->fid);
    for (const Line& l : lines)
        XDrawString(dpy, p, gc, l.x, l.y, l.text, static_cast<int>(std::strlen(l.text)));
    XFreeGC(dpy, gc);
    ImagePtr drawn(XGetImage(dpy, p, 0, 0, d->width, d->height, AllPlanes, ZPixmap));
    XFreePixmap(dpy, p);
    return first_difference(image_of(d).get(), drawn.get(), d->width, d->height);
}

void click(Drawing* d, int x, int y) { stroke(d, Button1, {{x, y}}); }
Widget dialog_child(const char* name) { return XtNameToWidget(font_dialog(), name); }

bool select_item(const char* list, const char* item)
{
    XmString s = XmStringCreateLocalized(const_cast<char*>(item));
    Widget w = dialog_child(list);
    int pos = w ? XmListItemPos(w, s) : 0;
    XmStringFree(s);
    if (pos > 0)
        XmListSelectPos(w, pos, True);
    pump();
    return pos > 0;
}

void dismiss_messages()
{
    if (Widget m = message_dialog(0))
        XtUnmanageChild(m);
    pump();
}

// The full name of a loaded font (its FONT property), "" without one.
std::string font_name(XFontStruct* font)
{
    unsigned long nameAtom = 0;
    if (!font || !XGetFontProperty(font, XA_FONT, &nameAtom))
        return "";
    char* fullName = XGetAtomName(app().display, nameAtom);
    std::string out = fullName ? fullName : "";
    XFree(fullName);
    return out;
}

// The item selected in one of the chooser's lists, "" when none is.
std::string selected_item(const char* list)
{
    XmStringTable items = nullptr;
    int count = 0;
    XtVaGetValues(dialog_child(list), XmNselectedItems, &items, XmNselectedItemCount, &count, nullptr);
    if (count < 1)
        return "";
    char* text = static_cast<char*>(
        XmStringUnparse(items[0], nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0, XmOUTPUT_ALL));
    std::string out = text ? text : "";
    XtFree(text);
    return out;
}

// Whether a loaded font's full name says it is bold.
bool is_bold(XFontStruct* font) { return strcasestr(font_name(font).c_str(), "-bold-"); }

}  // namespace

// Text, Return and BackSpace draw what XDrawString draws; undo takes back the text since the click; a line stops at
// 256 characters; saving and leaving the tool take the caret out of the picture.
TEST(TextTool, TypingEditingUndoAndSave)
{
    Drawing* d = make_drawing(90, 70);
    select_tool(d, TOOL_ALPHA);
    XFontStruct* font = text_font(d);
    ASSERT_NE(font, nullptr) << "the text starts in \"fixed\"";
    int lh = font_line_height(font->ascent, font->descent);
    unsigned long blank = image_pixel(d, 0, 0), fg = foreground_pixel(d);
    type(d, "abc");
    EXPECT_EQ(text_is(d, font, {}), "") << "nothing before a click";

    click(d, 5, 20);
    EXPECT_EQ(pixels_are(d, fg, {{7, 20}, {6, 20}}), "") << "the caret and its foot stand at the click";
    EXPECT_FALSE(undo_sensitive(d));
    type(d, "Ab\nc");
    EXPECT_TRUE(undo_sensitive(d));
    EXPECT_EQ(image_pixel(d, 5 + XTextWidth(font, "c", 1) + 2, 20 + lh), fg) << "the caret follows the second line";
    EXPECT_EQ(check_display(d), "") << "the canvas shows the caret, both dots included";
    EXPECT_EQ(text_is(d, font, {{5, 20, "Ab"}, {5, 20 + lh, "c"}}), "");
    EXPECT_EQ(check_display(d), "") << "the canvas shows what was typed";
    type(d, "\b\bX");   // BackSpace erases "c", then goes to the end of "Ab" without joining
    EXPECT_EQ(text_is(d, font, {{5, 20, "AbX"}}), "");
    for (int i = 0; i < 2; i++) {
        cmd_undo(d, nullptr, False);
        EXPECT_EQ(text_is(d, font, {}), "") << "undo " << i;
        EXPECT_TRUE(undo_sensitive(d)) << "the text tool leaves undo as it was";
    }
    type(d, "q");
    const Line q{5 + XTextWidth(font, "AbX", 3), 20, "q"};
    EXPECT_EQ(text_is(d, font, {q}), "") << "typing goes on after AbX";

    click(d, 2, 60);
    type(d, (std::string(300, 'm') + "\b").c_str());
    std::string kept(255, 'm');
    EXPECT_EQ(text_is(d, font, {q, {2, 60, kept.c_str()}}), "") << "256 kept, the BackSpace took one";
    EXPECT_EQ(text_set_font(d, "-nobody-nothing-medium-r-normal--99-0-0-0-c-0-none-0"), 1);
    EXPECT_EQ(text_font(d), font);

    click(d, 40, 10);
    EXPECT_EQ(image_pixel(d, 42, 10), fg);
    filetest::ScratchDir dir;
    EXPECT_EQ(write_drawing(d, dir.path("t.xpm").c_str(), false), 0);
    EXPECT_EQ(image_pixel(d, 42, 10), blank) << "saving takes the caret out";
    type(d, "n");
    int cx = 40 + XTextWidth(font, "n", 1) + 2;
    EXPECT_EQ(image_pixel(d, cx, 10), fg);
    select_tool(d, TOOL_PENCIL);
    EXPECT_EQ(image_pixel(d, cx, 10), blank) << "leaving the tool takes the caret away";
    EXPECT_FALSE(undo_sensitive(d));
    EXPECT_EQ(text_is(d, font, {q, {2, 60, kept.c_str()}, {40, 10, "n"}}), "");
}

// A font picked in the chooser redraws the text being typed and serves drawings opened later; Cancel puts it back.
TEST(FontChooser, PickFontWhileTyping)
{
    Drawing* d = make_drawing(120, 60);
    select_tool(d, TOOL_ALPHA);
    click(d, 4, 30);
    type(d, "Hi");

    run_command(d, CMD_FONTS, nullptr, False);
    pump();
    ASSERT_TRUE(font_dialog() && XtIsManaged(font_dialog()));
    ASSERT_NE(current_font_choice().font, nullptr) << "the text tool's font is chosen at once";
    std::string opened = current_font_choice().name;
    dismiss_messages();
    ASSERT_TRUE(select_item("*FontFoundry", "misc"));
    ASSERT_TRUE(select_item("*FontFamily", "fixed"));
    ASSERT_TRUE(select_item("*FontSize", "13"));
    XmToggleButtonSetState(dialog_child("*Bold"), True, True);
    XmToggleButtonSetState(dialog_child("*Roman"), True, True);
    pump();
    EXPECT_STREQ(current_font_choice().name, "-misc-fixed-bold-r-*-*-13-*-*-*-*-*-*-*");
    XFontStruct* bold = text_font(d);
    ASSERT_NE(bold, nullptr);
    EXPECT_EQ(bold->ascent + bold->descent, 13);
    EXPECT_EQ(current_font_choice().lineHeight, font_line_height(bold->ascent, bold->descent));
    EXPECT_EQ(text_is(d, bold, {{4, 30, "Hi"}}), "") << "the same text, redrawn in the new font";

    EXPECT_TRUE(is_bold(bold)) << "the drawing being typed in takes the chosen font";
    Drawing* fresh = make_drawing(20, 20);
    EXPECT_TRUE(is_bold(text_font(fresh))) << "a drawing opened now types in the chosen font";
    close_drawing(fresh);

    filetest::press(font_dialog(), "Cancel");
    EXPECT_FALSE(XtIsManaged(font_dialog()));
    EXPECT_EQ(current_font_choice().name, opened);
    EXPECT_FALSE(is_bold(text_font(d)));
    EXPECT_EQ(text_is(d, text_font(d), {{4, 30, "Hi"}}), "") << "Cancel redraws the text in the old font";
}

// The chooser opens on the font the text tool types in ("fixed", 13 pixels, medium roman, from the misc foundry),
// chosen in the lists and the toggles and shown in the sample, and opening it changes no drawing's font.
TEST(FontChooser, OpensOnTheTextToolsFont)
{
    Drawing* d = make_drawing(40, 30);
    std::string before = font_name(text_font(d));
    XFontStruct* fixed = XLoadQueryFont(app().display, "fixed");
    std::string fixedName = font_name(fixed);
    if (fixed)
        XFreeFont(app().display, fixed);
    ASSERT_EQ(before, fixedName);
    show_font_dialog(d);
    pump();
    ASSERT_TRUE(font_dialog() && XtIsManaged(font_dialog()));
    EXPECT_EQ(selected_item("*FontFoundry"), "misc");
    EXPECT_EQ(selected_item("*FontFamily"), "fixed");
    EXPECT_EQ(selected_item("*FontSize"), "13");
    for (const char* set : {"*Medium", "*Roman"})
        EXPECT_TRUE(XmToggleButtonGetState(dialog_child(set))) << set;
    for (const char* unset : {"*Bold", "*Italic", "*Oblique"})
        EXPECT_FALSE(XmToggleButtonGetState(dialog_child(unset))) << unset;

    XmFontList shown = nullptr;
    XtVaGetValues(dialog_child("*Sample"), XmNfontList, &shown, nullptr);
    XmFontContext context = nullptr;
    XmStringCharSet charset = nullptr;
    XFontStruct* sampleFont = nullptr;
    ASSERT_TRUE(shown && XmFontListInitFontContext(&context, shown));
    XmFontListGetNextFont(context, &charset, &sampleFont);
    XmFontListFreeFontContext(context);
    XtFree(charset);
    EXPECT_EQ(font_name(sampleFont), before) << "the sample shows another font";
    EXPECT_EQ(font_name(text_font(d)), before) << "opening the chooser changed the text tool's font";
    EXPECT_FALSE(XtIsManaged(message_dialog(0))) << "a font that cannot be loaded was tried";
}

// A listed font that will not load and an empty list give the message and "fixed".
TEST(FontChooser, FailedLoadsAndEmptyList)
{
    Drawing* d = make_drawing(40, 30);
    show_font_dialog(d);
    pump();
    dismiss_messages();
    set_font_names({"-ghost-phantom-medium-r-normal--13-0-0-0-c-0-iso8859-1"});
    pump();
    Widget message = message_dialog(0);
    ASSERT_TRUE(message && XtIsManaged(message)) << "a font that will not load is reported";
    EXPECT_STREQ(current_font_choice().name, "fixed");
    ASSERT_NE(current_font_choice().font, nullptr);
    dismiss_messages();

    set_font_names({});
    pump();
    EXPECT_TRUE(XtIsManaged(message)) << "an empty list is reported";
    int count = -1;
    XtVaGetValues(dialog_child("*FontFoundry"), XmNitemCount, &count, nullptr);
    EXPECT_EQ(count, 0);
    dismiss_messages();
}
