// Starting gzip with nothing of ours but the two files it works on.
#include "files/gzip.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <string>

pid_t spawn_gzip(const char* option, const char* input, int output)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, input, O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output, 1);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    std::string flags = option;
    char arg0[] = "gzip";
    char* argv[] = {arg0, flags.data(), nullptr};
    char* envp[] = {nullptr};
    pid_t pid = -1;
    int spawned = posix_spawn(&pid, "/bin/gzip", &actions, nullptr, argv, envp);
    posix_spawn_file_actions_destroy(&actions);
    return spawned == 0 ? pid : -1;
}

int wait_for_process(pid_t pid)
{
    int status = -1;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}
