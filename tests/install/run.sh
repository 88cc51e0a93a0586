#!/usr/bin/env bash
# An installation into an empty folder: bash run.sh CMAKE BUILD SOURCE VERSION
#
# It holds exactly the files listed here, readable by all, whose links lead somewhere, and the programs run from there.
# Completions, manual pages, documents and help tell of the options, letters, ranges and defaults of the installed program, and of no others.
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
expected=$(printf '%s\n' bin/trimora{,-run} $man/trimora{,-run}.1 $completions/trimora{,-run} \
  share/zsh/site-functions/_trimora $doc/{workflow,config}
  cd "$source"
  printf "$doc/%s\n" {README,CONTRIBUTING,CHANGELOG}.md CITATION.cff LICENSE docs/*.md \
    examples/{README.md,*.fas,*.pir,batch/{paths.txt,*.fas},genes/*.fas}
  find docs -path '*/pictures/*' -printf "$doc/%p\n"
  find workflow config -type f ! -path '*/__pycache__/*' -printf "$data/%p\n"
  [ ! -d build/web/package ] || find build/web/package -type f ! -name '*.tgz' -printf "$data/engine/%P\n"
  [ ! -e build/web/trimora.html ] || echo $data/trimora.html)
same "files" "$expected" "$(find . ! -type d -printf '%P\n')"
same "modes" "" "$(find . -type f ! -path './bin/*' ! -name '*.sh' ! -perm 644 -o \
  \( -type d -o -path './bin/*' -o -name '*.sh' \) ! -perm 755)"
bash "$source/tests/install/links.sh" $doc $data
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
help=$(bin/trimora-run --help | sed -nE 's/^  (--[^ ]*) .*/\1/p')
for start in "--" "x.fas --"; do # behind the file the first two cannot stand
  same "options of its own" "$(sed 's/=.*/=/' <<<"$help")" "$(completed "trimora-run $start" | grep -v '^--version$\|^--help$')"
done
while IFS== read -r option words; do
  same "words of $option" "${words//|/$'\n'}" "$(completed "trimora-run x.fas $option=")"
done < <(sed -n '/=.*[|]/s/\[.*//p' <<<"$help")
same "second word" "fasta,phylip" "$(completed "trimora-run x.fas --format=fasta,p")"
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

# Every text below becomes lines as "b3|0 to 32000|8" or "p|YTSN|Y", with the numbers for 45 sequences.
words='s/half[a-z ]* \+ 1/23/g; s/85 %( of (them|the number of sequences))?/38/g; s/ to b2/ to 38/; s/as b4/10/
  s/b1 to (all( of them)?|the number of sequences)/23 to 45/; s/the default to 38/23 to 38/; s/`//g'
# told WORDS: lines as "b3=NUMBER ... 0 to 32000 ... (8)", where WORDS is what stands in front of the default
told() {
  sed -E "$words; s/23 \((the )?default\) to 38/23 to 38 ${1}23/" |
    sed -nE "s/^([a-z][0-9]?) ?= ?/\1=/; s/=(number|text)/=/I; s/([A-Z]) ?[|] ?/\1/g
      s/^(..?)=([A-Z]{2,4}\b|(.*[^0-9])?([0-9]+ to [0-9]+)).*$1([^ ),.]+( file)?).*/\1|\2|\5/; T; s/[|].*[^0-9]([0-9]+ to)/|\1/; p"
}
table=$(bin/trimora-run --help | sed -nE 's/default: //; s/^ +-([a-z].*)/\1/p' | told '\(')
same "help" "$names" "$(cut -d '|' -f 1 <<<"$table")"
same "letters in the help" "$(grep '=.' <<<"$options" | tr = '|')" "$(cut -d '|' -f 1,2 <<<"$table" | grep -v ' to ')"

# 45 sequences of 70 positions, of which the first ten are a block just long enough.
awk 'BEGIN { for (; i < 45; ++i) { rest = sprintf("%060d", 0); gsub(0, substr("ACDEFGHIKLMNPQRSTVWY", i % 20 + 1, 1), rest)
  print ">s" i "\nWWWWWWWWWW" rest } }' >"$scratch/made.fas"
echo made.fas >"$scratch/paths.txt"
file=$scratch/made.fas
written() { # by a run as a batch
  rm -rf "$scratch/run" && mkdir "$scratch/run" && cp "$scratch"/{made.fas,paths.txt} "$scratch/run"
  (cd "$scratch/run" && "$OLDPWD/bin/trimora-run" paths.txt "$@" >stdout 2>&1; cksum *)
}
usual=$(written)
value() { [ "$1" = e ] && printf '%.*s' "$2" abcdef || echo "$2"; } # of b3 the number, of e as many characters
while IFS='|' read -r name values default; do
  others=$(sed "s/$default//; s/./& /g" <<<"$values")
  if [[ $values == *" to "* ]]; then
    least=${values% to *} most=${values#* to }
    [ "$name" = e ] && others=x || others=$((default + 1))
    same "range of $name" "" "$(refused "-$name=$(value $name $least)" "-$name=$(value $name $most)")"
    same "end of the range of $name" "$name"$'\n'"$name" \
      "$(refused "-$name=$(value $name $((least - 1)))" "-$name=$(value $name $((most + 1)))")"
  fi
  [ "$default" != "by file" ] || continue
  same "default of $name" "$usual" "$(written "-$name=$default")"
  for other in $others; do
    [ "$usual" != "$(written "-$name=$other")" ] || { echo "-$name=$other and the default write the same"; exit 1; }
  done
done <<<"$table"

paragraphs() { # from a manual page: what stands below each option, in one line
  sed -E 's/\\\(.q//g; s/\\-/-/g' "$1" | awk 'below && /^\.B[IR] -.*=/ { sub(/^.... ?-/, ""); at = $0 }
    /^\.(TP|S[HS])/ { if (at) print at; at = ""; below = /TP/; next } at { at = at " " $0 } { below = 0 }' |
    sed '/The default is N, as/,$ s/$/ The default is N/'
}
same "trimora.1" "$table" "$(paragraphs $man/trimora.1 | sed '1s/$/ The default is by file/' | told 'The default is ')"
same "options.md" "$table" "$(sed -nE 's/^[|] `-(..?)` [|] ([^|]*) [|] ([^|]*) [|].*/\1=\3 (\2)/p' $doc/docs/options.md |
  sed -E 's/([A-Z]), /\1|/g' | told '\(')"
same "README.md" "$(grep '^b[0-4]' <<<"$table")" \
  "$(sed -nE 's/^[|] (b[0-4]),[^|]* [|] ([^|]*) [|] ([^|]*) [|].*/\1= \3 (\2)/p' $doc/README.md | told '\(')"
zsh() { # its list of options or own, which reads the same in bash
  eval "$(sed -n '/^local/,/^)/p' share/zsh/site-functions/_trimora)"
  local -n list=$1
  printf '%s (-)\n' "${list[@]}"
}
same "zsh" "$(sed 's/[^|]*$/-/' <<<"$table")" "$(zsh options | sed -E 's/^-//; s/=-\[[^]]*\]:/=/; /\(\(/ {
  s/=.*\(\(/=/; s/([A-Z])\\:("[^"]*"|[[:alpha:]]*)/\1/g; s/([A-Z]) /\1|/g }' | told '\(')"
same "trimora-run.1" "$names" "$(grep -oP '(^\.BR? |" )\\-\K[a-z]\d?(?= |$)' $man/trimora-run.1)"
same "options of its own in zsh" "$(sed 's/=.*/=/' <<<"$help")" "$(zsh own | sed -E 's/^(--[a-z-]*=?).*/\1/')"
own=$(sed 's/=.*//' <<<"$help")
same "own options in trimora-run.1" "$own"$'\n--help\n--version' \
  "$(sed -nE 's/\\-/-/g; s/^\.BR?I? (--[a-z-]+).*/\1/p' $man/trimora-run.1 | sort -u)"
same "version" "Trimora $version
version: $version" "$(grep -ohE 'Trimora [0-9.]*[0-9]|^version: .*' $man/* $doc/{CITATION.cff,docs/citing.md} | sort -u)"
