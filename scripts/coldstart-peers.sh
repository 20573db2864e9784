#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# coldstart-peers.sh SCRATCH [PEERS_DIR]
#
# Prepares what bench/coldstart_bench compares against, all inside SCRATCH
# (nothing is written into PEERS_DIR): the peers' two first-call programs
# built as their run_all.sh builds them (in SCRATCH/peers), once more with
# the processor-time clock instead of the wall clock (in SCRATCH/peers/cpu:
# the machine is shared, and wall time then measures the neighbours), their
# content corpus and their XDG tree of applications. Then:
#   VYX_COLDSTART_DIR=SCRATCH build/bench/coldstart_bench
set -euo pipefail
OUT=${1:?usage: coldstart-peers.sh SCRATCH [PEERS_DIR]}
PEERS=${2:-/work/shared/peers}
mkdir -p "$OUT/peers/cpu/src"
OUT=$(cd "$OUT" && pwd)
cp "$PEERS/src/bench_util.h" "$OUT/peers/cpu/src/"
sed -i 's/CLOCK_MONOTONIC/CLOCK_PROCESS_CPUTIME_ID/' "$OUT/peers/cpu/src/bench_util.h"
for p in content_type_gio default_app_gio; do
    cc -O2 -Wall -o "$OUT/peers/$p" "$PEERS/src/$p.c" $(pkg-config --cflags --libs gio-unix-2.0)
    cp "$PEERS/src/$p.c" "$OUT/peers/cpu/src/"
    cc -O2 -Wall -o "$OUT/peers/cpu/$p" "$OUT/peers/cpu/src/$p.c" $(pkg-config --cflags --libs gio-unix-2.0)
done
[ -f "$OUT/mime_tree/env.sh" ] || "$PEERS/scripts/make_mime_tree.sh" "$OUT/mime_tree" >/dev/null
[ -f "$OUT/content_corpus/manifest.tsv" ] || "$PEERS/scripts/make_content_corpus.sh" "$OUT/content_corpus" >/dev/null
echo "VYX_COLDSTART_DIR=$OUT"
