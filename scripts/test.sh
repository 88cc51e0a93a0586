#!/usr/bin/env bash
# Build and pass all tests: as users run the program, and with sanitizers and every check of the library.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

installing=true
need g++ cmake make libgtest-dev
pass tests
pass dev
# Why tests were skipped, if any were.
grep -ih '^skipped:' "$project"/build/{tests,dev}/Testing/Temporary/LastTest.log | sort -u || true
