// The widget-tree browser's value texts: the bytes XtGetValues leaves in a buffer of the resource's size, read by
// the resource's type name.
#include <gtest/gtest.h>

#include <X11/Intrinsic.h>

#include <cstdint>

#include "help/resource_text.h"

namespace {

void noop_cb(Widget, XtPointer, XtPointer) {}

template <typename T>
std::string text_of(const char* type, T value)
{
    return value_text(type, &value, sizeof value);
}

}  // namespace

// Each kind reads the whole value at its own size and sign: a colour's top byte per channel, Booleans of one byte
// or four, negative positions, callback lists counted up to their null entry, strings quoted and escaped (null as
// such), ids in hex.
TEST(ResourceText, TypedValues)
{
    EXPECT_EQ(rgb_text(0xffff, 0x8000, 0x00ff), "#ff8000");
    EXPECT_EQ(rgb_text(0x1234, 0xabcd, 0x0000), "#12ab00");

    EXPECT_EQ(text_of("Boolean", static_cast<Boolean>(True)), "True");
    EXPECT_EQ(text_of("Boolean", static_cast<Boolean>(False)), "False");
    EXPECT_EQ(text_of("Bool", 0x100), "True") << "an int Bool is read whole, not by its first byte";

    EXPECT_EQ(text_of("Position", static_cast<Position>(-3)), "-3");
    EXPECT_EQ(text_of("HorizontalPosition", static_cast<Position>(-300)), "-300");
    EXPECT_EQ(text_of("Dimension", static_cast<Dimension>(65535)), "65535");
    EXPECT_EQ(text_of("Int", -70000), "-70000");
    EXPECT_EQ(text_of("Cardinal", static_cast<Cardinal>(4000000000u)), "4000000000");
    EXPECT_EQ(text_of("Alignment", static_cast<unsigned char>(2)), "2") << "a one-byte enumeration";

    XtCallbackRec two[] = {{noop_cb, nullptr}, {noop_cb, nullptr}, {nullptr, nullptr}};
    XtCallbackRec none[] = {{nullptr, nullptr}};
    EXPECT_EQ(text_of("Callback", static_cast<XtCallbackList>(two)), "2 callbacks");
    EXPECT_EQ(text_of("Callback", static_cast<XtCallbackList>(none)), "0 callbacks");
    EXPECT_EQ(text_of("Callback", static_cast<XtCallbackList>(nullptr)), "0 callbacks");

    EXPECT_EQ(text_of("String", static_cast<const char*>(nullptr)), "(null)");
    EXPECT_EQ(text_of("String", "say \"hi\"\n\t\x01"), "\"say \\\"hi\\\"\\n\\t\\001\"");
    EXPECT_EQ(quoted_text("abcdef", 3), "\"abc\"...");
    EXPECT_EQ(text_of("ValueWcs", L"wide\n"), "\"wide\\n\"");
    EXPECT_EQ(text_of("XmString", static_cast<void*>(nullptr)), "(null)");
    EXPECT_EQ(text_of("Widget", static_cast<void*>(nullptr)), "(null)");
    EXPECT_EQ(text_of("Window", static_cast<unsigned long>(0)), "None");
    EXPECT_EQ(text_of("Pixmap", static_cast<unsigned long>(0x1c00007)), "0x1c00007");
    EXPECT_EQ(value_text("Int", "abc", 3), "(3 bytes)") << "no number has three bytes";
    EXPECT_EQ(value_text("Int", nullptr, 4), "(no value)");
}
