#!/usr/bin/env bash
# Format all code; with --check only say what is not formatted, and fail.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need clang-format
cd "$project"
how=(-i)
[ "${1:-}" = --check ] && how=(--dry-run -Werror)
find src include python r web/engine tests bench fuzz scripts examples \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 clang-format "${how[@]}"
