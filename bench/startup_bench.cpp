// Start-up time of the real program: from fork to the moment its first
// top-level window is mapped, median of five runs on $DISPLAY.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int RUNS = 5;
constexpr double TIMEOUT_MS = 20000;

using Clock = std::chrono::steady_clock;

double ms_since(Clock::time_point t0)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - t0).count();
}

int ignore_errors(Display*, XErrorEvent*)
{
    return 0;
}

bool window_of(Display* dpy, Window w, const std::string& appName)
{
    XClassHint hint{};
    if (!XGetClassHint(dpy, w, &hint))
        return false;
    bool ours = hint.res_name && appName == hint.res_name;
    if (hint.res_name)
        XFree(hint.res_name);
    if (hint.res_class)
        XFree(hint.res_class);
    return ours;
}

// One run: milliseconds to the first mapped window, or a negative value.
double one_run(Display* dpy, int n)
{
    // A name of its own tells this run's windows from any others.
    std::string appName = "pictrel-bench-" + std::to_string(getpid()) + "-" + std::to_string(n);
    XSync(dpy, True);   // drop events of earlier runs
    fflush(stdout);     // the child must not write our buffered lines again
    Clock::time_point t0 = Clock::now();
    pid_t pid = fork();
    if (pid < 0)
        return -1;
    if (pid == 0) {
        setenv("XFILESEARCHPATH", PICTREL_RESOURCE_DIR "/%N", 0);
        if (!freopen("/dev/null", "w", stdout) || !freopen("/dev/null", "w", stderr))
            _exit(126);
        execl(PICTREL_BINARY, appName.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    double result = -1;
    while (result < 0 && ms_since(t0) < TIMEOUT_MS) {
        while (XPending(dpy)) {
            XEvent ev;
            XNextEvent(dpy, &ev);
            if (ev.type == MapNotify && window_of(dpy, ev.xmap.window, appName)) {
                result = ms_since(t0);
                break;
            }
        }
        if (result < 0) {
            int status;
            if (waitpid(pid, &status, WNOHANG) == pid)
                return -1;
            usleep(1000);
        }
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    return result;
}

}  // namespace

int main()
{
    Display* dpy = XOpenDisplay(nullptr);
    if (!dpy) {
        fprintf(stderr, "startup_bench: cannot open DISPLAY\n");
        return 1;
    }
    XSetErrorHandler(ignore_errors);
    XSelectInput(dpy, DefaultRootWindow(dpy), SubstructureNotifyMask);
    std::vector<double> times;
    for (int i = 0; i < RUNS; i++) {
        double t = one_run(dpy, i);
        if (t < 0) {
            fprintf(stderr, "startup_bench: run %d mapped no window\n", i + 1);
            continue;
        }
        printf("run %d: %.1f ms\n", i + 1, t);
        times.push_back(t);
    }
    XCloseDisplay(dpy);
    if (times.empty())
        return 1;
    std::sort(times.begin(), times.end());
    printf("startup to first mapped window: median %.1f ms over %zu runs\n", times[times.size() / 2],
           times.size());
    return 0;
}
