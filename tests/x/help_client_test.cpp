// The help client against fake help servers: a forked process with a connection of its own that owns
// _ORV_HELP_SERVER, and shell scripts standing for the server program.
#include "x_env.h"

#include <X11/Xatom.h>
#include <dirent.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "app/cursors.h"
#include "app/status.h"
#include "core/message.h"
#include "files_support.h"
#include "help/help_client.h"

using namespace filetest;

namespace {

// How the fake answers each request.
enum class Fake { Answer, Garbage, WrongType, OtherSerial, Silent, Vanish, StaleThenAnswer };

const char* fake_name(Fake f)
{
    const char* names[] = {"answers", "answers garbage", "answers an INTEGER", "answers another serial",
                           "never answers", "destroys its window", "answers late after a stale reply"};
    return names[static_cast<int>(f)];
}

void write_all(int fd, const std::string& s)
{
    uint32_t n = static_cast<uint32_t>(s.size());
    if (write(fd, &n, sizeof n) != sizeof n || write(fd, s.data(), n) != static_cast<ssize_t>(n))
        _exit(3);
}

// The fake server's life, in the forked child: own the selection, then for each request read the request's
// property, hand its text to the test and answer as told; end when the test closes its pipe.
[[noreturn]] void fake_server(const std::string& displayName, Fake mode, int up, int down, bool askVersion)
{
    Display* d = XOpenDisplay(displayName.c_str());
    if (!d)
        _exit(2);
    Window w = XCreateSimpleWindow(d, DefaultRootWindow(d), 0, 0, 1, 1, 0, 0, 0);
    Atom request = XInternAtom(d, "_ORV_HELP_REQUEST", False), reply = XInternAtom(d, "_ORV_HELP_REPLY", False);
    XSetSelectionOwner(d, XInternAtom(d, "_ORV_HELP_SERVER", False), w, CurrentTime);
    XSync(d, False);
    write_all(up, "ready");
    for (;;) {
        pollfd p[2] = {{ConnectionNumber(d), POLLIN, 0}, {down, POLLIN, 0}};
        if (!XPending(d) && poll(p, 2, 10000) <= 0)
            _exit(4);
        if (p[1].revents)
            _exit(0);
        while (XPending(d)) {
            XEvent e;
            XNextEvent(d, &e);
            if (e.type != ClientMessage || e.xclient.message_type != request)
                continue;
            Window client = static_cast<Window>(e.xclient.data.l[0]);
            Atom type;
            int format;
            unsigned long n, after;
            unsigned char* data = nullptr;
            XGetWindowProperty(d, client, static_cast<Atom>(e.xclient.data.l[2]), 0, 4096, True, XA_STRING, &type,
                               &format, &n, &after, &data);
            std::string text = data ? std::string(reinterpret_cast<char*>(data), n) : "(none)";
            XFree(data);
            write_all(up, text + "|" + std::to_string(e.xclient.data.l[1]));
            std::string answer = "_ORV_HELP 1\nserial " + std::to_string(e.xclient.data.l[1]) + "\nstatus shown\n";
            if (mode == Fake::Garbage)
                answer = "\x01\x02 help yourself";
            if (mode == Fake::OtherSerial)
                answer = "_ORV_HELP 1\nserial 999999\nstatus shown\n";
            if (mode == Fake::StaleThenAnswer) {
                const std::string stale = "_ORV_HELP 1\nserial 999999\nstatus refused\n";
                XChangeProperty(d, client, reply, XA_STRING, 8, PropModeReplace,
                                reinterpret_cast<const unsigned char*>(stale.data()), stale.size());
                XSync(d, False);
                usleep(100000);
            }
            if (mode == Fake::WrongType) {
                long words[3] = {1, 2, 3};
                XChangeProperty(d, client, reply, XA_INTEGER, 32, PropModeReplace,
                                reinterpret_cast<unsigned char*>(words), 3);
            } else if (mode == Fake::Vanish) {
                XDestroyWindow(d, w);
            } else if (mode != Fake::Silent) {
                XChangeProperty(d, client, reply, XA_STRING, 8, PropModeReplace,
                                reinterpret_cast<const unsigned char*>(answer.data()), answer.size());
            }
            if (askVersion) {
                XEvent m{};
                m.xclient = {ClientMessage, 0, False, d, client, XInternAtom(d, "_ORV_HELP_VERSION", False), 32, {}};
                XSendEvent(d, client, False, NoEventMask, &m);
            }
            XSync(d, False);
        }
    }
}

class FakeServer {
public:
    explicit FakeServer(Fake mode, bool askVersion = false)
    {
        int up[2], down[2];
        if (pipe(up) != 0 || pipe(down) != 0)
            return;
        std::string name = DisplayString(app().display);
        pid_ = fork();
        if (pid_ == 0) {
            close(up[0]);
            close(down[1]);
            fake_server(name, mode, up[1], down[0], askVersion);
        }
        close(up[1]);
        close(down[0]);
        up_ = up[0];
        down_ = down[1];
        ready_ = next() == "ready";
    }
    ~FakeServer()
    {
        close(down_);
        close(up_);
        int status;
        if (pid_ > 0)
            waitpid(pid_, &status, 0);
    }
    bool ready() const { return ready_; }
    // The next text the fake sends up ("request text|serial"), "" when none comes within two seconds.
    std::string next()
    {
        pollfd p{up_, POLLIN, 0};
        uint32_t n = 0;
        if (poll(&p, 1, 2000) <= 0 || read(up_, &n, sizeof n) != sizeof n || n > 65536)
            return "";
        std::string s(n, '\0');
        size_t got = 0;
        while (got < n) {
            ssize_t r = read(up_, s.data() + got, n - got);
            if (r <= 0)
                return "";
            got += static_cast<size_t>(r);
        }
        return s;
    }

private:
    pid_t pid_ = -1;
    int up_ = -1, down_ = -1;
    bool ready_ = false;
};

bool has_line(const std::string& text, const std::string& line)
{
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

// Children of this process, zombies included.
int children()
{
    int count = 0;
    DIR* proc = opendir("/proc");
    while (dirent* e = proc ? readdir(proc) : nullptr) {
        std::ifstream stat(std::string("/proc/") + e->d_name + "/stat");
        std::string line;
        int ppid = 0;
        if (std::getline(stat, line) && line.rfind(')') != std::string::npos &&
            std::sscanf(line.c_str() + line.rfind(')') + 2, "%*c %d", &ppid) == 1 && ppid == getpid())
            count++;
    }
    if (proc)
        closedir(proc);
    return count;
}

void set_server_program(const std::string& path)
{
    XrmDatabase db = XtDatabase(app().display);
    XrmPutStringResource(&db, "*helpServerProgram", path.c_str());
}

std::string shown_message()
{
    pump();
    Widget m = message_dialog(0);
    if (!managed(m))
        return "(none)";
    std::string text = dialog_message(m);
    XtUnmanageChild(m);
    pump();
    return text;
}

}  // namespace

// A server that owns the atom gets each request, naming our book "pictrel", the topic and our window with a new
// serial, and its "shown" keeps the built-in window shut; it may ask for the version dialog; it hears goodbye.
TEST(HelpClient, AServerOwningTheAtomShowsTheTopicOfOurBook)
{
    Drawing* d = make_drawing();
    ASSERT_TRUE(d);
    FakeServer fake(Fake::Answer, true);
    ASSERT_TRUE(fake.ready());
    setenv("HELPTRACE", "1", 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(help_client_request(d->activeArea, "tool.pencil"), 0);
    std::string trace = testing::internal::GetCapturedStderr();
    unsetenv("HELPTRACE");
    std::string first = fake.next();
    EXPECT_EQ(first.rfind("_ORV_HELP 1\n", 0), 0u) << first;
    for (const char* line : {"request show", "book pictrel", "topic tool.pencil", "program Pictrel"})
        EXPECT_TRUE(has_line(first, line)) << first;
    EXPECT_NE(first.find("\nwindow 0x"), std::string::npos) << first;
    EXPECT_NE(trace.find("helptrace: request show serial"), std::string::npos) << trace;
    EXPECT_NE(trace.find("helptrace: reply to serial"), std::string::npos) << trace;

    EXPECT_EQ(help_client_request(d->activeArea, "window"), 0);
    std::string second = fake.next();
    EXPECT_TRUE(has_line(second.substr(0, second.find('|')), "topic window")) << second;
    EXPECT_NE(first.substr(first.find('|')), second.substr(second.find('|'))) << "the serial is the same";

    pump();
    Widget version = XtNameToWidget(app().topLevel, "*Show Version");
    EXPECT_TRUE(managed(version)) << "the server's version message opened no version dialog";

    help_client_shutdown();
    std::string bye = fake.next();
    EXPECT_TRUE(has_line(bye, "request goodbye")) << bye;
    EXPECT_NE(help_client_request(d->activeArea, "window"), 0) << "a request after shutdown went to the server";
}

// A server that answers garbage, another type, another request's serial or nothing at all, or whose window goes
// away mid-request, leaves the topic to the built-in window, promptly (the bound only catches a hang).
TEST(HelpClient, AServerThatFailsLeavesTheTopicToTheBuiltInWindow)
{
    Drawing* d = make_drawing();
    ASSERT_TRUE(d);
    for (Fake mode : {Fake::Garbage, Fake::WrongType, Fake::OtherSerial, Fake::Silent, Fake::Vanish}) {
        {
            FakeServer fake(mode);
            ASSERT_TRUE(fake.ready()) << fake_name(mode);
            auto start = std::chrono::steady_clock::now();
            EXPECT_NE(help_client_request(d->activeArea, "window"), 0) << "a server that " << fake_name(mode);
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3)) << fake_name(mode);
            EXPECT_TRUE(has_line(fake.next(), "topic window")) << "not asked: the server that " << fake_name(mode);
        }
        // The next server's window often has the id of the one that just went away.
        FakeServer good(Fake::Answer);
        EXPECT_EQ(help_client_request(d->activeArea, "window"), 0) << "a server after one that " << fake_name(mode);
        EXPECT_EQ(shown_message(), "(none)") << "a server that " << fake_name(mode);
    }
    FakeServer late(Fake::StaleThenAnswer);
    EXPECT_EQ(help_client_request(d->activeArea, "window"), 0) << fake_name(Fake::StaleThenAnswer);
}

