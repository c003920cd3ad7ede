// Where an installed Pictrel keeps its application defaults and pictures,
// worked out from where its own binary lies, so that an installation under
// any prefix finds its files with no environment set. Pure: no X headers.
#pragma once

#include <string>

// The installation prefix of a program at `programPath` (a resolved path)
// when it lies in <prefix>/<bindir>/; empty when it does not (a build tree).
std::string install_prefix(const std::string& programPath, const std::string& bindir);

// The application defaults directory of an installation: /etc/X11/app-defaults
// for the system prefix /usr (as Debian keeps them), else
// <prefix>/<datadir>/X11/app-defaults. An absolute datadir is taken as it is.
std::string app_defaults_dir(const std::string& prefix, const std::string& datadir);

// The directory of the program's pictures: <prefix>/<datadir>/pictrel/pixmaps.
std::string picture_dir(const std::string& prefix, const std::string& datadir);

// The directory of the help books: <prefix>/<datadir>/pictrel/help.
std::string help_dir(const std::string& prefix, const std::string& datadir);

// The running program's own prefix (from /proc/self/exe and the binary
// directory it was built for), or empty when it is not installed.
std::string own_install_prefix();

// The pictures of the running program: the installed picture directory, or
// the source tree's resources when the program runs from its build tree.
std::string own_picture_dir();

// The help books of the running program: the installed help directory, or
// the source tree's resources/help in a build tree.
std::string own_help_dir();

// The running program's installed application defaults file when it exists,
// or empty.
std::string own_app_defaults_file();
