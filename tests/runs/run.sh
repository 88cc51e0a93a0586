#!/bin/sh
# One whole-program run: sh run.sh PROGRAM VERSION EXAMPLES RUN, paths from the root on
#
# RUN is a folder: `arguments` (as typed in a shell), `script` (standard input, when there is any), `input/` (files
# beside the examples) and `expected/`: `stdout` and every file that the run writes, with @VERSION@ for the version.
# The program runs in a fresh copy of the input. Afterwards that folder must hold the input as it was, what is expected
# and nothing else. What differs is shown as a patch. The exit status is 1 at every end.
set -eu
program=$1 version=$2 examples=$3 run=$4

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

cd "$scratch/found"
eval "set -- $(cat "$run/arguments")"
status=0
"$program" "$@" <"$script" >stdout 2>"$scratch/stderr" || status=$?
cat "$scratch/stderr"
cd "$scratch"
diff -ru expected found
if [ $status -ne 1 ] || [ -s stderr ]; then echo "exit status $status, or text on standard error"; exit 1; fi
