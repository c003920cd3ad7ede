// The restart command a session manager is given, and the path helpers it is built from.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "app/restart_command.h"

TEST(RestartCommand, FileAndZoom)
{
    EXPECT_EQ(absolute_path("a.xpm", ""), "a.xpm") << "no working directory: left as it is";
    using V = std::vector<std::string>;
    EXPECT_EQ(restart_command("/usr/bin/pictrel", "/cwd/a.xpm", 3),
              (V{"/usr/bin/pictrel", "/cwd/a.xpm", "-zoomLevel", "3"}));
    EXPECT_EQ(restart_command("/usr/bin/pictrel", "", 0), (V{"/usr/bin/pictrel", "-zoomLevel", "0"}))
        << "an untitled drawing has no file argument";
}

// A bare program name is found through PATH, the first executable directory winning; a name with a slash, or one
// PATH does not hold, is made absolute against the working directory.
TEST(RestartCommand, ProgramPathThroughPath)
{
    static const std::set<std::string> executables = {"/usr/bin/pictrel", "/opt/bin/pictrel", "bin/pictrel"};
    auto is_executable = [](const std::string& candidate) { return executables.count(candidate) != 0; };
    const char* cases[][3] = {{"pictrel", "/nowhere:/usr/bin:/opt/bin", "/usr/bin/pictrel"},
                              {"pictrel", "::/opt/bin:/usr/bin", "/opt/bin/pictrel"},   // empty entries skipped
                              {"pictrel", "bin", "/cwd/bin/pictrel"},                   // a relative entry
                              {"pictrel", "/nowhere", "/cwd/pictrel"},
                              {"pictrel", nullptr, "/cwd/pictrel"},
                              {"./pictrel", "/usr/bin", "/cwd/./pictrel"},              // no PATH search
                              {"/usr/local/bin/pictrel", "/usr/bin", "/usr/local/bin/pictrel"}};
    for (auto [name, path, want] : cases)
        EXPECT_EQ(program_path(name, path, "/cwd", is_executable), want) << name << " in " << (path ? path : "no PATH");
}
