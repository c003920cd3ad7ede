// The suffix rule of the save dialogs: a bitmap is saved as ".xbm", a colour
// drawing keeps ".px" or ".xpm" and otherwise gets ".px".
#include "files/suffix_rule.h"

#include <cstring>

namespace {

bool ends_with(const std::string& name, const char* suffix)
{
    size_t n = std::strlen(suffix);
    return name.size() >= n && name.compare(name.size() - n, n, suffix) == 0;
}

}  // namespace

std::string apply_suffix(int mode, const std::string& name)
{
    // A name must be longer than the suffix it ends with to keep it, so a
    // name that is nothing but a suffix (".xbm") still gets one added.
    const char* first = mode < 2 ? ".xbm" : ".px";
    if (name.size() > std::strlen(first) && ends_with(name, first))
        return name;
    if (mode >= 2 && name.size() > std::strlen(".xpm") && ends_with(name, ".xpm"))
        return name;
    return name + first;
}
