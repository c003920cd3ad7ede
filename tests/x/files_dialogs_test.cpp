// The file dialog's Open / Save / Save As / Save As black-and-white, the
// New dialog and the confirm-close dialog, driven through their callbacks.
#include <gtest/gtest.h>

#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <sys/stat.h>

#include "app/commands.h"
#include "app/message.h"
#include "colour/color_list.h"
#include "files/file_dialog.h"
#include "files/new_close.h"
#include "files/open_save.h"
#include "files/suffix_rule.h"
#include "files_support.h"
#include "x_env.h"

using namespace filetest;

namespace {

std::string file_text()
{
    char* s = XmTextGetString(file_dialog_text());
    std::string v = s ? s : "";
    XtFree(s);
    return v;
}

void set_file_text(const std::string& v) { XmTextSetString(file_dialog_text(), const_cast<char*>(v.c_str())); }

// OK of the file dialog, as the dialog itself calls it.
void press_file_ok()
{
    XmFileSelectionBoxCallbackStruct cbs{};
    cbs.reason = XmCR_OK;
    XtCallCallbacks(file_dialog(), XmNokCallback, &cbs);
    pump();
}

bool managed(Widget w) { return w && XtIsManaged(w); }

// Save As from the drawing, with `path` typed into the file dialog and OK pressed.
void save_as_to(Drawing* d, const std::string& path)
{
    save_as(d, nullptr);
    pump();
    set_file_text(path);
    press_file_ok();
}

std::string field_text(const char* name)
{
    Widget f = XtNameToWidget(new_dialog(), (std::string("*") + name).c_str());
    char* s = f ? XmTextFieldGetString(f) : nullptr;
    std::string v = s ? s : "";
    XtFree(s);
    return v;
}

void set_field(const char* name, const char* value)
{
    Widget f = XtNameToWidget(new_dialog(), (std::string("*") + name).c_str());
    ASSERT_NE(f, nullptr) << name;
    XmTextFieldSetString(f, const_cast<char*>(value));
}

std::string error_text() { return dialog_message(message_dialog(0)); }

// A colour drawing with some black painted on it, marked modified.
Drawing* painted_drawing(int w = 12, int h = 10)
{
    Drawing* d = make_drawing(w, h);
    EXPECT_NE(d, nullptr);
    if (d) {
        XFillRectangle(app().display, d->image, d->foregroundGC, 1, 1, 4, 3);
        d->modified = 1;
    }
    return d;
}

bool exists(const std::string& p)
{
    struct stat st {};
    return stat(p.c_str(), &st) == 0;
}

}  // namespace

// Save As offers the name with the suffix rule, writes the file, renames the drawing and marks it saved; the
// identifiers inside the file come from the base name without suffixes.
TEST(FilesSave, SaveAsWritesRenamesAndMarksSaved)
{
    ScratchDir dir;
    Drawing* d = painted_drawing();
    ASSERT_NE(d, nullptr);
    std::string oldName = d->name;
    save_as(d, nullptr);
    pump();
    ASSERT_TRUE(managed(file_dialog()));
    EXPECT_EQ(file_text(), apply_suffix(d->depth, oldName));
    set_file_text(dir.path("a.b"));
    press_file_ok();
    std::string target = dir.path("a.b.px");
    EXPECT_FALSE(managed(file_dialog()));
    ASSERT_TRUE(exists(target));
    EXPECT_EQ(d->name, target);
    EXPECT_EQ(d->hasFile, 1);
    EXPECT_EQ(d->modified, 0);
    char* title = nullptr;
    XtVaGetValues(d->shell, XmNtitle, &title, nullptr);
    EXPECT_STREQ(title, "a.b.px");
    std::string text = read_file(target);
    EXPECT_NE(text.find("* a[]"), std::string::npos) << text.substr(0, 80);
    XpmImage image{};
    ASSERT_EQ(XpmReadFileToXpmImage(const_cast<char*>(target.c_str()), &image, nullptr), XpmSuccess);
    EXPECT_EQ(image.width, 12u);
    XpmFreeXpmImage(&image);
}

