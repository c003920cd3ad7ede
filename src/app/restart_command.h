// The command a session manager runs to bring a drawing back: the program's
// absolute path, the drawing's file and its zoom. Pure: the working
// directory, PATH and the executable test are handed in.
#pragma once

#include <string>
#include <vector>

// `name` made absolute against `cwd`; an empty cwd (getcwd failed) leaves
// a relative name unchanged.
std::string absolute_path(const std::string& name, const std::string& cwd);

// Where argv[0] lives: a bare name is looked up in the directories of
// `pathEnv` (null when PATH is unset), the first executable candidate
// winning; anything else, or nothing found, is argv[0] made absolute.
std::string program_path(const std::string& argv0, const char* pathEnv, const std::string& cwd,
                         bool (*executable)(const std::string& candidate));

// program [file] -zoomLevel zoom; `file` is empty when the drawing has none.
std::vector<std::string> restart_command(const std::string& program, const std::string& file,
                                         int zoom);
