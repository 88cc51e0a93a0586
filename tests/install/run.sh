#!/usr/bin/env bash
# An installation into an empty folder: bash run.sh CMAKE BUILD SOURCE VERSION
#
# It holds exactly the files listed here, readable by all, and the programs run from there. Completions, manual pages
# and help tell of the options and letters that the installed program takes, and of no others.
set -euo pipefail
cmake=$1 build=$2 source=$3 version=$4
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
completions=share/bash-completion/completions man=share/man/man1 doc=share/doc/trimora
# same WHAT EXPECTED FOUND: lines in any order
same() { diff <(sort <<<"$2") <(sort <<<"$3") || { echo "$1: expected <, found >"; exit 1; }; }

umask 022
DESTDIR="$scratch/an image" "$cmake" --install "$build" --prefix /any/prefix >"$scratch/log"
cd "$scratch/an image/any/prefix"
expected=$(printf '%s\n' bin/trimora{,-run} $man/trimora{,-run}.1 $completions/trimora{,-run} \
  share/zsh/site-functions/_trimora
  cd "$source"
  printf "$doc/%s\n" README.md CHANGELOG.md LICENSE docs/*.md examples/{README.md,*.fas,*.pir,batch/{paths.txt,*.fas}}
  find docs -path '*/pictures/*' -printf "$doc/%p\n")
same "files" "$expected" "$(find . ! -type d -printf '%P\n')"
same "modes" "" "$(find . -type f ! -path './bin/*' ! -perm 644 -o \( -type d -o -path './bin/*' \) ! -perm 755)"
file=$PWD/$doc/examples/globins.fas
bin/trimora-run "$file" -p=n >"$scratch/log" && test -s "$file-tr"

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
COMP_LINE="trimora glo" COMP_POINT=11 COMP_CWORD=1
_trimora trimora || true
same "first argument" "-o default" "$asked"
same "first argument" --version "$(completed "trimora-run --v")"
COMP_WORDBREAKS=' '
same "value with its option" -p=S "$(completed "trimora x.fas -b3=5 -p=S")"
COMP_WORDBREAKS=' ='
same "value alone" S "$(completed "trimora x.fas -b3=5 -p=S")"

options=$(for option in $(completed "trimora x.fas -"); do # as p=YTSN or b3=
  echo "${option#-}$(completed "trimora x.fas $option" | tr -d '\n')"
done)
names=$(sed 's/=.*//' <<<"$options")
# No option takes this value, which is no letter, too small and too long.
refused() { (bin/trimora "$file" "$@" || true) | sed -n 's/^WARNING: Parameter -\([a-z0-9]*\) .*/\1/p'; }
same "options taken" "$names" "$(refused -{{a..z},b{0..9}}=-99999)"
every=() refusals=
while IFS='=' read -r option letters; do
  every+=("-$option="{A..Z})
  refusals+=$(for letter in {A..Z}; do [[ $letters == *$letter* ]] || echo "$option"; done)$'\n'
done < <(grep '=.' <<<"$options")
same "letters taken" "${refusals%$'\n'}" "$(refused "${every[@]}")"

plain='s/ //g; s/[|]//g; s/(number|text)$//I'
same "zsh" "$names" "$(grep -oP "^ +['\"]-\K[a-z]\d?(?==-\[)" share/zsh/site-functions/_trimora)"
same "help" "$options" "$(bin/trimora-run --help | sed -nE 's/^ +-([a-z][^ ]*) .*/\1/p' | sed -E "$plain")"
same "trimora.1" "$options" "$(sed -nE 's/^\.B[IR] \\-([a-z][0-9]? ?= .*)/\1/p' $man/trimora.1 | sed -E "$plain")"
same "trimora-run.1" "$names" "$(grep -oP '(^\.BR? |" )\\-\K[a-z]\d?(?= |$)' $man/trimora-run.1)"
same "version" "$(printf 'Trimora %s\n' "$version" "$version")" "$(grep -oh 'Trimora [0-9.]*' $man/*)"
