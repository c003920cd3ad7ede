// Copying a staged file onto its target, and the private staging directory.
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "files/copy_file.h"
#include "files/leftovers.h"
#include "files/staging.h"

namespace {

struct TempDir {
    char pattern[30] = "/tmp/pictrel-copy-test-XXXXXX";
    std::string path = mkdtemp(pattern) ? pattern : "";
    ~TempDir() { std::error_code e; std::filesystem::remove_all(path, e); }
};

void write_text(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

std::string read_text(const std::string& path)
{
    std::stringstream s;
    s << std::ifstream(path, std::ios::binary).rdbuf();
    return s.str();
}

long entries(const std::string& dir)
{
    std::error_code e;
    return std::distance(std::filesystem::directory_iterator(dir, e), {});
}

// A source beside a directory holding the target.
struct CopyFile : testing::Test, TempDir {
    std::string src = path + "/src", dir = path + "/d", dst = dir + "/dst";
    CopyFile() { mkdir(dir.c_str(), 0700); }
};

}  // namespace

// A copy replaces the target's contents (also of the file a symbolic link points at), keeps its permissions, and
// leaves no temporary file beside it.
TEST_F(CopyFile, ReplacesTargetAndKeepsItsMode)
{
    std::string big(100000, 'x');
    write_text(src, big);
    write_text(dst, "old");
    chmod(dst.c_str(), 0640);
    ASSERT_EQ(copy_file(src.c_str(), dst.c_str()), 0);
    EXPECT_EQ(read_text(dst), big);
    struct stat st {};
    stat(dst.c_str(), &st);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    EXPECT_EQ(entries(dir), 1) << "no temporary file left";

    std::string link = path + "/link";
    ASSERT_EQ(symlink(dst.c_str(), link.c_str()), 0);
    write_text(src, "new");
    ASSERT_EQ(copy_file(src.c_str(), link.c_str()), 0);
    EXPECT_EQ(read_text(dst), "new");
    lstat(link.c_str(), &st);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
}

// Every failure returns 0 and leaves the old target exactly as it was; no way through leaves a file open.
TEST_F(CopyFile, FailureLeavesTargetIntact)
{
    long openFiles = entries("/proc/self/fd");
    write_text(src, "new contents");
    write_text(dst, "old contents");
    const struct {
        std::string from, to;
        const char* what;
    } cases[] = {
        {path + "/missing", dst, "missing source"},           {src, path + "/gone/dst", "vanished directory"},
        {src, dst + "/under-a-file", "a path through a file"}, {src, dir, "a directory is never replaced"},
        {path, dst, "a directory is no source"},              {src, "", "no target"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(copy_file(c.from.c_str(), c.to.c_str()), 1) << c.what;
        EXPECT_EQ(read_text(dst), "old contents") << c.what;
    }
    EXPECT_EQ(entries(dir), 1) << "nothing left beside the target";
    EXPECT_EQ(copy_file(src.c_str(), dst.c_str()), 0);
    EXPECT_EQ(entries("/proc/self/fd"), openFiles);
}

// Where no new file can take the target's place (an unwritable directory; for root, a read-only tmpfs or a target
// that is a mount point) the copy fails and the target keeps its old contents: rewriting it in place could leave it
// half written. can_replace tells beforehand whether the directory takes new files.
TEST_F(CopyFile, UnwritablePlaceIsRefused)
{
    bool root = geteuid() == 0;
    if (root && (unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                 mount("tmpfs", dir.c_str(), "tmpfs", 0, "size=64k") != 0))
        GTEST_SKIP() << "root without a private mount namespace: nothing here is unwritable";
    write_text(dst, "old");
    write_text(src, std::string(5000, 'n'));
    EXPECT_TRUE(can_replace(dst.c_str()));
    if (root) {
        ASSERT_EQ(mount(dst.c_str(), dst.c_str(), nullptr, MS_BIND, nullptr), 0);
        EXPECT_EQ(copy_file(src.c_str(), dst.c_str()), 1) << "a mount point cannot be renamed over";
        EXPECT_EQ(read_text(dst), "old");
        umount2(dst.c_str(), MNT_DETACH);
        ASSERT_EQ(mount("tmpfs", dir.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64k"), 0);
    } else {
        chmod(dir.c_str(), 0500);
    }
    EXPECT_FALSE(can_replace(dst.c_str()));
    EXPECT_EQ(copy_file(src.c_str(), dst.c_str()), 1);
    EXPECT_EQ(read_text(dst), "old");
    EXPECT_EQ(entries(dir), 1) << "no temporary file beside the target";
    chmod(dir.c_str(), 0700);
    if (root)
        umount2(dir.c_str(), MNT_DETACH);
}

// Scratch files name their maker's process id after a fixed prefix; a sweep removes those of ours whose process is
// gone (files, and directories of files) and leaves those of live processes and every other name alone.
TEST(Leftovers, NamesAndSweep)
{
    EXPECT_EQ(leftover_owner("pictrel-123-abcDE9", staging_prefix()), 123);
    EXPECT_EQ(leftover_owner(".my pic.xpm.pictrel-42-Zz09Aa", beside_prefix("my pic.xpm")), 42);
    for (const char* other : {"pictrel-copy-test-abcdef", "pictrel-123-abc", "pictrel-123-abcdefg", "pictrel--abcdef",
                              "pictrel-0-abcdef", "pictrel-12x-abcdef", "pictrel-", "xpictrel-1-abcdef"})
        EXPECT_EQ(leftover_owner(other, staging_prefix()), -1) << other;
    EXPECT_EQ(leftover_owner(".pic.xpm.pictrel-42-Zz09Aa", beside_prefix("pic.xp")), -1);

    TempDir t;
    pid_t dead = fork();
    if (dead == 0)
        _exit(0);
    waitpid(dead, nullptr, 0);
    std::string gone = std::to_string(dead), live = std::to_string(getppid());
    write_text(t.path + "/pictrel-" + gone + "-aaaaaa", "x");
    mkdir((t.path + "/pictrel-" + gone + "-bbbbbb").c_str(), 0700);
    write_text(t.path + "/pictrel-" + gone + "-bbbbbb/pic", "x");
    write_text(t.path + "/pictrel-" + live + "-cccccc", "x");
    write_text(t.path + "/pictrel-notes.txt", "x");
    sweep_leftovers(t.path, staging_prefix());
    std::set<std::string> left;
    for (const auto& e : std::filesystem::directory_iterator(t.path))
        left.insert(e.path().filename());
    EXPECT_EQ(left, (std::set<std::string>{"pictrel-" + live + "-cccccc", "pictrel-notes.txt"}));
}

// The staging directory is private (0700), unique to each save, holds the file under the target's base name (cut at
// the first '.', made of identifier characters, "image" when nothing is left), and is removed with it.
TEST(Staging, PrivateDirectoryNamedFile)
{
    TempDir t;
    Staging s;
    ASSERT_TRUE(make_staging("/home/u/a.b.px", &s, t.path.c_str()));
    struct stat st {};
    ASSERT_EQ(stat(s.directory.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & (S_IFMT | 07777), S_IFDIR | 0700u);
    EXPECT_EQ(s.file, s.directory + "/a");
    write_text(s.file, "x");
    Staging other;
    ASSERT_TRUE(make_staging("/elsewhere/a.xpm", &other, t.path.c_str()));
    EXPECT_NE(other.directory, s.directory) << "two saves of one base name never meet";
    remove_staging(s);
    remove_staging(other);
    EXPECT_EQ(entries(t.path), 0);
    EXPECT_FALSE(make_staging("x", &s, (t.path + "/missing").c_str()));
    EXPECT_EQ(staging_base_name("/x.y/pic"), "pic");
    EXPECT_EQ(staging_base_name("/home/u/.hidden"), "image");
    EXPECT_EQ(staging_base_name("dir/"), "image");
    EXPECT_EQ(staging_base_name("/x/my pic-2.xbm"), "my_pic_2") << "blanks would make an unreadable XBM";
}
