# Shared helpers of the scripts: building and private X servers.
# shellcheck shell=bash

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="$top/build"
build_san="$top/build-san"

build_pictrel() {
  local jobs
  jobs=$(nproc 2>/dev/null || echo 2)
  cmake -S "$top" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$build" -j "$jobs"
}

# The second tree, under AddressSanitizer, UndefinedBehaviorSanitizer and
# LeakSanitizer. Clang, so that libFuzzer fuzzers build in the same tree.
# The compilers are named on every configure: CC and CXX alone are read
# only when the cache is made, and a tree once made by another compiler
# would silently stay with it.
build_pictrel_sanitized() {
  local jobs
  jobs=$(nproc 2>/dev/null || echo 2)
  CC=clang CXX=clang++ cmake -S "$top" -B "$build_san" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DPICTREL_SANITIZE=ON >/dev/null
  cmake --build "$build_san" -j "$jobs"
}

# How the sanitizers report: the first error ends the process with its
# stack, and the leak check at exit reports what nothing reachable points
# to, less the toolkit's own allocations named in the suppressions file.
# Allocation stacks are unwound from debug information, not frame pointers:
# the X libraries have none, and the fast unwinder stops at (or strays
# from) the first library frame, so that a leak would not show who made it
# and a suppression would be matched against a wrong stack.
use_sanitizer_options() {
  export ASAN_OPTIONS="detect_leaks=1:fast_unwind_on_malloc=0:halt_on_error=1:abort_on_error=0:detect_stack_use_after_return=1:check_initialization_order=1:strict_init_order=1"
  export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
  export LSAN_OPTIONS="suppressions=$top/tests/sanitize/lsan.supp:print_suppressions=0"
}

# The toolkit finds the application defaults and the pictures in the tree.
use_tree_resources() {
  export XFILESEARCHPATH="$top/resources/%N"
  export XAPPLRESDIR="$top/resources/"
}

# Starts an Xvfb at the given depth on a free display number; sets
# XVFB_PID and XVFB_DISPLAY.
start_xvfb() {
  local depth=$1 n
  for n in $(seq 90 180); do
    if [ ! -e "/tmp/.X11-unix/X$n" ] && [ ! -e "/tmp/.X$n-lock" ]; then
      Xvfb ":$n" -screen 0 "1280x1024x$depth" -nolisten tcp -noreset >/dev/null 2>&1 &
      XVFB_PID=$!
      local i
      for i in $(seq 1 50); do
        if xdpyinfo -display ":$n" >/dev/null 2>&1; then
          XVFB_DISPLAY=":$n"
          return 0
        fi
        if ! kill -0 "$XVFB_PID" 2>/dev/null; then
          break
        fi
        sleep 0.1
      done
      kill "$XVFB_PID" 2>/dev/null || true
      wait "$XVFB_PID" 2>/dev/null || true
    fi
  done
  echo "could not start Xvfb" >&2
  return 1
}

# The class of a display's default visual ("PseudoColor", "TrueColor", ...),
# or nothing when the display cannot be reached. xdpyinfo names the default
# visual's id first and lists the visuals after it, so the class is the one
# printed under the visual whose id matches.
default_visual_class() {
  xdpyinfo -display "$1" 2>/dev/null | awk '
    /default visual id:/ { want = $4; next }
    /^ *visual id:/      { current = $3; next }
    /^ *class:/          { if (want != "" && current == want) { print $2; exit } }'
}

stop_pid() {
  if [ -n "${1:-}" ] && kill -0 "$1" 2>/dev/null; then
    kill "$1" 2>/dev/null || true
    wait "$1" 2>/dev/null || true
  fi
}
