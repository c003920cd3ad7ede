#!/usr/bin/env bash
# scripts/run starts Pictrel straight on $DISPLAY only when the display's default visual is PseudoColor, and nests an
# 8-bit Xephyr otherwise: the class it reads must be the default visual's, on both kinds of server.
set -u
. "$(dirname "$0")/../../scripts/lib.sh"

fail=0
check() {   # display expected
  local got
  got=$(default_visual_class "$1")
  [ "$got" = "$2" ] || { echo "default visual class of $1: expected '$2', got '$got'" >&2; fail=1; }
}

[ -n "${DISPLAY:-}" ] || { echo "DISPLAY not set" >&2; exit 1; }
check "$DISPLAY" PseudoColor
[ -z "${PICTREL_TEST_DISPLAY24:-}" ] || check "$PICTREL_TEST_DISPLAY24" TrueColor
check ":999" ""   # a display that cannot be reached has no class at all
exit $fail
