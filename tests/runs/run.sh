#!/bin/sh
# One whole-program run: sh run.sh VERSION EXAMPLES RUN [EMULATOR ...] PROGRAM, paths from the root on
#
# RUN is a folder: `arguments` (as typed in a shell), `script` (standard input, when there is any), `input/` (files
# beside the examples), `expected/`: `stdout` and every file that the run writes, with @VERSION@ for the version; `notes`
# (standard error, when there is any) and `status` (when it is not the usual one: of trimora 1, of trimora-run 0).
# The program runs in a fresh copy of the input, @FOLDER@, which is its home folder, too. Afterwards that folder must hold the input as it was, what is expected
# and nothing else. What differs is shown as a patch.
set -eu
version=$1 examples=$2 run=$3
shift 3
for program; do :; done # the last word
case ${program##*/} in
trimora-run*) status=0 ;;
*) status=1 ;;
esac
if [ -f "$run/status" ]; then status=$(cat "$run/status"); fi

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
cat "$run/notes" >"$scratch/notes" 2>/dev/null || true

cd "$scratch/found"
export HOME="$scratch/found"
eval 'set -- "$@" '"$(cat "$run/arguments")"
found=0
"$@" <"$script" >stdout 2>"$scratch/stderr" || found=$?
cd "$scratch"
sed -i "s|$scratch/found|@FOLDER@|" found/stdout stderr
case $program in
*.exe) sed -i 's/: Not a directory$/: No such file or directory/' notes ;; # the system's own words for a reason
esac
diff -ru expected found
diff -u notes stderr
if [ $found -ne "$status" ]; then echo "exit status $found, not $status"; exit 1; fi
