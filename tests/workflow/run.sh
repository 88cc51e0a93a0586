#!/usr/bin/env bash
# The workflow against single batches: bash run.sh PROJECT TRIMORA-RUN
#
# Genes are cut from an example. Whatever happened before, every file that the workflow leaves must be byte for byte that of one
# batch over the alignments that went through. slurm/ has a stand-in for SLURM, and a program to which something happens.
# shellcheck disable=SC2016,SC2086,SC2012 # programs of awk; several options in one string; ls of our own names
set -euo pipefail
project=$1
export PROGRAM=$2
command -v snakemake >/dev/null || { echo "Skipped: snakemake is not installed"; exit 77; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_CACHE_HOME=$scratch/cache QUEUE=$scratch/queue HAPPENS='' CI=true # with which the engine looks every second
mkdir "$scratch/a clone" "$scratch/the {work}" "$QUEUE"
cp -R "$project/workflow" "$project/config" "$scratch/a clone"
cp -R "$project/tests/workflow/slurm" "$scratch/bin"
cp -R "$project/workflow/profiles/slurm" "$scratch/profile"
sed -i 's/^retries: .*/retries: 0/; s/^latency-wait: .*/latency-wait: 5/; /^show-failed-logs/d' "$scratch/profile/config.yaml"
export PATH=$scratch/bin:$PATH
cd "$scratch/the {work}"

engine() ( # engine PROFILE LIST OPTIONS [TARGET OR SETTING...]
  targets=() settings=()
  for word in "${@:4}"; do
    if [[ $word == *=* ]]; then settings+=("$word"); else targets+=("$word"); fi
  done
  echo "$BASHPID" >pid
  exec snakemake ${targets[@]+"${targets[@]}"} --snakefile "$scratch/a clone/workflow/Snakefile" --profile "$1" --cores 2 \
    --config program="$scratch/bin/program" paths="$2" options="$3" group_size=3 ${settings[@]+"${settings[@]}"}
)
here="$scratch/a clone/workflow/profiles/local" cluster=$scratch/profile
flow() { # flow PROFILE LIST OPTIONS [TARGET OR SETTING...]: exit status in $status, what was said in log
  status=0
  engine "$@" >log 2>&1 || status=$?
}
fail() { echo "$*"; cat log; exit 1; }
ended() { # ended STATUS WORDS CASE: the last line of log is one sentence with WORDS
  [[ $status -eq $1 && $(tail -n 1 log) == *"$2"* ]] || fail "$3: status $status"
}
ran() { # ran RULES CASE: as often as that
  local rules
  rules=$(sed -n 's/^rule \(.*\):$/\1/p' log | sort | uniq -c | awk '{ printf "%s %s ", $1, $2 }')
  [ "$rules" = "$1" ] || fail "$2: $rules"
}
same() { # same GENES OPTIONS [STATUS]: one batch over the alignments that went through, in a fresh copy, leaves the same files
  local single=$scratch/single results="results/$1.txt" differences
  [ $status -eq "${3:-0}" ] || fail "$1: status $status"
  rm -rf "$single" && mkdir "$single"
  cp -R "$1" "$single"
  awk -F '\t' 'NR == 1 { while ($++status != "status"); } $status == "ok" { print $1 }' "$results/table.tsv" >"$single/$1.txt"
  (cd "$single" && "$PROGRAM" "$1.txt" --format=fasta $2 --match="${match:-name}" --table=table.tsv >printed 2>&1) ||
    fail "$1: $(<"$single/printed")"
  find "$single/$1" -name "$1.txt*" -exec mv {} "$single" \;
  rm "$single/printed" "$single/$1.txt" && find "$single" -name '*.fas' -delete
  differences=$(diff -r "$single/$1" "$results/alignments/$1") || fail "$1: not the files of a single batch: $differences"
  differences=$(diff -r -x "$1" -x table.tsv "$single" "$results" |
    grep -Ev '^Only in .*: (alignments|groups|joins)$') || true
  [ -z "$differences" ] || fail "$1: not the concatenations of a single batch: $differences"
  awk -F '\t' 'NR == 1 { while ($++status != "status"); } $status != "failed"' "$results/table.tsv" |
    cmp - "$single/table.tsv" || fail "$1: not the table of a single batch"
}
cut_genes() { # cut_genes GENES AWK: seven of them, of 100 positions each, by the example; AWK changes the records
  mkdir "$1" "$1/more"
  awk -v folder="$1" -v RS='>' 'NR > 1 {
    name = $1; sequence = ""; for (f = 2; f <= NF; ++f) sequence = sequence $f
    for (k = 1; k <= 7; ++k) {
      text = substr(sequence, k * 100 + 1, 100)
      '"${2:-}"'
      printf ">%s\n%s\n", name, text >(folder (k > 5 ? "/more" : "") "/it'\''s {" (k > 5 ? k - 5 : k) "} \"q\".fas")
    }}' "$project/examples/primates_mt.fas"
  { printf "$1/it's {%s} \"q\".fas\n" 1 2 3 4 5; printf "$1/more/it's {%s} \"q\".fas\n" 1 2; } >"$1.txt"
}
gene() { echo "$1/it's {$2} \"q\".fas"; }
until_there() { # until_there COUNT FILES...: as many of these files
  for _ in $(seq 900); do
    [ "$(find "$QUEUE" -name "$2" | wc -l)" -ge "$1" ] && return
    sleep 0.1
  done
  fail "$2 did not come"
}
interrupt() { # interrupt PROFILE GENES OPTIONS COUNT FILES: the main process is killed once there are as many of these files
  engine "$1" "$2.txt" "$3" >log 2>&1 &
  until_there "$4" "$5"
  kill -9 "$(<pid)"
  wait $! 2>/dev/null || true
  rm -rf .snakemake/locks
}

