#!/usr/bin/env bash
# Installed under the system prefix /usr, Pictrel must find its application defaults with nothing but the toolkit's
# built-in search path: install into a staging directory and ask libXt whether it would look there. (Under any other
# prefix the program finds them from its own place; the install tests of the program show that.)
# Usage: BUILD_DIR FINDER
set -u
build=$1 finder=$2
stage=$(mktemp -d /tmp/pictrel-install-XXXXXX)
trap 'rm -rf "$stage"' EXIT
DESTDIR=$stage cmake --install "$build" --prefix /usr >/dev/null || { echo "install failed" >&2; exit 1; }
if ! found=$("$finder" "$stage"); then
  echo "the installed application defaults are not on libXt's search path:" >&2
  (cd "$stage" && find . -name Pictrel) >&2
  exit 1
fi
echo "found at $found"
