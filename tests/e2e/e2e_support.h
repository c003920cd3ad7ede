// End-to-end support: starts the real pictrel binary, finds the windows of this run (by its own argv[0] in WM_CLASS,
// or transient for one of those), drives it through XTest and reads back what a user would see. With no window
// manager, keys go where key() put the focus. The destructor kills a program still running.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

struct E2eWindow {
    Window id;
    std::string title;
};

class E2eApp {
public:
    explicit E2eApp(const char* display = nullptr);   // null: $DISPLAY; a run may start on one that cannot be opened
    ~E2eApp();
    E2eApp(const E2eApp&) = delete;
    E2eApp& operator=(const E2eApp&) = delete;

    Display* display() const { return dpy_; }
    // XFILESEARCHPATH of later runs; the source tree's resources by default, none at all when empty. The runs never
    // see XAPPLRESDIR, so that this is the one place their application defaults come from.
    void set_resource_path(const std::string& path) { resourcePath_ = path; }
    // The program later runs start; the one built here by default.
    void set_binary(const std::string& path) { binary_ = path; }
    // A command the binary runs under (strace and its options, say); its windows keep this run's name.
    void set_wrapper(const std::vector<std::string>& command) { wrapper_ = command; }
    // Started as a user starts it by name: argv[0] is found in a directory of PATH (through a link named like the
    // run), so that the restart command the program writes names a program that runs.
    void set_found_on_path(bool on) { onPath_ = on; }
    // The whole PATH of later runs (a launcher's, without one of the commands it needs).
    void set_path(const std::string& path) { pathOnly_ = path; }
    // Spawns the binary, stdout and stderr going to <build>/e2e-logs.
    bool start(const std::vector<std::string>& args);
    // Spawns exactly this command, as a session manager runs a restart command; the run's windows are those whose
    // class hint names the last component of command[0].
    bool start_command(const std::vector<std::string>& command);
    const std::string& app_name() const { return argv0_; }

    // A viewable top-level window of this run titled `title`, or 0.
    Window wait_window(const std::string& title, int timeoutMs = 10000);
    // The same, then given time to draw itself; start_shown starts the run first.
    Window shown(const std::string& title, int timeoutMs = 10000);
    Window start_shown(const std::vector<std::string>& args, const std::string& title);
    // Whether the run's window titled `title` is gone (or never came) within the time.
    bool gone(const std::string& title, int timeoutMs = 2000);
    std::vector<E2eWindow> windows();

    // Keys are XStringToKeysym names joined by '+', modifiers ("ctrl", "shift") first. w 0: the focus.
    void key(Window w, const std::string& combo);
    void keys(Window w, std::initializer_list<const char*> combos);
    // Types text key by key (letters of both cases, digits, '/', '-', '_', '.'). w 0: the focus.
    void type(Window w, const std::string& text);
    // Holds a key (a modifier, say "ctrl" or "shift") down or lets it go, as a user does around a click.
    void hold(const std::string& key, bool down);
    void move(Window w, int x, int y);
    void button(unsigned button, bool down);
    void click(Window w, int x, int y, unsigned button = 1);
    // Button 1 clicked `times` in quick succession, as a double or triple click.
    void multi_click(Window w, int x, int y, int times);
    // A menu posted from the keyboard: F10 opens File, `across` steps right (negative: left), then the mnemonic.
    void menu(Window shell, int across, const char* mnemonic);
    // A WM_PROTOCOLS client message, as a window or session manager sends.
    void send_protocol(Window w, const char* protocol = "WM_DELETE_WINDOW");

    // Exit status (or -signal) once the program has ended; false on timeout.
    bool wait_exit(int* status, int timeoutMs = 10000);
    bool running();
    // Whether every process of the run's group has ended: what a launcher started, too.
    bool group_ended(int timeoutMs = 5000);

    std::string stdout_text() const;
    std::string stderr_text() const;

    // Whether the window shows `text` in the core font `xlfd`: every glyph pixel black, no other one in its box.
    bool shows_text(Window w, const char* xlfd, const std::string& text);

private:
    static std::string log_dir();
    bool spawn(const std::string& file, const std::vector<std::string>& argv, bool search,
               const std::string& pathFirst);
    bool is_ours(Window w);
    void sync();

