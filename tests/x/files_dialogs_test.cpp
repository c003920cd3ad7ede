// The file dialog's Open / Save / Save As / Save As black-and-white, the New dialog and the confirm-close dialog,
// driven through their callbacks.
#include <gtest/gtest.h>

#include <Xm/Text.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "app/commands.h"
#include "core/message.h"
#include "core/window_place.h"
#include "app/file_dialog.h"
#include "app/new_close.h"
#include "app/open_save.h"
#include "files_support.h"
#include "x_env.h"
#include "files/read_status.h"

using namespace filetest;

namespace {

Widget field(const char* name) { return XtNameToWidget(new_dialog(), (std::string("*") + name).c_str()); }

std::string error_text() { return dialog_message(message_dialog(0)); }

// A colour drawing with some black painted on it, marked modified.
Drawing* painted_drawing(int w = 12, int h = 10)
{
    Drawing* d = make_drawing(w, h);
    XFillRectangle(app().display, d->image, d->foregroundGC, 1, 1, 4, 3);
    d->modified = 1;
    return d;
}

// Asks to close the drawing: whether the confirm-close dialog came up.
bool asks_to_close(Drawing* d)
{
    request_close(d);
    pump();
    return managed(confirm_dialog());
}

// Whether `upper` is stacked above `lower` among the root's children (no window manager reparents them here).
bool stacked_above(Widget upper, Widget lower)
{
    Display* dpy = app().display;
    Window root, parent, *kids = nullptr;
    unsigned n = 0;
    int up = -1, low = -1;
    if (!XQueryTree(dpy, app().root, &root, &parent, &kids, &n))
        return false;
    for (unsigned i = 0; i < n; i++) {   // bottom to top
        up = kids[i] == XtWindow(upper) ? int(i) : up;
        low = kids[i] == XtWindow(lower) ? int(i) : low;
    }
    XFree(kids);
    return up >= 0 && low >= 0 && up > low;
}

}  // namespace

// Save As offers the name with the suffix rule applied ("pic.xpm" bitmap -> "pic.xpm.xbm", "pic" colour -> "pic.px");
// a failed write says "Can't open the file %s." and keeps name and flag; an existing target waits for the overwrite
// question; then the drawing is renamed and saved. Save As black-and-white offers the name unchanged, writes an XBM
// of the black-and-white rendering, and changes neither name nor modified flag.
TEST(FilesSave, SaveAsOffersFailsOverwritesAndRenames)
{
    ScratchDir dir;
    ASSERT_EQ(open_file(dir.file("pic.xpm", xbm_text(pattern_xbm(5, 5))).c_str()), 0);
    pump();
    command(drawing_named(dir.path("pic.xpm")), CMD_SAVE_AS);
    EXPECT_EQ(file_text(), dir.path("pic.xpm.xbm"));
    hide_file_dialog();

    Drawing* d = painted_drawing(9, 7);
    std::string name = d->name = dir.path("pic");
    command(d, CMD_SAVE_AS_BW);
    EXPECT_EQ(file_text(), name);
    press_file_ok(dir.path("bw"));
    XbmBack back = read_xbm(dir.path("bw.xbm"));
    ASSERT_EQ(back.status, BitmapSuccess);
    EXPECT_EQ(back.width, 9u);
    EXPECT_EQ(back.bit(2, 2), 1) << "black paint is a set bit";
    EXPECT_EQ(back.bit(7, 6), 0);
    EXPECT_EQ(d->name, name);
    EXPECT_EQ(d->modified, 1);

    command(d, CMD_SAVE_AS);
    EXPECT_EQ(file_text(), dir.path("pic.px"));
    std::string gone = dir.path("gone/pic.px");
    press_file_ok(gone);
    EXPECT_EQ(dialog_message(warning_dialog()), "Can't open the file " + gone + ".");
    EXPECT_TRUE(managed(file_dialog()));
    EXPECT_EQ(d->name, name);
    EXPECT_EQ(d->modified, 1);
    EXPECT_EQ(d->hasFile, 0);

    std::string target = dir.file("pic.px", "old contents");
    press_file_ok(target);
    ASSERT_TRUE(managed(overwrite_dialog()));
    EXPECT_EQ(dialog_message(overwrite_dialog()), "Overwrite " + target + "?");
    EXPECT_EQ(read_file(target), "old contents");
    EXPECT_TRUE(managed(file_dialog()));
    XtCallCallbacks(overwrite_dialog(), XmNokCallback, nullptr);
    pump();
    EXPECT_EQ(read_file(target).substr(0, 9), "/* XPM */");
    EXPECT_FALSE(managed(file_dialog()));
    EXPECT_EQ(d->name, target);
    EXPECT_EQ(d->hasFile, 1);
    EXPECT_EQ(d->modified, 0);
}

