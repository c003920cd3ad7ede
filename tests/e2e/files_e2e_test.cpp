// Files from the outside: an untitled drawing is saved through the file dialog (the typed name gets ".px" and the
// window takes it); a second Ctrl+S writes in place without asking; Quit with unsaved changes asks, and Discard ends
// the program with status 0 and writes nothing.
#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "e2e_support.h"

TEST(FilesE2e, SaveAsSaveInPlaceThenQuitAsks)
{
    E2eScratch s;
    E2eApp app;
    E2eDrawing d = open_untitled(app, 16, 16);
    ASSERT_NE(d.canvas, 0u) << app.stderr_text();
    app.click(d.canvas, e2e_cell(2), e2e_cell(4));   // the default tool is the pencil
    app.key(d.shell, "ctrl+s");
    Window fd = app.wait_window("File Dialog");
    ASSERT_NE(fd, 0u) << "no file yet: Save As";
    e2e_sleep_ms(300);
    // The offered name is selected: typing replaces it. mkdtemp's letters come in both cases.
    std::string typed = s.dir + "/drawn";
    for (size_t i = 0; i < typed.size(); i++) {
        auto lower = static_cast<char>(std::tolower(static_cast<unsigned char>(typed[i])));
        const char* named = lower == '/' ? "slash" : lower == '-' ? "minus" : nullptr;
        app.key(i ? 0 : fd, named ? named : (lower != typed[i] ? "shift+" : "") + std::string(1, lower));
    }
    app.key(0, "Return");
    ASSERT_NE(app.wait_window("drawn.px"), 0u) << "the window takes the file's name";
    std::string target = s.dir + "/drawn.px";
    std::string first = e2e_read_file(target);
    EXPECT_NE(first.find("drawn[]"), std::string::npos) << first.substr(0, 80);

    app.click(d.canvas, e2e_cell(5), e2e_cell(6));
    app.key(d.shell, "ctrl+s");
    e2e_sleep_ms(500);
    EXPECT_EQ(app.wait_window("File Dialog", 300), 0u) << "a writable file is saved without asking";
    std::string second = e2e_read_file(target);
    EXPECT_NE(second, first) << "the stroke reached the file";

    app.click(d.canvas, e2e_cell(9), e2e_cell(9));
    app.key(d.shell, "ctrl+q");
    Window ask = app.wait_window("Close Drawing");
    ASSERT_NE(ask, 0u) << "Quit did not ask about the unsaved drawing";
    e2e_sleep_ms(300);
    XWindowAttributes a{};
    ASSERT_TRUE(XGetWindowAttributes(app.display(), ask, &a));
    app.click(ask, a.width / 2, a.height * 7 / 10);   // Discard, the middle button
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(e2e_read_file(target), second) << "Discard writes nothing";
}
