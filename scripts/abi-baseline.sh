#!/usr/bin/env bash
# Regenerates abi/libvyxcore.so.1.abi from a fresh build. Run it in the same
# commit as any change that adds to the interface.
set -euo pipefail
exec "$(dirname "$0")/abi-check.sh" --update
