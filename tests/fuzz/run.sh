#!/usr/bin/env bash
# Runs one fuzzer of a sanitizer tree for a bounded time:
#     tests/fuzz/run.sh BUILD_DIR NAME [SECONDS]
# It first replays every input kept under tests/fuzz/NAME/ (each once made a
# fuzzer fail; the fault is fixed), then fuzzes for SECONDS (default 60)
# from the seeds fuzz_seeds generates, the kept inputs and the corpus of
# earlier runs, and last runs every input of that corpus once more looking
# for leaks. The corpus, and any input that makes the fuzzer fail, stay
# under BUILD_DIR/fuzz/NAME/; nothing is written to /tmp or the source tree.
# The readers' fuzzers get a private 8-bit Xvfb, stopped by its PID at the end.
set -u
if [ $# -lt 2 ]; then
  echo "usage: $0 BUILD_DIR NAME [SECONDS]" >&2
  exit 2
fi
tree=$(cd "$1" && pwd) || exit 1
name=$2
seconds=${3:-60}
here=$(cd "$(dirname "$0")" && pwd)
fuzzer="$tree/tests/fuzz/fuzz_$name"
kept="$here/$name"
work="$tree/fuzz/$name"
if [ ! -x "$fuzzer" ]; then
  echo "no fuzzer $fuzzer (configure with clang and -DPICTREL_SANITIZE=ON)" >&2
  exit 1
fi

mkdir -p "$work/corpus" || exit 1
rm -rf "$work/seeds" && mkdir -p "$work/seeds" || exit 1
"$tree/tests/fuzz/fuzz_seeds" "$name" "$work/seeds" || exit 1

xvfb=
cleanup() {
  if [ -n "$xvfb" ] && kill -0 "$xvfb" 2>/dev/null; then
    kill "$xvfb" 2>/dev/null
    wait "$xvfb" 2>/dev/null
  fi
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# Xvfb picks a free display itself and writes its number once it listens.
start_private_xvfb() {
  local number="$work/xvfb-display" i
  rm -f "$number"
  Xvfb -displayfd 3 -screen 0 1280x1024x8 -nolisten tcp 3>"$number" >/dev/null 2>&1 &
  xvfb=$!
  for i in $(seq 1 100); do
    if [ -s "$number" ]; then
      DISPLAY=":$(head -n 1 "$number")"
      export DISPLAY
      return 0
    fi
    kill -0 "$xvfb" 2>/dev/null || break
    sleep 0.05
  done
  echo "could not start Xvfb" >&2
  return 1
}

case $name in
*_reader)
  start_private_xvfb || exit 1
  export XFILESEARCHPATH="$here/../../resources/%N"
  ;;
esac

# Leaks are looked for with whole stacks: the X libraries keep no frame
# pointers, and only a whole stack tells the toolkit's own allocations
# (the tree's suppressions) from the program's; libXpm's parser losses are
# told apart by the wrapper the sanitizer tree links around its readers.
# Whole stacks make every allocation slow, so the fuzzing itself runs
# without, and every input of the corpus it leaves is then run once with.
LSAN_OPTIONS="${LSAN_OPTIONS:+$LSAN_OPTIONS:}suppressions=$here/../sanitize/lsan.supp:print_suppressions=0"
export LSAN_OPTIONS
asan=${ASAN_OPTIONS:+$ASAN_OPTIONS:}
with_leaks() { ASAN_OPTIONS="${asan}detect_leaks=1:fast_unwind_on_malloc=0" "$fuzzer" "${options[@]}" "$@"; }
without_leaks() {
  ASAN_OPTIONS="${asan}detect_leaks=0:fast_unwind_on_malloc=1" "$fuzzer" "${options[@]}" -detect_leaks=0 "$@"
}

options=(-timeout=10 -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="$work/")
[ -f "$here/$name.dict" ] && options+=(-dict="$here/$name.dict")

inputs=()
if [ -d "$kept" ]; then
  for f in "$kept"/*; do
    [ -f "$f" ] && inputs+=("$f")
  done
fi
if [ "${#inputs[@]}" -gt 0 ]; then
  echo "== replaying ${#inputs[@]} kept inputs"
  with_leaks "${inputs[@]}" || exit 1
fi

corpora=("$work/corpus" "$work/seeds")
[ -d "$kept" ] && corpora+=("$kept")
echo "== fuzzing for $seconds s"
without_leaks -max_total_time="$seconds" "${corpora[@]}" || exit 1
echo "== looking for leaks in the corpus"
with_leaks -runs=0 "${corpora[@]}"
