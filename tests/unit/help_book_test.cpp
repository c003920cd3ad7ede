// The help book: its parser, the fallback from a missing topic to its
// parent's, the key list of On Keys, and the book shipped with the program.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "help/help_book.h"
#include "help/key_list.h"

TEST(HelpBook, ParsesTopicsAndFallsBackUpTheIds)
{
    const char* text =
        "# a comment\n"
        "\n"
        "@ index  Index\n"
        "Start here.\n"
        "@ tool  The Tools\n"
        "\n"
        "First line.\n"
        "# a comment inside a body is left out\n"
        "@@ at the start\n"
        "\n"
        "Last line.\n"
        "\n"
        "@ tool.pencil  Pencil\r\n"
        "Draws.\r\n";
    HelpBook book;
    std::string why;
    ASSERT_EQ(parse_help_book(text, &book, &why), 0) << why;
    ASSERT_EQ(book.topics.size(), 3u);
    EXPECT_EQ(book.topics[1].title, "The Tools");
    EXPECT_EQ(book.topics[1].body, "First line.\n@ at the start\n\nLast line.");
    EXPECT_EQ(book.topics[2].body, "Draws.");

    EXPECT_EQ(find_topic(book, "tool.pencil")->title, "Pencil");
    EXPECT_EQ(find_topic(book, "tool.brush")->id, "tool");
    EXPECT_EQ(find_topic(book, "tool.brush.round")->id, "tool");
    EXPECT_EQ(find_topic(book, "menu.file.save")->id, "index");
    EXPECT_EQ(exact_topic(book, "tool.brush"), nullptr);
    EXPECT_EQ(topic_depth("tool.pencil"), 1);
}

TEST(HelpBook, RejectsBadSourcesWithTheLine)
{
    struct Case {
        const char* text;
        int line;
    } cases[] = {
        {"stray text\n@ a  A\n", 1},
        {"@ a  A\n@ a  Again\n", 2},
        {"@ a\n", 1},
        {"@ a..b  Bad\n", 1},
        {"@ .a  Bad\n", 1},
        {"@ a/b  Bad\n", 1},
    };
    for (const Case& c : cases) {
        std::string why;
        EXPECT_EQ(parse_help_book(c.text, nullptr, &why), c.line) << c.text;
        EXPECT_FALSE(why.empty()) << c.text;
    }
}

TEST(HelpBook, KeyListTakesTheItemsOwnKeys)
{
    EXPECT_EQ(readable_keys("  Ctrl+I ", "Ctrl<Key>i"), "Ctrl+I");
    EXPECT_EQ(readable_keys("", "Ctrl Shift<Key>plus,Ctrl<Key>KP_Add"), "Ctrl+Shift+plus");
    EXPECT_EQ(readable_keys("", ""), "");
    std::string list = format_key_list("Keys:", {{"Ctrl+R", "Tools > Rotate"}, {"", "Tools > Flip"},
                                                 {"Ctrl+Right", "Tools > Nudge Right"}});
    EXPECT_EQ(list, "Keys:\n\n  Ctrl+R        Tools > Rotate\n  Ctrl+Right    Tools > Nudge Right\n");
    EXPECT_EQ(format_key_list("Keys:", {{"", "File > Save As..."}}), "");
}

// The book as shipped: it parses, every topic hangs under one that exists,
// and the topics the Help menu opens are there.
TEST(HelpBook, ShippedBookIsWhole)
{
    std::ifstream in(PICTREL_RESOURCE_DIR "/help/pictrel.help");
    std::stringstream s;
    s << in.rdbuf();
    HelpBook book;
    std::string why;
    int line = parse_help_book(s.str(), &book, &why);
    ASSERT_EQ(line, 0) << "pictrel.help line " << line << ": " << why;
    for (const HelpTopic& t : book.topics) {
        std::string parent = parent_topic_id(t.id);
        EXPECT_TRUE(parent.empty() || exact_topic(book, parent)) << t.id << " has no parent topic " << parent;
        EXPECT_FALSE(t.body.empty()) << t.id << " says nothing";
    }
    for (const char* id : {"index", "help", "window", "keys", "tool", "canvas", "menu.tools.rotate"})
        EXPECT_TRUE(exact_topic(book, id)) << "no topic " << id;
}
