// Splitting and joining dropped file lists, the drop message's words and
// the transfer property names: every byte of a drop comes from another
// client and may be anything.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "dropin/drop_data.h"

namespace {

std::vector<std::string> split(const std::string& bytes, size_t limit = static_cast<size_t>(-1))
{
    HostFiles list = split_host_files(bytes.data(), bytes.size(), limit);
    std::vector<std::string> out(list.names, list.names + list.count);
    free_host_files(&list);
    EXPECT_EQ(list.names, nullptr);
    EXPECT_EQ(list.count, 0);
    return out;
}

using Strings = std::vector<std::string>;

}  // namespace

// One string per NUL within the length: host first, empty names kept,
// an unterminated tail is not a name, and the limit bounds the work.
TEST(DropData, SplitHostFiles)
{
    using namespace std::string_literals;
    EXPECT_EQ(split("host\0/a.xpm\0/b.xbm\0"s), (Strings{"host", "/a.xpm", "/b.xbm"}));
    EXPECT_EQ(split("host\0"s), (Strings{"host"})) << "only the host: no files";
    EXPECT_EQ(split("host\0/a.xpm\0/trunc"s), (Strings{"host", "/a.xpm"}));
    EXPECT_EQ(split("no nul at all"s), Strings{});
    EXPECT_EQ(split(""s), Strings{});
    EXPECT_EQ(split("\0\0\0"s), (Strings{"", "", ""}));
    EXPECT_EQ(split("h\0a\0b\0c\0"s, 2), (Strings{"h", "a"}));
    HostFiles none = split_host_files(nullptr, 100);
    EXPECT_EQ(none.count, 0);
    free_host_files(&none);
    free_host_files(nullptr);

    // Only the first n bytes count, even when more NULs follow.
    const char buffer[] = "h\0x\0y\0";
    EXPECT_EQ(split(std::string(buffer, 3)), (Strings{"h"}));

    // A hostile megabyte of NULs still splits, one empty string each.
    std::string nuls(1 << 20, '\0');
    EXPECT_EQ(split(nuls, 2).size(), 2u);
}

// What the writer joins, the reader splits back; the length excludes the
// extra NUL stored after the list.
TEST(DropData, JoinRoundTrip)
{
    const char* files[] = {"/tmp/one.xpm", "", "/tmp/three two.xbm"};
    size_t length = 0;
    char* joined = join_host_files("myhost", files, 3, &length);
    EXPECT_EQ(length, strlen("myhost") + 1 + strlen(files[0]) + 1 + 1 + strlen(files[2]) + 1);
    EXPECT_EQ(joined[length], '\0');
    EXPECT_EQ(split(std::string(joined, length)), (Strings{"myhost", files[0], "", files[2]}));
    free(joined);

    joined = join_host_files("h", nullptr, 0, &length);
    EXPECT_EQ(length, 2u);
    EXPECT_EQ(split(std::string(joined, length)), (Strings{"h"}));
    free(joined);

    std::string host = local_host_name();
    EXPECT_LE(host.size(), 50u);
}

// Position, 13 bits of state, the flag in bit 31, and words that arrive
// sign-extended in a 64-bit long.
TEST(DropData, MessageWords)
{
    DropWords w{123456789UL, 300, 17, 0xffffu, true, 31, 0x1234567};
    long words[5];
    pack_drop_words(w, words);
    EXPECT_EQ(words[1], (300L << 16) + 17);
    EXPECT_EQ(static_cast<unsigned long>(words[2]), 0x80001fffUL);
    DropWords back = unpack_drop_words(words);
    EXPECT_EQ(back.time, 123456789UL);
    EXPECT_EQ(back.x, 300);
    EXPECT_EQ(back.y, 17);
    EXPECT_EQ(back.state, 0x1fffu);
    EXPECT_TRUE(back.flag);
    EXPECT_EQ(back.type, 31u);
    EXPECT_EQ(back.property, 0x1234567u);

    // Out-of-range coordinates do not bleed into each other.
    DropWords odd{0, -5, 70000, 0, false, 31, 1};
    pack_drop_words(odd, words);
    back = unpack_drop_words(words);
    EXPECT_EQ(back.x, 0);
    EXPECT_EQ(back.y, 0xffff);
    EXPECT_FALSE(back.flag);

    long signExtended[5] = {-1, -1, -1, -1, -1};
    back = unpack_drop_words(signExtended);
    EXPECT_EQ(back.time, 0xffffffffUL);
    EXPECT_EQ(back.x, 0xffff);
    EXPECT_EQ(back.y, 0xffff);
    EXPECT_EQ(back.state, 0x1fffu);
    EXPECT_TRUE(back.flag);
    EXPECT_EQ(back.property, 0xffffffffUL);
}

