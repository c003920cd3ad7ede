// Splitting and joining dropped file lists, the drop message's words and the transfer property names: every byte of
// a drop comes from another client and may be anything.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dropin/drop_data.h"

using namespace std::string_literals;
using Strings = std::vector<std::string>;

static Strings split(const std::string& bytes, size_t limit = static_cast<size_t>(-1))
{
    return split_host_files(bytes.data(), bytes.size(), limit);
}

// One string per NUL within the length, host first; an unterminated tail is not a name; the limit bounds the work.
TEST(DropData, SplitAndJoin)
{
    EXPECT_EQ(split("host\0/a.xpm\0/b.xbm\0"s), (Strings{"host", "/a.xpm", "/b.xbm"}));
    EXPECT_EQ(split("host\0"s), (Strings{"host"})) << "only the host: no files";
    EXPECT_EQ(split("host\0/a.xpm\0/trunc"s), (Strings{"host", "/a.xpm"}));
    EXPECT_EQ(split("no nul at all"s), Strings{});
    EXPECT_EQ(split("\0\0"s), (Strings{"", ""}));
    EXPECT_EQ(split("h\0x\0y\0"s.substr(0, 3)), (Strings{"h"})) << "only the first n bytes count";
    EXPECT_EQ(split(std::string(1 << 20, '\0'), 2).size(), 2u);
    EXPECT_EQ(split_host_files(nullptr, 100).size(), 0u);

    const Strings files = {"/tmp/one.xpm", "", "/tmp/three two.xbm"};
    std::string joined = join_host_files("myhost", files);
    size_t length = joined.size();
    EXPECT_EQ(length, 7u + 13 + 1 + 19);
    EXPECT_EQ(joined.c_str()[length], '\0') << "the extra NUL after the list";
    EXPECT_EQ(split(joined), (Strings{"myhost", files[0], "", files[2]}));
    EXPECT_LE(local_host_name().size(), 50u);
}

// 13 bits of state, the flag in bit 31; clamped coordinates do not bleed into each other; sign-extended words.
TEST(DropData, MessageWords)
{
    long words[5];
    pack_drop_words({123456789UL, 300, 17, 0xffffu, true, 31, 0x1234567}, words);
    EXPECT_EQ(words[1], (300L << 16) + 17);
    EXPECT_EQ(static_cast<unsigned long>(words[2]), 0x80001fffUL);
    auto fields = [](const DropWords& w) {
        return std::vector<unsigned long>{w.time, unsigned(w.x), unsigned(w.y), w.state, w.flag, w.type, w.property};
    };
    EXPECT_EQ(fields(unpack_drop_words(words)),
              (std::vector<unsigned long>{123456789UL, 300, 17, 0x1fff, 1, 31, 0x1234567}));
    pack_drop_words({0, -5, 70000, 0, false, 31, 1}, words);
    EXPECT_EQ(fields(unpack_drop_words(words)), (std::vector<unsigned long>{0, 0, 0xffff, 0, 0, 31, 1}));
    long signExtended[5] = {-1, -1, -1, -1, -1};
    EXPECT_EQ(fields(unpack_drop_words(signExtended)),
              (std::vector<unsigned long>{0xffffffffUL, 0xffff, 0xffff, 0x1fff, 1, 0xffffffffUL, 0xffffffffUL}));
}

// A site reads and deletes only the names a source makes; a drop names a list's first file, or its text's line.
TEST(DropData, NamesInADrop)
{
    const char* p = "OXA_DROP_PROTOCOL";
    int record = 0;
    std::string name = transfer_property_name(p, 4194305, &record);
    EXPECT_EQ(name.rfind("OXA_DROP_PROTOCOL_4194305_", 0), 0u) << name;
    EXPECT_TRUE(is_transfer_property_name(p, name.c_str())) << name;
    for (const char* bad : {"OXA_DROP_PROTOCOL", "OXA_DROP_PROTOCOL_12", "OXA_DROP_PROTOCOL_12_", "WM_NAME",
                            "OXA_DROP_PROTOCOL_12_xyz", "OXA_DROP_PROTOCOL_a_1", "OXA_DROP_PROTOCOLX_1_1", ""})
        EXPECT_FALSE(is_transfer_property_name(p, bad)) << bad;

    auto file = [](DropKind k, const std::string& s) { return dropped_file_name(k, s.data(), s.size()); };
    EXPECT_EQ(file(DropKind::HostAndFiles, "host\0/tmp/a.xpm\0/tmp/b.xpm\0"s), "/tmp/a.xpm");
    EXPECT_EQ(file(DropKind::HostAndFiles, "host\0"s), "");
    EXPECT_EQ(file(DropKind::HostAndFiles, "host\0/tmp/unterminated"s), "");
    EXPECT_EQ(file(DropKind::Text, "/tmp/a.xpm\r\n"s), "/tmp/a.xpm");
    EXPECT_EQ(file(DropKind::Text, "/tmp/a.xpm\0junk"s), "/tmp/a.xpm");
    EXPECT_EQ(file(DropKind::Other, "/tmp/a.xpm"s), "");
    std::string tooLong(DROP_NAME_MAX + 1, 'a');
    EXPECT_EQ(file(DropKind::Text, tooLong), "");
    EXPECT_EQ(file(DropKind::HostAndFiles, "h\0"s + tooLong + "\0"s), "");
    EXPECT_EQ(file(DropKind::Text, tooLong.substr(1)), tooLong.substr(1));
}
