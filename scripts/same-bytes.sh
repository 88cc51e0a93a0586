#!/usr/bin/env bash
# Build the programs in many ways and compare every byte that they write: scripts/same-bytes.sh [--native]
# Two compilers, with and without optimisation, several instruction sets, 64-bit ARM and Windows through emulators,
# WebAssembly, and several environments. Each build is a preset of CMakePresets.json and passes the stored runs. Scores that
# stand exactly on a threshold show arithmetic that rounds otherwise; there every build has to write what the first one wrote.
# --native leaves out what needs an emulator or another machine's compiler, and most of the builds.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

native=false
[ $# -eq 1 ] && [ "$1" = --native ] && native=true
[ $# -eq 0 ] || $native || { echo "usage: scripts/same-bytes.sh [--native]" >&2; exit 2; }

need g++ clang cmake make locales
$native || need g++-aarch64-linux-gnu qemu-user-static g++-mingw-w64-x86-64-posix wine emscripten nodejs
cd "$project"
export LC_ALL=C
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

mkdir "$work/inputs"
exact() {
  awk -f scripts/thresholds.awk -v n="$1" -v b1="$2" -v b2="$3" src/selection/similarity_matrix.h |
    tr '0-9' '\000\001\015\011\200\215\240\255\337\377' >"$work/inputs/$1.fas" # char may be signed, or not
}
exact 90 64 80
exact 255 160 210
exact 700 430 560
sed '2~2s/$/*/; 1~2s/^>\(.*\)/>P1;\1\n/' "$work/inputs/90.fas" >"$work/inputs/90.pir"
thresholds=(
  "90.fas -p=y -k=y -d=y -n=y -u=y -b1=64 -b2=80 -b3=0 -b4=2"
  "90.fas -p=t -b1=64 -b2=80 -b3=0 -b4=2 -b5=h"
  "90.fas -p=t -b2=64 -b1=64 -b3=1 -b4=2 -b5=a"
  "90.fas -p=t -t=D -b5=a -b3=3 -b4=2"
  "90.fas -p=t -t=C -b5=h -b3=3 -b4=5"
  "90.pir -p=y -k=y -n=y -u=y -b1=64 -b2=80 -b3=0 -b4=2 -b5=a"
  "90.pir -p=s -b1=46 -b2=80 -b6=n"
  "255.fas -p=t -k=y -b1=160 -b2=210 -b3=0 -b4=2"
  "255.fas -p=s -b2=210 -b1=210 -b3=0 -b4=2 -b5=h"
  "700.fas -p=s -b1=430 -b2=560 -b3=0 -b4=2 -b5=a"
)

# differing PRESET: make the runs above with that build; how many write other bytes than the first build.
differing() {
  local k folder command arguments count=0
  mapfile -t command <"build/$1/command"
  for k in "${!thresholds[@]}"; do
    folder=$work/$1/$k
    mkdir -p "$folder"
    cp "$work"/inputs/* "$folder"
    read -r -a arguments <<<"${thresholds[k]}"
    (cd "$folder" && "${command[@]}" "${arguments[@]}" >stdout) || [ $? -eq 1 ]
    diff -rq "$work/$first/$k" "$folder" >/dev/null || count=$((count + 1))
  done
  [ "$1" = $first ] || rm -rf "${work:?}/$1"
  echo $count
}

line() { printf '%-14s %s\n' "$@"; }

same() { # PRESET
  local log count
  log=$(pass "$1") || { line "$1" "FAILED"; echo "$log"; exit 1; }
  count=$(differing "$1")
  line "$1" "$(grep 'tests passed' <<<"$log"), $count of ${#thresholds[@]} threshold runs differ"
  [ "$count" -eq 0 ]
}

# Forbidden arithmetic must show, or the threshold runs would prove nothing.
other() { # PRESET
  local count
  make_preset "$1"
  count=$(differing "$1")
  line "$1" "$count of ${#thresholds[@]} threshold runs differ, as some have to"
  [ "$count" -gt 0 ]
}

in_environment() { # NAME ASSIGNMENT...
  local log
  log=$(env "${@:2}" ctest --test-dir build/gcc-O0 --output-on-failure) || { line "$1" "FAILED"; echo "$log"; exit 1; }
  line "$1" "$(grep 'tests passed' <<<"$log")"
}

has() { for flag in "$@"; do grep -qw "$flag" /proc/cpuinfo || return 1; done; } # no other processor has the flags of x86

first=gcc-O0 builds=(gcc-O0 gcc-plain) others=()
has sse2 && builds+=(clang-native)
has fma && builds+=(gcc-fma) others+=(gcc-fused) # GCC fuses at -O2; at -O3 its vectors keep it from doing so, by chance
if ! $native; then
  has sse2 && builds+=(gcc-native)
  builds+=(gcc-O3 gcc-Os clang-O0 clang-O3 clang-plain arm-{gcc-{O0,O2,O3,sve},clang-O3} windows)
  others+=(arm-fused clang-fast)
  has sse2 && builds+=(old)
  has avx2 fma && builds+=({gcc,clang}-v3)
  has avx512f avx512bw avx512vl && builds+=({gcc,clang}-v4)
fi
for preset in "${builds[@]}"; do same "$preset"; done
$native || webassembly same web
for preset in "${others[@]}"; do other "$preset"; done

in_environment "environment" -i PATH="$PATH"
in_environment "perturbed" -u TERM MALLOC_PERTURB_=165 POSIXLY_CORRECT=1 TZ=Asia/Kathmandu LC_ALL=C.UTF-8 COLUMNS=20
for locale in de_DE tr_TR; do # decimal commas, and a capital I with a dot
  localedef -i $locale -f UTF-8 "$work/$locale.UTF-8"
  in_environment $locale LOCPATH="$work" LC_ALL=$locale.UTF-8
done
