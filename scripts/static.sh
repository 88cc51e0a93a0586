#!/usr/bin/env bash
# Look for faults in the code without running it: who includes whom, what the library calls and keeps, clang-tidy
# (.clang-tidy) and cppcheck (.cppcheck-suppressions).
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ clang clang-tidy cppcheck cmake make zlib1g-dev
need "libclang-rt-$(clang -dumpversion | cut -d. -f1)-dev"
cd "$project"
folder=build/static # only configured: the database of compiler calls and the version's header
configure -S . -B $folder -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Release -DTRIMORA_UNITY=ON \
  -DTRIMORA_BENCHMARKS=ON -DTRIMORA_FUZZ=ON
code=(src bench fuzz)

# A room includes itself and the rooms in front of it; the faces include all rooms, and no other face. The public header is
# for everyone.
echo "Rooms"
[ ! -e src/trimora/trimora.h ] || { echo "src/trimora/trimora.h hides the public header"; exit 1; }
grep -rE '^ *# *include *["<]' src --include='*.h' --include='*.cpp' --include='*.in' | awk '
  BEGIN {
    split("ground input selection output batch", rooms)
    for (k in rooms) rank[rooms[k]] = k
    rank["trimora"] = rank["trimora_run"] = rank["library"] = faces = 6
  }
  {
    file = included = $0
    sub(/:.*/, "", file)
    sub(/^src\//, "", file)
    gsub(/^[^"<]*["<]|[">].*/, "", included)
    from = to = file
    sub(/\/.*/, "", from)
    to = included
    sub(/\/.*/, "", to)
    if (included == "trimora/trimora.h" || (/include *</ && !(to in rank))) next # or of the standard library
    if (!(from in rank) || !(to in rank) || rank[to] > rank[from] || (rank[to] == faces && to != from)) {
      print "src/" file " must not include " included
      turned = 1
    }
  }
  END { exit turned }'

# Nothing below the faces prints, ends the program, or keeps anything between calls: what the compiled library calls, and its
# variables, are the proof. It reads the standard input, where that is asked for.
echo "Silence"
make_preset release
library=build/release/libtrimora.a
loud=$(nm -C --undefined-only $library |
  grep -E ' U (_*(f|v|vf|d|vd)?printf(_chk)?|f?puts|f?putc|putchar|perror|write|stdout|stderr|_*exit|_Exit|quick_exit|abort|setlocale|s?rand)$|std::(basic_[io]*stream|[w]*(cout|cerr|clog))|ios_base::Init' |
  sort -u) || true
[ -z "$loud" ] || { echo "The library must not use $loud"; exit 1; }
kept=$(objdump -tC $library |
  sed -nE '/^[0-9a-f]+ .{5}[^d][ O] [.](data|bss|tdata|tbss)/{/[.]data[.]rel([.]ro|[.]local[.]DW[.]ref)/d;s/.*\t[0-9a-f]+ (.hidden )?//p}' | sort -u)
[ -z "$kept" ] || { echo "The library must not keep $kept"; exit 1; }

echo "Headers by themselves"
alone() { # HEADER FLAG...
  echo "#include \"$1\"" | clang++ "${@:2}" -fsyntax-only -x c++ - || { echo "$1 does not compile by itself"; exit 1; }
}
export -f alone
alone trimora/trimora.h -std=c++17 -Iinclude
(cd src && find . -name '*.h' -printf '%P\n') |
  xargs -P "$(nproc)" -I {} bash -c 'alone "$@"' - {} -std=c++20 -Iinclude -Isrc -I$folder/generated

echo "cppcheck"
cppcheck --quiet --enable=warning,style,performance,portability --inline-suppr --error-exitcode=1 --std=c++20 \
  --suppressions-list=.cppcheck-suppressions -I include -I src -I $folder/generated "${code[@]}"

# A room in one go, as it is compiled for release: its headers are read once, and its sources are headers to clang-tidy.
echo "clang-tidy"
log=$(sed -n 's/^ *"file": "\(.*\)",*$/\1/p' $folder/compile_commands.json | grep -v '/scripts/' | sort -u |
  xargs -d '\n' -n 1 -P "$(nproc)" clang-tidy --quiet -p $folder 2>&1) ||
  { grep -v 'warnings.* generated\.$' <<<"$log"; exit 1; }
