#!/bin/sh
# One whole-program run: sh run.sh VERSION EXAMPLES RUN PROGRAM, paths from the root on
#
# RUN is a folder: `arguments` (as typed in a shell), `script` (standard input, when there is any), `status` (the exit
# status of trimora-run, when it makes this run as well), `input/` (files beside the examples) and `expected/`: `stdout`
# and every file that the run writes, with @VERSION@ for the version. The program runs in a fresh copy of the input.
# Afterwards that folder must hold the input as it was, what is expected and nothing else. What differs is shown as a
# patch. The exit status of trimora is 1 at every end.
set -eu
version=$1 examples=$2 run=$3 program=$4

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/expected" "$scratch/found"
for folder in "$scratch/expected" "$scratch/found"; do
  cp "$examples"/*.fas "$examples"/*.pir "$folder"
  if [ -d "$run/input" ]; then cp -R "$run/input/." "$folder"; fi
done
cp -R "$run/expected/." "$scratch/expected"
find "$scratch/expected" -type f -exec sed -i "s/@VERSION@/$version/" {} +
script=$run/script
if [ ! -f "$script" ]; then script=/dev/null; fi
expected=1
case $program in *-run) expected=$(cat "$run/status") ;; esac

cd "$scratch/found"
eval "set -- $(cat "$run/arguments")"
status=0
"$program" "$@" <"$script" >stdout 2>"$scratch/stderr" || status=$?
cat "$scratch/stderr"
cd "$scratch"
diff -ru expected found
if [ $status -ne $expected ] || [ -s stderr ]; then echo "exit status $status, or text on standard error"; exit 1; fi
