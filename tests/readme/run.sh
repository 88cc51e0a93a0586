#!/usr/bin/env bash
# A new user with nothing but the packages (scripts/package.sh) follows the documents in an empty folder, the README first.
#
# Each command of the console blocks runs in its turn in one shell, has to end with 0 and to print what is shown below it;
# "..." stands for lines in front, and where nothing is shown anything may be printed. Links in the documents lead somewhere.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/tools.sh"
need iqtree raxml fasttree phyml mrbayes seqkit seqtk emboss mafft ghostscript snakemake make
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
# The examples in other languages, with the packages for them; scripts/r.sh runs those in R, the tests in python/ its README.
blocks() { # LANGUAGE DOCUMENT: its blocks in it, each with a NUL after it; they may be indented
  awk -v begin="^ *\`\`\`$1\$" '$0 ~ begin {inside = 1; next} /^ *```$/ {if (inside) printf "%c", 0; inside = 0} inside' "$project/$2"
}
gives() { # DOCUMENT LINE COMMAND...: prints this line among others
  "${@:3}" >"$folder/printed" 2>&1 && grep -qxF -- "$2" "$folder/printed" && return
  echo "$1: not printed: $2"; cat "$folder/printed"; exit 1
}
cp "$project/examples/globins.fas" .
python3 -m zipfile -e "$project"/build/packages/trimora-*.whl "$folder/python"
blocks python README.md | tr -d '\0' | PYTHONPATH=$folder/python /usr/bin/python3
gives README.md "45 145" cat globins.phy
if [ -e "$(echo "$project"/build/packages/trimora-*.tgz)" ]; then
  mkdir -p node_modules/trimora
  tar -xf "$project"/build/packages/trimora-*.tgz --strip-components=1 -C node_modules/trimora
  { echo 'import { readFileSync } from "node:fs"; const bytes = readFileSync("globins.fas");'
    blocks js README.md | tr -d '\0' | sed 's/^write(.*)/console.log(new TextDecoder().decode(&))/'; } >example.mjs
  gives README.md "45 145" node example.mjs
  while IFS= read -r -d '' block; do
    echo "$block" >example.mjs
    case $block in
      *'run }'*) gives web/engine/README.md ">MYG_ESCGI" node example.mjs ;;
      *sel.columns*) gives web/engine/README.md "145 [ [ 2, 147 ] ]" node example.mjs ;;
    esac
    count=$((count + 1))
  done < <(blocks js web/engine/README.md)
fi
# The workflow, in a project with the three genes; tests/workflow has a cluster.
ln -s system/usr/share/trimora "$folder/trimora"
mkdir project && ln -s . project/my-project
cp -R "$project/examples/genes" project
(cd project && ls genes/*.fas | tee paths.txt >genes.txt)
for document in workflow/README.md config/README.md; do
  while IFS= read -r -d '' block; do
    [[ $block != *slurm* ]] || continue
    block=${block/--config .../'--config paths=paths.txt options="-t=D -a=y -p=n --partitions"'}
    (cd project && HOME=$folder && eval "set -e; $block") </dev/null >"$folder/printed" 2>&1 ||
      { echo "$document: failed: $block"; cat "$folder/printed"; exit 1; }
    count=$((count + 1))
  done < <(blocks sh "$document")
done
blocks python workflow/README.md | tr -d '\0' | sed "s|/usr/|$folder/system/usr/|" >project/Snakefile
(cd project && snakemake --cores 2 genes.tree) >"$folder/printed" 2>&1 || { echo "workflow/README.md:"; cat "$folder/printed"; exit 1; }
[ -s project/genes.tree ] && [ -s project/results/paths.txt/occupancy.tsv ]
# The rule for make.
blocks make docs/scripts.md | tr -d '\0' >Makefile
cp examples/genes/nd4.fas . && make -s nd4.fas-tr.fasta && [ -s nd4.fas-tr.fasta ]
[ "$count" -gt 0 ] && echo "$count commands do what the documents show."
