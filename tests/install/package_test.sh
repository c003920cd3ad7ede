#!/usr/bin/env bash
# The Debian package as scripts/package makes it: named pictrel_<version>_<arch>.deb, its dependencies found by
# dpkg-shlibdeps, the launcher's tools recommended, and its files under /usr but for the application defaults, a
# conffile in /etc/X11/app-defaults. Usage: BUILD_DIR
set -u
build=$1
out=$(mktemp -d /tmp/pictrel-package-XXXXXX)
trap 'rm -rf "$out"' EXIT
fail=0
(cd "$build" && cpack -G DEB -B "$out" >"$out/cpack.log" 2>&1) || { cat "$out/cpack.log" >&2; exit 1; }
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
deb=$out/pictrel_${version}_$(dpkg --print-architecture).deb
[ -f "$deb" ] || { echo "no $deb; made:" >&2; ls "$out" >&2; exit 1; }
info=$(dpkg-deb -I "$deb")
echo "$info"
field() { sed -n "s/^ $1: //p" <<<"$info"; }
[ "$(field Package)" = pictrel ] || { echo "Package: $(field Package)" >&2; fail=1; }
depends=$(field Depends)
for lib in libc6 libx11-6 libxt6 libxpm4 x11-utils; do
  grep -qE "(^|, )$lib( |,|$)" <<<"$depends" || { echo "Depends lacks $lib: $depends" >&2; fail=1; }
done
grep -qE "(^|, )libxm4( |,|$)" <<<"$depends" || { echo "Depends lacks Motif (libxm4): $depends" >&2; fail=1; }
recommends=$(field Recommends)
for p in xserver-xephyr twm; do
  grep -qE "(^|, )$p( |,|$)" <<<"$recommends" || { echo "Recommends lacks $p: $recommends" >&2; fail=1; }
done
conffiles=$(dpkg-deb --ctrl-tarfile "$deb" | tar -xO ./conffiles 2>/dev/null)
[ "$conffiles" = /etc/X11/app-defaults/Pictrel ] || { echo "conffiles: '$conffiles'" >&2; fail=1; }

files=$(dpkg-deb -c "$deb" | grep -v '^d' | sed -E 's/^([^ ]+ +){5}//')
echo "$files"
for f in ./usr/bin/pictrel ./usr/bin/pictrel-launch ./etc/X11/app-defaults/Pictrel \
         ./usr/share/man/man1/pictrel.1.gz ./usr/share/man/man1/pictrel-launch.1.gz \
         ./usr/share/doc/pictrel/copyright ./usr/share/applications/pictrel.desktop \
         ./usr/share/icons/hicolor/48x48/apps/pictrel.png ./usr/share/pixmaps/pictrel.xpm \
         ./usr/share/pictrel/twmrc ./usr/share/pictrel/pixmaps/rectfilled.xpm; do
  grep -qxF "$f" <<<"$files" || { echo "the package lacks $f" >&2; fail=1; }
done
stray=$(grep -v -e '^\./usr/' -e '^\./etc/X11/app-defaults/Pictrel$' <<<"$files")
[ -z "$stray" ] || { echo "files outside /usr:"; echo "$stray"; fail=1; } >&2
exit $fail
