# Shared helpers of the scripts: building and private X servers.
# shellcheck shell=bash

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="$top/build"

build_pictrel() {
  local jobs
  jobs=$(nproc 2>/dev/null || echo 2)
  cmake -S "$top" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$build" -j "$jobs"
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
