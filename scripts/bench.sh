#!/usr/bin/env bash
# Build the release and measure whole runs of it against cp and against bench/floor.cpp: scripts/bench.sh [--full|--web]
# Smaller alignments by default, under two minutes with the build; --full measures the sizes that the goals were set for,
# --web the engine and the page instead.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

full=false web=false
case "$#$*" in
  0) ;;
  1--full) full=true ;;
  1--web) web=true ;;
  *) echo "usage: scripts/bench.sh [--full|--web]" >&2 && exit 2 ;;
esac

need g++ cmake make libbenchmark-dev
if $web; then need chromium; fi
cd "$project"
folder=$project/build/bench # of its own, so that build/release stays what the user made it
configure --preset release -B "$folder" -DTRIMORA_BENCHMARKS=ON
for target in trimora trimora-run floor generate measure stages; do build "$folder" "$target"; done
trimora=$folder/trimora
trimora_run=$folder/trimora-run
floor=$folder/bench/floor

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# ---- What a row is made of

# begin: each row has an empty folder, with one for copies in it, and uses short relative names there. Beside it stands
# ../written, for what the program wrote and cp is to copy.
begin() {
  cd "$work"
  rm -rf row written
  mkdir -p row/copies written
  cd row
}

# generate ARGUMENT...: and let the disk come to rest, since what is still on its way there would disturb the runs.
generate() {
  "$folder/bench/generate" "$@"
  sync
}

# keep COMMAND...: run trimora once and move what it leaves to ../written.
keep() {
  find . -type f >../before
  "$@" >../output || true # it ends with 1, always
  find . -type f | { grep -vxFf ../before || true; } | xargs -r sh -c 'mv "$@" ../written' mv
  [ -n "$(ls ../written)" ] || { cat ../output >&2; echo "Nothing was written by: $*" >&2; exit 2; }
}

# measure RUNS LABEL COMMAND... -- LABEL COMMAND...: first what is judged, then what it is compared with.
measure() {
  local runs=$1
  shift
  "$folder/bench/measure" "$runs" . "$@" >../times
  awk '$6 == 0 { print $1 " wrote nothing" > "/dev/stderr"; exit 2 }' ../times
}

size() { cat -- "$@" | wc -c; }

# judge WORK KIND LIMIT [MEMORY]: one line of the table from ../times. MEMORY is the goal in bytes. The kinds:
#   ratio, at_most_2ms  medians divided, at most LIMIT; or else, for the latter, at most 2 ms
#   report              megabytes of report a second, at least LIMIT; their bytes are in $report
#   tenfold             medians divided by each other and by ten, at most LIMIT
judge() {
  awk -v work="$1" -v kind="$2" -v limit="$3" -v memory="${4:-0}" -v report="${report:-0}" '
    { label[NR] = $1; median[NR] = $2; fastest[NR] = $3; peak[NR] = $5 / 1024 }
    END {
      unit = label[2]; best = fastest[1] / fastest[2]; value = median[1] / median[2]
      goal = "<= " limit " " unit
      if (kind == "tenfold") { value /= 10; best /= 10; goal = "<= " limit " x 10" }
      if (kind == "report") { value = report / median[1] / 1e3; best = report / fastest[1] / 1e3; goal = ">= " limit " MB/s" }
      if (kind == "at_most_2ms") goal = goal ", 2 ms"
      held = kind == "report" ? value >= limit : value <= limit
      if (kind == "at_most_2ms" && median[1] <= 2) held = 1
      format = kind == "report" ? "%.0f" : "%.2f"
      printf "%-34s %9.2f  %-7s %9.2f  %7s %7s  %-14s %-6s", work, median[1], label[2], median[2], sprintf(format, value),
             sprintf(format, best), goal, held ? "ok" : "MISSED"
      if (memory > 0) printf "  %7.1f  %-8s %s", peak[1], sprintf("<= %.1f", memory / 1048576),
             peak[1] <= memory / 1048576 ? "ok" : "MISSED"
      print ""
    }' ../times | tee -a "$work/table"
}

mib8=8388608
# memory FACTOR FILE: that many times the file and 8 MiB more, in bytes.
memory() { awk -v factor="$1" -v bytes="$(size "$2")" -v more=$mib8 'BEGIN { printf "%.0f", factor * bytes + more }'; }

# ---- The sizes

if $full; then
  protein=(500 50000) dna=(2000 100000) wide=(5 10000000) narrow=(100000 500) genes=2000
  many=101 some=15 few=9
else
  protein=(500 10000) dna=(500 40000) wide=(5 2000000) narrow=(20000 500) genes=200
  many=51 some=11 few=7
fi
seed=7           # with which half of the 500 positions are selected too, though they have few stretches
base=(500 20000) # of the growth rows: so much that starting the program does not hide in it

# ---- The table

compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$folder/CMakeCache.txt")
cpu=$(sed -n '/^model name/{s/^[^:]*: *//p;q;}' /proc/cpuinfo 2>/dev/null) || true
echo "CPU       ${cpu:-$(uname -m)}, $(nproc) of them"
echo "System    $(uname -sr)"
echo "Compiler  $("$compiler" --version | head -n 1)"
echo "Files in  ${TMPDIR:-/tmp} ($(df -T "$work" | awk 'NR == 2 { print $2 }'))"
echo

verdict() {
  echo
  missed=$(grep -o MISSED "$work/table" | wc -l) || true
  if [ "$missed" -eq 0 ]; then echo "Every goal holds."; else echo "Goals missed: $missed"; fi
}

