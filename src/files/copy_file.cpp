// Putting a staged file in its target's place. The new contents go to a
// fresh file beside the target, are synced to disk, and only then renamed
// over it; the directory is synced after the rename. So at every moment,
// even if the program is killed or the machine stops, the target is either
// the old file or the new one, whole. Where no file can be made beside the
// target, nothing is written: rewriting it in place could leave it half old
// and half new.
#include "files/copy_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>

#include "files/leftovers.h"

namespace {

// Closes a descriptor when it goes out of scope.
struct Fd {
    int fd = -1;
    explicit Fd(int f) : fd(f) {}
    ~Fd()
    {
        if (fd >= 0)
            close(fd);
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    // Closes now, reporting the result (a deferred write error shows here).
    bool close_checked()
    {
        int f = fd;
        fd = -1;
        return close(f) == 0;
    }
};

bool write_all(int fd, const char* data, size_t length)
{
    while (length > 0) {
        ssize_t n = write(fd, data, length);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += n;
        length -= static_cast<size_t>(n);
    }
    return true;
}

bool copy_contents(int from, int to)
{
    char buffer[8192];
    for (;;) {
        ssize_t n = read(from, buffer, sizeof buffer);
        if (n == 0)
            return true;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (!write_all(to, buffer, static_cast<size_t>(n)))
            return false;
    }
}

// Saving through a symbolic link replaces the file it points at, as
// writing through the link would, not the link itself.
std::string resolve_target(const char* destination)
{
    struct stat st {};
    if (lstat(destination, &st) == 0 && S_ISLNK(st.st_mode)) {
        char real[PATH_MAX];
        if (realpath(destination, real))
            return real;
    }
    return destination;
}

std::string directory_of(const std::string& path)
{
    size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}

std::string file_name_of(const std::string& path)
{
    size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The new file takes the old one's permissions, and (where we may give it)
// its owner and group, so that saving someone's file as root does not take
// it from them. A new target gets what the umask allows.
bool take_attributes(int fd, const std::string& target)
{
    struct stat st {};
    if (stat(target.c_str(), &st) == 0) {
        if (fchown(fd, st.st_uid, st.st_gid) != 0)
            (void)!fchown(fd, static_cast<uid_t>(-1), st.st_gid);   // at least the group
        return fchmod(fd, st.st_mode & 07777) == 0;
    }
    mode_t mask = umask(0);
    umask(mask);
    return fchmod(fd, 0666 & ~mask) == 0;
}

// A rename is only durable once the directory holding it is on disk. File
// systems that cannot sync a directory say so with EINVAL; that is no
// failure of ours.
bool sync_directory(const std::string& directory)
{
    Fd dir(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.fd < 0)
        return false;
    return fsync(dir.fd) == 0 || errno == EINVAL;
}

}  // namespace

bool can_replace(const char* destination)
{
    if (!destination || !*destination)
        return false;
    return eaccess(directory_of(resolve_target(destination)).c_str(), W_OK | X_OK) == 0;
}

int copy_file(const char* source, const char* destination)
{
    if (!source || !destination || !*destination)
        return 1;
    Fd in(open(source, O_RDONLY | O_CLOEXEC));
    if (in.fd < 0)
        return 1;
    struct stat srcStat {};
    if (fstat(in.fd, &srcStat) != 0 || !S_ISREG(srcStat.st_mode))
        return 1;

    std::string target = resolve_target(destination);
    struct stat targetStat {};
    if (stat(target.c_str(), &targetStat) == 0 && !S_ISREG(targetStat.st_mode))
        return 1;   // never replace a directory, device or FIFO

    std::string directory = directory_of(target);
    std::string prefix = beside_prefix(file_name_of(target));
    sweep_leftovers(directory, prefix);
    std::string temp = directory + "/" + prefix + std::to_string(getpid()) + "-XXXXXX";
    Fd out(mkostemp(temp.data(), O_CLOEXEC));
    if (out.fd < 0)
        return 1;
    bool ok = copy_contents(in.fd, out.fd) && take_attributes(out.fd, target) &&
              fsync(out.fd) == 0;
    ok = out.close_checked() && ok;
    if (!ok || rename(temp.c_str(), target.c_str()) != 0) {
        unlink(temp.c_str());
        return 1;
    }
    // The target is the new file from here on; an unsynced directory only
    // means a crash might bring the old one back, whole.
    return sync_directory(directory) ? 0 : 1;
}
