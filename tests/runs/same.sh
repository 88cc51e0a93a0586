#!/usr/bin/env bash
# With --format=trimora and -t= trimora-run writes the files of trimora: bash same.sh VERSION SOURCE [EMULATOR ...] PROGRAM
# Here these are the stored runs of trimora that answer no menu, that trimora-run takes as well, and that read a plain
# alignment. The concatenations of trimora are in the folder of its last alignment, those of trimora-run beside the list.
set -euo pipefail
version=$1 source=$2
shift 2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
wrong=0
# same RUN TYPE [OPTION]
same() {
  local run=$source/tests/golden/$1 folder=$scratch/$1 path found
  mkdir "$folder"
  cp "$source"/examples/*.{fas,pir} "$folder"
  [ ! -d "$run/input" ] || cp -R "$run/input/." "$folder"
  # shellcheck disable=SC2046
  (cd "$folder" && "${program[@]}" $(<"$run/arguments") -t="$2" --format=trimora "${@:3}" >stdout 2>stderr) ||
    { echo "$1: status $?"; cat "$folder/stderr"; wrong=1; return 0; }
  while IFS= read -r path; do
    found=$folder/$path
    [ -e "$found" ] || found=$folder/lists/${path##*/}
    sed "s/@VERSION@/$version/" "$run/expected/$path" | cmp - "$found" || { echo "$1: $path is not as trimora writes it"; wrong=1; }
  done < <(cd "$run/expected" && find . -type f ! -name stdout)
}
program=("$@")
for run in batch_fixed_parameters batch_own_parameters drawing globins_{defaults,text} nothing_selected \
  protein_every_file ruler_from_sixty; do same $run P; done
for run in primates_{all_gaps,short}; do same $run D; done
same batch_concatenated P --match=order
exit $wrong
