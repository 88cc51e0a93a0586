# Sourced by the other scripts: where the project stands, which tools are there, how a preset is built.

installing=${CI:-false} # run.sh and test.sh install what is missing, and so does CI; the other scripts name it
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# need PACKAGE...: the Debian or Ubuntu packages without which the caller cannot go on. Installs those that are missing
# when it should and may (as root, or with sudo), and otherwise says which they are.
need() {
  local missing=() package
  for package in "$@"; do present "$package" || missing+=("$package"); done
  [ ${#missing[@]} -eq 0 ] && return
  [ "$installing" = true ] || give_up "${missing[@]}"
  echo "Installing: ${missing[*]}" >&2
  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null && root=(sudo) || give_up "${missing[@]}"
  fi
  command -v apt-get >/dev/null || give_up "${missing[@]}"
  "${root[@]}" apt-get update -qq >&2 || true # an old list may do
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2 || give_up "${missing[@]}"
}

# Whether what a package brings is there, wherever it came from.
present() {
  case $1 in
    g++) command -v c++ >/dev/null ;;
    googletest) [ -e /usr/src/googletest/CMakeLists.txt ] ;;
    libc++-dev) echo "#include <version>" | clang++ -stdlib=libc++ -fsyntax-only -x c++ - 2>/dev/null ;;
    libc++abi-dev) [ -e "$(clang++ -print-file-name=libc++abi.so)" ] ;;
    locales) [ -e /usr/share/i18n/locales/tr_TR ] ;;
    ghostscript) command -v gs >/dev/null ;;
    hmmer) command -v hmmalign >/dev/null ;;
    emboss) command -v tranalign >/dev/null ;;
    iqtree) command -v iqtree2 >/dev/null ;;
    mrbayes) command -v mb >/dev/null ;;
    raxml) command -v raxmlHPC >/dev/null ;;
    emscripten) command -v em++ >/dev/null ;;
    nodejs) command -v node >/dev/null ;;
    dpkg-dev) command -v dpkg-shlibdeps >/dev/null ;;
    zlib1g-dev) header zlib.h ;;
    libz-mingw-w64-dev) [ -e /usr/x86_64-w64-mingw32/lib/libz.a ] ;;
    libgtest-dev) header gtest/gtest.h ;;
    libbenchmark-dev) header benchmark/benchmark.h ;;
    g++-aarch64-linux-gnu) command -v aarch64-linux-gnu-g++ >/dev/null ;;
    g++-mingw-w64-x86-64-posix) command -v x86_64-w64-mingw32-g++-posix >/dev/null ;;
    qemu-user-static) command -v qemu-aarch64-static >/dev/null ;;
    libclang-rt-*-dev) [ -e "$(clang -print-resource-dir)/include/fuzzer" ] ;;
    llvm) command -v llvm-cov >/dev/null ;;
    *) command -v "$1" >/dev/null || dpkg-query -W -f '${Status}' "$1" 2>/dev/null | grep -q 'ok installed' ;;
  esac
}

header() {
  echo "#include <$1>" | c++ -std=c++20 -fsyntax-only -x c++ - 2>/dev/null
}

give_up() {
  echo "Please install these packages (Debian and Ubuntu names) and try again: $*" >&2
  exit 2
}

# configure ARGUMENT...: cmake, and anew where the build folder was made for another place.
configure() {
  local log
  log=$(cmake "$@" 2>&1) || log=$(cmake --fresh "$@" 2>&1) || { echo "$log" >&2; exit 2; }
}

# build FOLDER [TARGET]: quiet unless it fails.
build() {
  local log
  log=$(cmake --build "$1" --parallel "$(nproc)" ${2:+--target "$2"} 2>&1) || { echo "$log" >&2; exit 2; }
}

# make_preset PRESET [TARGET]: configure and build it; from any folder.
make_preset() {
  (cd "$project" && configure --preset "$1" && build "build/$1" "${2:-}")
}

# pass PRESET [ARGUMENT...]: and pass its tests, or those that the arguments choose, as ctest takes them.
pass() {
  make_preset "$1" || return
  ctest --test-dir "$project/build/$1" --output-on-failure --parallel "$(nproc)" --no-tests=error --progress "${@:2}"
}

# webassembly COMMAND...: with what CMake and Emscripten need for the preset `web`, also where another node than Debian's
# comes first on the PATH.
webassembly() {
  CMAKE_TOOLCHAIN_FILE=$(em-config EMSCRIPTEN_ROOT)/cmake/Modules/Platform/Emscripten.cmake NODE_PATH=/usr/share/nodejs "$@"
}

# browse ARGUMENT...: Chromium without a window, as a new user whose profile stays in the folder where this is called.
browse() {
  chromium --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking \
    --disable-component-update --disable-sync --user-data-dir="$(mktemp -d "$PWD/profile.XXXXXX")" "$@" 2>/dev/null
}
