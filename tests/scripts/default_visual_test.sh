#!/usr/bin/env bash
# scripts/run starts Pictrel straight on $DISPLAY only when the display's
# default visual is PseudoColor, and nests an 8-bit Xephyr otherwise: the
# class it reads must be the default visual's, on both kinds of server.
set -u
. "$(dirname "$0")/../../scripts/lib.sh"

fail=0
check() {   # display expected
  local got
  got=$(default_visual_class "$1")
  if [ "$got" != "$2" ]; then
    echo "default visual class of $1: expected '$2', got '$got'" >&2
    fail=1
  fi
}

[ -n "${DISPLAY:-}" ] || { echo "DISPLAY not set" >&2; exit 1; }
check "$DISPLAY" PseudoColor
if [ -n "${PICTREL_TEST_DISPLAY24:-}" ]; then
  check "$PICTREL_TEST_DISPLAY24" TrueColor
fi
# A display that cannot be reached has no class at all.
check ":999" ""
exit $fail
