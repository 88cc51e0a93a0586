#!/usr/bin/env bash
# Build the page in which the program runs, build/web/trimora.html, and say how to open it: scripts/web.sh [--test]
# With --test, pass the tests of the engine in Node and of the page in Chromium and Firefox.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

testing=false
[ $# -eq 1 ] && [ "$1" = --test ] && testing=true
[ $# -eq 0 ] || $testing || { echo "usage: scripts/web.sh [--test]" >&2; exit 2; }

installing=true
need emscripten nodejs npm cmake make
if $testing; then need chromium firefox-esr g++; fi
folder=$project/build/web
webassembly make_preset web

# quietly COMMAND...: what it says only when it fails.
quietly() {
  local log
  log=$("$@" 2>&1) || { echo "$log" >&2; exit 2; }
}

cd "$project/web"
if [ ! node_modules -nt package-lock.json ]; then
  quietly npm ci --ignore-scripts --no-audit --no-fund
  touch node_modules
fi
node build.mjs "$folder/package" "$folder/trimora.html"

if ! $testing; then
  echo "Written: $folder/trimora.html ($(wc -c <"$folder/trimora.html") bytes, everything in it)"
  echo "Open it in a browser, from here or from any web server: xdg-open '$folder/trimora.html'"
  exit
fi

echo "Types and rules"
node_modules/.bin/tsc -p .
node_modules/.bin/tsc -p tsconfig.node.json
node_modules/.bin/eslint .

echo "The engine: every stored run"
webassembly pass web

echo "The engine as npm installs it"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
quietly npm pack "$folder/package" --pack-destination "$work"
echo '{}' >"$work/package.json"
(cd "$work" && quietly npm install --no-audit --no-fund ./trimora-*.tgz &&
  node --input-type=module -e 'import { run } from "trimora"; process.exitCode = (await run({}, ["--help"])).status')

echo "The engine as a function, and the page"
make_preset release
TRIMORA_RUN=$project/build/release/trimora-run TRIMORA_PAGE=$folder/trimora.html node --test test/engine.test.mjs test/functions.test.mjs test/page.test.mjs
