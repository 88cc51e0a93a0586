#!/usr/bin/env bash
# docs/messages.md lists every message of trimora-run in the program's own words, and no other: bash run.sh SOURCE
set -euo pipefail
cd "$1"
words=src/trimora_run/words.h
sed -n 's/^inline constexpr W [a-z]* = "\(.*\)";$/\1/p' $words | sed 's/\\\\/\\/g; s/\\"/"/g' |
  diff - <(sed -n 's/^| `\(.*\)` | [^|]* | [^|]* |$/\1/p' docs/messages.md | sed 's/\\|/|/g')
for word in $(sed -n 's/^inline constexpr W \([a-z]*\) = .*/\1/p' $words); do
  grep -q "words::$word\b" src/trimora_run/*.cpp || { echo "words::$word is never said"; exit 1; }
done
