// Where an installed program finds its files, and the "-help" option: pure logic of the desktop installation.
#include <gtest/gtest.h>

#include "app/usage.h"
#include "core/install_paths.h"

// The prefix is what lies above <bindir>/pictrel; a binary anywhere else (a build tree) has none. The application
// defaults of the system prefix are where Debian keeps them, those of any other prefix under its data directory.
TEST(InstallPaths, PrefixAndItsFolders)
{
    EXPECT_EQ(install_prefix("/usr/bin/pictrel", "bin"), "/usr");
    EXPECT_EQ(install_prefix("/opt/pic trel/bin/pictrel", "bin"), "/opt/pic trel");
    EXPECT_EQ(install_prefix("/opt/p/libexec/x/pictrel", "libexec/x"), "/opt/p");
    EXPECT_EQ(install_prefix("/bin/pictrel", "bin"), "/");
    EXPECT_EQ(install_prefix("/work/tree/build/pictrel", "bin"), "");
    EXPECT_EQ(install_prefix("/opt/cabin/pictrel", "bin"), "") << "a folder that only ends like bindir";
    EXPECT_EQ(install_prefix("pictrel", "bin"), "");
    EXPECT_EQ(install_prefix("/usr/bin/pictrel", "/usr/bin"), "") << "an absolute bindir tells no prefix";

    EXPECT_EQ(app_defaults_dir("/usr", "share"), "/etc/X11/app-defaults");
    EXPECT_EQ(app_defaults_dir("/usr/", "share"), "/etc/X11/app-defaults");
    EXPECT_EQ(app_defaults_dir("/usr/local", "share"), "/usr/local/share/X11/app-defaults");
    EXPECT_EQ(app_defaults_dir("/opt/pic trel", "share/"), "/opt/pic trel/share/X11/app-defaults");
    EXPECT_EQ(app_defaults_dir("/opt/p", "/srv/data"), "/srv/data/X11/app-defaults");
    EXPECT_EQ(app_defaults_dir("/", "share"), "/share/X11/app-defaults");
    EXPECT_EQ(picture_dir("/usr", "share"), "/usr/share/pictrel/pixmaps");
    EXPECT_EQ(picture_dir("/opt/p/", "share"), "/opt/p/share/pictrel/pixmaps");
}

// "-help" is found wherever it stands as an option, but not as the value of an option before it, whether that
// option is the program's, the toolkit's, or an abbreviation the toolkit accepts.
TEST(Usage, HelpRequestedAndTheSummary)
{
    auto asked = [](std::initializer_list<const char*> args) {
        std::vector<const char*> argv{"pictrel"};
        argv.insert(argv.end(), args);
        return help_requested(static_cast<int>(argv.size()), argv.data());
    };
    EXPECT_TRUE(asked({"-help"}));
    EXPECT_TRUE(asked({"a.xpm", "-help"}));
    EXPECT_TRUE(asked({"-width", "32", "-help"}));
    EXPECT_TRUE(asked({"-iconic", "-help"}));
    EXPECT_FALSE(asked({}));
    EXPECT_FALSE(asked({"-xpmType", "-help"}));
    EXPECT_FALSE(asked({"-title", "-help"}));
    EXPECT_FALSE(asked({"-xrm", "-help"}));
    EXPECT_FALSE(asked({"-zoom", "-help"})) << "an abbreviation of -zoomLevel";
    EXPECT_TRUE(asked({"-f", "-help"})) << "-f is ambiguous (-fg, -fn, -font, -foreground): no value taken";
    EXPECT_FALSE(asked({"--help"})) << "unknown options keep the toolkit's handling";
    EXPECT_FALSE(asked({"-h"}));

    std::string text = usage_text("/usr/bin/pictrel");
    EXPECT_EQ(text.rfind("usage: pictrel [options] [file ...]\n", 0), 0u) << text;
    for (const char* option : {"-width W", "-height H", "-zoomLevel Z", "-debug N", "-xpmType T", "file ..."})
        EXPECT_NE(text.find(option), std::string::npos) << option;
}