# Names that need quotes, one base name in two folders, and what the first alignment must not settle for the others: its
# species, and the order of -b2 and -b1.
cut_genes name 'if (k == 1 && NR > 4 || k % 2 == 0 && NR == 2) continue; name = name "|gene" k'
options="-t=D -a=y -c=y -w=y -u=y -p=t -k=y --partitions --columns --name-end=|"
flow "$here" name.txt "$options"
same name "$options"
# What the groups have not written in FASTA is selected once more for the join.
options="-t=D -a=y -w=y -s=n -k=y -p=n --format=nexus,phylip --name-end=| --name=name.txt-all"
flow "$here" name.txt "$options"
same name "$options"
options="-t=C -a=y -w=y -u=y -p=n -b4=5 -e=_x --partitions --name-end=|"
flow "$here" name.txt "$options"
same name "$options"
mkdir stop
for gene in 1 2; do # a * becomes the last letter of its sequence, and stays one
  for name in a b c d e f g; do printf '>%s\nMKVLAWMKVLA%s\n' $name "$([ $name = d ] && echo '*-KK' || echo W${name}KK)"; done >stop/$gene.fas
  echo stop/$gene.fas
done >stop.txt
flow "$here" stop.txt "-t=P -b4=3 -a=y -p=n"
grep -q '[*]' results/stop.txt/stop.txt-tr.seq.fasta || fail "the last letter"
same stop "-t=P -b4=3 -a=y -p=n"
cut_genes fasta 'if (k == 5 && NR == 2) gsub(/./, "-", text)'
options="-t=D -a=y -p=y -b2=9 -b1=8 --partitions"
flow "$here" fasta.txt "$options" match=same
match=same same fasta "$options"
flow "$here" fasta.txt "$options" match=same
[[ $status -eq 0 && $(<log) == *"Nothing to be done"* ]] || fail "a second run"

# What concerns the join alone makes no group anew, nor does another order of the list; one gene more makes one.
sed -i '$d' fasta.txt
options="-t=D -a=y -p=t"
flow "$here" fasta.txt "$options"
gene fasta/more 2 >>fasta.txt
flow "$here" fasta.txt "$options"
ran "1 join 1 trim " "one gene more"
sed -i '1{h;d};${G};2s/.*/# genes\n  &\r/' fasta.txt # and what lists may have besides
flow "$here" fasta.txt "$options"
ran "1 join " "another order"
flow "$here" fasta.txt "$options -c=y --partitions"
ran "1 join " "options of the join"
same fasta "$options -c=y --partitions"

