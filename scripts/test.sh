#!/usr/bin/env bash
# Build and pass all tests: with sanitizers and every check of the library, and as users run the program.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make libgtest-dev
cd "$project"
configure --preset dev
build build/dev
configure --preset release -B build/release-tests -DTRIMORA_TESTS=ON -DTRIMORA_WERROR=ON
build build/release-tests
for folder in build/release-tests build/dev; do
  ctest --test-dir "$folder" --output-on-failure --parallel "$(nproc)" --no-tests=error --progress
done
# Why tests were skipped, if any were.
grep -ih '^skipped:' build/*/Testing/Temporary/LastTest.log | sort -u || true
