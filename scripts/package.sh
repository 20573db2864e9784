#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Builds the Debian packages from this tree, checks them with lintian,
# installs them, builds and runs a small program against the installed
# packages (with CMake and with pkg-config), then removes them again.
# Everything it writes stays under build-deb/. Must run as root (it installs
# packages); CI runs it after the test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh --packaging
top=$PWD
work=$top/build-deb
packages=(libvyxcore1 libvyxcore-dev vyxcore-tools)
fail() { echo "package: $*" >&2; exit 1; }

# dpkg-buildpackage writes its results next to the source tree, so the tree
# is copied one level down into a scratch directory (tracked and new files,
# not the ignored build directories).
rm -rf "$work"
version=$(dpkg-parsechangelog -S Version)
src=$work/libvyxcore-$version
mkdir -p "$src"
git ls-files -z --cached --others --exclude-standard |
  while IFS= read -r -d '' f; do [[ -e "$f" ]] && printf '%s\0' "$f"; done |
  xargs -0 cp --parents -t "$src"

( cd "$src" && DEB_BUILD_OPTIONS="nocheck parallel=$(nproc)" dpkg-buildpackage -us -uc -b >"$work/build.log" 2>&1 ) ||
  { tail -n 40 "$work/build.log" >&2; fail "dpkg-buildpackage failed (log: $work/build.log)"; }
changes=$(ls "$work"/libvyxcore_"$version"_*.changes)

# No errors, and every warning either fixed or overridden with a reason.
lintian --fail-on error,warning "$changes"

remove() { apt-get purge -y -qq "${packages[@]}" >/dev/null 2>&1 || true; }
trap remove EXIT
debs=()
for p in "${packages[@]}"; do debs+=("$(ls "$work/${p}_${version}"_*.deb)"); done
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${debs[@]}" >/dev/null

consumer=$top/tests/install/consumer
expect=$(cat "$consumer/expected-output")
run() { HOME=/consumer-home DESKTOP_SESSION=vyx "$@"; }

cmake -S "$consumer" -B "$work/cmake-consumer" >/dev/null
cmake --build "$work/cmake-consumer" >/dev/null
out=$(run "$work/cmake-consumer/consumer")
[[ "$out" == "$expect" ]] || fail "find_package consumer printed '$out'"

c++ -std=c++17 "$consumer/main.cpp" -o "$work/pc-consumer" $(pkg-config --cflags --libs vyxcore)
out=$(run "$work/pc-consumer")
[[ "$out" == "$expect" ]] || fail "pkg-config consumer printed '$out'"

run /usr/bin/vyxcore dirs HomeDir | grep -qx /consumer-home || fail "the installed vyxcore does not run"
echo "package: ${debs[*]##*/} built, lintian-clean, installed, consumers built and ran, removed"
