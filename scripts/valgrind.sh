#!/usr/bin/env bash
# The stored runs under valgrind: no wrong access, nothing read before it was written, nothing left unfreed.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make valgrind
pass valgrind
