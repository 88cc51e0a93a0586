#!/usr/bin/env bash
# Build and pass the tests: as users run the program, and with sanitizers and every check of the library. Those labelled `ci`,
# which take longer, are left to .ci/run.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

installing=true
need g++ cmake make zlib1g-dev libgtest-dev
pass tests -LE ci
pass dev -LE ci
# Why tests were skipped, if any were.
grep -ih '^skipped:' "$project"/build/{tests,dev}/Testing/Temporary/LastTest.log | sort -u || true
