#!/usr/bin/env bash
# Where one start of Pictrel with the big XPM (the side-by-side bench's
# 511 x 719 file of 100 colours) spends its time, on the 8-bit server of
# $DISPLAY, until its first window is up and it has gone idle:
#  - its instructions under callgrind: the functions with the most, with
#    their callees (inclusive) and without (self);
#  - its X traffic through xtrace: requests by kind with their bytes,
#    replies, and round trips (batches of requests the client waited on),
#    beside those of an empty start.
# The raw callgrind output and the traces stay in BUILD_DIR/bench/profile
# for callgrind_annotate or a closer look. Prints figures; never fails.
# Called by scripts/bench --profile-open.
#   bench/profile_open.sh BUILD_DIR
set -u
build=$1
here=$(cd "$(dirname "$0")" && pwd)
timer=$build/bench/tools/launch_timer
pictrel=$build/pictrel
out=$build/bench/profile
top=${PICTREL_PROFILE_TOP:-25}
for f in "$timer" "$pictrel"; do
  [ -x "$f" ] || { echo "profile: $f is not built"; exit 0; }
done
mkdir -p "$out"
work=$(mktemp -d /tmp/pictrel-profile-XXXXXX)
trap 'rm -rf "$work"' EXIT
awk -v kind=xpm -f "$here/fixture.awk" >"$work/big.xpm"

echo "One start of Pictrel with a 511x719 XPM of 100 colours, to its first mapped window and idle,"
echo "on $DISPLAY (8-bit); locale: LANG=${LANG:-} LC_ALL=${LC_ALL:-}."
echo

# Callgrind: the program is ended by SIGTERM once idle, which lets
# callgrind write its counts.
rm -f "$out/callgrind.out.open"
if command -v valgrind >/dev/null; then
  "$timer" --timeout 600 --settle 1000 --signal 15 -- \
    valgrind --tool=callgrind --callgrind-out-file="$out/callgrind.out.open" \
    "$pictrel" "$work/big.xpm" >/dev/null 2>"$out/callgrind.log"
fi
if [ -s "$out/callgrind.out.open" ] && command -v callgrind_annotate >/dev/null; then
  # Shorter lines: object files by their base name, template arguments
  # dropped, source paths reduced to the file name. The inclusive list
  # names a function once with its object and once without: once is enough.
  shorten() {
    awk -v top="$1" '
      /file:function/ { on = 1; next }
      on && /^ *[0-9,]+ / {
        line = $0
        while (gsub(/<[^<>]*>/, "", line)) {}
        gsub(/\[[^]]*\//, "[", line)
        gsub(/  [^ :]*\//, "  ", line)
        key = line
        sub(/^ *[0-9,]+ *\([ 0-9.%]*\) */, "", key)
        sub(/ \[[^]]*\]$/, "", key)
        if (key in seen) next
        seen[key] = 1
        if (++n > top) exit
        print substr(line, 1, 150)
      }'
  }
  total=$(callgrind_annotate "$out/callgrind.out.open" 2>/dev/null | awk '/PROGRAM TOTALS/ { print $1; exit }')
  echo "== instructions (callgrind): $total in all"
  echo "-- inclusive (with callees), top $((top + 10))"
  callgrind_annotate --inclusive=yes "$out/callgrind.out.open" 2>/dev/null | shorten $((top + 10))
  echo "-- self, top $top"
  callgrind_annotate "$out/callgrind.out.open" 2>/dev/null | shorten "$top"
else
  echo "== callgrind gave no profile (valgrind installed? see $out/callgrind.log)"
fi
echo

# A free display number for xtrace's stand-in server.
fake_display() {
  local n
  for n in $(seq 181 260); do
    if [ ! -e "/tmp/.X11-unix/X$n" ] && [ ! -e "/tmp/.X$n-lock" ]; then
      echo ":$n"
      return 0
    fi
  done
  return 1
}

trace() {
  local log=$1 fake
  shift
  rm -f "$log"
  fake=$(fake_display) || return 1
  "$timer" --timeout 120 --settle 500 --signal 15 -- \
    xtrace -n -b -d "$DISPLAY" -D "$fake" -o "$log" -- "$@" >/dev/null 2>>"$out/xtrace.err"
  # xtrace, ended by a signal, leaves its socket behind.
  rm -f "/tmp/.X11-unix/X${fake#:}"
  [ -s "$log" ]
}

if ! command -v xtrace >/dev/null; then
  echo "== no xtrace: X requests not counted"
  exit 0
fi
: >"$out/xtrace.err"
if ! trace "$out/xtrace-empty.log" "$pictrel" || ! trace "$out/xtrace-open.log" "$pictrel" "$work/big.xpm"; then
  echo "== xtrace gave no trace (see $out/xtrace.err)"
  exit 0
fi
echo "== X traffic (xtrace) of an empty start and of the start with the XPM, until idle"
# xtrace writes a request as "conn:<:seq: bytes: Request(n): Name ...",
# a reply as "conn:>:seq:bytes: Reply to Name: ...". A round trip is a
# run of requests followed by a reply the client had asked for.
awk -F: -v top="$top" '
  FNR == 1 { f++; last = "" }
  $2 == "<" && NF >= 6 {
    name = $6; sub(/^ +/, "", name); sub(/ .*/, "", name)
    ext = $5; sub(/^ +/, "", ext)
    if (ext ~ /-Request\(/) { sub(/-Request.*/, "", ext); name = ext ":" name }
    count[f, name]++; bytes[f, name] += $4; names[name] = 1
    req[f]++; reqbytes[f] += $4; last = "req"
  }
  $2 == ">" && / Reply to / { rep[f]++; if (last == "req") trips[f]++; last = "rep" }
  END {
    printf "%-24s %12s %12s\n", "", "empty start", "with the XPM"
    printf "%-24s %12d %12d\n", "requests", req[1], req[2]
    printf "%-24s %12d %12d\n", "request bytes", reqbytes[1], reqbytes[2]
    printf "%-24s %12d %12d\n", "replies", rep[1], rep[2]
    printf "%-24s %12d %12d\n", "round trips", trips[1], trips[2]
    print ""
    printf "%-24s %12s %12s %12s %12s\n", "request", "empty: n", "bytes", "XPM: n", "bytes"
    for (name in names) order[++m] = name
    # By count in the start with the XPM, largest first.
    for (i = 2; i <= m; i++) {
      v = order[i]
      for (j = i - 1; j >= 1 && count[2, order[j]] < count[2, v]; j--) order[j + 1] = order[j]
      order[j + 1] = v
    }
    for (i = 1; i <= m && i <= top; i++)
      printf "%-24s %12d %12d %12d %12d\n", order[i], count[1, order[i]], bytes[1, order[i]],
             count[2, order[i]], bytes[2, order[i]]
  }' "$out/xtrace-empty.log" "$out/xtrace-open.log"
echo
echo "(raw: $out/callgrind.out.open, $out/xtrace-empty.log, $out/xtrace-open.log)"
exit 0
