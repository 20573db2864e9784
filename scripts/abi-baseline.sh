#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Regenerates abi/libvyxcore.so.1.abi from a fresh build. Run it in the same
# commit as any change that adds to the interface.
set -euo pipefail
exec "$(dirname "$0")/abi-check.sh" --update
