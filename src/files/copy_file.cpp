// Copying a staged file onto its target. The new contents go to a fresh
// file beside the target, are flushed to disk and then renamed over it, so
// at every moment the target is either the old file or the new one. Only
// where that cannot be done is the target rewritten in place.
#include "files/copy_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>

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

// Permissions of the file being replaced, or those a new file would get.
mode_t target_mode(const std::string& target)
{
    struct stat st {};
    if (stat(target.c_str(), &st) == 0)
        return st.st_mode & 07777;
    mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// When no file can take the target's place (a directory we may not write
// into, a target that is a mount point) a writable target is rewritten in
// place, as writing to it always could. Its room is reserved first, so a
// full disk fails before a byte of the old contents is touched.
bool overwrite_in_place(int from, const std::string& target)
{
    struct stat srcStat {};
    if (fstat(from, &srcStat) != 0 || lseek(from, 0, SEEK_SET) != 0)
        return false;
    Fd out(open(target.c_str(), O_WRONLY | O_CLOEXEC));
    struct stat st {};
    if (out.fd < 0 || fstat(out.fd, &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    off_t size = srcStat.st_size;
    if (size > st.st_size && posix_fallocate(out.fd, 0, size) != 0) {
        // Emulated reservation may have grown the file; give that back.
        (void)ftruncate(out.fd, st.st_size);
        return false;
    }
    bool ok = copy_contents(from, out.fd) && ftruncate(out.fd, size) == 0 && fsync(out.fd) == 0;
    int fd = out.fd;
    out.fd = -1;
    return close(fd) == 0 && ok;
}

}  // namespace

int copy_file(const char* source, const char* destination)
{
    if (!source || !destination || !*destination)
        return 0;
    Fd in(open(source, O_RDONLY | O_CLOEXEC));
    if (in.fd < 0)
        return 0;
    struct stat srcStat {};
    if (fstat(in.fd, &srcStat) != 0 || !S_ISREG(srcStat.st_mode))
        return 0;

    std::string target = resolve_target(destination);
    struct stat targetStat {};
    if (stat(target.c_str(), &targetStat) == 0 && !S_ISREG(targetStat.st_mode))
        return 0;   // never replace a directory, device or FIFO

    std::string base = target.substr(target.rfind('/') == std::string::npos ? 0 : target.rfind('/') + 1);
    std::string temp = directory_of(target) + "/." + base + ".XXXXXX";
    Fd out(mkostemp(temp.data(), O_CLOEXEC));
    if (out.fd < 0)
        return overwrite_in_place(in.fd, target) ? 1 : 0;
    bool ok = copy_contents(in.fd, out.fd) && fchmod(out.fd, target_mode(target)) == 0 &&
              fsync(out.fd) == 0;
    int fd = out.fd;
    out.fd = -1;
    if (close(fd) != 0)
        ok = false;
    if (ok && rename(temp.c_str(), target.c_str()) == 0)
        return 1;
    unlink(temp.c_str());
    // A copy that could not be written (a full disk) is not tried again
    // over the old file; a rename the target refused is.
    return ok && overwrite_in_place(in.fd, target) ? 1 : 0;
}
