#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Builds the API reference of the public headers with Doxygen, warnings as
# errors: an undocumented public name or a broken doc comment fails it.
# The reference lands in build-apidoc/doc/api/html.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build-apidoc -G Ninja -DVYX_BUILD_TESTS=OFF -DVYX_BUILD_TOOLS=OFF \
  -DVYX_APIDOC_WARN_AS_ERROR=YES >/dev/null
cmake --build build-apidoc --target apidoc