// An existing target is not written until the overwrite question is
// answered OK; an answer of OK writes it and marks the drawing saved.
TEST(FilesSave, OverwriteAsksFirst)
{
    ScratchDir dir;
    std::string target = dir.file("old.px", "old contents");
    Drawing* d = painted_drawing();
    save_as_to(d, target);
    ASSERT_TRUE(managed(overwrite_dialog()));
    EXPECT_EQ(dialog_message(overwrite_dialog()), "Overwrite " + target + "?");
    EXPECT_EQ(read_file(target), "old contents");
    EXPECT_TRUE(managed(file_dialog())) << "the file dialog stays up meanwhile";
    XtCallCallbacks(overwrite_dialog(), XmNokCallback, nullptr);
    pump();
    EXPECT_NE(read_file(target), "old contents");
    EXPECT_FALSE(managed(file_dialog()));
    EXPECT_EQ(d->modified, 0);
    EXPECT_EQ(d->hasFile, 1);
    EXPECT_EQ(d->name, target);
}

// A write that cannot reach its target shows "Can't open the file %s.",
// keeps the dialog up and leaves the drawing's name and modified flag.
TEST(FilesSave, FailedWriteWarnsAndKeepsState)
{
    ScratchDir dir;
    Drawing* d = painted_drawing();
    std::string name = d->name;
    std::string target = dir.path("gone/pic.px");
    save_as_to(d, target);
    ASSERT_TRUE(managed(warning_dialog()));
    EXPECT_EQ(dialog_message(warning_dialog()), "Can't open the file " + target + ".");
    EXPECT_TRUE(managed(file_dialog()));
    EXPECT_EQ(d->name, name);
    EXPECT_EQ(d->modified, 1);
    EXPECT_EQ(d->hasFile, 0);
}

// Save writes straight to a drawing's own writable file, silently; a
// drawing without a file gets the Save As dialog instead.
TEST(FilesSave, DirectSaveAndSaveWithoutFile)
{
    ScratchDir dir;
    Drawing* d = painted_drawing();
    save_drawing(d, nullptr);
    pump();
    EXPECT_TRUE(managed(file_dialog())) << "no file yet: Save As";
    hide_file_dialog();

    std::string target = dir.file("mine.px", "placeholder");
    d->name = target;
    d->hasFile = 1;
    d->modified = 1;
    run_command(d, CMD_SAVE, nullptr, False);
    pump();
    EXPECT_FALSE(managed(file_dialog()));
    EXPECT_EQ(d->modified, 0);
    XpmImage image{};
    ASSERT_EQ(XpmReadFileToXpmImage(const_cast<char*>(target.c_str()), &image, nullptr), XpmSuccess);
    XpmFreeXpmImage(&image);
}

// Save As black-and-white offers the name unchanged, writes an XBM of the
// black-and-white rendering, and changes neither name nor modified flag.
TEST(FilesSave, SaveAsBlackAndWhite)
{
    ScratchDir dir;
    Drawing* d = painted_drawing(9, 7);
    std::string name = d->name;
    save_as_bw(d, nullptr);
    pump();
    EXPECT_EQ(file_text(), name);
    set_file_text(dir.path("bw"));
    press_file_ok();
    std::string target = dir.path("bw.xbm");
    XbmBack back = read_xbm(target);
    ASSERT_EQ(back.status, BitmapSuccess);
    EXPECT_EQ(back.width, 9u);
    EXPECT_EQ(back.height, 7u);
    EXPECT_EQ(back.bit(2, 2), 1) << "black paint is a set bit";
    EXPECT_EQ(back.bit(7, 6), 0);
    EXPECT_EQ(d->name, name);
    EXPECT_EQ(d->modified, 1);
}

