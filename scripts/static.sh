#!/usr/bin/env bash
# Look for faults in the code without running it: who includes whom, clang-tidy (.clang-tidy) and cppcheck
# (.cppcheck-suppressions).
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ clang clang-tidy cppcheck cmake make libbenchmark-dev
need "libclang-rt-$(clang -dumpversion | cut -d. -f1)-dev"
cd "$project"
folder=build/static # only configured: the database of compiler calls and the version's header
configure -S . -B $folder -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Release -DTRIMORA_BENCHMARKS=ON -DTRIMORA_FUZZ=ON
code=(src bench fuzz)

# A room includes itself and the rooms in front of it. The run driver sees as much as driver/, and is seen by as few.
echo "Rooms"
grep -rE '^ *# *include *["<]' src --include='*.h' --include='*.cpp' --include='*.in' | awk '
  BEGIN { split("ground input selection output batch driver trimora_run", order); for (k in order) room[order[k]] = k }
  function rank(path) {
    if (path ~ /^selection\/calculate[.]/) return room["driver"]
    sub(/\/.*/, "", path)
    return room[path]
  }
  {
    file = included = $0
    sub(/:.*/, "", file)
    sub(/^src\//, "", file)
    gsub(/^[^"<]*["<]|[">].*/, "", included)
    if (/include *</ && !rank(included)) next # of the standard library
    if (!rank(file) || !rank(included) || rank(included) > rank(file)) {
      print "src/" file " must not include " included
      turned = 1
    }
  }
  END { exit turned }'

echo "Headers by themselves"
(cd src && find . -name '*.h') | sed 's|^[.]/||' | while read -r header; do
  echo "#include \"$header\"" | clang++ -std=c++20 -fsyntax-only -Isrc -I$folder/generated -x c++ - ||
    { echo "src/$header does not compile by itself"; exit 1; }
done

echo "cppcheck"
cppcheck --quiet --enable=warning,style,performance,portability --inline-suppr --error-exitcode=1 --std=c++20 \
  --suppressions-list=.cppcheck-suppressions -I src -I $folder/generated "${code[@]}"

echo "clang-tidy"
log=$(find "${code[@]}" -name '*.cpp' -print0 |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p $folder 2>&1) ||
  { grep -v 'warnings.* generated\.$' <<<"$log"; exit 1; }
