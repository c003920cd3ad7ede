// The installation the install tests share: made once per test process into a prefix of its own under /tmp, with a
// blank and a non-ASCII letter in its name, and removed when the process ends.
#pragma once

#include <cstdlib>
#include <string>

#include "e2e/e2e_support.h"

struct Installation {
    E2eScratch scratch;
    std::string prefix = scratch.dir + "/pré fix";
    bool installed = false;

    Installation()
    {
        std::string command = "cmake --install '" PICTREL_BUILD_DIR "' --prefix '" + prefix + "' >/dev/null";
        installed = !scratch.dir.empty() && std::system(command.c_str()) == 0;
    }
    std::string program() const { return prefix + "/bin/pictrel"; }
    std::string launcher() const { return prefix + "/bin/pictrel-launch"; }
    std::string app_defaults() const { return prefix + "/share/X11/app-defaults/Pictrel"; }
};

Installation& installation();
