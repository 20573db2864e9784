#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Sets everything up, builds and runs the whole test suite.
#   scripts/test.sh              the ordinary build, in build/
#   scripts/test.sh --sanitize   built with AddressSanitizer and
#                                UndefinedBehaviorSanitizer, in build-sanitize/
#   scripts/test.sh --threads    the cases that run on several threads at
#                                once, built with ThreadSanitizer, in build-tsan/
# Further arguments go to cmake's configure step.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

build=build
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [[ "${1:-}" == "--sanitize" ]]; then
  shift
  build=build-sanitize
  options=(-DCMAKE_BUILD_TYPE=Debug -DVYX_SANITIZE=ON)
  export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
  export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
fi

if [[ "${1:-}" == "--threads" ]]; then
  shift
  # Test names with "Threads" in them are the ones that share objects
  # between threads.
  cmake -S . -B build-tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVYX_TSAN=ON -DVYX_BUILD_TOOLS=OFF "$@" >/dev/null
  cmake --build build-tsan --target themes_tests session_tests system_tests
  TSAN_OPTIONS=${TSAN_OPTIONS:-halt_on_error=1} ctest --test-dir build-tsan --output-on-failure -R Threads
  exit
fi

cmake -S . -B "$build" -G Ninja -DVYX_BUILD_BENCH=ON "${options[@]}" "$@" >/dev/null
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
