// Start-up's keyboard map questions, answered from one read of the whole
// map, get what the server answers, key by key and for ranges.
#include "canvas_support.h"   // first: gtest before Xlib's macros

#include <vector>

#include "app/startup_keymap.h"

namespace {

std::vector<KeySym> keysyms_of(Display* dpy, int first, int count, int* per)
{
    *per = 0;
    KeySym* k = XGetKeyboardMapping(dpy, static_cast<KeyCode>(first), count, per);
    std::vector<KeySym> v;
    if (k) {
        v.assign(k, k + count * *per);
        XFree(k);
    }
    return v;
}

}  // namespace

TEST(StartupKeymap, AnswersAsTheServerDoes)
{
    Display* dpy = app().display;
    int minCode = 0, maxCode = 0;
    XDisplayKeycodes(dpy, &minCode, &maxCode);
    struct Ask {
        int first, count;
    };
    std::vector<Ask> asks = {{minCode, maxCode - minCode + 1}, {minCode + 3, 5}, {maxCode, 1}};
    for (int code = minCode; code <= maxCode; code++)
        asks.push_back({code, 1});
    unsigned long before = NextRequest(dpy);
    std::vector<std::vector<KeySym>> fromCopy;
    std::vector<int> perFromCopy;
    answer_keymap_from_copy(true);
    for (const Ask& a : asks) {
        int per = 0;
        fromCopy.push_back(keysyms_of(dpy, a.first, a.count, &per));
        perFromCopy.push_back(per);
    }
    answer_keymap_from_copy(false);
    EXPECT_EQ(NextRequest(dpy) - before, 1u) << "one read of the whole map";
    for (size_t i = 0; i < asks.size(); i++) {
        int per = 0;
        std::vector<KeySym> server = keysyms_of(dpy, asks[i].first, asks[i].count, &per);
        ASSERT_FALSE(server.empty());
        EXPECT_EQ(perFromCopy[i], per) << asks[i].first << "+" << asks[i].count;
        EXPECT_EQ(fromCopy[i], server) << asks[i].first << "+" << asks[i].count;
    }
}
