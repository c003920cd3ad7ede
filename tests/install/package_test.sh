#!/usr/bin/env bash
# The Debian package as scripts/package makes it: named pictrel_<version>_<arch>.deb, its dependencies found by
# dpkg-shlibdeps, the launcher's tools recommended, and the application defaults a conffile. (Its files are the
# installation under /usr that staged_files_test.sh checks: cpack installs the same way, with DESTDIR.)
# Usage: BUILD_DIR
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

exit $fail
