// Looking at a file before reading it: stat, the first bytes, and gzip's
// output for a compressed file, read no further than the size bound.
#include "files/file_look.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "files/gzip.h"

namespace {

// What stat says about a path: missing, a regular file, or something that
// must not be opened (a FIFO or device would block or never end).
enum class PathKind { Missing, Regular, Other };

PathKind path_kind(const std::string& path)
{
    struct stat st {};
    if (stat(path.c_str(), &st) != 0)
        return PathKind::Missing;
    return S_ISREG(st.st_mode) ? PathKind::Regular : PathKind::Other;
}

bool is_gzip_name(const char* name)
{
    size_t n = std::strlen(name);
    return n > 3 && !std::strcmp(name + n - 3, ".gz");
}

bool is_compressed_name(const char* name)
{
    size_t n = std::strlen(name);
    return (n > 2 && !std::strcmp(name + n - 2, ".Z")) ||
           (n > 3 && !std::strcmp(name + n - 3, ".gz"));
}

// The file libXpm reads for a name: the name itself when it exists, else
// name.Z, else name.gz; those two (and a name that ends so) it
// decompresses through gzip.
std::string xpm_source(const char* fileName)
{
    if (path_kind(fileName) != PathKind::Missing)
        return fileName;
    for (const char* ext : {".Z", ".gz"}) {
        std::string candidate = std::string(fileName) + ext;
        if (path_kind(candidate) != PathKind::Missing)
            return candidate;
    }
    return {};
}

bool write_all(int fd, const char* data, size_t length)
{
    while (length > 0) {
        ssize_t n = write(fd, data, length);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        data += n;
        length -= static_cast<size_t>(n);
    }
    return true;
}

// The first bytes and the length of a compressed file's stream as gzip
// gives it, reading no further than `limit` bytes: a few kilobytes of a
// compressed file can otherwise unfold into gigabytes in libXpm's hands.
// Past the limit the size counts no further: it only tells that the
// stream goes on. With `keep` a descriptor, the stream is written to it
// as well (`kept` says whether all of it was).
FileLook decompressed_look(const std::string& path, unsigned long long limit, int keep)
{
    FileLook look;
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0)
        return look;   // libXpm cannot decompress it either
    pid_t pid = spawn_gzip("-dc", path.c_str(), pipeFds[1]);
    close(pipeFds[1]);
    if (pid > 0) {
        char buffer[8192];
        for (;;) {
            ssize_t n = read(pipeFds[0], buffer, sizeof buffer);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            if (look.head.size() < IMAGE_HEAD_BYTES)
                look.head.append(buffer, std::min(static_cast<size_t>(n), IMAGE_HEAD_BYTES - look.head.size()));
            look.size += static_cast<unsigned long long>(n);
            if (look.size > limit)
                break;
            if (keep >= 0 && !write_all(keep, buffer, static_cast<size_t>(n)))
                keep = -1, look.kept = false;
        }
        look.seen = true;
    }
    close(pipeFds[0]);
    if (pid > 0) {
        kill(pid, SIGKILL);   // harmless once it has ended; not yet reaped
        wait_for_process(pid);
    }
    return look;
}

}  // namespace

// libXpm also tries name.Z and name.gz when name is missing; none of the
// candidates it may open can be allowed to be a FIFO or a device.
bool openable(const char* fileName)
{
    PathKind k = path_kind(fileName);
    if (k == PathKind::Other)
        return false;
    if (k == PathKind::Regular)
        return true;
    for (const char* ext : {".Z", ".gz"})
        if (path_kind(std::string(fileName) + ext) == PathKind::Other)
            return false;
    return true;
}

FileLook look_at(const std::string& path)
{
    FileLook look;
    struct stat st {};
    if (stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return look;
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f)
        return look;
    look.size = static_cast<unsigned long long>(st.st_size);
    look.head.resize(IMAGE_HEAD_BYTES);
    look.head.resize(std::fread(look.head.data(), 1, IMAGE_HEAD_BYTES, f));
    std::fclose(f);
    look.seen = true;
    return look;
}

std::string descriptor_path(int fd)
{
    return "/proc/self/fd/" + std::to_string(fd);
}

XpmFileVerdict xpm_file_verdict(const char* fileName, const FileLook& plain, unsigned long colormapEntries,
                                int* stream)
{
    if (stream)
        *stream = -1;
    std::string source = xpm_source(fileName);
    if (source.empty() || path_kind(source) != PathKind::Regular)
        return XpmFileVerdict::Refuse;   // libXpm cannot open it
    unsigned long long limit = max_xpm_file_bytes(std::clamp(colormapEntries, 1ul, MAX_XPM_COLOURS));
    if (!is_compressed_name(source.c_str()))
        return check_xpm_file(plain.head, plain.size, colormapEntries);
    // A compressed file no smaller than the largest plain one holds no
    // drawing (text shrinks, and gzip adds a few bytes at most); the stream
    // is judged as libXpm will see it.
    FileLook raw = look_at(source);
    if (!raw.seen || raw.size > limit)
        return XpmFileVerdict::Refuse;
    // libXpm runs gunzip over a ".gz" file, the same decompressor: its
    // output, kept here, is what libXpm would read. (A ".Z" file it gives
    // to uncompress, which may be missing, so that one is left to it.)
    int keep = -1;
    if (stream && is_gzip_name(source.c_str()) && access("/proc/self/fd", X_OK) == 0)
        keep = memfd_create("pictrel-xpm", MFD_CLOEXEC);
    FileLook look = decompressed_look(source, limit, keep);
    XpmFileVerdict verdict = look.seen ? check_xpm_file(look.head, look.size, colormapEntries)
                                       : XpmFileVerdict::Refuse;
    if (keep >= 0 && (verdict != XpmFileVerdict::Read || !look.kept))
        close(keep), keep = -1;
    if (stream)
        *stream = keep;
    return verdict;
}
