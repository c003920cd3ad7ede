// fork and execvp of the help server, with a close-on-exec pipe through
// which the child tells why its exec failed, and a SIGCHLD handler that
// reaps our child (and only ours: gzip's children are waited for by their
// own code) the moment it ends.
#include "help/help_spawn.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

#include "help/help_trace.h"

namespace {

// Shared with the handler; the main flow touches them with SIGCHLD blocked.
volatile sig_atomic_t childPid = 0;     // running child, 0 when none
volatile sig_atomic_t ended = 0;        // set when the child was reaped and its end not yet told
volatile sig_atomic_t endStatus = 0;    // its wait status
struct sigaction previous {};
bool handlerInstalled = false;

void reap_ours()
{
    if (childPid <= 0)
        return;
    int status = 0;
    pid_t r = waitpid(childPid, &status, WNOHANG);
    if (r == childPid || (r < 0 && errno == ECHILD)) {
        endStatus = r == childPid ? status : 0;
        ended = 1;
        childPid = 0;
    }
}

void sigchld_handler(int sig, siginfo_t* info, void* context)
{
    const int savedErrno = errno;
    reap_ours();
    // Whoever handled SIGCHLD before us still hears of it.
    if (previous.sa_flags & SA_SIGINFO) {
        if (previous.sa_sigaction)
            previous.sa_sigaction(sig, info, context);
    } else if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN && previous.sa_handler) {
        previous.sa_handler(sig);
    }
    errno = savedErrno;
}

void install_handler()
{
    if (handlerInstalled)
        return;
    struct sigaction sa {};
    sa.sa_sigaction = sigchld_handler;
    sigemptyset(&sa.sa_mask);
    // Restarted system calls: the toolkit's select and our reads go on.
    sa.sa_flags = SA_SIGINFO | SA_RESTART | SA_NOCLDSTOP;
    sigaction(SIGCHLD, &sa, &previous);
    handlerInstalled = true;
}

// Blocks SIGCHLD for the life of the object and puts the old mask back.
class ChildSignalBlock {
public:
    ChildSignalBlock()
    {
        sigset_t only;
        sigemptyset(&only);
        sigaddset(&only, SIGCHLD);
        sigprocmask(SIG_BLOCK, &only, &old_);
    }
    ~ChildSignalBlock() { sigprocmask(SIG_SETMASK, &old_, nullptr); }
    ChildSignalBlock(const ChildSignalBlock&) = delete;
    ChildSignalBlock& operator=(const ChildSignalBlock&) = delete;

private:
    sigset_t old_;
};

int exit_value(int status)
{
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        return 128 + WTERMSIG(status);
    return status;
}

// In the child, between fork and exec: only async-signal-safe calls.
[[noreturn]] void become_server(const char* program, char* const argv[], int report)
{
    // Start-up ignores SIGINT and SIGHUP, and an ignored signal stays
    // ignored across exec: the server gets the defaults back.
    struct sigaction dfl {};
    dfl.sa_handler = SIG_DFL;
    sigemptyset(&dfl.sa_mask);
    for (int sig = 1; sig < NSIG; sig++)
        if (sig != SIGKILL && sig != SIGSTOP)
            sigaction(sig, &dfl, nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // Nothing of ours but standard input, output and error goes along
    // (the X connection above all: the server must open its own).
    if (close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) != 0)
        for (int fd = 3; fd < 1024; fd++)
            fcntl(fd, F_SETFD, FD_CLOEXEC);
    execvp(program, argv);
    int why = errno;
    ssize_t n = write(report, &why, sizeof why);
    (void)n;
    _exit(127);
}

}  // namespace

int help_spawn(const char* program, const char* display, pid_t* pid, int* error)
{
    *pid = 0;
    *error = 0;
    install_handler();
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        *error = errno;
        return HELP_NO_FORK;
    }
    std::string path = program, mode = "-cshelpservermode", option = "-display", where = display;
    char* argv[] = {path.data(), mode.data(), option.data(), where.data(), nullptr};

    pid_t child;
    {
        // The child must be on record before its SIGCHLD can arrive.
        ChildSignalBlock block;
        child = fork();
        if (child == 0) {
            close(report[0]);
            become_server(program, argv, report[1]);
        }
        if (child > 0) {
            childPid = child;
            ended = 0;
        }
    }
    const int forkErrno = errno;
    close(report[1]);
    if (child < 0) {
        close(report[0]);
        *error = forkErrno;
        help_trace("fork failed: errno %d", forkErrno);
        return HELP_NO_FORK;
    }

    // The pipe closes without a word when the exec succeeds.
    int why = 0;
    ssize_t got;
    while ((got = read(report[0], &why, sizeof why)) < 0 && errno == EINTR) {
    }
    close(report[0]);
    if (got == static_cast<ssize_t>(sizeof why)) {
        // The child is ending with 127: collect it now, it tells nothing more.
        {
            ChildSignalBlock block;
            int status;
            while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
            }
            if (childPid == child)
                childPid = 0;
            ended = 0;
        }
        *error = why;
        help_trace("exec of %s failed: errno %d", program, why);
        return HELP_NO_EXEC;
    }
    *pid = child;
    help_trace("started %s -cshelpservermode -display %s: pid %d", program, display, static_cast<int>(child));
    return HELP_SPAWNED;
}

bool help_child_running(int* exitValue)
{
    ChildSignalBlock block;
    reap_ours();   // in case someone replaced our handler
    *exitValue = -1;
    if (childPid > 0)
        return true;
    if (ended) {
        ended = 0;
        *exitValue = exit_value(endStatus);
    }
    return false;
}

pid_t help_child_pid()
{
    ChildSignalBlock block;
    reap_ours();
    return childPid;
}
