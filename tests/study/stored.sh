#!/usr/bin/env bash
# Tables, pictures and docs/when-to-trim.md, made again from the stored rows, are those of the source: bash stored.sh PROJECT
set -euo pipefail
project=$1
command -v python3 >/dev/null || { echo "Skipped: python3 is not installed"; exit 77; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp -r "$project/study" "$scratch"
rm -f "$scratch"/study/results/{trees,pairs,judged}.tsv
mkdir -p "$scratch/docs/pictures"
for program in summarise draw page; do python3 "$scratch/study/$program.py"; done | tee "$scratch/said"
diff -r -x __pycache__ "$project/study/results" "$scratch/study/results"
for file in pictures/trimming-trees.svg pictures/trimming-pairs.svg when-to-trim.md; do
  diff "$project/docs/$file" "$scratch/docs/$file"
done
[ ! -s "$scratch/said" ] # a sentence that the numbers no longer bear out
