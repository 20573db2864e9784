#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Installs the build tree into a scratch prefix and builds a consumer against
# it twice: with find_package(VyxCore) and with pkg-config. Also checks the
# SONAME and that private symbols stay hidden.
set -euo pipefail
build=$1
consumer=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "check_install: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$work/prefix" >/dev/null
lib=$(find "$work/prefix" -name 'libvyxcore.so.1' | head -n 1)
[[ -n "$lib" ]] || fail "libvyxcore.so.1 not installed"
libdir=$(dirname "$lib")
[[ -L "$libdir/libvyxcore.so" ]] || fail "development link libvyxcore.so missing"
[[ -f "$work/prefix/include/vyxcore/vyxcore.h" ]] || fail "umbrella header not installed"
[[ -x "$work/prefix/bin/vyxcore" ]] || fail "vyxcore tool not installed"
[[ -s "$work/prefix/share/man/man1/vyxcore.1" ]] || fail "manual page vyxcore(1) not installed"
[[ -s "$work/prefix/share/bash-completion/completions/vyxcore" ]] || fail "bash completion not installed"

soname=$(readelf -d "$lib" | sed -n 's/.*Library soname: \[\(.*\)\].*/\1/p')
[[ "$soname" == "libvyxcore.so.1" ]] || fail "SONAME is '$soname'"
# Only the interface is exported: nothing from the private namespace.
symbols=$(nm -D --defined-only -C "$lib")
if grep -q 'Vyx::detail::' <<<"$symbols"; then
  fail "private symbols are exported"
fi
grep -q 'GetVyxDir' <<<"$symbols" || fail "GetVyxDir is not exported"
# Nor the standard library's template copies, and every exported name
# carries the interface's version node.
leaked=$(nm -D --defined-only "$lib" | awk '{print $3}' |
  grep -E '^_Z(Z?N?K?|T[ISVT]N?|GVZN?K?)(St|Sa|Sb|Ss|9__gnu_cxx)' | c++filt | head -n 3 || true)
[[ -z "$leaked" ]] || fail "standard-library symbols are exported: $leaked"
unversioned=$(nm -D --defined-only --with-symbol-versions "$lib" |
  awk '$2 != "A" && $3 !~ /@@VYXCORE_1\.0$/ {print $3}' | head -n 3)
[[ -z "$unversioned" ]] || fail "symbols outside VYXCORE_1.0: $unversioned"

expect=$(cat "$consumer/expected-output")
run() { HOME=/consumer-home DESKTOP_SESSION=vyx LD_LIBRARY_PATH="$libdir" "$@"; }

cmake -S "$consumer" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
out=$(run "$work/cmake-build/consumer")
[[ "$out" == "$expect" ]] || fail "find_package consumer printed '$out'"

# Only our own .pc on the search path: using the library needs no X or
# font development files, and its flags are just its include directory.
export PKG_CONFIG_LIBDIR="$libdir/pkgconfig"
cflags=$(pkg-config --cflags vyxcore) || fail "pkg-config --cflags vyxcore needs other .pc files"
read -r cflags <<<"$cflags"
[[ "$cflags" == "-I$(pkg-config --variable=includedir vyxcore)/vyxcore" ]] ||
  fail "pkg-config --cflags gives '$cflags'"
c++ -std=c++17 "$consumer/main.cpp" -o "$work/pc-consumer" $cflags $(pkg-config --libs vyxcore)
out=$(run "$work/pc-consumer")
[[ "$out" == "$expect" ]] || fail "pkg-config consumer printed '$out'"

# The installed tool finds the installed library by itself, without
# LD_LIBRARY_PATH, even though its prefix is no system directory.
HOME=/consumer-home "$work/prefix/bin/vyxcore" dirs HomeDir | grep -qx /consumer-home ||
  fail "installed vyxcore does not run without LD_LIBRARY_PATH"
echo "install: find_package and pkg-config consumers built and ran"
