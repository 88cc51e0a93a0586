#!/usr/bin/env bash
# The stored runs under valgrind: nothing is read before it was written. (Wrong access and what is never freed, `dev` finds.)
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make valgrind
pass valgrind