    Display* dpy_ = nullptr;
    std::string displayName_, argv0_, outPath_, errPath_;
    std::string resourcePath_ = PICTREL_RESOURCE_DIR "/%N";
    std::string binary_ = PICTREL_BINARY;
    std::vector<std::string> wrapper_;
    std::string pathOnly_;
    bool onPath_ = false;
    pid_t pid_ = -1;
    int exitStatus_ = 0;
    bool exited_ = false;
};

// A WM_PROTOCOLS client message on any connection, only flushed: after the last window's delete a nested server
// may be gone, and a lost server ends whoever waits on it.
void send_protocol(Display* dpy, Window w, const char* protocol);

void e2e_sleep_ms(int ms);
std::string e2e_read_file(const std::string& path);
// The file's text once it differs from `before` (or `before` after five seconds).
std::string changed_file(const std::string& path, const std::string& before);
// What a shell command prints on standard output.
std::string command_output(const std::string& command);
// What the PRIMARY selection holds, as a user's paste would get it.
std::string primary_text(Display* dpy);
// Viewable override-redirect windows on the root (menus, tooltips), bottom to top.
std::vector<Window> popups(Display* dpy);

// The core fonts of the program's labels and of its buttons and menus.
inline const char* const LABEL_FONT = "-misc-fixed-medium-r-normal--13-*-*-*-*-*-iso8859-1";
inline const char* const BOLD_FONT = "-misc-fixed-bold-r-normal--13-*-*-*-*-*-iso8859-1";

// A private directory under /tmp, removed with everything in it.
struct E2eScratch {
    char pattern[24] = "/tmp/pictrel-e2e-XXXXXX";
    std::string dir = mkdtemp(pattern) ? pattern : "";
    ~E2eScratch() { std::error_code e; std::filesystem::remove_all(dir, e); }
};

// A window's place inside its parent.
struct Geometry {
    Window id;
    int x, y, width, height;
};

// The viewable children of `w`, bottom to top; `parent` gets w's parent.
std::vector<Geometry> child_windows(Display* dpy, Window w, Window* parent = nullptr);
// The class (or, with `instance`, the instance name) of a window's WM_CLASS, and its WM_NAME; "" where none is set.
std::string window_class(Display* dpy, Window w, bool instance = false);
std::string window_name(Display* dpy, Window w);
// The first viewable window below `top` that satisfies `match`, depth first.
Window find_window(Display* dpy, Window top, const std::function<bool(const Geometry&)>& match);
// The buttons of a palette (a window with `count` children of w x h), column by column, top to bottom.
std::vector<Window> palette(Display* dpy, Window top, size_t count, int w, int h);
// The first viewable window of exactly that size (a drawing's canvas area).
Window find_canvas(Display* dpy, Window top, int width, int height);

struct XImageDeleter {
    void operator()(XImage* im) const { XDestroyImage(im); }
};
using ImagePtr = std::unique_ptr<XImage, XImageDeleter>;
// The window's pixels, with `top` raised above other tests' windows and the server grabbed while reading.
ImagePtr read_window(Display* dpy, Window top, Window w, int width, int height);
// 0xRRGGBB of a pixel of the default colormap, and whether it is near black.
unsigned rgb_of(Display* dpy, unsigned long pixel);
bool dark(Display* dpy, unsigned long pixel);

// Window position inside image cell v of a canvas at the default zoom level (3).
inline int e2e_cell(int v) { return (v << 3) + 3; }

// A run showing one untitled drawing of width x height: its shell, its canvas at the default zoom and the nine
// buttons of its tools palette; zeros (and no tools) when one is not found.
struct E2eDrawing {
    Window shell = 0, canvas = 0;
    int width = 0, height = 0;
    std::vector<Window> tools;
};
E2eDrawing open_untitled(E2eApp& app, int width, int height, const char* geometry = "+760+0",
                         std::vector<std::string> args = {});
// A button pressed at image cell (x0, y0) of the canvas, moved there in four steps to (x1, y1) and released.
void drag_cells(E2eApp& app, const E2eDrawing& d, unsigned button, int x0, int y0, int x1, int y1);
// How many image cells of the box (x0, y0)-(x1, y1) the canvas shows dark; -1 when it cannot be read.
int dark_cells(E2eApp& app, const E2eDrawing& d, int x0, int y0, int x1, int y1);
