#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Compares the binary interface of a fresh libvyxcore.so.1 with the baseline
# kept in abi/, and fails when it changed:
#   exit 1  an incompatible change (a removed or changed symbol or type): a
#           program built against the baseline could break;
#   exit 3  the interface only grew: compatible, but the baseline must be
#           regenerated (scripts/abi-baseline.sh) and committed with it.
#   scripts/abi-check.sh            check
#   scripts/abi-check.sh --update   regenerate the baseline instead
# The library is built in build-abi/ with the same options both ways, so that
# the two descriptions differ only where the interface does.
set -euo pipefail
cd "$(dirname "$0")/.."
baseline=abi/libvyxcore.so.1.abi
build=build-abi

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DVYX_BUILD_TESTS=OFF -DVYX_BUILD_TOOLS=OFF -DVYX_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --target vyxcore >/dev/null
lib="$build/src/libvyxcore.so.1"

# Only the types the installed headers declare count; the locations and the
# build directory are left out so the description is the same on every build.
if [[ "${1:-}" == "--update" ]]; then
  mkdir -p abi
  abidw --no-corpus-path --no-comp-dir-path --no-show-locs --drop-private-types \
    --headers-dir include --out-file "$baseline.tmp" "$lib"
  mv "$baseline.tmp" "$baseline"
  echo "abi: baseline written to $baseline ($(grep -c '<elf-symbol ' "$baseline") symbols)"
  exit 0
fi

[[ -f "$baseline" ]] || { echo "abi: no baseline $baseline (run scripts/abi-baseline.sh)" >&2; exit 1; }
status=0
report=$(abidiff --drop-private-types --headers-dir2 include "$baseline" "$lib") || status=$?
# abidiff's status is a bit set: 1 error, 2 usage, 4 a change, 8 an incompatible change.
if (( status & 3 )); then
  echo "abi: abidiff failed (status $status)" >&2
  printf '%s\n' "$report" >&2
  exit 1
fi
if (( status & 8 )); then
  printf '%s\n' "$report" >&2
  echo "abi: incompatible change to the interface of libvyxcore.so.1" >&2
  exit 1
fi
if (( status & 4 )); then
  printf '%s\n' "$report" >&2
  echo "abi: the interface changed compatibly; run scripts/abi-baseline.sh and commit $baseline" >&2
  exit 3
fi
echo "abi: libvyxcore.so.1 matches $baseline"