if $web; then
  "$project/scripts/web.sh" >&2
  begin
  generate protein-fasta 500 50000 $seed in.fas
  node "$project/web/test/speed.mjs" "$folder/trimora-run" "$project/build/web/package" "$project/build/web/trimora.html" \
    "$project/examples/globins.fas" "$PWD/in.fas" | tee "$work/table"
  verdict
  exit
fi

echo "Whole processes in turn, each into fresh files; medians in milliseconds. \"best\" compares the fastest runs instead"
echo "and is not judged: far from the ratio, it says that the machine was busy."
echo
printf '%-34s %9s  %-7s %9s  %7s %7s  %-14s %-6s  %7s  %-8s\n' work trimora against "" ratio best goal "" "peak MiB" goal

begin
generate protein-fasta 20 500 $seed in.fas
measure $many trimora "$trimora" in.fas -p=n -- cp cp in.fas copies/
judge "20 x 500 protein" at_most_2ms 1.3 $((6 * 1048576))

begin
generate protein-fasta "${protein[@]}" $seed in.fas
measure $some trimora "$trimora" in.fas -p=n -- floor "$floor" in.fas copies/out
judge "${protein[0]} x ${protein[1]} protein" ratio 1.5 "$(memory 1.2 in.fas)"

begin
generate dna-fasta "${dna[@]}" $seed in.fas
measure $few trimora "$trimora" in.fas -t=D -p=n -- floor "$floor" in.fas copies/out
judge "${dna[0]} x ${dna[1]} DNA" ratio 1.5 "$(memory 1.2 in.fas)"

begin
generate dna-fasta "${wide[@]}" $seed in.fas
measure $some trimora "$trimora" in.fas -t=D -p=n -- floor "$floor" in.fas copies/out
judge "${wide[0]} x ${wide[1]} DNA" ratio 2 "$(memory 2 in.fas)"

begin
generate protein-fasta "${narrow[@]}" $seed in.fas
measure $some trimora "$trimora" in.fas -p=n -- floor "$floor" in.fas copies/out
judge "${narrow[0]} x ${narrow[1]} protein" ratio 2 "$(memory 1.3 in.fas)"

begin
generate protein-fasta "${protein[@]}" $seed in.fas
generate protein-pir "${protein[@]}" $seed in.pir
measure $some trimora "$trimora" in.pir -p=n -- FASTA "$trimora" in.fas -p=n
judge "${protein[0]} x ${protein[1]} as NBRF/PIR" ratio 1.2 "$(memory 1.2 in.pir)"

begin
generate protein-fasta "${protein[@]}" $seed in.fas
keep "$trimora" in.fas -p=y
report=$(size ../written/in.fas-tr.htm)
measure $few trimora "$trimora" in.fas -p=y -- without "$trimora" in.fas -p=n
judge "the same, with the HTML report" report 600 "$(awk -v more=$mib8 'NR == 2 { print $5 * 1024 + more }' ../times)"

begin
generate protein-fasta "${protein[@]}" $seed in.fas
everything=(-p=t -k=y -d=y -n=y -u=y)
keep "$trimora" in.fas "${everything[@]}"
measure $few trimora "$trimora" in.fas "${everything[@]}" -- cp cp ../written/* copies/
judge "the same, everything on" ratio 2.5 "$(memory 2.2 in.fas)"

# Held at once: the concatenations and one alignment.
begin
generate genes genes $genes $seed
concatenations=(-a=y -c=y -w=y -p=n)
keep "$trimora" genes/paths.txt "${concatenations[@]}"
largest=$(find genes -name '*.fas' -size +0 -exec wc -c {} + | awk '$2 != "total" && $1 > most { most = $1 } END { print most }')
measure $few trimora "$trimora" genes/paths.txt "${concatenations[@]}" -- \
  cp cp genes/*.fas genes/paths.txt ../written/* copies/
judge "$genes genes, three concatenations" ratio 1.5 $(($(size ../written/*.seq) + largest + mib8))

# What trimora-run adds, against a batch without it.
begin
generate genes genes $genes $seed
batch=("$trimora_run" genes/paths.txt "${concatenations[@]}")
measure $few name "${batch[@]}" --match=name -- order "${batch[@]}" --match=order
judge "the same, matched by name" ratio 1.2
measure $few fasta "${batch[@]}" --format=fasta -- groups "${batch[@]}"
judge "the same, as plain FASTA" ratio 1.05
measure $few tables "${batch[@]}" --columns --table=table.tsv -- without "${batch[@]}"
judge "the same, with its tables" ratio 1.3

begin
generate protein-fasta "${protein[@]}" $seed in.fas
one=("$trimora_run" in.fas -p=n)
measure $some fasta "${one[@]}" --format=fasta -- groups "${one[@]}"
judge "${protein[0]} x ${protein[1]} as plain FASTA" ratio 1.05
measure $some tables "${one[@]}" --columns --table=table.tsv -- without "${one[@]}"
judge "${protein[0]} x ${protein[1]}, with its tables" ratio 1.3

for growth in positions sequences; do
  begin
  ten=("${base[@]}")
  [ $growth = positions ] && ten[1]=$((10 * base[1])) || ten[0]=$((10 * base[0]))
  generate protein-fasta "${base[@]}" $seed base.fas
  generate protein-fasta "${ten[@]}" $seed ten.fas
  measure $few trimora "$trimora" ten.fas -p=n -- tenth "$trimora" base.fas -p=n
  judge "${ten[0]} x ${ten[1]}, tenfold $growth" tenfold 1.15
done

verdict
