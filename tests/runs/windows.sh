#!/usr/bin/env bash
# Paths as Windows has them: bash windows.sh VERSION SOURCE TRIMORA TRIMORA-RUN [EMULATOR ...]
# However a file is named, what stored runs have written stands beside it, the same to the byte.
set -euo pipefail
version=$1 source=$2 trimora=$3 trimora_run=$4
shift 4
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
folder="Übung 1/Données 数据" name="Mäuse & Ōtter.fas"
drive=Z:${PWD//\//\\} # as wine names the root of this machine
mkdir -p "$folder"
cp "$source/examples/globins.fas" "$folder"
cp "$source/examples/globins.fas" "$folder/$name"
cp -R "$source/tests/golden/globins_defaults/expected" stored
sed -i "s/@VERSION@/$version/" stored/*
wrong=0

# run COMMAND...: trimora has one status for every end.
run() { "$@" >stdout 2>stderr || [[ $* == *trimora.exe* ]] || { echo "status $?: $*"; cat stdout stderr; wrong=1; }; }
# wrote WHAT FILE STORED: apart from the one line of the report that holds the whole path
wrote() { { diff -u <(sed '/^New number of positions/d' "stored/$3") <(sed '/^New number of positions/d' "$2") && rm "$2"; } || { echo "so it was written for $1"; wrong=1; }; }

for path in "$folder/" "${folder//\//\\}\\" "$drive\\${folder//\//\\}\\" "Z:$folder/"; do
  for program in "$trimora" "$trimora_run"; do
    format=
    [ "$program" = "$trimora" ] || format="-t=P --format=trimora"
    # shellcheck disable=SC2086
    run "$@" "$program" "$path$name" -p=n $format
    wrote "$path$name" "$folder/$name-tr" globins.fas-tr
    # shellcheck disable=SC2086
    run "$@" "$program" "${path}globins.fas" -s=n $format
    wrote "${path}globins.fas" "$folder/globins.fas-tr.htm" globins.fas-tr.htm # its title is the name of the file alone
  done
  printf 'o\n%s\ns\nm\ng\nq\n' "${path}globins.fas" | run "$@" "$trimora"
  wrote "${path}globins.fas in the menu" "$folder/globins.fas-tr" globins.fas-tr
  wrote "${path}globins.fas in the menu" "$folder/globins.fas-tr.htm" globins.fas-tr.htm
done

# Another folder, and the filter: what comes and goes through pipes is the same to the byte as well, carriage returns too.
run "$@" "$trimora_run" "${folder//\//\\}\\$name" --into='Ergebnisse ö\alle' --table='Ergebnisse ö/alle/Tabelle.tsv' \
  --format=trimora,fasta -p=n
wrote "--into" "Ergebnisse ö/alle/$name-tr" globins.fas-tr
cut -f 1,2,6 "Ergebnisse ö/alle/Tabelle.tsv" | tail -n 1 | grep -qF "$name"$'\t45\t114' || { echo "wrong: the table"; wrong=1; }
"$@" "$trimora_run" - <"$folder/globins.fas" 2>stderr | cmp - "Ergebnisse ö/alle/$name-tr.fasta" || wrong=1
sed 's/$/\r/' "$folder/globins.fas" | "$@" "$trimora_run" - 2>stderr | cmp - "Ergebnisse ö/alle/$name-tr.fasta" || wrong=1

# Lists as PowerShell writes them with > (UTF-16) and as old editors do (Windows-1252), with alignments in UTF-16; patterns,
# which the program expands; a folder.
mkdir -p "Größe/Gene"
for gene in eins zwö; do
  sed 's/$/\r/' "$folder/globins.fas" | { printf '\xFF\xFE'; iconv -f UTF-8 -t UTF-16LE; } >"Größe/Gene/$gene.fas"
done
printf 'Größe\\Gene\\%s.fas\r\n' eins zwö >names
{ printf '\xFF\xFE'; iconv -f UTF-8 -t UTF-16LE names; } >utf-16.txt
iconv -f UTF-8 -t WINDOWS-1252 names >1252.txt
{ printf '\xEF\xBB\xBF'; cat names; } >marked.txt
for given in utf-16.txt 1252.txt marked.txt 'Größe\Gene\*.fas' 'Größe/Gene/????.*' 'Größe\Gene' 'Größe/Gene/'; do
  rm -rf out
  run "$@" "$trimora_run" "$given" -p=n -a=y --into=out --name=alle --quiet
  for gene in eins zwö; do
    [[ $given == *'????'* && $gene == zwö ]] || cmp "out/$gene.fas-tr.fasta" "Ergebnisse ö/alle/$name-tr.fasta" || { echo "wrong: $given"; wrong=1; }
  done
  [ -s out/alle-tr.seq.fasta ] || { echo "wrong: $given, put together"; wrong=1; }
done

# Paths longer than 260 characters, where Windows used to end.
long=$(printf 'ein langer Name %.0s' {1..9})
mkdir -p "$long/$long"
cp "$folder/globins.fas" "$long/$long/$name"
printf '%s\r\n' "$long\\$long\\$name" >long.txt
for given in "$long\\$long\\$name" "$drive\\$long\\$long\\$name" long.txt "$long/$long/*.fas"; do
  rm -f "$long/$long/$name-"*
  run "$@" "$trimora_run" "$given" -p=n --quiet
  cmp "$long/$long/$name-tr.fasta" "Ergebnisse ö/alle/$name-tr.fasta" || { echo "wrong: a long path, $given"; wrong=1; }
done

# An output that would replace its input is refused, here under a name that differs in capitals alone.
cp "$folder/globins.fas" "$folder/GENES.SEQ"
printf '%s\n' "$folder/GENES.SEQ" >"$folder/genes"
if "$@" "$trimora_run" "${folder//\//\\}\\genes" -c=y -s=n -p=n -t=P --format=trimora >stdout 2>stderr; then echo "taken: genes"; wrong=1; fi
cmp "$folder/GENES.SEQ" "$folder/globins.fas" || wrong=1

# A list of paths, with line ends of Windows: the concatenations stand in the folder of its last alignment, under the name
# of the list.
stored=$source/tests/golden/batch_concatenated
cp -R "$stored/input" batch
cp -R "$stored/input" expected
cp -R "$stored/expected/." expected
for list in batch/lists/all.txt expected/lists/all.txt; do sed -i 's,/,\\,g; /./s/$/\r/' $list; done
read -r _ arguments <"$stored/arguments"
cd batch
# shellcheck disable=SC2086
run "$@" "$trimora" 'lists\all.txt' $arguments
sed 's,\\,/,' stdout >shown && mv shown stdout && rm stderr
diff -ru ../expected . || wrong=1
exit $wrong
