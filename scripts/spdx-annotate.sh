#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Adds the copyright and licence header to every file of the tree that has
# none (new files, files from merged branches), then checks the whole tree
# with `reuse lint`. Files that cannot carry a comment are listed in
# .reuse/dep5 instead. Safe to run again: annotated files are left alone.
set -euo pipefail

# Everything runs from a function: bash reads a script as it goes, and this
# script may be one of the files it rewrites.
main() {
  cd "$(dirname "$0")/.."
  local args=(--copyright "The libvyxcore developers" --year 2026 --license LGPL-2.1-or-later)
  local missing
  mapfile -t missing < <(unannotated)
  (( ${#missing[@]} )) || { reuse lint >/dev/null && return; reuse lint >&2; return 1; }

  # One run for every file whose comment style reuse knows by its name.
  reuse annotate "${args[@]}" --skip-unrecognised "${missing[@]}" >/dev/null
  local f
  while IFS= read -r f; do
    [[ -f "$f" ]] || continue
    # The linker script takes only /* */ comments; templates and scripts without an
    # extension take shell comments; anything else gets a .license file.
    if [[ "$f" == *.map ]]; then
      reuse annotate "${args[@]}" --style css "$f" >/dev/null
    elif [[ "$f" == *.in || "$(head -c 2 "$f")" == "#!" ]]; then
      reuse annotate "${args[@]}" --style python "$f" >/dev/null
    else
      reuse annotate "${args[@]}" --force-dot-license "$f" >/dev/null
    fi
  done < <(unannotated)
  echo "spdx-annotate: ${#missing[@]} file(s) annotated" >&2
  reuse lint >/dev/null || { reuse lint >&2; return 1; }
}

# The files reuse lint reports without copyright or licence information.
unannotated() {
  reuse lint 2>/dev/null | sed -n '/^# MISSING COPYRIGHT/,/^# SUMMARY/s/^\* //p' || true
}

main "$@"; exit
