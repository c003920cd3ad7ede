// Files from the outside: Save As through the file dialog, Ctrl+S in place, and Quit asking before it throws away
// unsaved changes.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <sstream>
#include <string>

#include "e2e_support.h"

namespace {

std::string file_text(const std::string& path)
{
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// Types a path into the focused text field; mkdtemp's letters come in both cases.
void type_text(E2eApp& app, const std::string& text)
{
    for (char ch : text) {
        const char* named = ch == '/' ? "slash" : ch == '.' ? "period" : ch == '-' ? "minus" : nullptr;
        auto lower = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        app.key(0, named ? named : (lower != ch ? "shift+" : "") + std::string(1, lower));
    }
}

// Clicks the pencil on one pixel of the 16 x 16 drawing, shown at the default zoom of 8 screen pixels a cell.
void paint_cell(E2eApp& app, Window shell, int x, int y)
{
    Window canvas = find_canvas(app.display(), shell, 16 * 8, 16 * 8);
    ASSERT_NE(canvas, 0u) << "no canvas of the drawing's size";
    app.click(canvas, x * 8 + 3, y * 8 + 3);
}

}  // namespace

// An untitled drawing is saved through the file dialog (the typed name gets ".px" and the window takes it); a
// second Ctrl+S writes in place without asking; Quit with unsaved changes asks, and Discard ends the program with
// status 0 and writes nothing.
TEST(FilesE2e, SaveAsSaveInPlaceThenQuitAsks)
{
    E2eScratch s;
    E2eApp app;
    ASSERT_TRUE(app.start({"-width", "16", "-height", "16"}));
    Window w = app.wait_window("Untitled");
    ASSERT_NE(w, 0u) << app.stderr_text();
    e2e_sleep_ms(300);
    paint_cell(app, w, 2, 4);
    app.key(w, "ctrl+s");
    Window fd = app.wait_window("File Dialog");
    ASSERT_NE(fd, 0u) << "no file yet: Save As";
    e2e_sleep_ms(300);
    app.focus(fd);   // the offered name is selected: typing replaces it
    type_text(app, s.dir + "/drawn");
    app.key(0, "Return");
    ASSERT_NE(app.wait_window("drawn.px"), 0u) << "the window takes the file's name";
    std::string target = s.dir + "/drawn.px";
    std::string first = file_text(target);
    EXPECT_NE(first.find("drawn[]"), std::string::npos) << first.substr(0, 80);

    paint_cell(app, w, 5, 6);
    app.key(w, "ctrl+s");
    e2e_sleep_ms(500);
    EXPECT_EQ(app.wait_window("File Dialog", 300), 0u) << "a writable file is saved without asking";
    std::string second = file_text(target);
    EXPECT_NE(second, first) << "the stroke reached the file";

    paint_cell(app, w, 9, 9);
    app.key(w, "ctrl+q");
    Window ask = app.wait_window("Close Drawing");
    ASSERT_NE(ask, 0u) << "Quit did not ask about the unsaved drawing";
    EXPECT_TRUE(app.running());
    e2e_sleep_ms(300);
    XWindowAttributes a{};
    ASSERT_TRUE(XGetWindowAttributes(app.display(), ask, &a));
    app.click(ask, a.width / 2, a.height * 7 / 10);   // Discard, the middle button
    int status = -1;
    ASSERT_TRUE(app.wait_exit(&status));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(file_text(target), second) << "Discard writes nothing";
}
