#!/bin/sh
# One whole-program run: sh run.sh VERSION EXAMPLES RUN [EMULATOR ...] PROGRAM, paths from the root on
#
# RUN is a folder: `arguments` (as typed in a shell), `script` (standard input, when there is any), `input/` (files
# beside the examples) and `expected/`: `stdout` and every file that the run writes, with @VERSION@ for the version. For
# trimora-run also `status` and `notes` (standard error, when there is any; lines that begin with `trimora: ` are said by both,
# each under its own name; @FOLDER@ stands for the folder of the run), and `more`, arguments that only trimora-run gets.
# The program runs in a fresh copy of the input. Afterwards that folder must hold the input as it was, what is expected
# and nothing else. What differs is shown as a patch. trimora ends with status 1 at every end.
set -eu
version=$1 examples=$2 run=$3
shift 3
for program; do :; done # the last word

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/expected" "$scratch/found"
for folder in "$scratch/expected" "$scratch/found"; do
  cp "$examples"/*.fas "$examples"/*.pir "$folder"
  if [ -d "$run/input" ]; then cp -R "$run/input/." "$folder"; fi
done
cp -R "$run/expected/." "$scratch/expected"
find "$scratch/expected" -type f -exec sed -i "s/@VERSION@/$version/" {} +
script=/dev/null
if [ -f "$run/script" ]; then script=$run/script; fi
notes=/dev/null
if [ -f "$run/notes" ]; then notes=$run/notes; fi
more=
case ${program##*/} in
trimora-run*)
  if [ -f "$run/more" ]; then more=$(cat "$run/more"); fi
  status=$(cat "$run/status") said='s/^trimora: /trimora-run: /p; t; p' ;;
*) status=1 said='/^trimora: /p' ;;
esac
sed -n "$said" "$notes" >"$scratch/notes"

cd "$scratch/found"
eval 'set -- "$@" '"$(cat "$run/arguments") $more"
found=0
"$@" <"$script" >stdout 2>"$scratch/stderr" || found=$?
case $program in
*.exe) # the system's own words for a folder and a reason
  sed -i 's|Z:[^ ]*\\found|@FOLDER@|' "$scratch/stderr"
  sed -i 's/: Not a directory$/: No such file or directory/' "$scratch/notes"
  ;;
esac
cd "$scratch"
sed -i "s|$scratch/found|@FOLDER@|" stderr
diff -ru expected found
diff -u notes stderr
if [ $found -ne "$status" ]; then echo "exit status $found, not $status"; exit 1; fi
