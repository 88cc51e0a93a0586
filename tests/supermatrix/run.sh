#!/usr/bin/env bash
# The supermatrix by name against an independent one: bash run.sh PROGRAM [COUNT]. 77: there is no Python.
set -euo pipefail
command -v python3 >/dev/null || exit 77
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
python3 "$here/check.py" "$1" "${2:-200}"
python3 "$here/batches.py" "$1" 1 "${2:-200}"
python3 "$here/codons.py" "$1" "${2:-200}"
