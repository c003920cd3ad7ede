// Support for end-to-end tests: start the real pictrel binary, find its
// windows, drive it with XTest and read back what a user would see.
//
//   E2eApp app;                                  // connects to $DISPLAY
//   ASSERT_TRUE(app.start({"-width", "32"}));    // spawns PICTREL_BINARY
//   Window w = app.wait_window("Untitled");      // a mapped window of *this* run
//   ASSERT_NE(w, 0u);
//   app.key(w, "ctrl+q");                        // focus w, then press keys
//   int status = 0;
//   ASSERT_TRUE(app.wait_exit(&status));         // exit code, or -signal
//   EXPECT_NE(app.stderr_text().find("..."), std::string::npos);
//
// How it works, and what to rely on:
// - The program runs with XFILESEARCHPATH pointing at the source tree's
//   resources, DISPLAY set to the chosen display, and stdout / stderr going
//   to files under <build>/e2e-logs/.
// - Each run gets its own argv[0] ("pictrel-e2e-<pid>-<n>"). The toolkit puts
//   it into WM_CLASS of the run's application shells, and dialog shells are
//   transient for one of those, so windows of this run are told apart from
//   those of other tests sharing the server.
//   Pass `argv0` to start() to choose it yourself.
// - There is no window manager under Xvfb: top-level windows are children of
//   the root, keyboard input goes where key()/focus() put the focus, and
//   closing a window is sent as a WM_DELETE_WINDOW client message
//   (send_delete_window). Menus are reached from the keyboard: "F10"
//   selects the first cascade, "Left" wraps to Help, "Down" opens it.
// - Texts on screen are checked with shows_text(), which looks for the
//   exact glyphs of a core font in the window's pixels.
// - Keys are XTest key names joined by '+', modifiers first: "ctrl+q",
//   "Return", "F10", "shift+Tab" (names as XStringToKeysym knows them;
//   "ctrl", "shift", "alt" are the modifiers).
// - screenshot("name") keeps <build>/e2e-shots/name.png for a look after a
//   failing run.
// - The destructor kills a still-running program by its PID (never by name)
//   and closes the display connection.
#pragma once

#include <X11/Xlib.h>
#include <functional>
#include <initializer_list>
#include <string>
#include <sys/types.h>
#include <vector>

struct E2eWindow {
    Window id;
    std::string title;
    int x, y, width, height;
};

class E2eApp {
public:
    // `display` null: $DISPLAY.
    explicit E2eApp(const char* display = nullptr);
    ~E2eApp();
    E2eApp(const E2eApp&) = delete;
    E2eApp& operator=(const E2eApp&) = delete;

    bool connected() const { return dpy_ != nullptr; }
    Display* display() const { return dpy_; }
    const std::string& display_name() const { return displayName_; }

    // Where the program looks for its application defaults (XFILESEARCHPATH)
    // in later start() calls; the source tree's resources by default.
    void set_resource_path(const std::string& path) { resourcePath_ = path; }

    // Spawns the binary with the arguments; false when it cannot be started.
    bool start(std::initializer_list<std::string> args, const char* argv0 = nullptr);
    bool start(const std::vector<std::string>& args, const char* argv0 = nullptr);
    pid_t pid() const { return pid_; }
    const std::string& app_name() const { return argv0_; }

    // A viewable top-level window of this run whose WM_NAME is `title`;
    // 0 when none appears within the timeout.
    Window wait_window(const std::string& title, int timeoutMs = 10000);
    // Waits until no viewable window of this run has that title.
    bool wait_window_gone(const std::string& title, int timeoutMs = 5000);
    // The viewable top-level windows of this run, now.
    std::vector<E2eWindow> windows();

    // Keyboard focus to the window, then the key combinations in turn.
    void focus(Window w);
    void key(Window w, const std::string& combo);
    void keys(Window w, std::initializer_list<const char*> combos);
    // Moves the pointer to window coordinates and clicks a button.
    void click(Window w, int x, int y, unsigned button = 1);
    void move(Window w, int x, int y);
    // What a window manager sends when the user closes the window.
    void send_delete_window(Window w);

    // Exit status (or -signal) once the program has ended; false on timeout.
    bool wait_exit(int* status, int timeoutMs = 10000);
    bool running();
    // Kills the program (SIGKILL by PID) and reaps it.
    void kill_now();

    std::string stdout_text() const;
    std::string stderr_text() const;
    // Waits until the stream holds `text`.
    bool wait_stdout(const std::string& text, int timeoutMs = 5000) const;
    bool wait_stderr(const std::string& text, int timeoutMs = 5000) const;

    // Saves a picture of the whole screen as <build>/e2e-shots/<name>.png.
    void screenshot(const std::string& name) const;

    // True when the window shows `text` drawn in the core font `xlfd` with
    // the pixel `foreground` (e.g. BlackPixel): every pixel of the glyphs
    // is that pixel and every other pixel of the text's box is not. Works
    // for labels and buttons, which draw core fonts without smoothing.
    bool shows_text(Window w, const char* xlfd, const std::string& text, unsigned long foreground);

private:
    bool is_ours(Window w);
    void sync();

    Display* dpy_ = nullptr;
    std::string displayName_;
    std::string argv0_;
    std::string resourcePath_ = PICTREL_RESOURCE_DIR "/%N";
    std::string outPath_, errPath_;
    pid_t pid_ = -1;
    int exitStatus_ = 0;
    bool exited_ = false;
};

// Sleeps for a number of milliseconds.
void e2e_sleep_ms(int ms);

// A window's place inside its parent.
struct Geometry {
    Window id;
    int x, y, width, height;
};

// The viewable children of a window.
std::vector<Geometry> child_windows(Display* dpy, Window w);
// The first viewable window below `top` that satisfies `match`, depth first.
Window find_window(Display* dpy, Window top, const std::function<bool(Display*, const Geometry&)>& match);
// The buttons of a palette (a window with `count` children of w x h), in
// the order they were made: column by column, top to bottom.
std::vector<Window> palette(Display* dpy, Window top, size_t count, int w, int h);
// The canvas area of a drawing window: the one viewable window of exactly
// that size.
Window find_canvas(Display* dpy, Window shell, int width, int height);
