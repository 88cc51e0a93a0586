#!/usr/bin/env bash
# Build the R package into build/r/trimora_VERSION.tar.gz, with the sources of the library in it, and pass R CMD check
# without an error or a warning, the vignette and a comparison with trimora-run in it. With --tarball only build it.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ make zlib1g-dev r-base-dev r-cran-cpp11 r-cran-ape r-cran-phangorn r-cran-testthat r-cran-knitr r-cran-rmarkdown pandoc
cd "$project"
version=$(sed -n 's/^project(trimora VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
out=$project/build/r
package=$out/trimora
rm -rf "$package" "$out"/*.tar.gz "$out/example"
mkdir -p "$package"

cp -R r/trimora/. "$package"
sed "s/@VERSION@/$version/" r/trimora/DESCRIPTION.in >"$package/DESCRIPTION"
mkdir -p "$package/inst/extdata"
cp examples/globins.fas examples/primates_mt.fas examples/genes/*.fas "$package/inst/extdata"
library=$package/src/trimora
mkdir -p "$library/src"
cp -R include "$library"
cp -R src/ground src/input src/selection src/output src/batch src/library "$library/src"
rm -r "$library"/src/output/{page.*,overview} "$library"/src/batch/overview.* # the page is of the program alone
sed "s/@[A-Za-z_]*VERSION@/$version/" src/ground/version.h.in >"$library/src/ground/version.h"

# Every object by a rule of its own, with the flags that stand in CMakeLists.txt: neither can be said portably in a variable.
cd "$package/src"
objects=$(find trimora -name '*.cpp' | sort | sed 's/cpp$/o/')
flags=$(sed -n 's/^ *\(INTERFACE.*\)\?\(-f[a-z=-]*\)$/\2/p' "$project/CMakeLists.txt" | grep -v sanitize | paste -sd ' ')
[[ $flags == *-ffp-contract=off* ]] || { echo "CMakeLists.txt has no -ffp-contract=off in a line of its own" >&2; exit 2; }
{
  sed -e "s/@FLAGS@/$flags/" -e "s|@OBJECTS@|$(echo $objects)|" Makevars.in
  for object in bindings.o $objects; do
    printf '%s: %s\n\t$(COMPILE) -c %s -o $@\n' "$object" "${object%o}cpp" "${object%o}cpp"
  done
} >Makevars
rm Makevars.in ../DESCRIPTION.in

cd "$out"
export MAKEFLAGS="-j$(nproc)" _R_CHECK_FORCE_SUGGESTS_=true
R CMD build --no-manual trimora >build.log 2>&1 || { cat build.log >&2; exit 2; }
[ "${1:-}" != --tarball ] || { echo "$out"/*.tar.gz; exit; }

(cd "$project" && configure --preset release && build build/release trimora-run)
export TRIMORA_RUN=$project/build/release/trimora-run TRIMORA_EXAMPLES=$project/examples
R CMD check --no-manual trimora_*.tar.gz || { cat trimora.Rcheck/00install.out trimora.Rcheck/tests/*.Rout.fail >&2 || true; exit 1; }
status=$(tail -n 3 trimora.Rcheck/00check.log | grep '^Status')
[[ $status != *WARNING* && $status != *ERROR* ]] || exit 1
mkdir example # of the README
cp "$project/examples/globins.fas" example
sed -n '/^```r$/,/^```$/{/^```/!p}' "$project/README.md" >example/readme.R
(cd example && R_LIBS=$out/trimora.Rcheck Rscript readme.R && grep -q '^45 145$' globins.phy)
