#!/usr/bin/env bash
# Build the programs and run trimora-run: scripts/run.sh [FILE [-X=VALUE ...]]
# Without arguments it trims the example alignment, as the README shows, and says what it wrote.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

installing=true
need g++ cmake make zlib1g-dev
echo "Building trimora and trimora-run in build/release: the first time this takes a minute." >&2
make_preset release
program=$project/build/release/trimora-run
[ $# -eq 0 ] || exec "$program" "$@"

folder=$project/build/example
mkdir -p "$folder/examples"
cp "$project/examples/globins.fas" "$folder/examples"
cd "$folder"
echo "\$ trimora-run examples/globins.fas -p=t"
"$program" examples/globins.fas -p=t
echo "Written, below $folder:"
echo "  examples/globins.fas-tr.fasta  the selected blocks"
echo "  examples/globins.fas-tr.txt    the report; without -p=t it is a page for the browser, globins.fas-tr.htm"
