#!/usr/bin/env bash
# Build the fuzz targets and run them, two at a time: scripts/fuzz.sh [SECONDS [TARGET]]
#   SECONDS  for each target, 60 unless given; 0 only tries the corpus again
#   TARGET   alignment, menus, read or runs; all of them unless given
# The corpus grows in build/fuzz-corpus/TARGET. An input that breaks something is kept in build/fuzz-findings/TARGET and
# named; the exit status is then 1. Later runs begin with it.
# scripts/fuzz.sh --coverage [TARGET] tells instead how much of src/ the corpus reaches, and which lines it does not.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

seconds=${1:-60}
targets=(alignment menus read runs)
[ $# -lt 2 ] || targets=("$2")

need clang cmake make
need "libclang-rt-$(clang -dumpversion | cut -d. -f1)-dev"
cd "$project"
scratch=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")") # in memory: many small files
trap 'rm -rf "$scratch"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# prepare FOLDER ARGUMENT...: build the targets there.
prepare() {
  configure -S . -B "$@" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug -DTRIMORA_FUZZ=ON -DTRIMORA_WERROR=ON
  for target in "${targets[@]}"; do build "$1" "fuzz_$target"; done
}

# fuzz FOLDER TARGET ARGUMENT...: run a target. What the program prints is dropped; what it frees is soon used again.
fuzz() {
  TMPDIR=$scratch ASAN_OPTIONS=quarantine_size_mb=8 "$1/fuzz/fuzz_$2" -close_fd_mask=1 -timeout=20 "${@:3}" </dev/null
}

if [ "$seconds" = --coverage ]; then
  need llvm
  folder=build/fuzz-coverage
  prepare $folder "-DCMAKE_CXX_FLAGS=-fprofile-instr-generate -fcoverage-mapping"
  objects=()
  for target in "${targets[@]}"; do
    export LLVM_PROFILE_FILE=$scratch/$target.raw
    fuzz $folder "$target" -runs=0 "$project/build/fuzz-corpus/$target" 2>/dev/null
    llvm-profdata merge -o "$scratch/profile" "$LLVM_PROFILE_FILE"
    echo "$target: $(llvm-cov report "$folder/fuzz/fuzz_$target" -instr-profile "$scratch/profile" src |
      awk '/^TOTAL/ { print $10 " of the lines" }')"
    objects+=(-object "$folder/fuzz/fuzz_$target")
  done
  llvm-profdata merge -o "$scratch/profile" "$scratch"/*.raw
  echo "Never reached:"
  llvm-cov show "${objects[@]:1}" -instr-profile "$scratch/profile" src 2>/dev/null |
    sed -En 's|^/.*/(src/.*):$|\1|p; /^ +[0-9]+\| +0\|/p' | awk '/^src/ { file = $0; next } { print file ":" $0 }'
  exit
fi

# ---- Seeds: the examples and the golden runs

prepare build/fuzz
mkdir -p build/fuzz-corpus/{alignment,menus,read,runs} build/fuzz-findings
# seed TARGET: from standard input, named as the fuzzer names what it finds.
seed() {
  cat >"$scratch/seed"
  mv "$scratch/seed" "build/fuzz-corpus/$1/$(sha1sum <"$scratch/seed" | cut -d ' ' -f 1)"
}
# alignment COMMAND...: what it prints, with the bytes behind it that choose the parameters.
alignment() {
  local digits
  for digits in 0000000000 1111111111 2222222222; do { "$@" && printf $digits; } | seed alignment; done
}
for file in examples/*.{fas,pir} tests/golden/*/input/*.{fas,pir}; do alignment cat "$file"; done
for file in tests/golden*/*/input/*.*; do [ ! -f "$file" ] || seed read <"$file"; done
# Wider than any tile, with gaps in one sequence and in all; and more sequences than a narrow counter counts.
small=tests/golden/menu_alignment/input/five.fas
alignment awk '!/^>/ { $0 = $0 "-"; for (k = 1; k < 350; ++k) print } 1' $small
alignment awk '{ all = all $0 "\n" } END { for (k = 0; k < 60; ++k) printf "%s", all }' $small
for file in tests/golden*/*/arguments; do tr ' ' '\n' <"$file" | seed runs; done
for run in tests/golden/menu_*; do { echo "$(cat "$run/arguments")" && cat "$run/script"; } | seed menus; done
for file in tests/golden/*/input/{,lists/}*.txt; do
  { printf '%s\n' paths -b4=2 -b3=1 -k=y -n=y -u=y -p=s -a=y -c=y -w=y "" && cat "$file"; } | seed runs
done

# ---- The runs

run() { # TARGET
  local target=$1 findings=$project/build/fuzz-findings/$1 log=build/fuzz/$1.log status=0
  local limit=-max_total_time=$seconds
  [ "$seconds" -gt 0 ] || limit=-runs=0 # it would take a time of 0 for no limit
  mkdir -p "$findings"
  fuzz build/fuzz "$target" "$project/build/fuzz-corpus/$target" "$findings" -dict="fuzz/$target.dict" \
    "$limit" -artifact_prefix="$findings/" >"$log" 2>&1 || status=$?
  awk -v target="$target" '/^#[0-9]+\t/ { last = $0 } END { gsub(/\t/, " ", last); print target ": " last }' "$log"
  [ $status -eq 0 ] && return
  grep -E 'BROKEN|ERROR|SUMMARY|runtime error|Test unit written' "$log" || tail -n 20 "$log"
  touch "$scratch/found"
}
for target in "${targets[@]}"; do
  [ "$(jobs -rp | wc -l)" -lt 2 ] || wait -n
  run "$target" &
done
wait
[ ! -e "$scratch/found" ]