# Freshness without the memory of the engine: options and an alignment that is edited keep no old byte.
rm -rf .snakemake
options="-t=D -a=y -p=t -b3=3 --partitions"
flow "$here" fasta.txt "$options"
same fasta "$options"
rm -rf .snakemake
sed '/^>/!s/./-/' "$(gene fasta 4)" >changed
cat changed >"$(gene fasta 4)"
touch -d 2001-01-01 "$(gene fasta 4)" # older than the results
flow "$here" fasta.txt "$options"
same fasta "$options"

# Jobs of another run that are still pending, and some that are running when the next run ends.
touch "$QUEUE/hold"
interrupt "$cluster" fasta "-t=D -a=y -p=t -b3=5" 2 'script-*'
{ sleep 5; rm "$QUEUE/hold"; } &
flow "$cluster" fasta.txt "$options -b4=5"
same fasta "$options -b4=5"
touch "$QUEUE/wait"
HAPPENS="waits group" interrupt "$cluster" fasta "-t=D -a=y -p=t -b3=6" 2 'at work*'
flow "$cluster" fasta.txt "$options -b4=6"
flow "$here" fasta.txt "$options -b4=6" gc
ended 1 "a job is at work in" "gc beside a job"
rm "$QUEUE/wait"
while grep -qsE 'PENDING|RUNNING' "$QUEUE"/[0-9]*; do sleep 0.2; done
status=0
same fasta "$options -b4=6"
flow "$here" fasta.txt "$options -b4=6" gc
[ "$(ls results/fasta.txt/joins | wc -l)" -eq 1 ] || fail "gc: $(ls results/fasta.txt/joins)"
same fasta "$options -b4=6"

# The same run goes on where it was: jobs that are pending are waited for.
touch "$QUEUE/hold"
interrupt "$cluster" fasta "$options -b4=7" 2 'script-*'
{ sleep 3; rm "$QUEUE/hold"; } &
flow "$cluster" fasta.txt "$options -b4=7"
same fasta "$options -b4=7"

# An alignment that changes before its job begins.
touch "$QUEUE/hold"
rm -f "$QUEUE"/script-*
{ until_there 1 'script-*'; touch "$(gene fasta 2)"; rm "$QUEUE/hold"; } &
flow "$cluster" fasta.txt "$options -b4=8"
ended 1 "$(gene fasta 2) has changed since the workflow was started: start it again" "changed meanwhile"
flow "$cluster" fasta.txt "$options -b4=8"
same fasta "$options -b4=8"

# A job that is killed, or cannot write, at each step. The next run goes on.
b4=10
for step in group join; do
  for what in killed-before killed-after small-files; do
    HAPPENS="$what $step" flow "$here" fasta.txt "-t=D -p=y -a=y -b4=$b4" group_size=4
    [ $status -eq 1 ] || fail "$what $step: status $status"
    [[ $what != small* ]] || ended 1 "could not be written: File too large" "$what $step"
    flow "$here" fasta.txt "-t=D -p=y -a=y -b4=$b4" group_size=4
    same fasta "-t=D -p=y -a=y -b4=$b4"
    [ -z "$(find results -name part)" ] || fail "$what $step: a part is left"
    b4=$((b4 + 1))
  done
done
mkdir full
if mount -t tmpfs -o size=100k none full 2>/dev/null; then
  flow "$here" fasta.txt "-t=D -p=y -a=y" results=full
  umount full
  # There may be no room left for the sentence that is to be said last.
  { [ $status -eq 1 ] && grep -q "^full/.*No space left on device" log; } || fail "a full disk: status $status"
  [[ $(tail -n 1 log) != *"alignments failed"* ]] || fail "a full disk is no fault of an alignment"
fi

