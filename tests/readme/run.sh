#!/usr/bin/env bash
# A new user with nothing but the packages (scripts/package.sh) follows the documents in an empty folder, the README first.
#
# Each command of the console blocks runs in its turn in one shell, has to end with 0 and to print what is shown below it;
# "..." stands for lines in front, and where nothing is shown anything may be printed. Links in the documents lead somewhere.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/tools.sh"
need iqtree raxml fasttree phyml mrbayes seqkit seqtk emboss mafft ghostscript
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
bash "$project/tests/install/links.sh" "$project"/{*.md,docs,examples,workflow,config,web/engine}

for package in $(grep -oE '\btrimora[-_][0-9.]+[-_][a-z0-9_]+\.(deb|tar\.gz|zip)' "$project/README.md"); do
  [ -e "$project/build/packages/$package" ] || { echo "README.md names $package, which scripts/package.sh did not make"; exit 1; }
done
dpkg-deb -x "$project"/build/packages/trimora_*.deb "$folder/system" # as if it were installed
export PATH=$folder/system/usr/bin:$PATH OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1
mkdir "$folder/work"
cd "$folder/work"

command="" shown="" document="" count=0
follow() { # the command that has been read, with what is shown
  [ -n "$command" ] || return 0
  local status=0
  eval "${command//\/usr\//$folder/system/usr/}" </dev/null >"$folder/printed" 2>&1 || status=$?
  [ $status -eq 0 ] || { echo "$document: status $status: $command"; cat "$folder/printed"; exit 1; }
  [ -z "$shown" ] || case $shown in
    ...$'\n'*) printf '%s' "${shown#*$'\n'}" | diff - <(tail -n "$(($(wc -l <<<"$shown") - 2))" "$folder/printed") ;;
    *) printf '%s' "$shown" | diff - "$folder/printed" ;;
  esac || { echo "$document: shown <, printed >: $command"; exit 1; }
  command="" shown="" count=$((count + 1))
}
for document in README.md docs/{batches,scripts,files,programs}.md; do
  while IFS= read -r line; do
    case $line in
      '$ '*) follow; command=${line#??} ;;
      '> '*) command+=$'\n'${line#??} ;;
      '```') follow ;;
      *) shown+=$line$'\n' ;;
    esac
  done < <(sed -n '/^```console$/,/^```$/{/^```console$/!p}' "$project/$document")
done
# The examples in other languages, with the packages for them; scripts/r.sh runs that in R.
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/!p}" "$project/README.md"; }
cp "$project/examples/globins.fas" .
python3 -m zipfile -e "$project"/build/packages/trimora-*.whl "$folder/python"
block python | PYTHONPATH=$folder/python /usr/bin/python3
grep -q '^45 145$' globins.phy || { echo "README.md: the example in Python"; exit 1; }
if [ -e "$(echo "$project"/build/packages/trimora-*.tgz)" ]; then
  mkdir -p node_modules/trimora
  tar -xf "$project"/build/packages/trimora-*.tgz --strip-components=1 -C node_modules/trimora
  { echo 'import { readFileSync } from "node:fs"; const letters = readFileSync("globins.fas");'
    block js | sed 's/^new TextDecoder\(.*\);/console.log(new TextDecoder\1);/'; } >example.mjs
  node example.mjs >example.fas
  grep -q '^>' example.fas || { echo "README.md: the example in JavaScript"; exit 1; }
fi
[ "$count" -gt 0 ] && echo "$count commands do what the documents show."
