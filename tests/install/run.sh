#!/usr/bin/env bash
# An installation into an empty folder: bash run.sh CMAKE BUILD SOURCE VERSION
#
# It holds exactly the files listed here, readable by all, whose links lead somewhere, and the programs run from there.
# bash completes what they take. (What completions, manual page and documents say of options is made from the table of
# options: the test `options` tells when it is not.)
set -euo pipefail
cmake=$1 build=$2 source=$3 version=$4
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
completions=share/bash-completion/completions man=share/man/man1 doc=share/doc/trimora data=share/trimora
# same WHAT EXPECTED FOUND: lines in any order
same() { diff <(sort <<<"$2") <(sort <<<"$3") || { echo "$1: expected <, found >"; exit 1; }; }

umask 022
DESTDIR="$scratch/an image" "$cmake" --install "$build" --prefix /any/prefix >"$scratch/log"
cd "$scratch/an image/any/prefix"
lib=$(dirname "$(find . -name libtrimora.a -printf '%P')") # where is the platform's choice
expected=$(printf '%s\n' include/trimora/trimora.h $lib/libtrimora.{a,so{,.${version%%.*},.$version}} \
  $lib/pkgconfig/trimora.pc $lib/cmake/trimora/trimora-{config{,-version},{static,shared}-targets{,-@}}.cmake
  printf '%s\n' bin/trimora{,-run} $man/trimora{,-run}.1 $completions/trimora{,-run} \
  share/zsh/site-functions/_trimora $doc/{examples,workflow,config}
  cd "$source"
  printf "$doc/%s\n" {README,CONTRIBUTING,CHANGELOG}.md CITATION.cff LICENSE docs/*.md
  printf "$data/%s\n" examples/{README.md,*.fas,*.pir,batch/{paths.txt,*.fas},genes/*.fas,library/{CMakeLists.txt,main.cpp}}
  for face in python r web/engine; do [ ! -e $face/README.md ] || echo $doc/$face/README.md; done
  find docs -path '*/pictures/*' -printf "$doc/%p\n"
  find workflow config -type f ! -path '*/__pycache__/*' -printf "$data/%p\n"
  [ ! -d build/web/package ] || find build/web/package -type f ! -name '*.tgz' -printf "$data/engine/%P\n"
  [ ! -e build/web/trimora.html ] || echo $data/trimora.html)
same "files" "$expected" "$(find . ! -type d -printf '%P\n' | sed 's/-targets-[a-z]*[.]cmake/-targets-@.cmake/')"
same "modes" "" "$(find . -type f ! -path './bin/*' ! -name '*.sh' ! -perm 644 ! -name '*.so*' -o \
  \( -type d -o -path './bin/*' -o -name '*.sh' \) ! -perm 755)"
bash "$source/tests/install/links.sh" $doc $data
file=$PWD/$doc/examples/globins.fas
bin/trimora-run "$file" -p=n >"$scratch/log" && test -s "$file-tr.fasta"

# What starts in a millisecond holds nothing that it does not use.
foreign() { nm -C "bin/$1" | grep -cE 'std::(__1::)?filesystem::|inflate' || true; }
[ "$(foreign trimora-run)" -gt 0 ] || { echo "trimora-run has neither std::filesystem nor zlib"; exit 1; }
same "std::filesystem and zlib in trimora" 0 "$(foreign trimora)"

. $completions/trimora-run
compopt() { asked=$*; }
# completed LINE: what bash offers behind the last character of LINE, one on a line
completed() {
  local words
  read -ra words <<<"$1|"
  COMP_LINE=$1 COMP_POINT=${#1} COMP_CWORD=$((${#words[@]} - 1))
  _trimora "${words[0]}" || true
  printf '%s\n' "${COMPREPLY[@]-}"
}
for program in trimora trimora-run; do
  COMP_LINE="$program glo" COMP_POINT=${#program}+4 COMP_CWORD=1 asked=
  _trimora $program || true
  same "first argument" "-o default" "$asked"
done
same "first argument" --version "$(completed "trimora-run --v")"
for start in "" "x.fas " "-t D x.fas "; do
  same "several options" $'--partitions\n--preset=\n-p=' "$(completed "trimora-run $start-p" && completed "trimora-run $start--p")"
done
same "none of the other program" "" "$(completed "trimora x.fas --p")"
same "second word" "fasta,phylip" "$(completed "trimora-run x.fas --format=fasta,p")"
same "value in a word of its own" name "$(completed "trimora-run --match n")"
same "folder in a word of its own" share "$(completed "trimora-run x.fas --into sh")"
COMP_WORDBREAKS=' '
same "value with its option" -p=S "$(completed "trimora x.fas -b3=5 -p=S")"
same "value in a word of its own" S "$(completed "trimora-run x.fas -p S")"
COMP_WORDBREAKS=' ='
same "value alone" S "$(completed "trimora x.fas -b3=5 -p=S")"

# What completes trimora is what it takes.
options=$(for option in $(completed "trimora x.fas -"); do # as p=YTSN or b3=
  echo "${option#-}$(completed "trimora x.fas $option" | tr -d '\n')"
done)
# No option takes this value, which is no letter, too small and too long.
refused() { (bin/trimora "$file" "$@" || true) | sed -n 's/^WARNING: Parameter -\([a-z0-9]*\) .*/\1/p'; }
same "options taken" "$(sed 's/=.*//' <<<"$options")" "$(refused -{{a..z},b{0..9}}=-99999)"
every=() refusals=
while IFS='=' read -r option letters; do
  every+=("-$option="{A..Z})
  refusals+=$(for letter in {A..Z}; do [[ $letters == *$letter* ]] || echo "$option"; done)$'\n'
done < <(grep '=.' <<<"$options")
same "letters taken" "${refusals%$'\n'}" "$(refused "${every[@]}")"
same "version" "Trimora $version
version: $version" "$(grep -ohE 'Trimora [0-9.]*[0-9]|^version: .*' $man/* $doc/{CITATION.cff,docs/citing.md} | sort -u)"