// Open reads the chosen file into a new drawing and hides the dialog; a
// file that cannot be read is reported and the dialog stays up.
TEST(FilesSave, OpenThroughTheDialog)
{
    ScratchDir dir;
    Drawing* d = make_drawing();
    int count = open_count();
    run_command(d, CMD_OPEN, nullptr, False);
    pump();
    ASSERT_TRUE(managed(file_dialog()));
    EXPECT_EQ(file_text(), d->name);

    std::string bad = dir.file("bad.xpm", "not a picture");
    set_file_text(bad);
    press_file_ok();
    EXPECT_EQ(error_text(), "Can't open the file " + bad + ".");
    EXPECT_TRUE(managed(file_dialog()));
    EXPECT_EQ(open_count(), count);

    std::string good = dir.file("good.xbm", xbm_text(pattern_xbm(5, 5)));
    set_file_text(good);
    press_file_ok();
    EXPECT_FALSE(managed(file_dialog()));
    EXPECT_EQ(open_count(), count + 1);
    EXPECT_NE(drawing_named(good), nullptr);
}

// Each read status maps to its message.
TEST(FilesSave, ReadStatusMessages)
{
    make_drawing();
    struct {
        int status;
        std::string text;
    } cases[] = {
        {-4, "Invalid color name in file %s"},
        {-3, "Out of memory."},
        {-2, "Invalid file f.xpm."},
        {-1, "Can't open the file f.xpm."},
        {1, "Unable to allocate color."},
        {0, "Unknown Error."},
        {7, "Unknown Error."},
    };
    for (const auto& c : cases) {
        report_read_status(nullptr, c.status, "f.xpm");
        pump();
        EXPECT_EQ(error_text(), c.text) << c.status;
    }
}

// The New dialog: 512 x 720 is accepted, one more in either direction is refused with its own message, both too
// large with the combined one; an emptied width gives the default width and an empty name does nothing.
TEST(FilesNew, LimitsAndDefaults)
{
    Drawing* d = make_drawing();
    run_command(d, CMD_NEW, nullptr, False);
    pump();
    ASSERT_TRUE(managed(new_dialog()));
    EXPECT_EQ(field_text("NameTW"), "");
    EXPECT_EQ(field_text("WidthTW"), std::to_string(res().drawAreaWidth));
    EXPECT_EQ(field_text("HeightTW"), std::to_string(res().drawAreaHeight));
    // The size fields refuse an insertion that does not start with a digit, and take three digits.
    set_field("WidthTW", "x12");
    EXPECT_EQ(field_text("WidthTW"), std::to_string(res().drawAreaWidth));
    set_field("WidthTW", "12x");
    EXPECT_EQ(field_text("WidthTW"), "12x") << "only the first character is looked at";
    int maxLength = 0;
    XtVaGetValues(XtNameToWidget(new_dialog(), "*WidthTW"), XmNmaxLength, &maxLength, nullptr);
    EXPECT_EQ(maxLength, 3);

    const struct {
        const char *name, *w, *h;
        std::string message;   // "" where none is expected
        int width, height;     // of the new drawing; 0: none is made
    } cases[] = {
        {"big", "513", "720", "Width too big, Max = 512", 0, 0},
        {"big", "512", "721", "Height too big, Max = 720", 0, 0},
        {"big", "600", "800", "Height and Width too big. \n Max Width = 512\n Max Height = 720 ", 0, 0},
        {"", "10", "10", "", 0, 0},
        {"largest", "512", "720", "", 512, 720},
        {"defaulted", "", "33", "", res().drawAreaWidth, 33},
    };
    int count = open_count();
    for (const auto& c : cases) {
        if (!managed(new_dialog())) {
            show_new_dialog(d);
            pump();
        }
        set_field("NameTW", c.name);
        set_field("WidthTW", c.w);
        set_field("HeightTW", c.h);
        press(new_dialog(), "OK");
        std::string what = std::string(c.name) + " " + c.w + "x" + c.h;
        if (!c.message.empty()) {
            EXPECT_EQ(error_text(), c.message) << what;
        }
        EXPECT_EQ(managed(new_dialog()), c.width == 0) << what;
        Drawing* made = c.width ? drawing_named(c.name) : nullptr;
        EXPECT_EQ(open_count(), count += c.width != 0) << what;
        if (made) {
            EXPECT_EQ(made->width, c.width);
            EXPECT_EQ(made->height, c.height);
        }
    }
}

