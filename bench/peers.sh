#!/usr/bin/env bash
# The side-by-side bench: launch to first mapped top-level window of Pictrel
# and of lighter programs that open the same files (pixmap, bitmap, sxpm),
# all on the 8-bit server of $DISPLAY. Every round runs each program once,
# interleaved, in an order that turns from round to round; a warm-up round
# comes first and is not counted. Prints medians, min-max, peak RSS and the
# median of the per-round ratios Pictrel / peer. It prints figures and never
# fails. Called by scripts/bench --peers, which starts the server, keeps an
# idle client on it and points Pictrel at the tree's resources.
#   bench/peers.sh BUILD_DIR ROUNDS
set -u
build=$1
rounds=$2
here=$(cd "$(dirname "$0")" && pwd)
timer=$build/bench/tools/launch_timer
pictrel=$build/pictrel
for f in "$timer" "$pictrel"; do
  [ -x "$f" ] || { echo "peers: $f is not built"; exit 0; }
done

work=$(mktemp -d /tmp/pictrel-peers-XXXXXX)
trap 'rm -rf "$work"' EXIT
awk -v kind=xpm -f "$here/fixture.awk" >"$work/big.xpm"
gzip -n -c "$work/big.xpm" >"$work/big.xpm.gz"
awk -v kind=xbm -f "$here/fixture.awk" >"$work/big.xbm"
# cxpm checks that the generated file is well-formed XPM, as libXpm reads it.
if command -v cxpm >/dev/null && ! cxpm "$work/big.xpm" >/dev/null 2>"$work/cxpm.log"; then
  echo "peers: the generated XPM does not pass cxpm:"
  cat "$work/cxpm.log"
fi

# The works and what each is timed against. Pictrel comes first in each
# work; a peer timed to its exit (it shows no window) says so.
# work  | label     | ends at | command
runs=(
  "empty|pictrel|map|$pictrel"
  "empty|pixmap|map|pixmap"
  "empty|bitmap|map|bitmap"
  "xpm|pictrel|map|$pictrel $work/big.xpm"
  "xpm|pixmap -f|map|pixmap -f $work/big.xpm"
  "xpm|sxpm -nod|exit|sxpm -nod $work/big.xpm"
  "xpm|sxpm|map|sxpm $work/big.xpm"
  "gz|pictrel|map|$pictrel $work/big.xpm.gz"
  "gz|pixmap -f|map|pixmap -f $work/big.xpm.gz"
  "gz|sxpm -nod|exit|sxpm -nod $work/big.xpm.gz"
  "xbm|pictrel|map|$pictrel $work/big.xbm"
  "xbm|bitmap|map|bitmap $work/big.xbm"
)
works=(empty xpm gz xbm)
declare -A title=(
  [empty]="empty start"
  [xpm]="511x719 XPM, 100 colours"
  [gz]="the same, .xpm.gz"
  [xbm]="511x719 XBM"
)

# One run: appends "work<TAB>label<TAB>round<TAB>ms<TAB>KiB" to the data
# file, or counts a failure. Only Pictrel reads the tree's resources; the
# peers read their own application defaults from where Debian puts them.
run_one() {
  local round=$1 work_=$2 label=$3 until=$4 cmd=$5 out args
  read -r -a args <<<"$cmd"
  local flags=()
  [ "$until" = exit ] && flags+=(--exit)
  if [ "$label" = pictrel ]; then
    out=$("$timer" "${flags[@]}" -- "${args[@]}" 2>>"$work/stderr.log")
  else
    out=$(env -u XFILESEARCHPATH -u XAPPLRESDIR "$timer" "${flags[@]}" -- "${args[@]}" 2>>"$work/stderr.log")
  fi
  if [ -z "$out" ]; then
    echo "$work_ $label round $round: failed" >>"$work/failures"
    return
  fi
  [ "$round" -gt 0 ] || return 0
  local ms kib
  read -r ms kib _ <<<"$out"
  printf '%s\t%s\t%s\t%s\t%s\n' "$work_" "$label" "$round" "$ms" "$kib" >>"$work/data"
}

