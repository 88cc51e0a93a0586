#!/usr/bin/env bash
# The workflow against single batches: bash run.sh PROJECT TRIMORA TRIMORA-RUN
#
# Genes are cut from an example. Every file that the workflow leaves must be, byte for byte, that of one batch run of
# trimora over the alignments that went through; partitions must name the columns where each alignment really stands.
# shellcheck disable=SC2016,SC2086 # programs of awk; several options in one string
set -euo pipefail
project=$1 trimora=$2 program=$3
command -v snakemake >/dev/null || { echo "Skipped: snakemake is not installed"; exit 77; }
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_CACHE_HOME=$scratch/cache
mkdir "$scratch/a clone" "$scratch/the work"
cp -R "$project/workflow" "$project/config" "$scratch/a clone"
cd "$scratch/the work"

flow() { # flow GENES OPTIONS: exit status in $status, what happened in log
  status=0
  snakemake --snakefile "$scratch/a clone/workflow/Snakefile" --profile "$scratch/a clone/workflow/profiles/local" \
    --cores 2 --config program="$program" paths="$1.txt" options="$2" results="$1 results" group_size=3 retries=0 \
    >log 2>&1 || status=$?
}
fail() { echo "$*"; cat log; exit 1; }
groups() { sed -n 's/.*wildcards: group=//p' log | sort | tr '\n' ' '; }
same() { # same GENES OPTIONS [STATUS]: a batch over those that went through, in a fresh copy, leaves the same files
  [ $status -eq "${3:-0}" ] || fail "$1: status $status"
  rm -rf "$scratch/single" && mkdir "$scratch/single"
  cp -R "$1" "$scratch/single"
  find "$scratch/single" -type f ! -name '*.fas' -delete
  awk -F '\t' '$8 == "ok" { print $1 }' "$1 results/table.tsv" >"$scratch/single/$1.txt"
  (cd "$scratch/single" && "$trimora" "$1.txt" $2 >/dev/null) || true
  find "$scratch/single/$1" -name '*.seq' -exec mv {} "$scratch/single" \;
  diff -r "$scratch/single/$1" "$1" || fail "$1: not the files of a single batch"
  for file in "$scratch"/single/*.seq; do
    [ ! -e "$file" ] || cmp "$file" "$1 results/${file##*/}" || fail "$1: not the concatenation of a single batch"
  done
}
cut_genes() { # cut_genes GENES AWK: seven of them, of 100 positions each, by the example; AWK changes the records
  mkdir "$1"
  awk -v folder="$1" -v RS='>' 'NR > 1 {
    name = $1; sequence = ""; for (f = 2; f <= NF; ++f) sequence = sequence $f
    for (k = 1; k <= 7; ++k) {
      left = ">"; right = "\n"; text = substr(sequence, k * 100 + 1, 100)
      '"$2"'
      printf "%s%s\n%s%s", left, name, text, right >(folder "/it'\''s {" k "} \"q\".fas")
    }}' "$project/examples/primates_mt.fas"
  printf "$1/it's {%s} \"q\".fas\n" 1 2 3 4 5 6 7 >"$1.txt"
}

# Type and format are those of the first alignment: the second group calls itself protein. b1 and b2 are each one's own.
cut_genes pir 'if (k > 3 && NR < 4) continue; left = (k < 4 ? ">DL;" : ">P1;"); name = $1 "\n"; right = "*\n\n"'
options="-p=s -k=y -b2=0"
flow pir "$options"
same pir "$options"

# The first alignment fixes the parameters. The fifth gene selects nothing, two names are one without their signs.
cut_genes fasta 'if (k == 5 && NR == 2) gsub(/./, "-", text)'
mv "fasta/it's {7} \"q\".fas" "fasta/IT-S_2_q.fas"
sed -i "s/it's {7} \"q\"/IT-S_2_q/" fasta.txt
options="-t=D -a=y -c=y -w=y -u=y -p=t -b2=9 -b1=8"
flow fasta "$options"
same fasta "$options"
python3 "$here/partitions.py" "fasta results" || fail "fasta: partitions"

# Resumed: only what has changed is made anew.
flow fasta "$options"
[[ $status -eq 0 && -z $(groups) ]] || fail "a second run works: $(groups)"
sed -i '/^>/!s/./-/' "fasta/it's {4} \"q\".fas"
touch -d 2001-01-01 "fasta/it's {4} \"q\".fas" # older than the results
flow fasta "$options"
[ "$(groups)" = "00001 " ] || fail "a changed alignment: groups $(groups)"
grep -q '{4}.*ok.*column 1$' "fasta results/table.tsv" || fail "a note: $(cat "fasta results/table.tsv")"
same fasta "$options"

# Those that fail are in the table with their message. The others are done, and the status tells.
sed -i '2s/^/A/' "fasta/it's {1} \"q\".fas"
rm "fasta/it's {2} \"q\".fas"
sed -i '1,2d' "fasta/IT-S_2_q.fas"
find fasta -type f ! -name '*.fas' -delete
flow fasta "$options"
[ "$(awk -F '\t' '$8 == "failed" { print $2, $9 }' "fasta results/table.tsv")" = "\
NA Sequences with different number of positions
NA File not opened
11 Alignments with different number of sequences" ] || fail "failed ones: $(cat "fasta results/table.tsv")"
same fasta "$options" 1

printf '%s' "$(cat pir.txt)" >pir2.txt
flow pir2 ""
[[ $status -ne 0 && $(<log) == *"no line end"* ]] || fail "a path without a line end: status $status"
