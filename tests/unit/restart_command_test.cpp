// The restart command a session manager is given, and the path helpers
// it is built from.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "app/restart_command.h"

namespace {

std::set<std::string> executables;

bool is_executable(const std::string& candidate) { return executables.count(candidate) != 0; }

}  // namespace

TEST(RestartCommand, AbsolutePath)
{
    EXPECT_EQ(absolute_path("/a/b.xpm", "/cwd"), "/a/b.xpm");
    EXPECT_EQ(absolute_path("a.xpm", "/cwd"), "/cwd/a.xpm");
    EXPECT_EQ(absolute_path("./a.xpm", "/cwd"), "/cwd/./a.xpm");
    EXPECT_EQ(absolute_path("a.xpm", ""), "a.xpm") << "no working directory: left as it is";
}

// A bare program name is found through PATH, the first executable directory winning; a name with a slash, or one
// PATH does not hold, is made absolute against the working directory.
TEST(RestartCommand, ProgramPathThroughPath)
{
    executables = {"/usr/bin/pictrel", "/opt/bin/pictrel", "bin/pictrel"};
    EXPECT_EQ(program_path("pictrel", "/nowhere:/usr/bin:/opt/bin", "/cwd", is_executable),
              "/usr/bin/pictrel");
    EXPECT_EQ(program_path("pictrel", "::/opt/bin:/usr/bin", "/cwd", is_executable),
              "/opt/bin/pictrel") << "empty entries are skipped";
    EXPECT_EQ(program_path("pictrel", "bin", "/cwd", is_executable), "/cwd/bin/pictrel")
        << "a relative PATH entry is made absolute";
    EXPECT_EQ(program_path("pictrel", "/nowhere", "/cwd", is_executable), "/cwd/pictrel");
    EXPECT_EQ(program_path("pictrel", nullptr, "/cwd", is_executable), "/cwd/pictrel");
    EXPECT_EQ(program_path("./pictrel", "/usr/bin", "/cwd", is_executable), "/cwd/./pictrel")
        << "a slash means no PATH search";
    EXPECT_EQ(program_path("/usr/local/bin/pictrel", "/usr/bin", "/cwd", is_executable),
              "/usr/local/bin/pictrel");
}

TEST(RestartCommand, FileAndZoom)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(restart_command("/usr/bin/pictrel", "/cwd/a.xpm", 3),
              (V{"/usr/bin/pictrel", "/cwd/a.xpm", "-zoomLevel", "3"}));
    EXPECT_EQ(restart_command("/usr/bin/pictrel", "", 0), (V{"/usr/bin/pictrel", "-zoomLevel", "0"}))
        << "an untitled drawing has no file argument";
}
