// Finds and parses the help book once. A broken installed book is reported
// on standard error and the compiled-in copy serves instead, so help never
// fails for want of a file.
#include "help/help_book_load.h"

#include <cstdio>
#include <memory>

#include "core/app_state.h"
#include "core/install_paths.h"

extern const char* const builtInHelpBook;

namespace {

// Plain stdio: the C++ streams would bring their whole locale machinery into
// the program, and its start-up, for this one read.
bool read_file(const std::string& path, std::string* text)
{
    std::unique_ptr<FILE, int (*)(FILE*)> in(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!in)
        return false;
    char buffer[16384];
    size_t n;
    text->clear();
    while ((n = std::fread(buffer, 1, sizeof buffer, in.get())) > 0)
        text->append(buffer, n);
    return !std::ferror(in.get());
}

// The book's file: a plain name only, looked for where the program keeps
// its help; anything with a path in it is not a book name.
std::string book_path()
{
    std::string name = res().helpBook && *res().helpBook ? res().helpBook : "pictrel";
    if (name.find('/') != std::string::npos || name[0] == '.')
        return "";
    return own_help_dir() + "/" + name + ".help";
}

}  // namespace

const HelpBook& help_book()
{
    static HelpBook book;
    static bool loaded = false;
    if (loaded)
        return book;
    loaded = true;
    std::string path = book_path(), text, why;
    if (!path.empty() && read_file(path, &text)) {
        int line = parse_help_book(text, &book, &why);
        if (line == 0 && !book.topics.empty())
            return book;
        if (line != 0)
            std::fprintf(stderr, "pictrel: help book %s, line %d: %s; using the built-in one\n", path.c_str(),
                         line, why.c_str());
    }
    if (parse_help_book(builtInHelpBook, &book, &why) != 0 || book.topics.empty())
        book.topics = {HelpTopic{"index", "Pictrel Help", ""}};
    return book;
}
