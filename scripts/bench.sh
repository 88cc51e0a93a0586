#!/usr/bin/env bash
# Build the release and measure whole runs of it against each other, cp and bench/floor.cpp: scripts/bench.sh [--full|--web]
# Smaller alignments by default, some three minutes with the build; --full measures the sizes that the goals were set for,
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

need g++ cmake make zlib1g-dev
if $web; then need chromium; fi
cd "$project"
folder=$project/build/bench # of its own, so that build/release stays what the user made it
configure --preset release -B "$folder" -DTRIMORA_BENCHMARKS=ON
build "$folder"
trimora=$folder/trimora run=$folder/trimora-run
floor=$folder/bench/floor select=$folder/bench/select

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
mkdir "$work/inputs"

# generate ARGUMENT... FILE: unless it is there already; then let the disk come to rest, since what is still on its way there
# would disturb the runs.
generate() {
  cd "$work/inputs"
  [ -e "${!#}" ] || { "$folder/bench/generate" "$@" && sync; }
}

# row WORK GOAL MEMORY INPUTS COMMAND LABEL COMMAND: a line of the table, from runs of the two commands in turn, in a folder
# with nothing but the inputs and an empty folder `copies`.
#   GOAL     the most that the median of the first may be, in medians of the second; with /2ms, or else 2 ms
#   MEMORY   the most that the first may take in bytes, as awk computes it from i, the bytes of the first input, s, those of
#            the concatenations, and m = 1048576; - where there is no goal
#   COMMAND  the second may be "cp input", "cp written" (what the first one writes) or "cp both"
row() {
  local inputs command against input runs=$few
  read -ra inputs <<<"$4"
  read -ra command <<<"$5"
  read -ra against <<<"$7"
  input=${inputs[0]}
  rm -rf "$work"/{row,written}
  mkdir -p "$work"/{row/copies,written}
  cd "$work/row"
  (cd "$work/inputs" && cp -rl "${inputs[@]}" "$work/row")
  if [ "$6" = cp ]; then
    find . -type f >../before
    "${command[@]}" >../output 2>&1 || true # trimora ends with 1, always
    find . -type f | { grep -vxFf ../before || true; } >../after
    xargs -a ../after cp --parents -t ../written
    xargs -a ../after rm
    case $7 in
      *input) against=(cp "$input" copies/) ;;
      *written) against=(cp -r ../written/. copies/) ;;
      *both) against=(cp -r "$input" ../written/. copies/) ;;
    esac
  fi
  [ -d "$input" ] || [ "$(wc -c <"$input")" -gt 100000 ] || runs=51 # so short that they vary
  "$folder/bench/measure" "$runs" . trimora "${command[@]}" -- "$6" "${against[@]}" >../times
  awk '$6 == 0 { print $1 " wrote nothing" > "/dev/stderr"; exit 2 }' ../times
  awk -v work="$1" -v goal="$2" -v i="$([ -d "$input" ] && echo 0 || wc -c <"$input")" \
    -v s="$(find ../written -name '*.seq' -exec cat {} + | wc -c)" -v m=1048576 '
    { label[NR] = $1; median[NR] = $2; fastest[NR] = $3; peak[NR] = $5 * 1024 }
    END {
      memory = '"${3/#-/0}"'
      held = median[1] <= goal * median[2] || (goal ~ /2ms/ && median[1] <= 2)
      printf "%-38s %9.2f  %-9s %9.2f  %7.2f %7.2f  <= %-9s %-6s", work, median[1], label[2], median[2],
        median[1] / median[2], fastest[1] / fastest[2], goal, held ? "ok" : "MISSED"
      if (memory > 0) printf "  %7.1f  <= %-7.1f %s", peak[1] / m, memory / m, peak[1] <= memory ? "ok" : "MISSED"
      print ""
    }' ../times | tee -a "$work/table"
}

if $full; then
  protein="500 50000" dna="2000 100000" wide="5 10000000" narrow="100000 500" genes=2000 few=9
else
  protein="500 10000" dna="500 40000" wide="5 2000000" narrow="20000 500" genes=200 few=7
fi
seed=7 # with which half of the 500 positions are selected too, though they have few stretches

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
  generate P 500 50000 $seed web.fas
  generate genes 2000 $seed genes
  node "$project/web/test/speed.mjs" "$run" "$project/build/web/package" "$project/build/web/trimora.html" \
    "$project/examples/globins.fas" "$PWD/web.fas" "$PWD/genes" | tee "$work/table"
  verdict
  exit
