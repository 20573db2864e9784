#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Reading INI-style files, side by side with GLib's key file and GTK's icon
# theme on the same files in one run (LANGUAGE=de):
#   - desktop entries of the peers' 2,000-file synthetic corpus: read, reader,
#     writer's document, VyxDesktopEntry; GKeyFile and GDesktopAppInfo;
#   - hicolor's index.theme and the icon theme load (Adwaita with hicolor);
#   - every application of the synthetic tree in a fresh process
#     (vyxcore apps --all against g_app_info_get_all), timed by farm-bench.
#   scripts/bench_ini_vs_peers.sh [BUILD_DIR] [PEERS_DIR]
# BUILD_DIR (default build) needs -DVYX_BUILD_BENCH=ON; PEERS_DIR defaults to
# ../shared/peers next to the repository's parent.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath "${1:-build}")
peers=$(realpath "${2:-../shared/peers}")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cc -O2 -o "$scratch/desktop_parse_glib" "$peers/src/desktop_parse_glib.c" $(pkg-config --cflags --libs gio-unix-2.0)
cc -O2 -o "$scratch/icon_lookup_gtk" "$peers/src/icon_lookup_gtk.c" $(pkg-config --cflags --libs gtk+-3.0)
bash "$peers/scripts/make_desktop_corpus.sh" "$scratch/corpus" 2000 >/dev/null 2>&1
export LANGUAGE=de
aggregates=(--benchmark_repetitions=5 --benchmark_report_aggregates_only=true)

echo "== desktop entries: libvyxcore (per file; wall and CPU time)"
VYX_DESKTOP_CORPUS="$scratch/corpus/applications" "$build/bench/desktopentry_bench" "${aggregates[@]}" 2>&1 |
  grep -E '_median'
echo "== desktop entries: GLib (per file)"
"$scratch/desktop_parse_glib" bench --label synthetic --reps 5 "$scratch/corpus/applications" | grep -E '^\|'

echo "== theme index and icon theme load: libvyxcore"
"$build/bench/inireader_bench" "${aggregates[@]}" 2>&1 | grep -E '_median'
echo "== icon theme load: GTK"
"$scratch/icon_lookup_gtk" --themes Adwaita,hicolor --sample 20 --reps 5 2>&1 | grep -E '^\*\*|theme load'

echo "== every application of the synthetic tree, fresh process: vyxcore (A) against GLib (B)"
mkdir -p "$scratch/empty"
farm-bench -n 15 --vs "env XDG_DATA_HOME=$scratch/empty XDG_DATA_DIRS=$scratch/corpus $scratch/desktop_parse_glib listall --reps 1" \
  -- env XDG_DATA_HOME="$scratch/empty" XDG_DATA_DIRS="$scratch/corpus" "$build/tools/vyxcore" apps --all
