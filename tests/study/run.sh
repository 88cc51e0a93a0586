#!/usr/bin/env bash
# Three replicates of a cell of the study, again: bash run.sh PROJECT TRIMORA-RUN
#
# The letters that are simulated and the columns that are selected have to be those of expected.tsv, to the byte; every tree
# about as far from the true one as in the stored rows, since FastTree may round otherwise on another processor.
set -euo pipefail
project=$1 program=$2 here=$(cd "$(dirname "$0")" && pwd)
for tool in python3 mafft fasttree; do
  command -v $tool >/dev/null || { echo "Skipped: $tool is not installed"; exit 77; }
done
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$project/study"
PYTHONDONTWRITEBYTECODE=1 python3 "$here/repeat.py" few 0 3 "$program" "$scratch" >"$scratch/found"
diff -u "$here/expected.tsv" "$scratch/found"
