#!/usr/bin/env bash
# The project of a user, examples/library, on an installed library: bash library.sh PROJECT PREFIX
#
# CMake and pkg-config find it wherever it was put, static and shared, and what is printed is what trimora-run prints.
set -euo pipefail
project=$1 prefix=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
libraries=$(dirname "$(find "$prefix" -name libtrimora.a)")
export LD_LIBRARY_PATH=$libraries PKG_CONFIG_PATH=$libraries/pkgconfig
alignment=$project/examples/globins.fas

"$prefix/bin/trimora-run" - -b5=h -b4=5 <"$alignment" >"$scratch/expected" 2>/dev/null
[ "$(wc -l <"$scratch/expected")" -gt 10 ]
# same HOW: the program made with it prints the same, and has to be told by the loader where the library is, or has not
same() {
  "$scratch/$1/reliable" "$alignment" 2>/dev/null | diff "$scratch/expected" - || { echo "$1: expected <, printed >"; exit 1; }
  ldd "$scratch/$1/reliable" | { grep -c "libtrimora.so.2 => $libraries/" || true; } | grep -qx "$2" ||
    { echo "$1: linked otherwise"; exit 1; }
}
for kind in static shared; do
  cmake -S "$project/examples/library" -B "$scratch/$kind" -DCMAKE_PREFIX_PATH="$prefix" \
    -DBUILD_SHARED_LIBS="$([ $kind = shared ] && echo ON || echo OFF)" >"$scratch/log" &&
    cmake --build "$scratch/$kind" >>"$scratch/log" || { cat "$scratch/log"; exit 1; }
done
same static 0
same shared 1
mkdir "$scratch/pkg-config"
eval "flags=($(pkg-config --cflags --libs trimora))" # a blank in a path comes escaped
c++ -std=c++17 "$project/examples/library/main.cpp" "${flags[@]}" -o "$scratch/pkg-config/reliable"
same pkg-config 1
# Only what the header declares can be seen.
strangers=$(nm -DC --defined-only "$libraries/libtrimora.so" | grep -v ' A ' |
  grep -vE ' (typeinfo (name )?for |vtable for )?trimora::[A-Za-z_]+(::~?[A-Za-z_]+)?(@|\[|\()' || true)
[ -z "$strangers" ] || { echo "visible in libtrimora.so: $strangers"; exit 1; }