// Save writes straight to a drawing's own writable file, silently; with one it may not write it opens Save As,
// where an existing unwritable target is refused with "You don't have write permission".
TEST(FilesSave, DirectSaveOrSaveAs)
{
    ScratchDir dir;
    Drawing* d = painted_drawing();
    std::string target = dir.file("mine.px", "placeholder");
    d->name = target;
    d->hasFile = 1;
    command(d, CMD_SAVE);
    EXPECT_FALSE(managed(file_dialog()));
    EXPECT_EQ(d->modified, 0);
    EXPECT_EQ(read_file(target).substr(0, 9), "/* XPM */");

    // A file it may not write: for root, who ignores permission bits, on a tmpfs remounted read-only.
    std::string roDir = dir.path("ro"), ro = roDir + "/mine.px";
    mkdir(roDir.c_str(), 0700);
    bool root = geteuid() == 0;
    if (root && mount("tmpfs", roDir.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "root without mount rights: nothing here is unwritable";
    dir.file("ro/mine.px", "old");
    chmod(ro.c_str(), 0400);
    if (root && mount("tmpfs", roDir.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64k") != 0)
        ADD_FAILURE() << "no read-only remount";
    d->name = ro;
    d->modified = 1;
    command(d, CMD_SAVE);
    EXPECT_TRUE(managed(file_dialog())) << "a read-only file: Save As";
    EXPECT_EQ(file_text(), ro);
    press_file_ok();
    EXPECT_EQ(dialog_message(warning_dialog()), "You don't have write permission");
    EXPECT_TRUE(managed(file_dialog()));
    EXPECT_EQ(d->modified, 1);
    EXPECT_EQ(read_file(ro), "old");
    if (root)
        umount2(roDir.c_str(), MNT_DETACH);
    hide_file_dialog();
}

// Open reads the chosen file into a new drawing and hides the dialog; a file that cannot be read is reported and
// the dialog stays up. Each read status maps to its message.
TEST(FilesSave, OpenThroughTheDialogAndReadMessages)
{
    ScratchDir dir;
    Drawing* d = make_drawing();
    int count = open_count();
    command(d, CMD_OPEN);
    ASSERT_TRUE(managed(file_dialog()));
    std::string bad = dir.file("bad.xpm", "not a picture");
    press_file_ok(bad);
    EXPECT_EQ(error_text(), "Can't open the file " + bad + ".");
    EXPECT_TRUE(managed(file_dialog()));
    EXPECT_EQ(open_count(), count);

    std::string good = dir.file("good.xbm", xbm_text(pattern_xbm(5, 5)));
    press_file_ok(good);
    EXPECT_FALSE(managed(file_dialog()));
    EXPECT_EQ(open_count(), count + 1);
    EXPECT_NE(drawing_named(good), nullptr);

    const struct {
        int status;
        std::string text;
    } cases[] = {
        {-4, "Invalid color name in file %s"}, {-3, "Out of memory."}, {-2, "Invalid file f.xpm."},
        {-1, "Can't open the file f.xpm."}, {1, "Unable to allocate color."}, {0, "Unknown Error."},
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
    command(d, CMD_NEW);
    ASSERT_TRUE(managed(new_dialog()));
    EXPECT_EQ(text_of(field("WidthTW")), std::to_string(res().drawAreaWidth));
    set_text(field("WidthTW"), "x12");
    EXPECT_EQ(text_of(field("WidthTW")), std::to_string(res().drawAreaWidth)) << "sizes start with a digit";

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
        if (!managed(new_dialog()))
            show_new_dialog(d);
        pump();
        set_text(field("NameTW"), c.name);
        set_text(field("WidthTW"), c.w);
        set_text(field("HeightTW"), c.h);
        press(new_dialog(), "OK");
        std::string what = std::string(c.name) + " " + c.w + "x" + c.h;
        if (!c.message.empty()) {
            EXPECT_EQ(error_text(), c.message) << what;
        }
        EXPECT_EQ(managed(new_dialog()), c.width == 0) << what;
        EXPECT_EQ(open_count(), count += c.width != 0) << what;
        if (Drawing* made = c.width ? drawing_named(c.name) : nullptr) {
            EXPECT_EQ(made->width, c.width);
            EXPECT_EQ(made->height, c.height);
        }
    }
}

// With eight drawings open, File > New still opens its dialog, and "Too many drawings" comes over it: stacked
// above the dialog, not hidden under it.
TEST(FilesNew, TooManyDrawingsShownAboveTheDialog)
{
    Drawing* d = make_drawing(8, 8);
    while (open_count() < MAX_DRAWINGS)
        make_drawing(8, 8);
    command(d, CMD_NEW);
    ASSERT_TRUE(managed(new_dialog()));
    ASSERT_TRUE(managed(message_dialog(0))) << "no message";
    EXPECT_EQ(error_text(), "Too many drawings");
    EXPECT_TRUE(stacked_above(XtParent(message_dialog(0)), XtParent(new_dialog())))
        << "the message is under the New dialog";
    EXPECT_EQ(open_count(), MAX_DRAWINGS);
}

// The close question names the drawing it is about. A close of another drawing while it is up takes the question
// over: it moves over that drawing and names it, and Discard closes that drawing, not the first.
TEST(FilesClose, QuestionNamesAndFollowsItsDrawing)
{
    Drawing* first = painted_drawing();
    Drawing* second = painted_drawing();
    set_name(first, "/tmp/first.xpm");
    set_name(second, "/tmp/second.xpm");
    XtVaSetValues(first->shell, XmNx, 100, XmNy, 0, nullptr);
    XtVaSetValues(second->shell, XmNx, 700, XmNy, 500, nullptr);
    pump();

    ASSERT_TRUE(asks_to_close(first));
    Widget label = XtNameToWidget(confirm_dialog(), "*confirmLabel");
    ASSERT_TRUE(label);
    EXPECT_EQ(xm_resource_text(label, XmNlabelString), "Save changes to first.xpm before closing?");
    EXPECT_TRUE(centred_over(XtParent(confirm_dialog()), first->shell)) << "not over the first drawing";

    ASSERT_TRUE(asks_to_close(second));
    EXPECT_EQ(xm_resource_text(label, XmNlabelString), "Save changes to second.xpm before closing?");
    EXPECT_TRUE(centred_over(XtParent(confirm_dialog()), second->shell)) << "left over the first drawing";

    press(confirm_dialog(), "Discard");
    EXPECT_FALSE(drawing_is_open(second));
    EXPECT_TRUE(drawing_is_open(first)) << "Discard threw away the drawing asked about first";
}

// Closing asks only for a modified drawing: unmodified closes at once, Cancel keeps the drawing, Discard closes
// it. A Quit cancelled at the first drawing leaves every drawing open and does not resume when another one closes.
// Save there closes the drawing only after a successful write: through Save As when it has no file, where a cancel
// or a failed write leaves it open, or straight to a writable file of its own.
TEST(FilesClose, AskOnlyWhenModifiedAndSaveOnlyAfterWrite)
{
    ScratchDir dir;
    Drawing* d = make_drawing();
    Drawing* other = make_drawing();
    EXPECT_FALSE(asks_to_close(d));
    EXPECT_FALSE(drawing_is_open(d));

    Drawing* e = painted_drawing();
    ASSERT_TRUE(asks_to_close(e));
    press(confirm_dialog(), "Cancel");
    EXPECT_FALSE(managed(confirm_dialog()));
    EXPECT_TRUE(drawing_is_open(e));

    command(e, CMD_QUIT);
    ASSERT_TRUE(managed(confirm_dialog()));
    press(confirm_dialog(), "Cancel");
    EXPECT_TRUE(drawing_is_open(e) && drawing_is_open(other));
    EXPECT_FALSE(asks_to_close(other));
    EXPECT_TRUE(drawing_is_open(e)) << "a cancelled Quit does not resume";

    Drawing* keep = make_drawing();   // the last drawing's close would end the program
    command(e, CMD_CLOSE);
    press(confirm_dialog(), "Discard");
    EXPECT_FALSE(drawing_is_open(e));

    d = painted_drawing();
    ASSERT_TRUE(asks_to_close(d));
    press(confirm_dialog(), "Save");
    ASSERT_TRUE(managed(file_dialog())) << "no file: Save As";
    XtCallCallbacks(file_dialog(), XmNcancelCallback, nullptr);
    pump();
    EXPECT_TRUE(drawing_is_open(d)) << "cancelled Save As keeps the drawing";

    ASSERT_TRUE(asks_to_close(d));
    press(confirm_dialog(), "Save");
    press_file_ok(dir.path("missing/x"));
    EXPECT_TRUE(drawing_is_open(d)) << "failed write keeps the drawing";
    press_file_ok(dir.path("closing"));
    EXPECT_EQ(read_file(dir.path("closing.px")).substr(0, 9), "/* XPM */");
    EXPECT_FALSE(drawing_is_open(d));
    EXPECT_TRUE(drawing_is_open(keep));

    e = painted_drawing();
    e->name = dir.file("own.px", "x");
    e->hasFile = 1;
    ASSERT_TRUE(asks_to_close(e));
    press(confirm_dialog(), "Save");
    EXPECT_FALSE(drawing_is_open(e));
    EXPECT_NE(read_file(dir.path("own.px")), "x");
}

// Quit asks about each modified drawing in turn and ends the program with status 0 once every drawing is closed.
TEST(FilesClose, QuitAsksForEachModifiedThenExits)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            static int quitAsks = 0;
            std::atexit([] { if (quitAsks != 2) _exit(20 + quitAsks); });
            Drawing* a = make_drawing();
            painted_drawing();
            painted_drawing();
            command(a, CMD_QUIT);
            while (quitAsks < 2 && managed(confirm_dialog())) {
                quitAsks++;
                press(confirm_dialog(), "Discard");
            }
            _exit(3);
        },
        ::testing::ExitedWithCode(0), "");
}
