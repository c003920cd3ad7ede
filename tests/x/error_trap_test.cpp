// Requests that fail under a trap are recorded, not fatal; a nested trap keeps
// its errors to itself and leaves the enclosing trap's to it.
#include "x_env.h"

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
