#!/usr/bin/env bash
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

expect="consumer ok /consumer-home kind=2 quoted=\"a b\" flag=1"
run() { HOME=/consumer-home DESKTOP_SESSION=vyx LD_LIBRARY_PATH="$libdir" "$@"; }

cmake -S "$consumer" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
out=$(run "$work/cmake-build/consumer")
[[ "$out" == "$expect" ]] || fail "find_package consumer printed '$out'"

export PKG_CONFIG_PATH="$libdir/pkgconfig"
c++ -std=c++17 "$consumer/main.cpp" -o "$work/pc-consumer" $(pkg-config --cflags --libs vyxcore)
out=$(run "$work/pc-consumer")
[[ "$out" == "$expect" ]] || fail "pkg-config consumer printed '$out'"

# The installed tool runs against the installed library.
run "$work/prefix/bin/vyxcore" dirs HomeDir | grep -qx /consumer-home || fail "installed vyxcore does not run"
echo "install: find_package and pkg-config consumers built and ran"
