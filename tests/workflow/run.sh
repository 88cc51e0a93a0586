#!/usr/bin/env bash
# The workflow against single batches: bash run.sh PROJECT TRIMORA-RUN
#
# Genes are cut from an example. Every file that the workflow leaves, and every line of its table, must be byte for byte
# that of one batch over the alignments that went through.
# shellcheck disable=SC2016,SC2086 # programs of awk; several options in one string
set -euo pipefail
project=$1 program=$2
command -v snakemake >/dev/null || { echo "Skipped: snakemake is not installed"; exit 77; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_CACHE_HOME=$scratch/cache
mkdir "$scratch/a clone" "$scratch/the work"
cp -R "$project/workflow" "$project/config" "$scratch/a clone"
cd "$scratch/the work"

flow() { # flow GENES OPTIONS [SETTING...]: exit status in $status, what happened in log
  status=0
  snakemake --snakefile "$scratch/a clone/workflow/Snakefile" --profile "$scratch/a clone/workflow/profiles/local" \
    --cores 2 --config program="$program" paths="$1.txt" options="$2" group_size=3 "${@:3}" >log 2>&1 || status=$?
}
fail() { echo "$*"; cat log; exit 1; }
groups() { sed -n 's/.*wildcards: group=//p' log | sort | tr '\n' ' '; }
gone() { [ "$(groups)" = "$1" ] || fail "$2: groups $(groups)"; }
same() { # same GENES OPTIONS [STATUS]: a batch over those that went through, in a fresh copy, leaves the same files
  local single=$scratch/single results=results/$1.txt differences
  [ $status -eq "${3:-0}" ] || fail "$1: status $status"
  rm -rf "$single" && mkdir "$single"
  cp -R "$1" "$single"
  find "$single" -type f ! -name '*.fas' -delete
  awk -F '\t' '$11 == "ok" { print $1 }' "$results/table.tsv" >"$single/$1.txt"
  (cd "$single" && "$program" "$1.txt" $2 --table=table.tsv >printed 2>&1) || fail "$1: $(<"$single/printed")"
  find "$single/$1" -name "$1.txt*" -exec mv {} "$single" \;
  rm "$single/printed" "$single/$1.txt"
  diff -r "$single/$1" "$1" || fail "$1: not the files of a single batch"
  differences=$(diff -r -x "$1" -x table.tsv "$single" "$results" |
    grep -Ev '^Only in .*: (groups|logs|failed.txt|leftovers.txt|complete|table.tsv)$') || true
  [ -z "$differences" ] || fail "$1: not the concatenations of a single batch: $differences"
  awk -F '\t' '$11 != "failed"' "$results/table.tsv" | cmp - "$single/table.tsv" || fail "$1: not the table of a single batch"
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
gene() { echo "$1/it's {$2} \"q\".fas"; }

# Type and format are those of the first alignment: the second group calls itself protein. b1 and b2 are each one's own.
cut_genes pir 'if (k > 3 && NR < 4) continue; left = (k < 4 ? ">DL;" : ">P1;"); name = $1 "\n"; right = "*\n\n"'
options="-p=s -k=y -b2=0"
flow pir "$options"
same pir "$options"

# By name, behind a first alignment that lacks most species. Every other gene has its own first species.
cut_genes name 'if (k == 1 && NR > 4 || k % 2 == 0 && NR == 2) continue; name = name "|gene" k'
options="-t=D -a=y -w=y -p=n --partitions --format=fasta,phylip --columns --name-end=|"
flow name "$options" match=name
same name "$options --match=name"

# The first alignment fixes the parameters. The fifth gene selects nothing, two names are one without their signs.
cut_genes fasta 'if (k == 5 && NR == 2) gsub(/./, "-", text)'
mv "$(gene fasta 7)" "fasta/IT-S_2_q.fas"
sed -i "s/it's {7} \"q\"/IT-S_2_q/" fasta.txt
options="-t=D -a=y -c=y -w=y -u=y -p=t -b2=9 -b1=8 --partitions"
flow fasta "$options"
same fasta "$options"

# Resumed: only what is no longer there or has changed is made anew. The table is the user's.
{ head -n 1 results/fasta.txt/table.tsv; } >kept
cp kept results/fasta.txt/table.tsv
flow fasta "$options"
[ $status -eq 0 ] || fail "a second run: status $status"
gone "" "a second run"
cmp kept results/fasta.txt/table.tsv || fail "the table was written anew"
rm "$(gene fasta 2)-tr" results/fasta.txt/fasta.txt--.seq # the first is lost, the second differs
echo >>"fasta/IT-S_2_q.fas--"
flow fasta "$options"
gone "00000 00002 " "lost files"
same fasta "$options"
echo >>results/fasta.txt/fasta.txt.seq
sed '/^>/!s/./-/' "$(gene fasta 4)" >changed
cat changed >"$(gene fasta 4)"
touch -d 2001-01-01 "$(gene fasta 4)" # older than the results
flow fasta "$options"
gone "00001 " "a changed alignment"
same fasta "$options"

# Those that fail are in the table with their message and keep no file. The others are done, and the status tells.
sed -i '2s/^/A/' "$(gene fasta 1)"
rm "$(gene fasta 2)"
sed -i '1,2d' "fasta/IT-S_2_q.fas"
sed -i '1s/$/x/' "$(gene fasta 6)"
flow fasta "$options"
awk -F '\t' '$11 == "failed" { print $1 ": " $12 }' results/fasta.txt/table.tsv >messages
cmp messages results/fasta.txt/failed.txt || fail "failed ones: $(<results/fasta.txt/failed.txt)"
while IFS='|' read -r number words; do
  grep -F "$words" messages | grep -qF "$number" || fail "failed ones: $number: $words: $(<messages)"
  grep -qF "$(grep -F "$number" messages)" log || fail "not in the main log: $number"
done <<EOT
{1}|
{2}|
IT-S|$(gene fasta 3)
{6}|$(gene fasta 3)
EOT
[ "$(wc -l <messages)" -eq 4 ] || fail "failed ones: $(<messages)"
same fasta "$options" 1

# What earlier runs have left is named, as long as it is there.
sed -i 6d fasta.txt # the gene that failed, which has no files
sed -i 3d fasta.txt
flow fasta "-t=D -a=y -p=n -b2=9 -b1=8 -e=-x"
grep -Fxq "$(gene fasta 3)-tr" results/fasta.txt/leftovers.txt || fail "a file of a gene no longer listed"
grep -Fxq "results/fasta.txt/fasta.txt.seq" results/fasta.txt/leftovers.txt || fail "an old concatenation"
grep -q '^Left by earlier runs: ' log || fail "leftovers are not named"
xargs -d '\n' rm <results/fasta.txt/leftovers.txt
flow fasta "-t=D -a=y -p=n -b2=9 -b1=8 -e=-x"
[ ! -e results/fasta.txt/leftovers.txt ] || fail "leftovers that are gone: $(<results/fasta.txt/leftovers.txt)"
same fasta "-t=D -a=y -p=n -b2=9 -b1=8 -e=-x" 1

# Refused, before anything is run.
first=$(gene pir 1)
ln -s "${first##*/}" pir/link.fas
while IFS='|' read -r line setting words; do
  { cat pir.txt; printf '%b' "$line"; } >list.txt
  flow list "-p=s" ${setting:+"$setting"}
  [[ $status -ne 0 && $(<log) == *"$words"* && ! -e results/list.txt/groups ]] || fail "$line $setting: status $status"
done <<EOT
no end||no line end
./$first\n||are the same file
pir/link.fas\n||are the same file
$first-tr\n||is a result of
|group_sise=3|group_sise
|match=nmae|nmae
|options=-b3=x|-b3=x is not a whole number
|options=-a=y --table=x|--table=x is not for the workflow
EOT
