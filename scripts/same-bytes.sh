#!/usr/bin/env bash
# Build the program in many ways, run each build on the same inputs and compare every byte: scripts/same-bytes.sh [--native]
# Two compilers, with and without optimisation, several instruction sets, 64-bit ARM through an emulator, and several
# environments. --native leaves out what needs an emulator or another machine's compiler.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

native=false
[ $# -eq 1 ] && [ "$1" = --native ] && native=true
[ $# -eq 0 ] || $native || { echo "usage: scripts/same-bytes.sh [--native]" >&2; exit 2; }

need g++ clang cmake make
$native || need g++-aarch64-linux-gnu qemu-user-static
cd "$project"
export LC_ALL=C

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# ---- The inputs: the examples, and alignments whose scores stand exactly on b1 or b2

mkdir "$work/inputs" "$work/inputs/made"
cp -R examples "$work/inputs"
cd "$work/inputs"
exact() {
  awk -f "$project/scripts/thresholds.awk" -v n="$1" -v b1="$2" -v b2="$3" \
    "$project/src/selection/similarity_matrix.h" >"$work/letters"
  tr '0-9' '\000\001\015\011\200\215\240\255\337\377' <"$work/letters" >"made/exact$1.fas" # char may be signed, or not
}
exact 90 64 80
exact 255 160 210
exact 700 430 560
sed '2~2s/$/*/; 1~2s/^>\(.*\)/>P1;\1\n/' made/exact90.fas >made/exact90.pir
sed 's/$/\r/' examples/globins.fas >made/crlf.fas
printf '>a\nACGT\n>b\nACG\n' >made/ragged.fas
printf 'made/exact90.fas\nmade/exact90.fas\nexamples/globins.fas\nmade/exact255.fas\n' >made/paths.txt
cd "$project"

# A run a line: the arguments and, behind a bar, what is typed into the menus.
all='-s=y -k=y -d=y -n=y -u=y'
runs=(
  "examples/globins.fas -p=y"
  "examples/globins.fas $all -p=t -v=50"
  "examples/globins.fas $all -p=y -b6=n -b5=h -b3=2 -b4=3"
  "examples/globins.pir $all -p=s -b5=a -b2=0"
  "examples/globins.pir $all -p=y -b2=45 -b1=40 -v=32000"
  "examples/globins.fas $all -p=t -t=C -e=.x"
  "examples/globins.fas -b0=1 -b1=0 -b2=999999999999999999999 -b3=-1 -b4=x -b5=q -p=0 -v=49 -e=sixsix -t=x"
  "examples/primates_mt.fas $all -p=y -t=D"
  "examples/primates_mt.fas $all -p=t -t=D -b5=h -b3=1 -b4=2"
  "examples/primates_mt.fas $all -p=y -t=C -b4=5"
  "examples/primates_mt.pir $all -p=s -t=C -b5=a"
  "examples/primates_mt.pir $all -p=y -b5=a -b2=12 -b1=10"
  "examples/primates_mt.fas $all -p=y -b6=y"
  "examples/batch/paths.txt $all -t=D -p=y -a=y -c=y -w=y"
  "examples/batch/paths.txt -t=C -p=s -b2=11"
  "made/exact90.fas $all -p=y -b1=64 -b2=80 -b3=0 -b4=2"
  "made/exact90.fas $all -p=t -b1=64 -b2=80 -b3=0 -b4=2 -b5=h"
  "made/exact90.fas $all -p=t -b2=64 -b1=64 -b3=1 -b4=2 -b5=a"
  "made/exact90.pir $all -p=y -b1=64 -b2=80 -b3=0 -b4=2 -b5=a"
  "made/exact90.pir $all -p=s -b1=46 -b2=80 -b6=n"
  "made/exact90.fas $all -p=y -t=D -b5=a -b3=3 -b4=2"
  "made/exact90.fas $all -p=y -t=C -b5=h -b3=3 -b4=5"
  "made/exact255.fas $all -p=t -b1=160 -b2=210 -b3=0 -b4=2"
  "made/exact255.fas $all -p=s -b2=210 -b1=210 -b3=0 -b4=2 -b5=h"
  "made/exact700.fas $all -p=s -b1=430 -b2=560 -b3=0 -b4=2 -b5=a"
  "made/crlf.fas $all -p=y -b5=a"
  "made/ragged.fas -p=y"
  "made/missing.fas -p=y"
  "made/paths.txt $all -p=t -b3=0 -b4=2 -b5=h"
  "made/paths.txt $all -p=s -a=y -c=y -w=y -b1=60"
  "|o\nexamples/globins.fas\nb\n1\n30\n2\n040\n3\n0x2\n4\n3\n5\n6\nz\ne\n.menu\nm\ns\np\nz\nk\nd\nn\nu\nm\ng\nt\ng\nt\ng\nq\n"
  "made/exact90.fas|b\n1\n64\n2\n80\n3\n0\n4\n2\ng\ns\np\nk\nm\ng\nb\nr\nm\no\nmade/paths.txt\ns\na\nc\nw\nm\nt\ng\n?\n\377\n"
)

# ---- Running and comparing

compared=0 # runs
# run_all NAME COMMAND...: every run in a folder of its own below $work/NAME, with links to the inputs; what it writes stays.
run_all() {
  local name=$1 k folder
  shift
  for k in "${!runs[@]}"; do
    folder="$work/$name/$k"
    mkdir -p "$folder"
    cp -Rs "$work/inputs/." "$folder"
    local arguments
    read -r -a arguments <<<"${runs[k]%%|*}"
    local script=
    [[ ${runs[k]} = *"|"* ]] && script=${runs[k]#*|}
    local status=0
    # Through a pipe the program must find the same order of lines as in a file.
    (cd "$folder" && printf '%b' "${script//\\377/\\0377}" | "$@" "${arguments[@]}" >stdout 2>stderr) || status=$?
    [ $status -eq 1 ] || { echo "$name: status $status of: trimora ${runs[k]}" >&2; cat "$folder/stderr" >&2; exit 1; }
    find "$folder" -type l -delete
  done
}

# differing NAME: how many runs of it wrote other bytes than the first build; then the first of them and where it differs.
differing() {
  local k pair count=0 report=
  for k in "${!runs[@]}"; do
    (cd "$work" && diff -rq "first/$k" "$1/$k") >"$work/difference" && continue
    count=$((count + 1))
    [ -n "$report" ] && continue
    report="  trimora ${runs[k]}"$'\n'"  $(head -n 1 "$work/difference")"
    mapfile -t pair < <(sed -n '1s/^Files \(.*\) and \(.*\) differ$/\1\n\2/p' "$work/difference")
    [ ${#pair[@]} -ne 2 ] || report+=$'\n'"  $(cd "$work" && cmp "${pair[@]}" 2>&1)" || true
  done
  echo "$count"
  echo "$report"
}

# line NAME: compare it with the first build and say so in a line.
line() {
  local result count
  result=$(differing "$1")
  count=${result%%$'\n'*}
  compared=$((compared + ${#runs[@]}))
  if [ "$count" -ne 0 ]; then
    printf '%-64s %s\n%s\n' "$1" "$count runs DIFFER, the first is:" "${result#*$'\n'}"
    exit 1
  fi
  printf '%-64s %s\n' "$1" "the same"
  rm -rf "${work:?}/$1"
}

# compile NAME COMPILER FLAGS [CMAKE ARGUMENT...]: leaves the program in $folder.
compile() {
  local name=$1 compiler=$2 flags=$3
  shift 3
  folder="$project/build/bytes/$name"
  configure -S . -B "$folder" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" -DTRIMORA_STATIC=ON "$@"
  build "$folder" trimora
}

# same NAME COMPILER FLAGS [CMAKE ARGUMENT...]
same() {
  local name="$1: $2 $3" emulator=()
  compile "$@"
  case $1 in arm-*) emulator=("${arm[@]}") ;; esac
  run_all "$name" "${emulator[@]}" "$folder/trimora"
  line "$name"
}

# Arithmetic that is forbidden must show, or the runs would prove nothing.
# other NAME COMPILER FLAGS FORBIDDEN [CMAKE ARGUMENT...]
other() {
  local name="$1: $2 $3 $4" emulator=() count
  compile "$1" "$2" "$3" "${@:5}" \
    "-DCMAKE_CXX_COMPILE_OBJECT=<CMAKE_CXX_COMPILER> <DEFINES> <INCLUDES> <FLAGS> $4 -o <OBJECT> -c <SOURCE>"
  case $1 in arm-*) emulator=("${arm[@]}") ;; esac
  run_all "$name" "${emulator[@]}" "$folder/trimora"
  count=$(differing "$name")
  count=${count%%$'\n'*}
  [ "$count" -gt 0 ] || { echo "$name: no run differs, so the inputs do not test anything" >&2; exit 1; }
  printf '%-64s %s\n' "$name" "$count runs differ, as they have to"
  rm -rf "${work:?}/$name"
}

# in_environment WORDS ASSIGNMENT...: the first build once more.
in_environment() {
  local name=$1
  shift
  run_all "$name" env "$@" "$first"
  line "$name"
}

# ---- The builds

has() { grep -qw "$1" /proc/cpuinfo; }
x86() { [ "$(uname -m)" = x86_64 ]; }
optimised="-O3 -DNDEBUG"
if x86; then
  newest="-march=native" fma="-mfma" plain="-march=x86-64 -DTRIMORA_SANITIZED"
else
  newest="-mcpu=native" fma="" plain=""
fi
# TRIMORA_SANITIZED by itself: no function is made for several instruction sets.
arm=(qemu-aarch64-static -cpu max)
cross=(-DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64)

compile gcc-O0 g++ "-O0"
first="$folder/trimora"
run_all first "$first"
for k in "${!runs[@]}"; do
  [ -s "$work/first/$k/stdout" ] || { echo "Nothing was printed by: trimora ${runs[k]}" >&2; exit 1; }
done
echo "gcc-O0: ${#runs[@]} runs, $(find "$work/first" -type f | wc -l) files, with which all others are compared"

same gcc-plain g++ "$optimised $plain"
same gcc-native g++ "$optimised $newest"
same clang-native clang++ "$optimised $newest"
if ! $native; then
  same gcc-release g++ "$optimised"
  same clang-release clang++ "$optimised"
  same clang-O0 clang++ "-O0"
  same clang-plain clang++ "$optimised $plain"
  same gcc-Os g++ "-Os -DNDEBUG -funsigned-char"
  if x86 && has avx2 && has fma; then
    same gcc-v3 g++ "$optimised -march=x86-64-v3"
    same clang-v3 clang++ "-O2 -DNDEBUG -march=x86-64-v3"
  fi
  if x86 && has avx512f && has avx512bw && has avx512vl; then
    same gcc-v4 g++ "$optimised -march=x86-64-v4 -mprefer-vector-width=512"
    same clang-v4 clang++ "$optimised -march=x86-64-v4 -mprefer-vector-width=512"
  fi
  if x86; then # an old processor, for which the loader picks the plain functions
    run_all "gcc-release on a Nehalem" qemu-x86_64-static -cpu Nehalem "$project/build/bytes/gcc-release/trimora"
    line "gcc-release on a Nehalem"
  fi
  same arm-gcc-O0 aarch64-linux-gnu-g++ "-O0" "${cross[@]}"
  same arm-gcc-O2 aarch64-linux-gnu-g++ "-O2 -DNDEBUG" "${cross[@]}"
  same arm-gcc-O3 aarch64-linux-gnu-g++ "$optimised" "${cross[@]}"
  same arm-gcc-sve aarch64-linux-gnu-g++ "$optimised -march=armv8.2-a+sve" "${cross[@]}"
  same arm-clang-O3 clang++ "$optimised --target=aarch64-linux-gnu" "${cross[@]}"
  other arm-fused aarch64-linux-gnu-g++ "-O2 -DNDEBUG" "-ffp-contract=fast" "${cross[@]}"
  other clang-fast clang++ "$optimised $plain" "-ffast-math"
fi
if ! x86 || has fma; then # GCC fuses at -O2; at -O3 its vectors keep it from doing so, by chance
  same gcc-fma g++ "-O2 -DNDEBUG $fma"
  other gcc-fused g++ "-O2 -DNDEBUG $fma" "-ffp-contract=fast"
fi

# ---- The environments

in_environment "a second time, nothing in the environment" -i
mkdir "$work/locales"
for locale in de_DE tr_TR; do # decimal commas, and a capital I with a dot
  localedef -i $locale -f UTF-8 "$work/locales/$locale.UTF-8" 2>/dev/null ||
    { echo "LC_ALL=$locale.UTF-8: not at hand (package locales)"; continue; }
  in_environment "LC_ALL=$locale.UTF-8" LOCPATH="$work/locales" LC_ALL=$locale.UTF-8 LANG=$locale.UTF-8
done
in_environment "MALLOC_PERTURB_, POSIXLY_CORRECT, TZ, no TERM" \
  -u TERM MALLOC_PERTURB_=165 POSIXLY_CORRECT=1 TZ=Asia/Kathmandu LC_ALL=C.UTF-8 LANG=C.UTF-8 COLUMNS=20

echo "$compared runs compared, all the same"
