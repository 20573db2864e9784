#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Sets everything up, builds the library and the vyxcore tool, and runs it:
#   scripts/run.sh               an overview of this desktop
#   scripts/run.sh dirs --json   any vyxcore command
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target vyxcore_tool >/dev/null
exec build/tools/vyxcore "$@"
