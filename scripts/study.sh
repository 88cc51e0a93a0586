#!/usr/bin/env bash
# Measure which settings help a tree: scripts/study.sh [CELL [REPLICATES]]
# Computes what is missing in study/results/raw, all of it or of one cell, with the lowest priority; then makes the tables and
# the pictures. It may be stopped at any time. All of it takes a night on two cores; --stored computes nothing.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

[ $# -le 2 ] || { echo "usage: scripts/study.sh [CELL [REPLICATES] | --stored]" >&2; exit 2; }
cd "$project/study"
engine() { exec nice -n 19 snakemake --snakefile Snakefile --rerun-triggers mtime --cores "$(nproc)" "$@"; }
if [ "${1:-}" = --stored ]; then
  need snakemake
  engine stored
fi
need snakemake mafft fasttree iqtree indelible g++ cmake make zlib1g-dev
make_preset release
settings=()
[ $# -lt 1 ] || settings+=("cell=$1")
[ $# -lt 2 ] || settings+=("replicates=$2")
engine all ${settings[@]+--config "${settings[@]}"}
