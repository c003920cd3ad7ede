// A help server is another program: whatever its reply holds, only a well-formed "shown" for our own request keeps
// the built-in window shut, and a request never carries a field that could break its lines.
#include <gtest/gtest.h>

#include <string>

#include "help/help_protocol.h"

namespace {

HelpVerdict judge(const std::string& text, unsigned long serial = 7, bool isString = true)
{
    return judge_help_reply(text.data(), text.size(), isString, serial);
}

}  // namespace

TEST(HelpProtocol, RequestNamesBookTopicAndWindowAndRefusesWhatItCannotCarry)
{
    HelpRequest r;
    r.serial = 12;
    r.book = "pictrel";
    r.topic = "tool.pencil";
    r.program = "Pictrel";
    r.host = "box";
    r.window = 0x1a00004;
    std::string text;
    ASSERT_EQ(encode_help_request(r, &text), 0);
    EXPECT_EQ(text, "_ORV_HELP 1\nrequest show\nserial 12\nbook pictrel\ntopic tool.pencil\nprogram Pictrel\n"
                    "host box\nwindow 0x1a00004\n");

    r.kind = "goodbye";
    r.topic = "";
    ASSERT_EQ(encode_help_request(r, &text), 0);
    EXPECT_EQ(text.find("topic"), std::string::npos) << text;
    EXPECT_NE(text.find("request goodbye\n"), std::string::npos) << text;

    const std::string before = text;
    r.kind = "show";
    EXPECT_NE(encode_help_request(r, &text), 0) << "a show without a topic";
    r.topic = "a\nstatus shown";
    EXPECT_NE(encode_help_request(r, &text), 0) << "a line break would forge a line";
    r.topic = "tab\there";
    EXPECT_NE(encode_help_request(r, &text), 0);
    r.topic = "window";
    r.book = "";
    EXPECT_NE(encode_help_request(r, &text), 0) << "no book";
    r.book = nullptr;
    EXPECT_NE(encode_help_request(r, &text), 0);
    r.book = "pictrel";
    r.kind = "format c:";
    EXPECT_NE(encode_help_request(r, &text), 0);
    r.kind = "show";
    const std::string longTopic(2000, 'x');
    r.topic = longTopic.c_str();
    EXPECT_NE(encode_help_request(r, &text), 0);
    EXPECT_EQ(text, before) << "a refused request leaves the output alone";
}

TEST(HelpProtocol, OnlyAWellFormedShownForOurSerialIsShown)
{
    EXPECT_EQ(judge("_ORV_HELP 1\nserial 7\nstatus shown\n"), HelpVerdict::Shown);
    EXPECT_EQ(judge("_ORV_HELP 1\nstatus shown\nserial 7"), HelpVerdict::Shown) << "order, no final newline";
    EXPECT_EQ(judge("_ORV_HELP 1\nserial 7\nnote from a newer server\nstatus shown\n"), HelpVerdict::Shown)
        << "unknown keys are ignored";
    EXPECT_EQ(judge("_ORV_HELP 1\nserial 7\nstatus unknown-topic\n"), HelpVerdict::Refused);
    EXPECT_EQ(judge("_ORV_HELP 1\nserial 6\nstatus shown\n"), HelpVerdict::OtherSerial);
    EXPECT_EQ(judge("_ORV_HELP 1\nserial 18446744073709551623\nstatus shown\n", 7), HelpVerdict::Garbage)
        << "a serial that would wrap round to ours";

    const char* garbage[] = {
        "",
        "shown",
        "\xff\xfe\x00\x01",
        "_ORV_HELP 2\nserial 7\nstatus shown\n",
        "_ORV_HELP 1 \nserial 7\nstatus shown\n",
        "_ORV_HELP 1\nserial 7\n",
        "_ORV_HELP 1\nstatus shown\n",
        "_ORV_HELP 1\nserial 7\nstatus \n",
        "_ORV_HELP 1\nserial -7\nstatus shown\n",
        "_ORV_HELP 1\nserial 7x\nstatus shown\n",
        "_ORV_HELP 1\nserial  7\nstatus shown\n",
        "_ORV_HELP 1\nserial 7\nserial 8\nstatus shown\n",
        "_ORV_HELP 1\nserial 7\nstatus refused\nstatus shown\n",
        "_ORV_HELP 1\nserial 7\nstatus shown\r\n",
        "_ORV_HELP 1\nserial 7\n\nstatus shown\n",
        "_ORV_HELP 1\nSerial 7\nstatus shown\n",
        "_ORV_HELP 1\nserial7\nstatus shown\n",
    };
    for (const char* g : garbage)
        EXPECT_EQ(judge(g), HelpVerdict::Garbage) << '"' << g << '"';
    const std::string withNul("_ORV_HELP 1\nserial 7\nstatus shown\n\0", 35);
    EXPECT_EQ(judge(withNul), HelpVerdict::Garbage) << "a C string written with its terminator";
    EXPECT_EQ(judge("_ORV_HELP 1\nserial 7\nstatus shown\n", 7, false), HelpVerdict::Garbage)
        << "a property of another type or format";
    EXPECT_EQ(judge("_ORV_HELP 1\nserial 7\nstatus shown\n" + std::string(helpReplyLimit, 'x')),
              HelpVerdict::Garbage)
        << "too long";
    EXPECT_EQ(judge_help_reply(nullptr, 5, true, 7), HelpVerdict::Garbage);
}
