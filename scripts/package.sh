#!/usr/bin/env bash
# Build the packages in build/packages: a .tar.gz, for Windows a .zip, and three .deb: the programs, the library, and what is
# needed to build with it; a wheel for Python and a source package for R. The page is in them when scripts/web.sh has made it,
# and so is the package for npm. Where lintian is installed, it has to accept each .deb.
# The .deb use the system's libraries, as Debian asks: their corrections reach the programs without a new package. In
# the .tar.gz and the .zip the programs are linked statically: they run on any Linux of the same processor, on any Windows.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ g++-mingw-w64-x86-64-posix cmake make zlib1g-dev libz-mingw-w64-dev dpkg-dev file gzip
cd "$project"
packages=build/packages
rm -rf $packages
umask 022 # the folders in the packages are for all to read

# The same source gives the same packages: their time is that of the last commit.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || date +%s)}
export SOURCE_DATE_EPOCH

# pack GENERATOR FOLDER OPTION...
pack() {
  local log
  configure -B "$2" "${@:3}"
  build "$2"
  log=$(cpack --config "$2/CPackConfig.cmake" -G "$1" -B "$PWD/$packages" 2>&1) || { echo "$log" >&2; exit 2; }
}

pack TGZ build/release --preset release
flags() { # without those that hold paths
  DEB_BUILD_MAINT_OPTIONS="hardening=+all reproducible=-all" DEB_CXXFLAGS_MAINT_STRIP=-g dpkg-buildflags --get "$1"
}
pack DEB build/package-debian --preset release -DTRIMORA_STATIC=OFF -DCMAKE_INSTALL_PREFIX=/usr \
  -DCMAKE_CXX_FLAGS="$(flags CXXFLAGS) $(flags CPPFLAGS)" \
  -DCMAKE_EXE_LINKER_FLAGS="$(flags LDFLAGS)" -DCMAKE_SHARED_LINKER_FLAGS="$(flags LDFLAGS)"
# cpack has a new library made known by scripts, as Debian no longer does.
for library in $packages/libtrimora[0-9]*.deb; do
  dpkg-deb -R "$library" $packages/library
  rm $packages/library/DEBIAN/post{inst,rm}
  echo "activate-noawait ldconfig" >$packages/library/DEBIAN/triggers
  dpkg-deb --root-owner-group -b $packages/library "$library" >/dev/null
  rm -r $packages/library
done
pack ZIP build/windows --preset windows
bash tests/install/links.sh $packages/_CPack_Packages
rm -rf $packages/_CPack_Packages

if command -v lintian >/dev/null; then
  lintian --fail-on error,warning $packages/*.deb
else
  echo "lintian is not installed: the packages were not judged." >&2
fi
wheel=$(scripts/python.sh --wheel)
tarball=$(scripts/r.sh --tarball)
cp "$wheel" "$tarball" $packages
[ ! -d build/web/package ] || npm pack --silent build/web/package --pack-destination $packages >/dev/null
[ -e build/web/trimora.html ] || echo "The page has not been made (scripts/web.sh): the packages are without it." >&2
for package in "$project/$packages"/*; do echo "$package"; done