# Two runs at once: the results are those of one of them.
for b4 in 3 4; do engine "$here" fasta.txt "-t=D -a=y -p=n -b4=$b4" >"log$b4" 2>&1 & done
wait
[ "$(readlink results/fasta.txt/* | cut -d / -f 2 | sort -u | wc -l)" -eq 1 ] || fail "two runs at once"
status=0
grep -q -- -b4=3 "results/fasta.txt/$(dirname "$(dirname "$(readlink results/fasta.txt/table.tsv)")")/members.tsv" && b4=3
same fasta "-t=D -a=y -p=n -b4=$b4"

# Those that fail are in the table with their message and keep no file. The others are done, and the status tells.
options="-t=D -a=y -p=n"
sed -i '2s/^/A/' "$(gene fasta 1)"
rm "$(gene fasta 2)"
sed -i '1s/.*/>Gorilla/;3s/.*/>Gorilla/' "$(gene fasta 3)"
flow "$here" fasta.txt "$options"
ended 1 "3 of the alignments failed; results/fasta.txt/table.tsv says which and why" "failed ones"
while IFS='|' read -r number words; do
  awk -F '\t' 'NR == 1 { while ($++status != "status"); } $status == "failed"' results/fasta.txt/table.tsv | grep -F "{$number}" | grep -qF "$words" ||
    fail "failed ones: $number: $words: $(<results/fasta.txt/table.tsv)"
done <<EOT
1|letters, the first one
2|there is no such file
3|Gorilla
EOT
rm "$(gene fasta 3)"
flow "$here" fasta.txt "$options"
same fasta "$options" 1

# As a module, whose rules have other names and whose list has paths that leave the folder.
mkdir module && cp -R name module/genes
{ find "$PWD/module/genes" -name '*.fas'; echo "../$(gene fasta 5)"; } >module/list.txt
cat >module/Snakefile <<EOT
module trimora:
    snakefile: "$scratch/a clone/workflow/Snakefile"
    config: {"paths": "list.txt", "options": "-t=D -p=n -a=y --name-end=|", "program": "$PROGRAM"}
use rule * from trimora as trimora_*
rule all:
    input: rules.trimora_all.input
    output: "size"
    shell: "wc -c < results/list.txt/list.txt-tr.seq.fasta > {output}"
EOT
status=0
(cd module && snakemake --cores 2 all) >log 2>&1 || status=$?
[[ $status -eq 0 && -s module/size ]] || fail "a module: status $status"
[ "$(find -L module/results/list.txt/alignments -name '*-tr.fasta' | wc -l)" -eq 8 ] || fail "a module: alignments"

# Refused in one sentence, before anything is run.
cp fasta.txt list.txt
ln -s more fasta/link
while IFS='|' read -r line setting words; do
  { cat list.txt; printf '%b' "$line"; } >refused.txt
  flow "$here" refused.txt "-t=D" ${setting:+"$setting"}
  [ ! -e results/refused.txt ] || fail "$line $setting: something was run"
  ended 1 "$words" "$line $setting"
done <<EOT
./$(gene fasta 4)\n||are the same file
$(gene fasta/link 1)\n||are the same file
__/gene.fas\n../gene.fas\n||would have their results in the same place
|group_sise=3|'group_sise' was unexpected
|group_size=x|group_size: 'x' is not of type 'integer'
|match=nmae|match: 'nmae' is not one of
|paths=$(gene fasta 4)|no line is the path of a file
|paths=nothing.txt|nothing.txt: No such file
|program=nothing|nothing: No such file
|options=-t=D --help|--help would trim nothing
|options=-t=D -b3=x|-b3=x is not a whole number
|options=-t=D --table=x|which the workflow decides
|options=-t=D --min-species=75%|or filter
|options=-a=y|they have to say -t=P, -t=D or -t=C
EOT
snakemake --lint --snakefile "$project/workflow/Snakefile" --config paths=fasta.txt options=-t=D program="$PROGRAM" >log 2>&1 || true
differences=$(grep '^    \*' log | grep -vE 'Specify a conda environment|No log directive defined') || true # as README.md explains
[ -z "$differences" ] || fail "lint: $differences"