// With no server, the program of helpServerProgram is run (at start-up under HELP_CLIENT_INITIALIZE) as
// "-cshelpservermode -display <display>" with default signals, nothing blocked and no X connection; one that ends
// at once or cannot be executed is reported with cantExecString (its status, exec's errno); a missing one is the
// quiet usual case. No zombie is left.
TEST(HelpClient, TheServerProgramIsStartedReportedAndReaped)
{
    Drawing* d = make_drawing();
    ASSERT_TRUE(d);
    ASSERT_EQ(XGetSelectionOwner(app().display, XInternAtom(app().display, "_ORV_HELP_SERVER", False)), None);
    ScratchDir dir;
    // In perl (essential on Debian): a shell blocks every signal while it waits for a command, and would show that.
    const std::string script =
        dir.file("fake-orvhelp", "#!/usr/bin/perl\n"
                                 "open(A, '>', '" + dir.path("argv") + "'); print A map { \"$_\\n\" } @ARGV;\n"
                                 "open(S, '<', '/proc/self/status'); open(O, '>', '" + dir.path("signals") + "');\n"
                                 "print O grep { /^Sig(Blk|Ign)/ } <S>;\n"
                                 "opendir(D, '/proc/self/fd'); open(F, '>', '" + dir.path("fds") + "');\n"
                                 "print F map { (readlink(\"/proc/self/fd/$_\") // '') . \"\\n\" } readdir(D);\n"
                                 "close A; close O; close F; exit 7;\n");
    chmod(script.c_str(), 0755);
    set_server_program(script);
    // HELP_CLIENT_INITIALIZE starts it with the client, before any request.
    setenv("HELP_CLIENT_INITIALIZE", "1", 1);
    help_client_start(app().topLevel, "pictrel", "Pictrel", show_version_over, help_cursor_cb);
    unsetenv("HELP_CLIENT_INITIALIZE");
    const std::string display = DisplayString(app().display);
    EXPECT_EQ(read_file(dir.path("argv")), "-cshelpservermode\n-display\n" + display + "\n");
    unsigned long long blocked = ~0ULL, ignored = ~0ULL;
    std::sscanf(read_file(dir.path("signals")).c_str(), "SigBlk: %llx SigIgn: %llx", &blocked, &ignored);
    EXPECT_EQ(blocked, 0u) << "signals blocked in the server program";
    EXPECT_EQ(ignored & ~(1ULL << (SIGFPE - 1)), 0u) << "signals ignored in the server program (but perl's)";
    EXPECT_EQ(read_file(dir.path("fds")).find("socket:"), std::string::npos) << read_file(dir.path("fds"));
    EXPECT_EQ(shown_message().rfind("Couldn't exec 7", 0), 0u) << "a program that ends at once";

    chmod(script.c_str(), 0644);
    EXPECT_NE(help_client_request(d->activeArea, "window"), 0);
    EXPECT_EQ(shown_message().rfind("Couldn't exec 13", 0), 0u) << "a program that is not executable (EACCES)";

    set_server_program(dir.path("no-such-program"));
    EXPECT_NE(help_client_request(d->activeArea, "window"), 0);
    EXPECT_EQ(shown_message(), "(none)") << "a missing program is no error";

    // A program that runs on without serving is waited for once and not started twice; when it ends, while we
    // wait for nothing, it is reaped at once.
    const std::string slow = dir.file("slow", "#!/bin/sh\necho started >> " + dir.path("starts") + "\nsleep 2\n");
    chmod(slow.c_str(), 0755);
    set_server_program(slow);
    EXPECT_NE(help_client_request(d->activeArea, "window"), 0);
    EXPECT_NE(help_client_request(d->activeArea, "window"), 0);
    EXPECT_EQ(read_file(dir.path("starts")), "started\n");
    EXPECT_EQ(shown_message(), "(none)") << "a program still starting is no error";
    for (int i = 0; i < 100 && children() > 0; i++)
        usleep(50000);
    EXPECT_EQ(children(), 0) << "the program that ended is left a zombie";
    sigset_t mask;
    sigprocmask(SIG_BLOCK, nullptr, &mask);
    EXPECT_FALSE(sigismember(&mask, SIGCHLD)) << "SIGCHLD left blocked";
}
