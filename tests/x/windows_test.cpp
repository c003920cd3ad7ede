// The windows that belong to a drawing, in process: their titles name the drawing and what they show, and every
// dialog comes up wholly on the screen, even for a drawing in the screen's corner.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include "app/commands.h"
#include "app/menus.h"
#include "colour/color_editor.h"
#include "colour/color_list.h"
#include "core/window_place.h"
#include "app/new_close.h"
#include "files_support.h"
#include "fonts/font_dialog.h"

using filetest::xm_resource_text;

namespace {

std::string title_of(Widget dialog) { return xm_resource_text(dialog, XmNdialogTitle); }

std::string describe(const WindowBox& b)
{
    return std::to_string(b.width) + "x" + std::to_string(b.height) + "+" + std::to_string(b.x) + "+" +
           std::to_string(b.y);
}

}  // namespace

// The actual-size view, the black-and-white view and the colour list are titled with the drawing's name as its
// window shows it, then what they are; a new name (Save As) reaches them at once.
TEST(DrawingDialogs, TitledWithTheDrawingAndWhatTheyAre)
{
    Drawing* d = make_drawing(24, 20);
    set_name(d, "/tmp/some/pic.xpm");
    run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True);
    run_command(d, CMD_SHOW_BW_VIEW, nullptr, True);
    cmd_show_colors(d, nullptr, False);
    pump();
    EXPECT_EQ(title_of(d->smallViewDialog), "pic.xpm - Actual Size");
    EXPECT_EQ(title_of(d->bwDialog), "pic.xpm - Black and White");
    EXPECT_EQ(title_of(d->colourList), "pic.xpm - Colors");

    set_name(d, "/tmp/other.px");
    pump();
    EXPECT_EQ(title_of(d->smallViewDialog), "other.px - Actual Size");
    EXPECT_EQ(title_of(d->bwDialog), "other.px - Black and White");
    EXPECT_EQ(title_of(d->colourList), "other.px - Colors");
}

// With the drawing window in the screen's bottom-right corner, every dialog it opens (its views and colours, the
// colour editor, New, Fonts and the close question) comes up wholly on the screen.
TEST(DrawingDialogs, WhollyOnTheScreen)
{
    Drawing* keep = make_drawing(8, 8);   // closing the other must not end the test
    Drawing* d = make_drawing(32, 32);
    (void)keep;
    int sw = WidthOfScreen(XtScreen(d->shell)), sh = HeightOfScreen(XtScreen(d->shell));
    WindowBox box;
    ASSERT_TRUE(shown_box(d->shell, &box));
    move_shell(d->shell, {sw - box.width, sh - box.height});
    pump();

    struct Step {
        const char* what;
        bool modal;   // taken down again: it would keep the next one from its input
        std::function<Widget()> open;
    };
    const Step steps[] = {
        {"actual-size view", false, [&] { run_command(d, CMD_SHOW_SMALL_VIEW, nullptr, True); return d->smallViewDialog; }},
        {"black-and-white view", false, [&] { run_command(d, CMD_SHOW_BW_VIEW, nullptr, True); return d->bwDialog; }},
        {"colour list", false, [&] { cmd_show_colors(d, nullptr, False); return d->colourList; }},
        {"colour editor", false, [&] { filetest::press(d->colourList, "EditColor"); return color_editor_dialog(); }},
        {"New", true, [&] { show_new_dialog(d); return new_dialog(); }},
        {"Fonts", true, [&] { show_font_dialog(d); return font_dialog(); }},
        {"close question", true, [&] { d->modified = 1; request_close(d); return confirm_dialog(); }},
    };
    for (const Step& s : steps) {
        Widget dialog = s.open();
        pump();
        ASSERT_TRUE(dialog && XtIsManaged(dialog)) << s.what;
        WindowBox b;
        ASSERT_TRUE(shown_box(XtParent(dialog), &b)) << s.what;
        EXPECT_TRUE(b.x >= 0 && b.y >= 0 && b.x + b.width <= sw && b.y + b.height <= sh)
            << s.what << " at " << describe(b);
        if (s.modal)
            XtUnmanageChild(dialog);
        pump();
    }
}
