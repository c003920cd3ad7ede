// A save can be killed at any moment; what it leaves is never the target
// itself (that is only ever renamed into place whole) but its scratch files,
// which the next save of the same place removes once their owner is dead.
#include "files/leftovers.h"

#include <dirent.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cctype>

long leftover_owner(std::string_view entry, std::string_view prefix)
{
    constexpr size_t TAIL = 6;
    if (entry.size() <= prefix.size() || entry.substr(0, prefix.size()) != prefix)
        return -1;
    std::string_view rest = entry.substr(prefix.size());
    size_t dash = rest.find('-');
    if (dash == 0 || dash == std::string_view::npos || dash > 9 || rest.size() - dash - 1 != TAIL)
        return -1;
    long pid = 0;
    for (char c : rest.substr(0, dash)) {
        if (!std::isdigit(static_cast<unsigned char>(c)))
            return -1;
        pid = pid * 10 + (c - '0');
    }
    return pid > 0 ? pid : -1;
}

std::string staging_prefix() { return "pictrel-"; }

std::string beside_prefix(const std::string& targetFileName)
{
    return "." + targetFileName + ".pictrel-";
}

namespace {

// A process that no longer exists; our own id counts too, since a leftover
// carrying it comes from an earlier process that had the same id (this one
// never sweeps while a save of its own is under way).
bool owner_gone(long pid)
{
    if (pid == static_cast<long>(getpid()))
        return true;
    return kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH;
}

void remove_directory_of_files(const std::string& path)
{
    DIR* dir = opendir(path.c_str());
    if (!dir)
        return;
    while (dirent* e = readdir(dir)) {
        std::string name = e->d_name;
        if (name == "." || name == "..")
            continue;
        std::string file = path + "/" + name;
        struct stat st {};
        if (lstat(file.c_str(), &st) == 0 && S_ISREG(st.st_mode))
            unlink(file.c_str());
    }
    closedir(dir);
    rmdir(path.c_str());   // fails, harmlessly, if anything else is inside
}

}  // namespace

void sweep_leftovers(const std::string& directory, const std::string& prefix)
{
    DIR* dir = opendir(directory.c_str());
    if (!dir)
        return;
    uid_t me = geteuid();
    while (dirent* e = readdir(dir)) {
        long pid = leftover_owner(e->d_name, prefix);
        if (pid < 0 || !owner_gone(pid))
            continue;
        std::string path = directory + "/" + e->d_name;
        struct stat st {};
        if (lstat(path.c_str(), &st) != 0 || st.st_uid != me)
            continue;
        if (S_ISREG(st.st_mode))
            unlink(path.c_str());
        else if (S_ISDIR(st.st_mode))
            remove_directory_of_files(path);
    }
    closedir(dir);
}
