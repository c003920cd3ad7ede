// A directory of our own under /tmp for each write: no other user can plant
// a file or link under the name we write to, and two saves of files with
// the same base name never meet. The directory carries our process id so
// that the next save can sweep away what a killed one left.
#include "files/staging.h"

#include <unistd.h>

#include <cctype>
#include <cstdlib>

#include "files/leftovers.h"

std::string staging_base_name(const std::string& target)
{
    size_t slash = target.rfind('/');
    std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    size_t dot = base.find('.');
    if (dot != std::string::npos)
        base.erase(dot);
    // The name becomes the C identifiers inside the file, and Xlib reads an
    // XBM's "#define name_width" with a scan that stops at a blank: a name
    // like "my pic" would make a file nobody can read back.
    for (char& c : base)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_')
            c = '_';
    return base.empty() ? "image" : base;
}

bool make_staging(const std::string& target, Staging* staging, const char* parent)
{
    std::string dir = parent ? parent : "/tmp";
    sweep_leftovers(dir, staging_prefix());
    std::string pattern = dir + "/" + staging_prefix() + std::to_string(getpid()) + "-XXXXXX";
    if (!mkdtemp(pattern.data()))
        return false;
    staging->directory = pattern;
    staging->file = pattern + "/" + staging_base_name(target);
    return true;
}

void remove_staging(const Staging& staging)
{
    if (!staging.file.empty())
        unlink(staging.file.c_str());
    if (!staging.directory.empty())
        rmdir(staging.directory.c_str());
}
