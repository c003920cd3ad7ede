#!/usr/bin/env bash
# The installed manual page formats with no warning and covers the sections a user looks for and every application
# resource of the program; the installed desktop entry validates, opens XPM and XBM files through the launcher, and
# its icons have the sizes their folders promise. Usage: BUILD_DIR SOURCE_DIR
set -u
build=$1 src=$2
stage=$(mktemp -d /tmp/pictrel-doc-XXXXXX)
trap 'rm -rf "$stage"' EXIT
fail=0
DESTDIR=$stage cmake --install "$build" --prefix /usr >/dev/null || { echo "install failed" >&2; exit 1; }
DESTDIR=$stage/other cmake --install "$build" --prefix "/opt/pic trel" >/dev/null || { echo "install failed" >&2; exit 1; }

# The manual page.
page=$stage/usr/share/man/man1/pictrel.1.gz
warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null)
[ -z "$warnings" ] || { echo "man --warnings:"; echo "$warnings"; fail=1; } >&2
text=$(MANWIDTH=80 man -l "$page" 2>/dev/null)
for section in NAME SYNOPSIS DESCRIPTION OPTIONS "THE DRAWING WINDOW" TOOLS "MOUSE BUTTONS" KEYS RESOURCES \
               DISPLAYS FILES ENVIRONMENT; do
  grep -q "^$section\$" <<<"$text" || { echo "the manual page has no section $section" >&2; fail=1; }
done
for option in -width -height -zoomLevel -debug -xpmType -help; do
  grep -q -- "^ *$option" <<<"$text" || { echo "the manual page does not list $option" >&2; fail=1; }
done
# Every application resource the program fetches, taken from its resource tables.
resources=$(grep -oE '^ *(STR_RES|INT_RES|PIX_RES)\("[A-Za-z_]+"|^ *\{\(char\*\)"[A-Za-z]+", \(char\*\)"[A-Z]' \
            "$src/src/app/startup.cpp" | grep -oE '"[A-Za-z_]+"' | sed -n 's/"//gp' | sort -u)
[ "$(wc -l <<<"$resources")" -ge 30 ] || { echo "could not read the resource table" >&2; fail=1; }
for r in $resources; do
  grep -qw -- "$r" <<<"$text" || { echo "the manual page does not name the resource $r" >&2; fail=1; }
done
# pictrel-launch's page leads to the same text.
launch_page=$(MANWIDTH=80 man --warnings -M "$stage/usr/share/man" pictrel-launch 2>&1)
grep -q "^ *pictrel-launch - run Pictrel\|^ *pictrel, pictrel-launch - " <<<"$launch_page" && ! grep -q "warning" <<<"$launch_page" ||
  { echo "man pictrel-launch:"; head -5 <<<"$launch_page"; fail=1; } >&2
grep -q "Xephyr" <<<"$text" && grep -q "PseudoColor" <<<"$text" ||
  { echo "the manual page does not tell how to run on a 24-bit desktop" >&2; fail=1; }

# The desktop entries of a system and of another prefix.
for entry in "$stage/usr/share/applications/pictrel.desktop" "$stage/other/opt/pic trel/share/applications/pictrel.desktop"; do
  out=$(desktop-file-validate "$entry" 2>&1) || fail=1
  [ -z "$out" ] || { echo "desktop-file-validate $entry:"; echo "$out"; fail=1; } >&2
  grep -qx 'MimeType=image/x-xpixmap;image/x-xbitmap;' "$entry" || { echo "$entry: MimeType" >&2; fail=1; }
  grep -qx 'Icon=pictrel' "$entry" || { echo "$entry: Icon" >&2; fail=1; }
done
grep -qx 'Exec=pictrel-launch %F' "$stage/usr/share/applications/pictrel.desktop" ||
  { echo "the system entry does not run pictrel-launch %F" >&2; fail=1; }
grep -qx 'Exec="/opt/pic trel/bin/pictrel-launch" %F' "$stage/other/opt/pic trel/share/applications/pictrel.desktop" ||
  { echo "the entry of another prefix does not run its launcher by its quoted path" >&2; fail=1; }

# The icons.
for size in 48 96 192; do
  got=$(identify -format '%wx%h' "$stage/usr/share/icons/hicolor/${size}x${size}/apps/pictrel.png" 2>&1)
  [ "$got" = "${size}x${size}" ] || { echo "the ${size}x${size} icon is $got" >&2; fail=1; }
done
got=$(identify -format '%wx%h' "$stage/usr/share/pixmaps/pictrel.xpm" 2>&1)
[ "$got" = 48x48 ] || { echo "share/pixmaps/pictrel.xpm is $got" >&2; fail=1; }
exit $fail
