#!/usr/bin/env bash
# Build the wheel of the Python package into build/python, install it into an environment of its own, and test it there: its
# tests, the examples in its help, its types. With --wheel only build it.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make zlib1g-dev python3-dev python3-pip python3-venv python3-setuptools python3-wheel python3-pybind11
python=/usr/bin/python3 # Debian's, whatever else is on the PATH: it is the one that those packages are for
cd "$project"
out=$project/build/python
mkdir -p "$out"
rm -rf "$out"/*.whl "$out"/base/lib* # what is no longer in the source
log=$($python -m pip wheel --quiet --no-build-isolation --no-deps --no-index --wheel-dir "$out" python/ 2>&1) ||
  { echo "$log" >&2; exit 2; }
[ "${1:-}" != --wheel ] || { echo "$out"/*.whl; exit; }

need python3-pytest python3-numpy python3-biopython mypy
rm -rf "$out/venv"
$python -m venv --system-site-packages "$out/venv"
"$out/venv/bin/pip" install --quiet --no-index --no-deps "$out"/*.whl
$python - python/trimora/*.py* <<'END' # no newer syntax than that of the oldest Python that may run it
import ast, sys
for file in sys.argv[1:]:
    ast.parse(open(file, encoding="utf-8").read(), file, feature_version=(3, 9))
END
cd "$out" # so that the package is the one that was installed
venv/bin/python -m mypy --config-file "$project/python/pyproject.toml" -p trimora
venv/bin/python -m mypy.stubtest --mypy-config-file "$project/python/pyproject.toml" \
  --allowlist "$project/python/tests/stubtest.allow" trimora._core
venv/bin/python -m pytest -q -p no:cacheprovider "$project/python/tests"
