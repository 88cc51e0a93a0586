#!/usr/bin/env bash
# Build the program and run it: scripts/run.sh [FILE [-X=VALUE ...]]
# Without arguments it trims the example alignment and says what it wrote.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make
(cd "$project" && configure --preset release)
build "$project/build/release"
trimora=$project/build/release/trimora

if [ $# -gt 0 ]; then
  exec "$trimora" "$@" # its exit status is 1, as always
fi

example=$project/build/example
mkdir -p "$example"
cp "$project/examples/globins.fas" "$example"
cd "$example"
rm -f globins.fas-tr globins.fas-tr.htm
echo "\$ trimora globins.fas -p=y"
"$trimora" globins.fas -p=y || true # the exit status is 1 at every end
for file in globins.fas-tr globins.fas-tr.htm; do
  [ -s "$file" ] || { echo "$example/$file was not written" >&2; exit 2; }
done
echo "Written:"
echo "  $example/globins.fas-tr      the selected blocks"
echo "  $example/globins.fas-tr.htm  the report"
echo "Open the report in a browser: xdg-open '$example/globins.fas-tr.htm'"
