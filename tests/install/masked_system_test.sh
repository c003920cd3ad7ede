#!/usr/bin/env bash
# An installation into a prefix of one's own writes nothing outside it: in a private mount namespace the system's
# /etc and /usr are made read-only, so that any write there fails the install, and the prefix must then hold the
# whole installation. Exits 77 (skipped) where such a namespace cannot be made. Usage: BUILD_DIR
set -u
build=$1
if [ "$(id -u)" -ne 0 ] || ! unshare -m --propagation private true 2>/dev/null; then
  echo "skipped: a private mount namespace needs root and unshare -m" >&2
  exit 77
fi
prefix=$(mktemp -d /tmp/pictrel-masked-XXXXXX)
trap 'rm -rf "$prefix"' EXIT
unshare -m --propagation private bash -c '
  set -u
  for dir in /etc /usr; do
    mount --bind "$dir" "$dir" && mount -o remount,bind,ro "$dir" ||
      { echo "could not make $dir read-only" >&2; exit 77; }
  done
  touch /etc/pictrel-masked-probe 2>/dev/null && { echo "/etc is still writable" >&2; exit 1; }
  cmake --install "$1" --prefix "$2/in prefix" >/dev/null
' sh "$build" "$prefix"
status=$?
[ "$status" -eq 77 ] && exit 77
if [ "$status" -ne 0 ]; then
  echo "the installation tried to write outside its prefix (or failed): status $status" >&2
  exit 1
fi
count=$(find "$prefix/in prefix" ! -type d | wc -l)
echo "$count files under the prefix, nothing written to /etc or /usr"
[ -f "$prefix/in prefix/share/X11/app-defaults/Pictrel" ] || { echo "the application defaults are not in the prefix" >&2; exit 1; }
[ "$count" -ge 16 ] || { echo "only $count files installed" >&2; exit 1; }
