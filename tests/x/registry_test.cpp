// The drawing registry: slot choice and reuse, the eight-drawing limit, names of files from the command line.
#include "x_env.h"
#include "files_support.h"

#include <Xm/Xm.h>

#include "app/startup.h"
#include "core/message.h"

#include <string>

// Closing drawing 3 of 5 hands its record and shell to the next drawing; a ninth drawing is refused with the
// message and nothing is created.
TEST(Registry, ClosedSlotIsReusedAndANinthRefused)
{
    Drawing* d[5];
    for (auto& p : d)
        ASSERT_NE(p = make_drawing(16, 16), nullptr);
    Widget shell3 = d[2]->shell;
    close_drawing(d[2]);
    pump();
    EXPECT_EQ(registry().openCount, 4);
    EXPECT_FALSE(drawing_is_open(d[2]));
    Drawing* again = make_drawing(16, 16);
    EXPECT_EQ(again, d[2]) << "the record of slot 3 is reused";
    EXPECT_EQ(again->shell, shell3) << "and so is its shell";
    char* title = nullptr;
    XtVaGetValues(again->shell, XmNtitle, &title, nullptr);
    EXPECT_STREQ(title, "Untitled");
    EXPECT_EQ(registry().nextSlot, 5) << "the next new drawing takes the first empty slot";

    while (registry().openCount < MAX_DRAWINGS)
        ASSERT_NE(make_drawing(8, 8), nullptr);
    EXPECT_EQ(make_drawing(8, 8, true), nullptr);
    EXPECT_EQ(open_file("/nonexistent/file.xpm"), OPEN_TOO_MANY);
    EXPECT_EQ(registry().openCount, MAX_DRAWINGS);
    Widget dialog = message_dialog(0);
    EXPECT_TRUE(dialog && XtIsManaged(dialog));
    EXPECT_EQ(filetest::dialog_message(dialog), "Too many drawings");
}

// Files named on the command line are named through the untitled format:
// "%s" takes the file name, a format wanting a number falls back to "Untitled".
TEST(Registry, CommandLineFilesNamedThroughUntitledFormat)
{
    filetest::ScratchDir dir;
    std::string path = dir.file("dot.xbm", filetest::xbm_text(filetest::pattern_xbm(2, 2)));
    String saved = app().res.untitledFormatString;
    const std::pair<const char*, std::string> cases[] = {
        {"Untitled", "Untitled"}, {"%s", path}, {"Pic %d", "Untitled"}, {"%s (%s)", "Untitled"}};
    for (const auto& [format, name] : cases) {
        app().res.untitledFormatString = const_cast<char*>(format);
        char arg0[] = "pictrel";
        std::string arg1 = path;
        char* argv[] = {arg0, arg1.data(), nullptr};
        open_start_files(2, argv);
        pump();
        ASSERT_EQ(registry().openCount, 1) << format;
        Drawing* d = filetest::drawing_named(name);
        ASSERT_NE(d, nullptr) << format;
        EXPECT_EQ(d->depth, 1);
        close_drawing(d);
    }
    app().res.untitledFormatString = saved;
}
