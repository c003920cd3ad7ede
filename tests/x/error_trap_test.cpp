// Requests that fail under a trap are recorded, not fatal; a nested trap keeps
// its errors to itself and leaves the enclosing trap's to it; a reporting trap
// says what failed.
#include "x_env.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "core/app_state.h"
#include "core/error_trap.h"

TEST(ErrorTrap, RecordsNestsAndSeesVanishedPixmaps)
{
    Display* dpy = app().display;
    Pixmap p = XCreatePixmap(dpy, app().root, 5, 3, 8);
    unsigned w, h, depth;
    ASSERT_TRUE(pixmap_geometry(dpy, p, &w, &h, &depth));
    EXPECT_EQ(w * 100 + h * 10 + depth, 538u);
    XFreePixmap(dpy, p);
    EXPECT_FALSE(pixmap_geometry(dpy, p, &w, &h, &depth)) << "a freed pixmap";

    ErrorTrap outer(dpy);
    XFreePixmap(dpy, p);   // BadPixmap, recorded by the outer trap
    {
        ErrorTrap inner(dpy);
        EXPECT_EQ(inner.error(), 0) << "the outer trap's error is not the inner one's";
        XFreeColormap(dpy, p);   // BadColor
        EXPECT_EQ(inner.error(), BadColor);
    }
    EXPECT_EQ(outer.error(), BadPixmap);
}

namespace {

// What `run` writes on standard error.
template <typename F>
std::string stderr_of(F run)
{
    std::fflush(stderr);
    int saved = dup(2);
    FILE* capture = std::tmpfile();
    dup2(fileno(capture), 2);
    run();
    std::fflush(stderr);
    dup2(saved, 2);
    close(saved);
    std::string text;
    std::rewind(capture);
    for (int c; (c = std::fgetc(capture)) != EOF;)
        text += static_cast<char>(c);
    std::fclose(capture);
    return text;
}

size_t count_of(const std::string& text, const std::string& what)
{
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        n++;
    return n;
}

}  // namespace

// A reporting trap prints each error with its request, but not again while the same error repeats (a drop site's
// window that went away fails every request of the exchange); a silent trap prints nothing. Both record.
TEST(ErrorTrap, ReportsEachErrorOnceInARow)
{
    Display* dpy = app().display;
    Pixmap p = XCreatePixmap(dpy, app().root, 1, 1, 8);
    XFreePixmap(dpy, p);
    int recorded = 0;
    std::string reported = stderr_of([&] {
        ErrorTrap trap(dpy, ErrorTrap::Report::ReportOnce);
        XFreePixmap(dpy, p);
        XFreePixmap(dpy, p);
        XFreeColormap(dpy, p);
        XFreePixmap(dpy, p);
        recorded = trap.error();
    });
    EXPECT_EQ(recorded, BadPixmap);
    EXPECT_EQ(count_of(reported, "*** Error: "), 3u) << reported;
    EXPECT_EQ(count_of(reported, "*** Error: BadPixmap"), 2u) << reported;
    EXPECT_EQ(count_of(reported, "    Request Major Code 54  X_FreePixmap\n"), 2u) << reported;
    EXPECT_EQ(count_of(reported, "    Request Major Code 79  X_FreeColormap\n"), 1u) << reported;

    std::string silent = stderr_of([&] {
        ErrorTrap trap(dpy);
        XFreePixmap(dpy, p);
        recorded = trap.error();
    });
    EXPECT_EQ(recorded, BadPixmap);
    EXPECT_EQ(silent, "");
}
