#!/usr/bin/env bash
# Installed under DESTDIR, every file lands inside the staged prefix: under a prefix of one's own (with a blank in
# its name) all of them, under the system prefix /usr all but the application defaults, which go to
# /etc/X11/app-defaults. And every file a desktop installation needs is there. Usage: BUILD_DIR
set -u
build=$1
stage=$(mktemp -d /tmp/pictrel-stage-XXXXXX)
trap 'rm -rf "$stage"' EXIT
fail=0

expected=(
  bin/pictrel bin/pictrel-launch
  share/man/man1/pictrel.1.gz share/man/man1/pictrel-launch.1.gz share/doc/pictrel/copyright
  share/applications/pictrel.desktop
  share/icons/hicolor/48x48/apps/pictrel.png share/icons/hicolor/96x96/apps/pictrel.png
  share/icons/hicolor/192x192/apps/pictrel.png
  share/pixmaps/pictrel.xpm
  share/pictrel/twmrc
  share/pictrel/pixmaps/rectfilled.xpm share/pictrel/pixmaps/rectfilled_sel.xpm
  share/pictrel/pixmaps/ovalfilled.xpm share/pictrel/pixmaps/ovalfilled_sel.xpm
)

check() {   # prefix, where the application defaults belong
  local prefix=$1 app_defaults=$2 dest="$stage/${1//\//_}"
  DESTDIR=$dest cmake --install "$build" --prefix "$prefix" >/dev/null || { echo "install to $prefix failed" >&2; fail=1; return; }
  echo "--- installed with --prefix '$prefix' under DESTDIR:"
  (cd "$dest" && find . ! -type d | sort)
  local outside
  outside=$(cd "$dest" && find . ! -type d | sed 's|^\.||' | grep -v -F -x "$app_defaults" | grep -v "^$prefix/")
  if [ -n "$outside" ]; then
    echo "with --prefix '$prefix', files outside the prefix:" >&2
    echo "$outside" >&2
    fail=1
  fi
  [ -f "$dest$app_defaults" ] || { echo "no application defaults at $app_defaults" >&2; fail=1; }
  local f
  for f in "${expected[@]}"; do
    [ -f "$dest$prefix/$f" ] || { echo "with --prefix '$prefix': $f is missing" >&2; fail=1; }
  done
  [ -x "$dest$prefix/bin/pictrel-launch" ] || { echo "the launcher is not executable" >&2; fail=1; }
}

check "/opt/pictrel test" "/opt/pictrel test/share/X11/app-defaults/Pictrel"
check /usr /etc/X11/app-defaults/Pictrel
exit $fail
