// The drop message's words and the transfer property names: every byte of a drop comes from another client and may
// be anything. (Splitting and joining file lists and the file a drop names are held against a reference by the
// drop_data fuzzer.)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dropin/drop_data.h"


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

// A site reads and deletes only the names a source makes.
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

    EXPECT_EQ(split_host_files(nullptr, 100).size(), 0u);
    EXPECT_LE(local_host_name().size(), 50u);
}
