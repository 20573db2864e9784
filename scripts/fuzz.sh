#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Builds the libFuzzer targets with clang (with AddressSanitizer and
# UndefinedBehaviorSanitizer) and runs each for a bounded time.
#   scripts/fuzz.sh [SECONDS_PER_TARGET]   (default 30)
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
seconds=${1:-30}
build=build-fuzz
if ! command -v clang++ >/dev/null 2>&1; then
  echo "fuzz.sh: clang++ not found, fuzz targets skipped" >&2
  exit 0
fi
CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DVYX_BUILD_FUZZ=ON -DVYX_BUILD_TESTS=OFF -DVYX_BUILD_TOOLS=OFF \
  -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined" >/dev/null
cmake --build "$build"
for target in "$build"/fuzz/fuzz_*; do
  [[ -x "$target" ]] || continue
  name=$(basename "$target")
  corpus="$build/corpus/$name"
  mkdir -p "$corpus"
  echo "fuzz.sh: $name for ${seconds}s"
  "$target" -max_total_time="$seconds" -artifact_prefix="$build/" "$corpus" 2>"$build/$name.log" \
    || { tail -n 40 "$build/$name.log" >&2; echo "fuzz.sh: $name failed" >&2; exit 1; }
done
echo "fuzz.sh: every target ran ${seconds}s without a finding"
