// Shared harness of the in-process tests: the toolkit is started once per process against DISPLAY, exactly as the
// program starts it.
#pragma once

// gtest first: Xlib's macros (None, Bool, Status) break its headers.
#include <gtest/gtest.h>

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include "core/app_state.h"
#include "app/draw.h"

// True in the tree built under AddressSanitizer. Its operator new ends the process when memory runs out instead of
// throwing std::bad_alloc, and its own bookkeeping cannot live under an address-space limit: the tests that run the
// program out of memory through RLIMIT_AS cannot run there.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool underAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool underAddressSanitizer = true;
#else
constexpr bool underAddressSanitizer = false;
#endif
#else
constexpr bool underAddressSanitizer = false;
#endif

// Runs the Xt event loop until nothing is pending (after an XSync).
void pump(int rounds = 3);

// A new untitled drawing of the given size (0 takes the default); a test fails when none is made, unless
// `mayFail`.
Drawing* make_drawing(int width = 0, int height = 0, bool mayFail = false);

// The image pixel at (x, y), read back from the server with XGetImage.
unsigned long image_pixel(Drawing* d, int x, int y);
unsigned long window_pixel(Window w, int x, int y);

// A pointer event (ButtonPress, ButtonRelease or MotionNotify) at window coordinates; post_pointer sends it to the
// window without pumping.
XEvent pointer_event(Window w, int type, unsigned button, int wx, int wy, unsigned state = 0);
void post_pointer(Window w, int type, unsigned button, int wx, int wy, unsigned state = 0);
void send_motion(Window w, int wx, int wy, unsigned state);

// Real input through XTest: moves the pointer to window coordinates.
void xtest_move(Window w, int wx, int wy);
void xtest_button(unsigned button, bool press);
