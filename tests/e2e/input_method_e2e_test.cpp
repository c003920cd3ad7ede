// Typed text reaches a dialog's text field through the input method, which the program opens only when its first
// text widget is made: under a UTF-8 locale and under C, a dead key composes with the next letter.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <clocale>
#include <cstdlib>
#include <string>

#include "e2e_support.h"

namespace {

// A keycode with no symbols, bound to `sym` while the object lives: the test server's keymap has no dead keys.
class SpareKey {
public:
    SpareKey(Display* dpy, KeySym sym) : dpy_(dpy)
    {
        int lo = 0, hi = 0, per = 0;
        XDisplayKeycodes(dpy, &lo, &hi);
        KeySym* map = XGetKeyboardMapping(dpy, static_cast<KeyCode>(lo), hi - lo + 1, &per);
        for (int k = hi; k >= lo && !code_; k--) {
            bool empty = true;
            for (int i = 0; i < per; i++)
                empty = empty && map[(k - lo) * per + i] == NoSymbol;
            if (empty)
                code_ = k;
        }
        XFree(map);
        if (code_)
            bind(sym);
    }
    ~SpareKey()
    {
        if (code_)
            bind(NoSymbol);
    }
    bool bound() const { return code_ != 0; }

private:
    // Also into this connection's own copy of the keymap, which the keys sent look their codes up in.
    void bind(KeySym sym)
    {
        XChangeKeyboardMapping(dpy_, code_, 1, &sym, 1);
        XSync(dpy_, False);
        XMappingEvent changed{};
        changed.type = MappingNotify;
        changed.display = dpy_;
        changed.request = MappingKeyboard;
        changed.first_keycode = code_;
        changed.count = 1;
        XRefreshKeyboardMapping(&changed);
    }

    Display* dpy_;
    int code_ = 0;
};

// The WM_NAME of a window as UTF-8.
std::string title_utf8(Display* dpy, Window w)
{
    XTextProperty prop{};
    std::string title;
    if (!XGetWMName(dpy, w, &prop))
        return title;
    char** list = nullptr;
    int count = 0;
    if (Xutf8TextPropertyToTextList(dpy, &prop, &list, &count) >= Success && count > 0)
        title = list[0];
    if (list)
        XFreeStringList(list);
    XFree(prop.value);
    return title;
}

}  // namespace

TEST(InputMethodE2e, DeadKeyComposesInTheNewDialogsNameField)
{
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr) << "no C.UTF-8 locale";
    for (const char* locale : {"C.UTF-8", "C"}) {
        SCOPED_TRACE(locale);
        setenv("LC_ALL", locale, 1);
        E2eApp app;
        SpareKey deadAcute(app.display(), XK_dead_acute);
        ASSERT_TRUE(deadAcute.bound());
        ASSERT_TRUE(app.start({}));
        Window w = app.wait_window("Untitled");
        ASSERT_NE(w, 0u);
        app.key(w, "ctrl+n");
        Window dialog = app.wait_window("New Drawing", 5000);
        ASSERT_NE(dialog, 0u);
        app.type(dialog, "ab");
        app.keys(0, {"dead_acute", "e", "Return"});
        // The drawing made is named by the field: "ab" and e acute, not "ab" and a lone accent before "e".
        std::string named;
        for (int i = 0; i < 50 && named.empty(); i++, e2e_sleep_ms(100))
            for (const E2eWindow& win : app.windows())
                if (title_utf8(app.display(), win.id).rfind("ab", 0) == 0)
                    named = title_utf8(app.display(), win.id);
        EXPECT_EQ(named, "ab\xc3\xa9");
    }
    unsetenv("LC_ALL");
}
