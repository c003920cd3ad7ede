// Installation paths from the binary's own place: the prefix is what lies
// above <bindir>/pictrel, and everything else hangs off it the same way the
// install rules put it there.
#include "core/install_paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>

namespace {

std::string without_trailing_slashes(std::string s)
{
    while (s.size() > 1 && s.back() == '/')
        s.pop_back();
    return s;
}

std::string under(const std::string& prefix, const std::string& dir)
{
    if (!dir.empty() && dir.front() == '/')
        return without_trailing_slashes(dir);
    std::string base = without_trailing_slashes(prefix);
    return (base == "/" ? "" : base) + "/" + without_trailing_slashes(dir);
}

}  // namespace

std::string install_prefix(const std::string& programPath, const std::string& bindir)
{
    size_t slash = programPath.rfind('/');
    if (slash == std::string::npos || bindir.empty() || bindir.front() == '/')
        return "";
    std::string dir = programPath.substr(0, slash);              // <prefix>/<bindir>
    std::string tail = "/" + without_trailing_slashes(bindir);
    if (dir.size() < tail.size() || dir.compare(dir.size() - tail.size(), tail.size(), tail) != 0)
        return "";
    std::string prefix = dir.substr(0, dir.size() - tail.size());
    return prefix.empty() ? "/" : prefix;
}

std::string app_defaults_dir(const std::string& prefix, const std::string& datadir)
{
    if (without_trailing_slashes(prefix) == "/usr")
        return "/etc/X11/app-defaults";
    return under(prefix, datadir) + "/X11/app-defaults";
}

std::string picture_dir(const std::string& prefix, const std::string& datadir)
{
    return under(prefix, datadir) + "/pictrel/pixmaps";
}

std::string help_dir(const std::string& prefix, const std::string& datadir)
{
    return under(prefix, datadir) + "/pictrel/help";
}

std::string own_install_prefix()
{
    char path[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0)
        return "";
    path[n] = '\0';
    return install_prefix(path, PICTREL_INSTALL_BINDIR);
}

std::string own_picture_dir()
{
    std::string prefix = own_install_prefix();
    return prefix.empty() ? PICTREL_RESOURCE_DIR : picture_dir(prefix, PICTREL_INSTALL_DATADIR);
}

std::string own_help_dir()
{
    std::string prefix = own_install_prefix();
    return prefix.empty() ? PICTREL_RESOURCE_DIR "/help" : help_dir(prefix, PICTREL_INSTALL_DATADIR);
}

std::string own_app_defaults_file()
{
    std::string prefix = own_install_prefix();
    if (prefix.empty())
        return "";
    std::string file = app_defaults_dir(prefix, PICTREL_INSTALL_DATADIR) + "/Pictrel";
    struct stat st {};
    return stat(file.c_str(), &st) == 0 && S_ISREG(st.st_mode) ? file : "";
}