fi

# shellcheck disable=SC2086 # sequences and positions
{
  generate P 20 500 $seed small.fas
  generate P $protein $seed in.{fas,crlf,pir,phy,aln,sto,nex}
  generate D $dna $seed dna.fas
  generate D $wide $seed wide.fas
  generate P $narrow $seed narrow.fas
  generate P 500 20000 $seed base.fas
  generate P 500 200000 $seed positions.fas
  generate P 5000 20000 $seed sequences.fas
  generate genes $genes $seed genes
  generate folders $genes $seed tenth
  generate folders $((10 * genes)) $seed folders
  gzip -k1 in.fas
}
printf '#!/bin/sh\nzcat in.fas.gz | %s - -t=P --quiet >copies/out\n' "$run" >"$work/zcat"
chmod +x "$work/zcat"

echo "Whole processes in turn, each into fresh files; medians in milliseconds. \"best\" compares the fastest runs instead"
echo "and is not judged: far from the ratio, it says that the machine was busy."
echo
printf '%-38s %9s  %-9s %9s  %7s %7s  %-12s %-6s  %7s  %-10s\n' work trimora against "" ratio best goal "" "peak MiB" goal

# Ten times the files cost the file system a little more than ten times; what grows with their square shows all the same.
# work                      goal     memory        input   command                          against
row "20 x 500 protein"      1.3/2ms  "6*m"         small.fas "$trimora small.fas -p=n"      cp "cp input"
row "$protein protein"      1.5      "1.2*i+8*m"   in.fas  "$trimora in.fas -p=n"           floor "$floor in.fas copies/out"
row "$dna DNA"              1.5      "1.2*i+8*m"   dna.fas "$trimora dna.fas -t=D -p=n"     floor "$floor dna.fas copies/out"
row "$wide DNA"             2        "2*i+8*m"     wide.fas "$trimora wide.fas -t=D -p=n"   floor "$floor wide.fas copies/out"
row "$narrow protein"       2        "1.3*i+8*m"   narrow.fas "$trimora narrow.fas -p=n"    floor "$floor narrow.fas copies/out"
row "$protein as NBRF/PIR"  1.2      "1.2*i+8*m"   "in.pir in.fas" "$trimora in.pir -p=n"           FASTA "$trimora in.fas -p=n"
row "  the HTML report"     2.5      "1.2*i+8*m"   in.fas  "$trimora in.fas -p=y"           cp "cp written"
row "  everything on"       2.5      "2.2*i+8*m"   in.fas  "$trimora in.fas -p=t -k=y -d=y -n=y -u=y" cp "cp written"
row "$genes genes, three concatenations" 1.5 "s+9*m" genes "$trimora genes/paths.txt -a=y -c=y -w=y -p=n" cp "cp both"
row "tenfold positions"     11.5     -             "positions.fas base.fas" "$trimora positions.fas -p=n" tenth "$trimora base.fas -p=n"
row "tenfold sequences"     11.5     -             "sequences.fas base.fas" "$trimora sequences.fas -p=n" tenth "$trimora base.fas -p=n"

# trimora-run, and the library
one="-t=P -p=n"
row "trimora-run, $protein" 1.5      "1.2*i+8*m"   in.fas  "$run in.fas $one"               floor "$floor in.fas copies/out"
for format in crlf pir phy aln sto nex; do
  row "  as .$format"       2        "1.5*i+8*m"   "in.$format in.fas" "$run in.$format $one" FASTA "$run in.fas $one"
done
row "  as .gz"              1.3      -             in.fas.gz "$run in.fas.gz $one"          zcat "$work/zcat"
row "  with columns and table" 1.3   -             in.fas  "$run in.fas $one --columns --table=table.tsv" without "$run in.fas $one"
row "the library"           1.5      "1.2*i+8*m"   in.fas  "$select in.fas out"             floor "$floor in.fas copies/out"
batch="genes/paths.txt -t=P -p=n -a=y -c=y -w=y"
row "$genes genes, by name" 1.2      -             genes   "$run $batch --match=name"       order "$run $batch --match=order"
row "  as trimora writes them" 1.1   -             genes   "$run $batch"                    groups "$run $batch --format=trimora"
row "  with columns and table" 1.3   -             genes   "$run $batch --columns --table=table.tsv" without "$run $batch"
row "tenfold genes, one name" 20     -             "folders tenth" "$run folders/paths.txt $one -a=y --partitions" tenth "$run tenth/paths.txt $one -a=y --partitions"
verdict