// The names a source makes are the only ones a site will read and delete.
TEST(DropData, TransferPropertyNames)
{
    const char* p = "OXA_DROP_PROTOCOL";
    int record = 0;
    std::string name = transfer_property_name(p, 4194305, &record);
    EXPECT_EQ(name.rfind("OXA_DROP_PROTOCOL_4194305_", 0), 0u) << name;
    EXPECT_TRUE(is_transfer_property_name(p, name.c_str())) << name;
    EXPECT_TRUE(is_transfer_property_name(p, "OXA_DROP_PROTOCOL_12_55aa0f"));
    EXPECT_TRUE(is_transfer_property_name(p, "OXA_DROP_PROTOCOL_-3_1"));

    for (const char* bad : {"OXA_DROP_PROTOCOL", "OXA_DROP_PROTOCOL_", "OXA_DROP_PROTOCOL_12", "OXA_DROP_PROTOCOL_12_",
                            "OXA_DROP_PROTOCOL_12_xyz", "OXA_DROP_PROTOCOL_a_1", "OXA_DROP_PROTOCOL_1_1_1", "WM_NAME",
                            "OXA_DROP_PROTOCOLX_1_1", ""})
        EXPECT_FALSE(is_transfer_property_name(p, bad)) << bad;
    EXPECT_FALSE(is_transfer_property_name(p, nullptr));
}

// The file a drop names: the first file of a list, or text up to its
// first NUL without its line end; nothing for lists without files, other
// kinds and names longer than any path.
TEST(DropData, DroppedFileName)
{
    using namespace std::string_literals;
    auto name = [](DropKind k, const std::string& s) { return dropped_file_name(k, s.data(), s.size()); };
    EXPECT_EQ(name(DropKind::HostAndFiles, "host\0/tmp/a.xpm\0/tmp/b.xpm\0"s), "/tmp/a.xpm");
    EXPECT_EQ(name(DropKind::HostAndFiles, "host\0"s), "");
    EXPECT_EQ(name(DropKind::HostAndFiles, "host\0/tmp/unterminated"s), "");
    EXPECT_EQ(name(DropKind::HostAndFiles, "host"s), "");
    EXPECT_EQ(name(DropKind::Text, "/tmp/a.xpm"s), "/tmp/a.xpm");
    EXPECT_EQ(name(DropKind::Text, "/tmp/a.xpm\r\n"s), "/tmp/a.xpm");
    EXPECT_EQ(name(DropKind::Text, "/tmp/a.xpm\0junk"s), "/tmp/a.xpm");
    EXPECT_EQ(name(DropKind::Text, "\n"s), "");
    EXPECT_EQ(name(DropKind::Other, "/tmp/a.xpm"s), "");
    EXPECT_EQ(dropped_file_name(DropKind::Text, nullptr, 10), "");

    std::string longName(DROP_NAME_MAX + 1, 'a');
    EXPECT_EQ(name(DropKind::Text, longName), "");
    EXPECT_EQ(name(DropKind::HostAndFiles, "h\0"s + longName + "\0"s), "");
    EXPECT_EQ(name(DropKind::Text, longName.substr(1)), longName.substr(1));
}
