#!/usr/bin/env bash
# What is left when a run is ended from outside, and where results go that are no plain files: bash interrupted.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
set -m # so that what runs in the background hears SIGINT
ulimit -c 0

fail() { echo "$*" >&2; exit 1; }
fresh() { # a gene with an older table and page, and a pipe from which a second gene would come
  rm -rf "$scratch"/*
  printf '>a\nACGTACGTACGT\n>b\nACGTACGTACGT\n>c\nACGTACGTACGA\n>d\nACGTACGTACGA\n' | tee one.fas >gene
  mkfifo two.fas
  echo old >table
}
state() { find . -type f | sort | xargs md5sum; }
trim() { # in the background
  exec "$program" one.fas two.fas -t=D -p=n -b4=2 -c=y --match=name --min-species=1 --into=out --table=table --quiet
}
wait_for() { for _ in $(seq 500); do [ -e "$1" ] && return; sleep 0.02; done; fail "no $1"; }

# A signal: nothing unfinished is left, nothing old is gone, and the status tells the signal.
for signal in INT QUIT TERM HUP PIPE XCPU USR1 USR2; do
  fresh
  trim &
  wait_for out/one.fas-tr.fasta
  [ -e table.part1 ] && [ -e out/supermatrix.left_out.tsv.part1 ] || fail "there is nothing unfinished yet"
  kill -s $signal $!
  status=0
  wait $! || status=$?
  [ $status -eq $((128 + $(kill -l $signal))) ] || fail "$signal: status $status"
  [ "$(find . -type f | sort | xargs)" = "./gene ./one.fas ./out/one.fas-tr.fasta ./table" ] || fail "$signal: left $(find . -type f)"
  [ "$(cat table)" = old ] || fail "$signal: the old table is gone"
done

# One that was to be ignored is ignored: nohup.
fresh
(trap '' HUP; trim) &
wait_for out/one.fas-tr.fasta
kill -s HUP $!
sed 's/A/C/' gene >two.fas
wait $! || fail "HUP ends a run under nohup"
[ "$(wc -l <table)" -eq 3 ] || fail "HUP: no table"

# What a killed run leaves is no alignment of the next one.
fresh
rm two.fas
cp gene one.fas-tr.fasta.part1
"$program" . -t=D -p=n -s=n -b4=2 --table=table | grep -q '^1 result of an earlier run left out$' || fail "unfinished files are read"
[ "$(cut -f 1 table | xargs)" = "alignment ./gene ./one.fas" ] || fail "$(cat table)"

# No room: the run says so, and the old file stays.
limited() { (ulimit -f 1; exec "$@"); }
fresh
{ printf '>a\n'; head -c 9999 /dev/zero | tr '\0' A; printf '\n>b\n'; head -c 9999 /dev/zero | tr '\0' A; } >long.fas
echo old >long.fas-tr.fasta
before=$(state)
limited "$program" long.fas -t=D -p=n --quiet 2>said && fail "ulimit: status 0"
grep -q '^trimora-run: long.fas: long.fas-tr.fasta could not be written: ' said || fail "ulimit: $(cat said)"
rm said
[ "$(state)" = "$before" ] || fail "ulimit: $(find .)"
if unshare -rm true 2>/dev/null; then
  # shellcheck disable=SC2016
  unshare -rm bash -c 'mkdir small && mount -t tmpfs -o size=12k none small && cd small && ! "$1" ../long.fas -t=D --into=. --quiet &&
    [ "$(find . -type f -name "*.part*" -o -type f -size -2)" = "" ]' - "$program" 2>said || fail "full disk: $(cat said)"
  grep -q 'could not be written: No space left on device' said || fail "full disk: $(cat said)"
fi

# Links are followed, also where nothing is at their end yet; modes stay; pipes and devices are written to as they are.
fresh
mkdir far
echo old >far/there
chmod 640 far/there
ln -s far/there table2
ln -s far/new cells
mkfifo page
cat page >read &
"$program" one.fas -t=D -p=n -b4=2 -c=y --match=name --into=out --table=table2 --occupancy=cells --overview=page --quiet
wait $!
[ -L table2 ] && [ "$(stat -c %a far/there)" = 640 ] && grep -q one.fas far/there || fail "a link is not followed"
[ -L cells ] && grep -q one.fas far/new || fail "a link to nothing is not followed"
[ -p page ] && tail -n 1 read | grep -q '</html>' || fail "a pipe is not written to"
"$program" one.fas -t=D -p=n -b4=2 --into=out --table=/dev/null --quiet && [ -c /dev/null ] || fail "/dev/null"
"$program" one.fas -t=D -p=n -b4=2 --into=out --table=/dev/stdout --quiet | grep -q one.fas || fail "/dev/stdout"
[ "$(find . -name '*.part*')" = "" ] || fail "left: $(find . -name '*.part*')"
