/* Times one launch of any X program, from the exec to its first mapped
 * top-level window (or to its exit), and reports the peak resident set of
 * the launched process. One run per call: the shell script that calls it
 * interleaves programs and takes the statistics. With --hold it only stays
 * connected, so that the server has a client between runs. Meant for a
 * server without a window manager, where a program's own shell window is
 * the top-level that maps (a manager would map its frame instead).
 *
 *   launch_timer [--exit] [--timeout S] [--settle MS] [--signal N] -- PROGRAM [ARGS...]
 *   launch_timer --hold
 *
 * Prints "<milliseconds> <peak RSS in KiB> <map|exit>" on stdout and exits
 * 0, or prints the reason on stderr and exits 1.
 */
#define _GNU_SOURCE
#include <X11/Xlib.h>
#include <X11/extensions/XRes.h>
#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

struct options {
    int until_exit;      /* the run ends when the program exits, not when it maps */
    double timeout_s;    /* a run that has neither mapped nor exited by then fails */
    int settle_ms;       /* after the map: CPU time unchanged this long means settled */
    int stop_signal;     /* what ends the program after it has settled */
    char** argv;         /* the program and its arguments */
};

static double now_ms(void)
{
    struct timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

static int ignore_errors(Display* dpy, XErrorEvent* ev)
{
    (void)dpy;
    (void)ev;
    return 0;
}

/* The fields of /proc/PID/stat after the command name, in buf; null once
   the process is gone. The name may hold spaces and parentheses: the fields
   count from the last ')'. */
static const char* stat_fields(pid_t pid, char* buf, size_t size)
{
    char path[64];
    snprintf(path, sizeof path, "/proc/%d/stat", (int)pid);
    FILE* f = fopen(path, "r");
    if (!f)
        return NULL;
    size_t n = fread(buf, 1, size - 1, f);
    fclose(f);
    buf[n] = '\0';
    const char* p = strrchr(buf, ')');
    return p && p[1] ? p + 2 : NULL;
}

/* User plus system CPU time of a process in clock ticks, or -1 once gone. */
static long long cpu_ticks(pid_t pid)
{
    char buf[1024];
    const char* p = stat_fields(pid, buf, sizeof buf);
    if (!p)
        return -1;
    unsigned long long utime = 0, stime = 0;
    if (sscanf(p, "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %llu %llu", &utime, &stime) != 2)
        return -1;
    return (long long)(utime + stime);
}

static pid_t parent_of(pid_t pid)
{
    char buf[1024];
    const char* p = stat_fields(pid, buf, sizeof buf);
    int ppid = -1;
    if (!p || sscanf(p, "%*c %d", &ppid) != 1)
        return -1;
    return ppid;
}

/* Whether a window belongs to the launched program (or to a process it
 * started), asked of the server through X-Resource. A server that cannot
 * tell gives the benefit of the doubt: on the bench's private server the
 * launched program is the only one that maps windows. */
static int window_of_child(Display* dpy, int have_xres, Window w, pid_t child)
{
    if (!have_xres)
        return 1;
    XResClientIdSpec spec = {w, XRES_CLIENT_ID_PID_MASK};
    long count = 0;
    XResClientIdValue* ids = NULL;
    if (XResQueryClientIds(dpy, 1, &spec, &count, &ids) != Success)
        return 1;
    pid_t owner = -1;
    for (long i = 0; i < count; i++)
        if (XResGetClientPid(&ids[i]) > 0)
            owner = XResGetClientPid(&ids[i]);
    XResClientIdsDestroy(count, ids);
    for (int depth = 0; owner > 1 && depth < 8; depth++, owner = parent_of(owner))
        if (owner == child)
            return 1;
    return owner == -1;
}

static int hold(void)
{
    Display* dpy = XOpenDisplay(NULL);
    if (!dpy) {
        fprintf(stderr, "launch_timer: cannot open the display\n");
        return 1;
    }
    printf("held\n");
    fflush(stdout);
    /* Nothing is selected: this blocks until the process is ended. */
    for (;;) {
        XEvent ev;
        XNextEvent(dpy, &ev);
    }
}

static int usage(void)
{
    fprintf(stderr,
            "usage: launch_timer [--exit] [--timeout S] [--settle MS] [--signal N] -- PROGRAM [ARGS...]\n"
            "       launch_timer --hold\n");
    return 2;
}

static int parse(int argc, char** argv, struct options* o)
{
    o->until_exit = 0;
    o->timeout_s = 30;
    o->settle_ms = 200;
    o->stop_signal = SIGKILL;
    o->argv = NULL;
    for (int i = 1; i < argc; i++) {
        if (!strcmp(argv[i], "--exit"))
            o->until_exit = 1;
        else if (!strcmp(argv[i], "--timeout") && i + 1 < argc)
            o->timeout_s = atof(argv[++i]);
        else if (!strcmp(argv[i], "--settle") && i + 1 < argc)
            o->settle_ms = atoi(argv[++i]);
        else if (!strcmp(argv[i], "--signal") && i + 1 < argc)
            o->stop_signal = atoi(argv[++i]);
        else if (!strcmp(argv[i], "--") && i + 1 < argc) {
            o->argv = argv + i + 1;
            return 0;
        } else
            return -1;
    }
    return -1;
}

/* Waits until the process has used no CPU for settle_ms (or for at most
 * ten times that plus two seconds), so that its peak resident set includes
 * what it does right after mapping (painting, the rest of a file). */
static void settle(pid_t pid, int settle_ms)
{
    double start = now_ms(), quiet_since = start;
    long long last = cpu_ticks(pid);
    while (last >= 0 && now_ms() - quiet_since < settle_ms && now_ms() - start < settle_ms * 10.0 + 2000) {
        usleep(20000);
        long long t = cpu_ticks(pid);
        if (t != last)
            quiet_since = now_ms();
        last = t;
    }
}

int main(int argc, char** argv)
{
    if (argc == 2 && !strcmp(argv[1], "--hold"))
        return hold();
    struct options o;
    if (parse(argc, argv, &o) != 0)
        return usage();

    /* The child is made first, while this process is small: the peak
     * resident set that the kernel reports for the child counts what it
     * inherited before its exec. It waits on a pipe until the display is
     * watched, then becomes the program, in a process group of its own so
     * that whatever it starts is ended with it. */
    int go[2];
    if (pipe(go) != 0) {
        perror("launch_timer: pipe");
        return 1;
    }
    pid_t child = fork();
    if (child < 0) {
        perror("launch_timer: fork");
        return 1;
    }
    if (child == 0) {
        char byte;
        close(go[1]);
        setpgid(0, 0);
        if (read(go[0], &byte, 1) != 1)
            _exit(126);
        close(go[0]);
        if (!freopen("/dev/null", "w", stdout))
            _exit(126);
        execvp(o.argv[0], o.argv);
        fprintf(stderr, "launch_timer: cannot run %s: %s\n", o.argv[0], strerror(errno));
        _exit(127);
    }
    close(go[0]);
    setpgid(child, child);

    Display* dpy = XOpenDisplay(NULL);
    if (!dpy) {
        fprintf(stderr, "launch_timer: cannot open the display\n");
        kill(child, SIGKILL);
        waitpid(child, NULL, 0);
        return 1;
    }
    XSetErrorHandler(ignore_errors);
    int event_base, error_base;
    int have_xres = XResQueryExtension(dpy, &event_base, &error_base);
    Window root = DefaultRootWindow(dpy);
    XSelectInput(dpy, root, SubstructureNotifyMask);
    XSync(dpy, True);
    /* A descriptor that becomes readable when the child ends, where the kernel has one. */
    int pidfd = (int)syscall(SYS_pidfd_open, child, 0);

    double t0 = now_ms(), elapsed = -1;
    const char* how = o.until_exit ? "exit" : "map";
    if (write(go[1], "g", 1) != 1) {
        perror("launch_timer: write");
        return 1;
    }
    close(go[1]);

    int status = 0, reaped = 0;
    struct rusage usage;
    while (elapsed < 0 && now_ms() - t0 < o.timeout_s * 1e3) {
        struct pollfd fds[2] = {{ConnectionNumber(dpy), POLLIN, 0}, {pidfd, POLLIN, 0}};
        poll(fds, pidfd >= 0 ? 2 : 1, pidfd >= 0 ? 100 : 1);
        while (elapsed < 0 && XPending(dpy)) {
            XEvent ev;
            XNextEvent(dpy, &ev);
            if (o.until_exit || ev.type != MapNotify || ev.xmap.event != root || ev.xmap.override_redirect)
                continue;
            /* The time is taken before asking whose window it is. */
            double t = now_ms() - t0;
            if (window_of_child(dpy, have_xres, ev.xmap.window, child))
                elapsed = t;
        }
        if (elapsed < 0 && wait4(child, &status, WNOHANG, &usage) == child) {
            reaped = 1;
            if (!o.until_exit) {
                fprintf(stderr, "launch_timer: %s ended without mapping a window\n", o.argv[0]);
                return 1;
            }
            elapsed = now_ms() - t0;
        }
    }
    if (elapsed < 0) {
        fprintf(stderr, "launch_timer: %s neither mapped nor ended within %.0f s\n", o.argv[0], o.timeout_s);
        kill(-child, SIGKILL);
        waitpid(child, NULL, 0);
        return 1;
    }
    if (!reaped) {
        settle(child, o.settle_ms);
        kill(-child, o.stop_signal);
        /* A program asked to end gently (a profiler writing its output)
         * gets time to do so; then it is made to. */
        for (int i = 0; i < 6000 && !reaped; i++) {
            if (wait4(child, &status, WNOHANG, &usage) == child)
                reaped = 1;
            else
                usleep(10000);
        }
        if (!reaped) {
            kill(-child, SIGKILL);
            wait4(child, &status, 0, &usage);
        }
    }
    if (o.until_exit && !(WIFEXITED(status) && WEXITSTATUS(status) == 0)) {
        fprintf(stderr, "launch_timer: %s failed (status %d)\n", o.argv[0], status);
        return 1;
    }
    XCloseDisplay(dpy);
    printf("%.2f %ld %s\n", elapsed, usage.ru_maxrss, how);
    return 0;
}
