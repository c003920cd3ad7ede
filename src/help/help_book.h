// The help book: topics with hierarchical ids ("tool.pencil" lies under
// "tool"), parsed from the plain-text source that is installed with the
// program and compiled into it. Pure: no X headers.
#pragma once

#include <string>
#include <vector>

struct HelpTopic {
    std::string id;      // "menu.file.save"
    std::string title;   // one line
    std::string body;    // lines joined with '\n', no trailing newline
};

struct HelpBook {
    std::vector<HelpTopic> topics;   // in the order of the source
};

// The topic a missing id falls back to: "tool.pencil" -> "tool"; a top-level
// id gives "index", and "index" gives "".
std::string parent_topic_id(const std::string& id);

// How deep the topic lies: 0 for "index" and top-level ids, 1 for "tool.x".
int topic_depth(const std::string& id);

// Reads the source. The format, line by line:
//   # ...               a comment, left out
//   @ id  Title text    starts a topic; the id is letters, digits, '-',
//                       '_' and dots between them
//   @@...               a body line beginning with one '@'
//   anything else       a line of the current topic's body
// Blank lines at either end of a body are dropped. Returns 0 and fills
// `book`; on a fault returns the 1-based number of the offending line and
// says what is wrong in `error` (a body line before the first topic, a bad
// or repeated id, a topic without a title).
int parse_help_book(const std::string& text, HelpBook* book, std::string* error);

// The topic `id` or, when the book has none, the nearest one up its chain
// of parents ending at "index"; null only when none of them is there.
const HelpTopic* find_topic(const HelpBook& book, const std::string& id);

// The topic `id` exactly, or null.
const HelpTopic* exact_topic(const HelpBook& book, const std::string& id);
