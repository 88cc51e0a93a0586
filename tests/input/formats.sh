#!/usr/bin/env bash
# Every example in every format, as Biopython, EMBOSS, ape, Clustal Omega and HMMER write it, gives the result of the FASTA
# file: tests/input/formats.sh TRIMORA-RUN PROJECT. Skipped (77) where one of these is missing.
set -euo pipefail
program=$(realpath "$1")
examples=$(realpath "$2")/examples
python=${PYTHON:-/usr/bin/python3}
for tool in seqret Rscript clustalo hmmbuild hmmalign; do command -v $tool >/dev/null || exit 77; done
"$python" -c 'import Bio' 2>/dev/null && Rscript -e 'library(ape)' >/dev/null 2>&1 || exit 77
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0 files=0

# result FILE TYPE: names and letters of the result, whatever the case.
result() {
  "$program" "$1" -t="$2" -b5=h >log 2>&1 || { cat log; return 1; }
  tr a-z A-Z <"$1-tr.fasta"
}

# same FASTA TYPE FILE...: each file gives what the FASTA file gives.
same() {
  local fasta=$1 type=$2 expected
  shift 2
  expected=$(result "$fasta" "$type")
  [ "$(grep -vc '>' <<<"$expected")" -gt 0 ] || { echo "$fasta: nothing is selected" && failures=$((failures + 1)); }
  for file; do
    files=$((files + 1))
    [ "$(result "$file" "$type")" = "$expected" ] || { echo "$file differs from $fasta" && failures=$((failures + 1)); }
  done
}

for example in globins.p.protein primates_mt.d.DNA; do
  IFS=. read -r name type molecule <<<"$example"
  # Names that every format can hold.
  sed '/^>/s/^\(>[^ ]\{1,10\}\).*/\1/; /^>/!s/ //g' "$examples/$name.fas" >"$name.fas"
  [ "$(grep '>' "$name.fas" | sort -u | wc -l)" = "$(grep -c '>' "$name.fas")" ]

  "$python" - "$name" "$molecule" <<'END'
import sys
from Bio import AlignIO
name, molecule = sys.argv[1:]
rows = AlignIO.read(name + ".fas", "fasta")
for row in rows:
    row.annotations["molecule_type"] = molecule
for form in "clustal", "nexus", "phylip", "phylip-sequential", "phylip-relaxed", "stockholm":
    AlignIO.write(rows, name + ".biopython." + form, form)
END
  for form in clustal msf nbrf nexus nexusnon phylip phylipnon fasta; do
    seqret -auto "$name.fas" "$form::$name.emboss.$form"
  done
  [ "$type" = p ] || Rscript - "$name" <<'END'
name <- commandArgs(TRUE)
rows <- ape::read.FASTA(paste0(name, ".fas"))
for (form in c("interleaved", "sequential")) ape::write.dna(as.matrix(rows), paste0(name, ".ape.", form), form)
for (blocks in c(TRUE, FALSE)) ape::write.nexus.data(rows, paste0(name, ".ape.", blocks, ".nex"), interleaved = blocks)
END
  same "$name.fas" "$type" "$name".biopython.* "$name".emboss.* $(compgen -G "$name.ape.*")
done

# These align anew: their own FASTA is what counts. hmmalign's insert columns are the same in one block and in several.
for form in fasta clustal msf phylip stockholm; do clustalo -i globins.fas --outfmt=$form -o clustalo.$form; done
clustalo -i globins.fas --outfmt=clustal --residuenumber --wrap=50 -o clustalo.numbers
same clustalo.fasta p clustalo.clustal clustalo.numbers clustalo.msf clustalo.phylip clustalo.stockholm
hmmbuild globins.hmm globins.fas >/dev/null
sed '/^>/!s/-//g' globins.fas >unaligned.fas
for form in Stockholm Pfam; do hmmalign --outformat $form globins.hmm unaligned.fas >hmmalign.$form; done
same hmmalign.Pfam p hmmalign.Stockholm

echo "$files files, $failures differ"
[ $failures = 0 ] && [ $files -gt 30 ]
