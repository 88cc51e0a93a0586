#!/usr/bin/env bash
# Look for faults in the code without running it: clang-tidy (.clang-tidy) and cppcheck (.cppcheck-suppressions).
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ clang clang-tidy cppcheck cmake make libbenchmark-dev
need "libclang-rt-$(clang -dumpversion | cut -d. -f1)-dev"
cd "$project"
folder=build/static # only configured: the database of compiler calls and the version's header
configure -S . -B $folder -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Release -DTRIMORA_BENCHMARKS=ON -DTRIMORA_FUZZ=ON
rooms=(src bench fuzz)

echo "cppcheck"
cppcheck --quiet --enable=warning,style,performance,portability --inline-suppr --error-exitcode=1 --std=c++20 \
  --suppressions-list=.cppcheck-suppressions -I src -I $folder/generated "${rooms[@]}"

echo "clang-tidy"
log=$(find "${rooms[@]}" -name '*.cpp' -print0 |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p $folder 2>&1) ||
  { grep -v 'warnings.* generated\.$' <<<"$log"; exit 1; }