// Closing asks only for a modified drawing: unmodified closes at once,
// Cancel keeps the drawing, Discard closes it.
TEST(FilesClose, AskOnlyWhenModified)
{
    Drawing* keep = make_drawing();
    Drawing* d = make_drawing();
    int count = open_count();
    d->modified = 0;
    request_close(d);
    pump();
    EXPECT_FALSE(drawing_is_open(d));
    EXPECT_FALSE(managed(confirm_dialog()));
    EXPECT_EQ(open_count(), count - 1);

    Drawing* e = painted_drawing();
    request_close(e);
    pump();
    ASSERT_TRUE(managed(confirm_dialog()));
    EXPECT_TRUE(drawing_is_open(e));
    press(confirm_dialog(), "Cancel");
    EXPECT_FALSE(managed(confirm_dialog()));
    EXPECT_TRUE(drawing_is_open(e));

    run_command(e, CMD_CLOSE, nullptr, False);
    pump();
    ASSERT_TRUE(managed(confirm_dialog()));
    press(confirm_dialog(), "Discard");
    EXPECT_FALSE(drawing_is_open(e));
    EXPECT_TRUE(drawing_is_open(keep));
}

// Save in the confirm dialog closes the drawing only after a successful write: through Save As when it has no file,
// where a cancel or a failed write leaves it open.
TEST(FilesClose, SaveClosesOnlyAfterWrite)
{
    ScratchDir dir;
    Drawing* keep = make_drawing();
    Drawing* d = painted_drawing();
    request_close(d);
    pump();
    press(confirm_dialog(), "Save");
    ASSERT_TRUE(managed(file_dialog())) << "no file: Save As";
    EXPECT_TRUE(drawing_is_open(d));
    XtCallCallbacks(file_dialog(), XmNcancelCallback, nullptr);
    pump();
    EXPECT_TRUE(drawing_is_open(d)) << "cancelled Save As keeps the drawing";

    request_close(d);
    pump();
    press(confirm_dialog(), "Save");
    set_file_text(dir.path("missing/x"));
    press_file_ok();
    EXPECT_TRUE(drawing_is_open(d)) << "failed write keeps the drawing";

    set_file_text(dir.path("closing"));
    press_file_ok();
    EXPECT_TRUE(exists(dir.path("closing.px")));
    EXPECT_FALSE(drawing_is_open(d));
    EXPECT_TRUE(drawing_is_open(keep));

    // A drawing with a writable file of its own is written and closed.
    Drawing* e = painted_drawing();
    std::string own = dir.file("own.px", "x");
    e->name = own;
    e->hasFile = 1;
    request_close(e);
    pump();
    press(confirm_dialog(), "Save");
    EXPECT_FALSE(drawing_is_open(e));
    EXPECT_NE(read_file(own), "x");
}

// Quit asks about each modified drawing; Cancel stops it with the
// drawings still open.
TEST(FilesClose, QuitCancelled)
{
    Drawing* a = painted_drawing();
    Drawing* b = make_drawing();
    run_command(a, CMD_QUIT, nullptr, False);
    pump();
    ASSERT_TRUE(managed(confirm_dialog()));
    press(confirm_dialog(), "Cancel");
    EXPECT_TRUE(drawing_is_open(a));
    EXPECT_TRUE(drawing_is_open(b));
    request_close(b);
    pump();
    EXPECT_TRUE(drawing_is_open(a)) << "a cancelled Quit does not resume";
}

// Quit ends the program with status 0 once every drawing is closed, after
// the modified one is answered.
TEST(FilesClose, QuitExitsWhenAllClosed)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Drawing* a = make_drawing();
            Drawing* b = painted_drawing();
            make_drawing();
            run_command(a, CMD_QUIT, nullptr, False);
            pump();
            if (drawing_is_open(b) && XtIsManaged(confirm_dialog()))
                press(confirm_dialog(), "Discard");
            pump();
            std::exit(3);
        },
        ::testing::ExitedWithCode(0), "");
}
