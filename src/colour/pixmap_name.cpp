// Names of pictures given in resources: cutting, the "no picture" name and
// the built-in directories searched after the configured path.
#include "colour/pixmap_name.h"

#include <cstring>

void cut_at_blank(char* name)
{
    if (!name)
        return;
    name[strcspn(name, " \t")] = '\0';
}

bool is_unspecified_name(const char* name)
{
    return !name || !*name || strcmp(name, "unspecified_pixmap") == 0;
}

std::string directory_search_path(const char* const* dirs, int count)
{
    std::string path;
    for (int i = 0; i < count; i++) {
        const char* dir = dirs[i];
        if (!dir || !*dir || strpbrk(dir, ":%"))
            continue;
        if (!path.empty())
            path += ':';
        path += dir;
        if (path.back() != '/')
            path += '/';
        path += "%N%S";
    }
    return path;
}
