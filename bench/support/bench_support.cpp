// The toolkit is started exactly as the program starts it, so that what a
// bench measures is what a user waits on.
#include "bench_support.h"

#include <X11/Intrinsic.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "app/startup.h"
#include "core/app_state.h"

bool bench_start(const char* benchName)
{
    static char arg0[] = "pictrel";
    static char* argv[] = {arg0, nullptr};
    int argc = 1;
    if (startup(&argc, argv) == 0)
        return true;
    std::fprintf(stderr, "%s: start-up failed (needs an 8-bit PseudoColor display)\n", benchName);
    return false;
}

void bench_pump()
{
    for (int r = 0; r < 3; r++) {
        XSync(app().display, False);
        while (XtAppPending(app().context))
            XtAppProcessEvent(app().context, XtIMAll);
    }
}

double now_ms()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

std::string bench_scratch_dir(const char* benchName)
{
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/pictrel-" + benchName + "-XXXXXX";
    if (!mkdtemp(pattern.data())) {
        std::perror(benchName);
        return {};
    }
    return pattern;
}
