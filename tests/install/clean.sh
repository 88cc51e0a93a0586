#!/usr/bin/env bash
# Each package in a clean Debian, as a user installs it: bash clean.sh [ROOT]. As root; it fetches some hundred megabytes.
#
# The packages of build/packages are installed with what documents name and nothing else, and the first example of the
# document of each is run: the console block, or the block of its language in README.md. ROOT: a folder that debootstrap has
# filled before.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/tools.sh"
need debootstrap
scratch=$(mktemp -d)
root=${1:-$scratch/root}
trap 'rm -rf "$scratch"' EXIT
# The wheel is for the Python of the Debian that it was built on.
[ -e "$root/etc/debian_version" ] || debootstrap --variant=minbase "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$root" \
  >"$scratch/log" || { cat "$scratch/log"; exit 2; }
cp -R /etc/apt/. "$root/etc/apt" # where this machine gets its packages
rm -rf "$root/packages" "$root/work"
mkdir -p "$root/packages" "$root/work"
cp "$project"/build/packages/* "$root/packages"
cp "$project/examples/globins.fas" "$root/work"
for language in python r js; do
  sed -n "/^\`\`\`$language\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$project/README.md" >"$root/work/example.$language"
done

# inside NAME SCRIPT: in the root, from the folder of the examples
inside() {
  echo "== $1"
  chroot "$root" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    bash -euo pipefail -c "install() { apt-get install -y -qq --no-install-recommends \"\$@\" >/root/log 2>&1 || { cat /root/log; exit 1; }; }
    cd /work; $2" || { echo "$1: FAILED"; wrong=1; }
}
wrong=0
chroot "$root" apt-get update -qq

inside ".tar.gz" 'mkdir -p ~/.local
  tar -xf /packages/trimora-*-linux-*.tar.gz --strip-components=1 -C ~/.local
  ~/.local/bin/trimora-run globins.fas --into=tgz
  test -s tgz/globins.fas-tr.fasta; rm -r ~/.local'
inside "trimora.deb" 'install /packages/trimora_*.deb
  cp -r /usr/share/trimora/examples .
  trimora-run examples/globins.fas --into=results
  cmp results/globins.fas-tr.fasta tgz/globins.fas-tr.fasta'
inside "libtrimora.deb" 'install /packages/libtrimora*.deb g++ cmake make pkg-config
  cmake -S examples/library -B library >/root/log && cmake --build library >>/root/log || { cat /root/log; exit 1; }
  library/reliable globins.fas >library.fas; grep -q "^>" library.fas'
inside "wheel" 'install python3-venv python3-numpy
  python3 -m venv --system-site-packages ~/trimora-python
  ~/trimora-python/bin/pip install --quiet --no-index /packages/trimora-*.whl
  rm -f globins.phy; ~/trimora-python/bin/python example.python
  head -n 1 globins.phy | grep "^45 145$"; cp globins.phy python.phy'
inside "npm" 'install nodejs npm
  npm install --silent --no-audit --no-fund /packages/trimora-*.tgz
  { echo "import { readFileSync, writeFileSync } from \"node:fs\"; const bytes = readFileSync(\"globins.fas\");"
    sed "s/^write(\(.*\));/writeFileSync(\"npm.phy\", write(\1));/" example.js; } >example.mjs
  node example.mjs; cmp npm.phy python.phy'
inside "R" 'install r-base-dev r-cran-cpp11 zlib1g-dev
  R CMD INSTALL /packages/trimora_*.tar.gz >/root/log 2>&1 || { cat /root/log; exit 1; }
  rm -f globins.phy; Rscript example.r; cmp globins.phy python.phy
  Rscript -e "suppressMessages(library(trimora)); example(select_blocks, ask = FALSE, echo = FALSE)"'
exit $wrong
