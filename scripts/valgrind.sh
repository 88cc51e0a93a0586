#!/usr/bin/env bash
# One run of each kind under valgrind: no wrong access, nothing read before it was written, nothing left unfreed.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make valgrind
cd "$project"
folder=$project/build/valgrind # linked dynamically, since valgrind looks into the functions of the library
configure -S . -B "$folder" -DCMAKE_CXX_FLAGS="-O1 -g" -DTRIMORA_STATIC=OFF
build "$folder" trimora

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
cp -R examples "$work"
cd "$work"
printf '>a\nACGT\n>b\nACG\n' >ragged.fas
printf '>P1;a\n\nACGT*\n>X' >cut.pir
printf '>a\nA\200\0\r-C\n>b\nac\0\r-C' >bytes.fas
printf 'ragged.fas\nmissing.fas\nexamples/globins.fas\n' >paths.txt
mkdir folder

everything='-s=y -k=y -d=y -n=y -u=y'
menus='b\n1\n30\n2\n040\n4\nx\nz\ne\n.menu\nm\ns\np\nz\nk\nd\nn\nu\na\nc\nw\nm\ng\nt\ng\no\nmissing\no\nexamples/globins.pir\n'
count=0
while IFS='|' read -r arguments script; do # arguments, and what is typed into the menus
  read -r -a arguments <<<"$arguments"
  status=0
  printf '%b' "$script" | valgrind --quiet --error-exitcode=99 --leak-check=full --show-leak-kinds=all \
    --errors-for-leak-kinds=all --log-file=log \
    "$folder/trimora" "${arguments[@]}" >/dev/null 2>errors || status=$?
  if [ $status -ne 1 ] || grep -qv "^trimora: " errors || [ -s log ]; then
    printf 'status %s of: trimora %s\n' $status "${arguments[*]}" >&2
    cat errors log >&2
    exit 1
  fi
  count=$((count + 1))
done <<EOT
examples/globins.fas -p=y
examples/globins.pir $everything -p=t -b5=h -b3=2 -b4=2
examples/globins.fas $everything -p=s -b2=0 -b5=a -e=sixsix -v=1
examples/primates_mt.fas $everything -p=y -t=C -b4=5
examples/primates_mt.pir $everything -p=t -t=D -b6=n
examples/batch/paths.txt $everything -p=s -t=D -a=y -c=y -w=y
examples/batch/paths.txt|${menus}q\n
examples/globins.fas|${menus}
|o\nexamples/globins.fas\ng\nq
bytes.fas $everything -p=y -b5=a -b3=0 -b4=2
missing.fas -p=n
folder -p=n
ragged.fas -p=n
cut.pir -p=n
paths.txt -p=n -a=y
examples/globins.fas -e=/no/x
EOT
echo "$count runs under valgrind: nothing wrong, nothing left"
