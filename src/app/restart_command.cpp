// The restart command of a drawing and the path helpers it is built from.
#include "app/restart_command.h"

std::string absolute_path(const std::string& name, const std::string& cwd)
{
    if ((!name.empty() && name[0] == '/') || cwd.empty())
        return name;
    return cwd + "/" + name;
}

std::string program_path(const std::string& argv0, const char* pathEnv, const std::string& cwd,
                         bool (*executable)(const std::string& candidate))
{
    if (argv0.find('/') == std::string::npos && pathEnv && executable) {
        std::string path = pathEnv;
        size_t start = 0;
        while (start <= path.size()) {
            size_t end = path.find(':', start);
            if (end == std::string::npos)
                end = path.size();
            // Empty entries are skipped, as a tokenizer of the list would.
            if (end > start) {
                std::string candidate = path.substr(start, end - start) + "/" + argv0;
                if (executable(candidate))
                    return absolute_path(candidate, cwd);
            }
            start = end + 1;
        }
    }
    return absolute_path(argv0, cwd);
}

std::vector<std::string> restart_command(const std::string& program, const std::string& file,
                                         int zoom)
{
    std::vector<std::string> argv{program};
    if (!file.empty())
        argv.push_back(file);
    argv.push_back("-zoomLevel");
    argv.push_back(std::to_string(zoom));
    return argv;
}
