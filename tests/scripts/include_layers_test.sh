#!/usr/bin/env bash
# The layers of src/ as the #include lines draw them. core/ is the bottom and
# includes nothing above it; the folders between core/ and app/ reach app/ in
# at most a handful of places (main.cpp, the start of everything, aside); and
# no units include each other, directly or round a cycle, across folders
# other than canvas/ and tools/, where a stroke travels both ways (inside one
# folder, one subsystem, a private header may point back at its unit). A unit is a
# .cpp with its .h; a header without a .cpp is a unit of its own.
#
#   tests/scripts/include_layers_test.sh [SRC_DIR]     (default: src/ of this tree)
set -u
src=${1:-"$(cd "$(dirname "$0")/../.." && pwd)/src"}
[ -d "$src" ] || { echo "no source folder $src" >&2; exit 2; }
MAX_INTO_APP=5

# One line per quoted include: "unit included-unit file", units as folder/name.
edges=$(cd "$src" && find . -name '*.cpp' -o -name '*.h' | sed 's|^\./||' | sort |
  while read -r f; do
    sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$f" |
      while read -r inc; do
        [ -f "$inc" ] || continue   # local to the tests or not ours
        echo "${f%.*} ${inc%.*} $f"
      done
  done)

fail=0

# Lower code that reaches up into app/.
into_app=$(echo "$edges" | awk '$1 !~ /^app\// && $1 != "main" && $2 ~ /^app\// { print "  " $3 " includes " $2 ".h" }')
count=$(printf '%s' "$into_app" | grep -c . || true)
if [ "$count" -gt "$MAX_INTO_APP" ]; then
  echo "$count includes reach into app/ from other folders (at most $MAX_INTO_APP):" >&2
  echo "$into_app" >&2
  fail=1
fi

# The bottom layer stands on nothing of ours.
from_core=$(echo "$edges" | awk '$1 ~ /^core\// && $2 !~ /^core\// { print "  " $3 " includes " $2 ".h" }')
if [ -n "$from_core" ]; then
  echo "core/ includes code above it:" >&2
  echo "$from_core" >&2
  fail=1
fi

# Cycles: units that reach each other. Reachability from every unit by a
# depth-first walk; two units are in one cycle when each reaches the other.
cycles=$(echo "$edges" | awk '
  $1 != $2 && !seen[$1 SUBSEP $2]++ { out[$1] = out[$1] " " $2; units[$1]; units[$2] }
  function walk(from, u,   n, i, next_) {
    n = split(out[u], next_, " ")
    for (i = 1; i <= n; i++)
      if (!((from, next_[i]) in reach)) { reach[from, next_[i]]; walk(from, next_[i]) }
  }
  function folder(u) { sub(/\/.*/, "", u); return u }
  END {
    for (u in units) walk(u, u)
    for (u in units) {
      if (u in done) continue
      members = ""; folders = ""; nFolders = 0; outside = 0; size = 0
      for (v in units)
        if (v == u || (((u, v) in reach) && ((v, u) in reach))) {
          done[v]; members = members " " v; size++
          f = folder(v)
          if (!(f in inCycle)) {
            inCycle[f]; folders = folders " " f; nFolders++
            if (f != "canvas" && f != "tools") outside = 1
          }
        }
      for (f in inCycle) delete inCycle[f]
      if (nFolders > 1 && outside) print "  " size " units over" folders ":" members
    }
  }')
if [ -n "$cycles" ]; then
  echo "include cycles across folders other than canvas/ and tools/:" >&2
  echo "$cycles" >&2
  fail=1
fi

[ "$fail" -eq 0 ] && echo "layers hold: $count includes into app/ from below, no wide cycle"
exit $fail
