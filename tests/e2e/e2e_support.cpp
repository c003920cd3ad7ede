#include "e2e_support.h"

#include <X11/Xatom.h>
#include <X11/extensions/XTest.h>
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace {

// Windows come and go while we look at them: an error about one just gone must not end the test process.
int ignore_x_errors(Display*, XErrorEvent*) { return 0; }

template <typename F>
bool poll(int timeoutMs, F done)
{
    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        e2e_sleep_ms(20);
    }
    return true;
}

KeyCode keycode(Display* dpy, const std::string& name)
{
    KeySym sym = XStringToKeysym(name == "ctrl" ? "Control_L" : name == "shift" ? "Shift_L" : name.c_str());
    return sym == NoSymbol ? 0 : XKeysymToKeycode(dpy, sym);
}

}  // namespace

void e2e_sleep_ms(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

std::string e2e_read_file(const std::string& path)
{
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string changed_file(const std::string& path, const std::string& before)
{
    std::string now;
    for (int i = 0; i < 50 && (now = e2e_read_file(path)) == before; i++)
        e2e_sleep_ms(100);
    return now;
}

std::string command_output(const std::string& command)
{
    std::string out;
    if (FILE* p = popen(command.c_str(), "r")) {
        char buf[256];
        while (fgets(buf, sizeof buf, p))
            out += buf;
        pclose(p);
    }
    return out;
}

std::string primary_text(Display* dpy)
{
    Window me = XCreateSimpleWindow(dpy, DefaultRootWindow(dpy), 0, 0, 1, 1, 0, 0, 0);
    Atom into = XInternAtom(dpy, "PICTREL_TEST_PASTE", False);
    XConvertSelection(dpy, XA_PRIMARY, XA_STRING, into, me, CurrentTime);
    XFlush(dpy);
    XEvent ev{};
    std::string text;
    if (poll(3000, [&] { return XCheckTypedWindowEvent(dpy, me, SelectionNotify, &ev); }) &&
        ev.xselection.property != None) {
        Atom type;
        int format;
        unsigned long count = 0, after = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(dpy, me, into, 0, 1 << 20, True, AnyPropertyType, &type, &format, &count, &after,
                               &data) == Success && data)
            text.assign(reinterpret_cast<char*>(data), count);
        XFree(data);
    }
    XDestroyWindow(dpy, me);
    return text;
}

std::vector<Window> popups(Display* dpy)
{
    std::vector<Window> found;
    for (const Geometry& g : child_windows(dpy, DefaultRootWindow(dpy))) {
        XWindowAttributes a;
        if (XGetWindowAttributes(dpy, g.id, &a) && a.override_redirect)
            found.push_back(g.id);
    }
    return found;
}

E2eApp::E2eApp(const char* display)
{
    XSetErrorHandler(ignore_x_errors);
    const char* name = display ? display : getenv("DISPLAY");
    displayName_ = name ? name : "";
    dpy_ = name ? XOpenDisplay(name) : nullptr;
}

E2eApp::~E2eApp()
{
    if (pid_ > 0) {
        kill(-pid_, SIGKILL);   // the whole group: a wrapper's or a launcher's own children too
        if (running())
            waitpid(pid_, nullptr, 0);
    }
    if (dpy_)
        XCloseDisplay(dpy_);
}

std::string E2eApp::log_dir()
{
    std::string dir = std::string(PICTREL_BUILD_DIR) + "/e2e-logs";
    mkdir(dir.c_str(), 0755);
    return dir;
}

bool E2eApp::start(const std::vector<std::string>& args)
{
    static int runCount = 0;
    if (pid_ > 0)
        return false;
    argv0_ = "pictrel-e2e-" + std::to_string(getpid()) + "-" + std::to_string(++runCount);
    std::string logDir = log_dir();
    outPath_ = logDir + "/" + argv0_ + ".out";
    errPath_ = logDir + "/" + argv0_ + ".err";

    // Under a wrapper, or found through PATH, the binary is reached through a link named like the run, so that its
    // argv[0] (and with it the windows' class hint) is still the run's name.
    std::string link = logDir + "/" + argv0_;
    if (!wrapper_.empty() || onPath_) {
        unlink(link.c_str());
        if (symlink(binary_.c_str(), link.c_str()) != 0)
            return false;
    }
    std::vector<std::string> argv = wrapper_;
    argv.push_back(wrapper_.empty() ? argv0_ : link);
    argv.insert(argv.end(), args.begin(), args.end());
    if (!wrapper_.empty())
        return spawn(argv[0], argv, true, "");
    return spawn(binary_, argv, false, onPath_ ? logDir : "");
}

bool E2eApp::start_command(const std::vector<std::string>& command)
{
    static int restartCount = 0;
    if (!dpy_ || pid_ > 0 || command.empty())
        return false;
    argv0_ = std::filesystem::path(command[0]).filename().string();
    std::string stem = log_dir() + "/" + argv0_ + "-restart-" + std::to_string(++restartCount);
    outPath_ = stem + ".out";
    errPath_ = stem + ".err";
    return spawn(command[0], command, false, "");
}

bool E2eApp::spawn(const std::string& file, const std::vector<std::string>& args, bool search,
                   const std::string& pathFirst)
{
    std::vector<char*> argv;
    for (const std::string& s : args)
        argv.push_back(const_cast<char*>(s.c_str()));
    argv.push_back(nullptr);
    std::string path = pathFirst.empty() ? "" : pathFirst + ":" + (getenv("PATH") ? getenv("PATH") : "/usr/bin:/bin");
    pid_ = fork();
    if (pid_ == 0) {
        setpgid(0, 0);
        setenv("DISPLAY", displayName_.c_str(), 1);
        if (resourcePath_.empty())
            unsetenv("XFILESEARCHPATH");
        else
            setenv("XFILESEARCHPATH", resourcePath_.c_str(), 1);
        unsetenv("XAPPLRESDIR");
        if (!path.empty())
            setenv("PATH", path.c_str(), 1);
        if (!pathOnly_.empty())
            setenv("PATH", pathOnly_.c_str(), 1);
        dup2(open("/dev/null", O_RDONLY), 0);
        dup2(open(outPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 1);
        dup2(open(errPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 2);
        if (search)
            execvp(file.c_str(), argv.data());
        else
            execv(file.c_str(), argv.data());
        _exit(127);
    }
    return pid_ > 0;
}

// Dialog shells belong to the run whose shell they are transient for.
std::vector<Geometry> child_windows(Display* dpy, Window w, Window* parent)
{
    Window root, up = 0, *kids = nullptr;
    unsigned n = 0;
    std::vector<Geometry> out;
    if (!XQueryTree(dpy, w, &root, &up, &kids, &n))
        return out;
    for (unsigned i = 0; i < n; i++) {
        XWindowAttributes a;
        if (XGetWindowAttributes(dpy, kids[i], &a) && a.map_state == IsViewable)
            out.push_back({kids[i], a.x, a.y, a.width, a.height});
    }
    XFree(kids);
    if (parent)
        *parent = up;
    return out;
}

std::string window_class(Display* dpy, Window w, bool instance)
{
    XClassHint hint{};
    if (!w || !XGetClassHint(dpy, w, &hint))
        return "";
    const char* part = instance ? hint.res_name : hint.res_class;
    std::string out = part ? part : "";
    XFree(hint.res_name);
    XFree(hint.res_class);
    return out;
}

std::string window_name(Display* dpy, Window w)
{
    char* name = nullptr;
    std::string out = XFetchName(dpy, w, &name) && name ? name : "";
    XFree(name);
    return out;
}

bool E2eApp::is_ours(Window w)
{
    Window owner = None;
    return window_class(dpy_, w, true) == argv0_ ||
           (XGetTransientForHint(dpy_, w, &owner) && window_class(dpy_, owner, true) == argv0_);
}

std::vector<E2eWindow> E2eApp::windows()
{
    std::vector<E2eWindow> found;
    for (const Geometry& g : dpy_ ? child_windows(dpy_, DefaultRootWindow(dpy_)) : std::vector<Geometry>{})
        if (std::string title = window_name(dpy_, g.id); !title.empty() && is_ours(g.id))
            found.push_back({g.id, title});
    return found;
}

Window E2eApp::wait_window(const std::string& title, int timeoutMs)
{
    Window found = 0;
    poll(timeoutMs, [&] {
        for (const E2eWindow& w : windows())
            found = w.title == title ? w.id : found;
        return found || !running();
    });
    return found;
}

Window E2eApp::shown(const std::string& title, int timeoutMs)
{
    Window w = wait_window(title, timeoutMs);
    if (w)
        e2e_sleep_ms(300);
    return w;
}

Window E2eApp::start_shown(const std::vector<std::string>& args, const std::string& title)
{
    return start(args) ? shown(title) : 0;
}

bool E2eApp::gone(const std::string& title, int timeoutMs)
{
    return poll(timeoutMs, [&] {
        for (const E2eWindow& w : windows())
            if (w.title == title)
                return false;
        return true;
    });
}

void E2eApp::sync()
{
    XSync(dpy_, False);
    e2e_sleep_ms(150);
}

void E2eApp::key(Window w, const std::string& combo)
{
    if (w) {
        XSetInputFocus(dpy_, w, RevertToPointerRoot, CurrentTime);
        sync();
    }
    std::vector<KeyCode> codes;
    std::istringstream parts(combo);
    for (std::string part; std::getline(parts, part, '+');)
        if (KeyCode code = keycode(dpy_, part))
            codes.push_back(code);
    for (KeyCode c : codes)
        XTestFakeKeyEvent(dpy_, c, True, CurrentTime);
    for (auto it = codes.rbegin(); it != codes.rend(); ++it)
        XTestFakeKeyEvent(dpy_, *it, False, CurrentTime);
    sync();
}

void E2eApp::type(Window w, const std::string& text)
{
    for (size_t i = 0; i < text.size(); i++) {
        char c = text[i];
        auto lower = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        std::string combo = c == '/' ? "slash" : c == '-' ? "minus" : c == '_' ? "shift+minus" : c == '.' ? "period"
                            : (lower != c ? "shift+" : "") + std::string(1, lower);
        key(i ? 0 : w, combo);
    }
}

void E2eApp::hold(const std::string& key, bool down)
{
    if (KeyCode code = keycode(dpy_, key))
        XTestFakeKeyEvent(dpy_, code, down ? True : False, CurrentTime);
    sync();
}

void E2eApp::keys(Window w, std::initializer_list<const char*> combos)
{
    for (auto it = combos.begin(); it != combos.end(); ++it)
        key(it == combos.begin() ? w : 0, *it);
}

void E2eApp::move(Window w, int x, int y)
{
    int rx = x, ry = y;
    Window child;
    XTranslateCoordinates(dpy_, w, DefaultRootWindow(dpy_), x, y, &rx, &ry, &child);
    XTestFakeMotionEvent(dpy_, DefaultScreen(dpy_), rx, ry, CurrentTime);
    sync();
}

void E2eApp::button(unsigned b, bool down)
{
    XTestFakeButtonEvent(dpy_, b, down, CurrentTime);
    XSync(dpy_, False);
    e2e_sleep_ms(50);
}

void E2eApp::click(Window w, int x, int y, unsigned b)
{
    move(w, x, y);
    button(b, true);
    button(b, false);
    sync();
}

void E2eApp::multi_click(Window w, int x, int y, int times)
{
    move(w, x, y);
    for (int i = 0; i < times; i++) {
        XTestFakeButtonEvent(dpy_, 1, True, CurrentTime);
        XTestFakeButtonEvent(dpy_, 1, False, CurrentTime);
        XSync(dpy_, False);
        e2e_sleep_ms(30);   // the toolkit counts clicks of distinct times only
    }
    sync();
}

void E2eApp::menu(Window shell, int across, const char* mnemonic)
{
    key(shell, "F10");
    for (int i = 0; i < std::abs(across); i++)
        key(0, across > 0 ? "Right" : "Left");
    keys(0, {"Down", mnemonic});
    e2e_sleep_ms(150);
}

void send_protocol(Display* dpy, Window w, const char* protocol)
{
    XEvent ev{};
    ev.xclient = {ClientMessage, 0, False, dpy, w, XInternAtom(dpy, "WM_PROTOCOLS", False), 32, {}};
    ev.xclient.data.l[0] = static_cast<long>(XInternAtom(dpy, protocol, False));
    ev.xclient.data.l[1] = CurrentTime;
    XSendEvent(dpy, w, False, NoEventMask, &ev);
    XFlush(dpy);
}

void E2eApp::send_protocol(Window w, const char* protocol)
{
    ::send_protocol(dpy_, w, protocol);
    sync();
}

bool E2eApp::running()
{
    if (pid_ <= 0 || exited_)
        return false;
    int status = 0;
    pid_t r = waitpid(pid_, &status, WNOHANG);
    if (r == 0)
        return true;
    exited_ = true;
    exitStatus_ = r != pid_ ? -1 : WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return false;
}

bool E2eApp::wait_exit(int* status, int timeoutMs)
{
    if (!poll(timeoutMs, [&] { return !running(); }) || pid_ <= 0)
        return false;
    *status = exitStatus_;
    return true;
}

bool E2eApp::group_ended(int timeoutMs)
{
    return poll(timeoutMs, [&] { return kill(-pid_, 0) != 0 && errno == ESRCH; });
}

std::string E2eApp::stdout_text() const { return outPath_.empty() ? "" : e2e_read_file(outPath_); }
std::string E2eApp::stderr_text() const { return errPath_.empty() ? "" : e2e_read_file(errPath_); }

bool E2eApp::shows_text(Window w, const char* xlfd, const std::string& text)
{
    unsigned long black = BlackPixel(dpy_, DefaultScreen(dpy_));
    XFontStruct* font = dpy_ && w && !text.empty() ? XLoadQueryFont(dpy_, xlfd) : nullptr;
    if (!font)
        return false;
    // The glyphs drawn into a bitmap of exactly their ink box.
    int direction, ascent, descent, n = static_cast<int>(text.size());
    XCharStruct ink{};
    XTextExtents(font, text.c_str(), n, &direction, &ascent, &descent, &ink);
    unsigned gw = ink.rbearing - ink.lbearing, gh = ink.ascent + ink.descent;
    Pixmap glyphs = XCreatePixmap(dpy_, w, gw, gh, 1);
    XGCValues v{};
    v.font = font->fid;
    GC gc = XCreateGC(dpy_, glyphs, GCForeground | GCFont, &v);
    XFillRectangle(dpy_, glyphs, gc, 0, 0, gw, gh);
    XSetForeground(dpy_, gc, 1);
    XDrawString(dpy_, glyphs, gc, -ink.lbearing, ink.ascent, text.c_str(), n);
    ImagePtr mask(XGetImage(dpy_, glyphs, 0, 0, gw, gh, 1, XYPixmap));
    XFreeGC(dpy_, gc);
    XFreePixmap(dpy_, glyphs);
    XFreeFont(dpy_, font);
    XWindowAttributes attr;
    if (!mask || !XGetWindowAttributes(dpy_, w, &attr) || attr.width < int(gw) || attr.height < int(gh))
        return false;
    ImagePtr shot(XGetImage(dpy_, w, 0, 0, attr.width, attr.height, AllPlanes, ZPixmap));
    for (int oy = 0; shot && oy + int(gh) <= attr.height; oy++)
        for (int ox = 0; ox + int(gw) <= attr.width; ox++) {
            bool match = true;
            for (int y = 0; y < int(gh) && match; y++)
                for (int x = 0; x < int(gw) && match; x++)
                    match = (XGetPixel(shot.get(), ox + x, oy + y) == black) == (XGetPixel(mask.get(), x, y) != 0);
            if (match)
                return true;
        }
    return false;
}

Window find_window(Display* dpy, Window top, const std::function<bool(const Geometry&)>& match)
{
    for (const Geometry& g : child_windows(dpy, top)) {
        if (match(g))
            return g.id;
        if (Window w = find_window(dpy, g.id, match))
            return w;
    }
    return 0;
}

std::vector<Window> palette(Display* dpy, Window top, size_t count, int w, int h)
{
    auto is_button = [&](const Geometry& k) { return k.width == w && k.height == h; };
    Window box = find_window(dpy, top, [&](const Geometry& g) {
        std::vector<Geometry> kids = child_windows(dpy, g.id);
        return kids.size() == count && std::all_of(kids.begin(), kids.end(), is_button);
    });
    std::vector<Geometry> kids = box ? child_windows(dpy, box) : std::vector<Geometry>{};
    std::sort(kids.begin(), kids.end(),
              [](const Geometry& a, const Geometry& b) { return std::tie(a.x, a.y) < std::tie(b.x, b.y); });
    std::vector<Window> out;
    for (const Geometry& k : kids)
        out.push_back(k.id);
    return out;
}

Window find_canvas(Display* dpy, Window top, int width, int height)
{
    return find_window(dpy, top, [&](const Geometry& g) { return g.width == width && g.height == height; });
}

ImagePtr read_window(Display* dpy, Window top, Window w, int width, int height)
{
    XRaiseWindow(dpy, top);
    XSync(dpy, False);
    e2e_sleep_ms(200);   // the program repaints what the raise exposed
    XGrabServer(dpy);
    ImagePtr im(XGetImage(dpy, w, 0, 0, width, height, AllPlanes, ZPixmap));
    XUngrabServer(dpy);
    XSync(dpy, False);
    return im;
}

unsigned rgb_of(Display* dpy, unsigned long pixel)
{
    XColor c{};
    c.pixel = pixel;
    XQueryColor(dpy, DefaultColormap(dpy, DefaultScreen(dpy)), &c);
    return ((c.red >> 8) << 16) | ((c.green >> 8) << 8) | (c.blue >> 8);
}

bool dark(Display* dpy, unsigned long pixel)
{
    return (rgb_of(dpy, pixel) & 0xC0C0C0) == 0;   // every component under 0x40
}

E2eDrawing open_untitled(E2eApp& app, int width, int height, const char* geometry, std::vector<std::string> args)
{
    E2eDrawing d;
    args.insert(args.end(), {"-width", std::to_string(width), "-height", std::to_string(height)});
    args.insert(args.end(), {"-geometry", geometry});
    if (!app.start(args) ||
        !(d.shell = app.wait_window("Untitled")))
        return d;
    e2e_sleep_ms(300);
    d.width = width << 3;
    d.height = height << 3;
    d.canvas = find_canvas(app.display(), d.shell, d.width, d.height);
    d.tools = palette(app.display(), d.shell, 9, 24, 24);
    return d;
}

void drag_cells(E2eApp& app, const E2eDrawing& d, unsigned button, int x0, int y0, int x1, int y1)
{
    app.move(d.canvas, e2e_cell(x0), e2e_cell(y0));
    app.button(button, true);
    for (int s = 1; s <= 4; s++) {
        app.move(d.canvas, e2e_cell(x0 + (x1 - x0) * s / 4), e2e_cell(y0 + (y1 - y0) * s / 4));
        e2e_sleep_ms(30);
    }
    app.button(button, false);
    e2e_sleep_ms(150);
}

int dark_cells(E2eApp& app, const E2eDrawing& d, int x0, int y0, int x1, int y1)
{
    ImagePtr im = read_window(app.display(), d.shell, d.canvas, d.width, d.height);
    int n = 0;
    for (int y = y0; im && y <= y1; y++)
        for (int x = x0; x <= x1; x++)
            n += dark(app.display(), XGetPixel(im.get(), e2e_cell(x), e2e_cell(y)));
    return im ? n : -1;
}
