#!/usr/bin/env bash
# Write what completions, manual page and documents say of the options of trimora-run, from its table of options; with
# --check only say what is stale, and fail.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make libgtest-dev
cd "$project"
configure --preset dev
build build/dev trimora-options
exec build/dev/tests/trimora-options "$@" .