load_before=$(cut -d' ' -f1-3 /proc/loadavg)
: >"$work/data"
for ((round = 0; round <= rounds; round++)); do
  [ -t 2 ] && printf '\rpeers: %s %d/%d ' "$([ "$round" = 0 ] && echo warm-up || echo round)" "$round" "$rounds" >&2
  for w in "${works[@]}"; do
    mine=()
    for r in "${runs[@]}"; do
      [ "${r%%|*}" = "$w" ] && mine+=("$r")
    done
    n=${#mine[@]}
    for ((k = 0; k < n; k++)); do
      IFS='|' read -r rw label until cmd <<<"${mine[(k + round) % n]}"
      run_one "$round" "$rw" "$label" "$until" "$cmd"
    done
  done
done
[ -t 2 ] && printf '\r%40s\r' '' >&2
load_after=$(cut -d' ' -f1-3 /proc/loadavg)

versions=$(for p in pixmap x11-apps xpmutils libxpm4; do
  printf '%s %s  ' "$p" "$(dpkg-query -W -f='${Version}' "$p" 2>/dev/null || echo '?')"
done)
echo "Launch to first mapped top-level window, one 8-bit Xvfb ($DISPLAY) with an idle client,"
echo "$rounds rounds after a warm-up, programs interleaved within each round."
echo "Pictrel $(git -C "$here/.." describe --always --dirty 2>/dev/null || echo '?');  $versions"
echo "locale: LANG=${LANG:-} LC_ALL=${LC_ALL:-};  load average before ${load_before}, after ${load_after} (2 cores, shared)"
echo "ratio: median over rounds of Pictrel's time / the peer's (above 1: Pictrel slower);"
echo "peak RSS: median of the launched process's high-water resident set, after it went idle."
echo

for r in "${runs[@]}"; do
  IFS='|' read -r w label until _ <<<"$r"
  printf '%s\t%s\t%s\t%s\n' "$w" "${title[$w]}" "$label" "$until"
done >"$work/order"

awk -F'\t' '
function median(list, n,    a, i, j, v) {
  for (i = 1; i <= n; i++) a[i] = list[i]
  for (i = 2; i <= n; i++) {
    v = a[i]
    for (j = i - 1; j >= 1 && a[j] > v; j--) a[j + 1] = a[j]
    a[j + 1] = v
  }
  lo = a[1]; hi = a[n]
  return n % 2 ? a[(n + 1) / 2] : (a[n / 2] + a[n / 2 + 1]) / 2
}
FNR == NR { rows++; rw[rows] = $1; rt[rows] = $2; rl[rows] = $3; ru[rows] = $4; next }
{
  k = $1 SUBSEP $2
  n[k]++; ms[k, n[k]] = $4; kib[k, n[k]] = $5
  t[$1, $2, $3] = $4
  if ($3 > last) last = $3
}
END {
  printf "%-26s %-20s %10s %17s %10s %13s %11s\n", "work", "program", "median ms", "min - max ms", "peak RSS", "Pictrel/peer", "RSS diff"
  for (i = 1; i <= rows; i++) {
    k = rw[i] SUBSEP rl[i]
    shown = rw[i] == prev ? "" : rt[i]
    prev = rw[i]
    name = rl[i] (ru[i] == "exit" ? " (to exit)" : "")
    if (!n[k]) { printf "%-26s %-20s %10s\n", shown, name, "no runs"; continue }
    delete l
    for (j = 1; j <= n[k]; j++) l[j] = ms[k, j]
    med = median(l, n[k]); range = sprintf("%.1f - %.1f", lo, hi)
    for (j = 1; j <= n[k]; j++) l[j] = kib[k, j]
    rss = median(l, n[k]) / 1024
    if (rl[i] == "pictrel") {
      mine = rss
      printf "%-26s %-20s %10.1f %17s %6.1f MiB\n", shown, name, med, range, rss
      continue
    }
    m = 0
    delete l
    for (r = 1; r <= last; r++)
      if ((rw[i], "pictrel", r) in t && (rw[i], rl[i], r) in t && t[rw[i], rl[i], r] > 0)
        l[++m] = t[rw[i], "pictrel", r] / t[rw[i], rl[i], r]
    ratio = m ? sprintf("%.2fx", median(l, m)) : "-"
    printf "%-26s %-20s %10.1f %17s %6.1f MiB %13s %+7.1f MiB\n", shown, name, med, range, rss, ratio, mine - rss
  }
}' "$work/order" "$work/data"

if [ -s "$work/failures" ]; then
  echo
  echo "failed runs ($(wc -l <"$work/failures")), not counted:"
  sed 's/^/  /' "$work/failures" | head -20
  grep -m5 'launch_timer' "$work/stderr.log" | sed 's/^/  /'
fi
exit 0
