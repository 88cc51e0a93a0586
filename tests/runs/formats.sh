#!/usr/bin/env bash
# Every example in every format, as Biopython, EMBOSS, ape, Clustal Omega and HMMER write it and as it may come from elsewhere,
# has the names, letters, order and selection of the FASTA file: bash formats.sh SOURCE [EMULATOR ...] PROGRAM.
# Skipped (77) where one of these is missing.
set -euo pipefail
examples=$1/examples
shift
program=("$@")
python=${PYTHON:-/usr/bin/python3}

missing=()
for tool in seqret clustalo hmmbuild hmmalign Rscript iconv; do command -v $tool >/dev/null || missing+=("$tool"); done
"$python" -c 'import Bio' 2>/dev/null || missing+=(Biopython)
Rscript -e 'library(ape)' >/dev/null 2>&1 || missing+=(ape)
[ ${#missing[@]} -eq 0 ] || { echo "Skipped: the formats of other programs, without ${missing[*]}" && exit 77; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0 files=0

# result FILE TYPE: the trimmed alignment, and all letters with the positions that are selected, whatever their case.
result() {
  "${program[@]}" "$1" -t="$2" -b5=h -k=y -p=n </dev/null >log 2>&1 || { cat log; return 0; }
  tr a-z A-Z <"${1%.gz}-tr.fasta"
  sed 's/^>..;/>/' "${1%.gz}-trMask" | tr a-z A-Z
  rm "${1%.gz}"-tr*
}

# same FASTA TYPE FILE...: each file gives what the FASTA file gives.
same() {
  local expected
  expected=$(result "$1" "$2")
  [[ $expected == '>'*'#'* ]] || { echo "$1: nothing is selected" && failures=$((failures + 1)); }
  for file in "${@:3}"; do
    files=$((files + 1))
    [ "$(result "$file" "$2")" = "$expected" ] || { echo "$file is not read as $1" && failures=$((failures + 1)); }
  done
  rm "${@:3}"
}

# variants FILE: with other line ends, in other codes, compressed in two members.
variants() {
  sed 's/$/\r/' "$1" >"$1.crlf"
  tr '\n' '\r' <"$1" >"$1.cr"
  { printf '\xef\xbb\xbf' && cat "$1"; } >"$1.bom"
  iconv -f UTF-8 -t UTF-16 "$1" >"$1.utf16"
  sed '3!s/$/\n/' "$1" >"$1.empty-lines"
  { head -n 7 "$1" | gzip && tail -n +8 "$1" | gzip; } >"$1.two-members.gz"
}

for example in globins:p drawing:p primates_mt:d genes/nd4:d genes/nd5:d genes/trna:d; do
  IFS=: read -r path type <<<"$example"
  name=${path##*/}
  # Names that every format can hold.
  sed '/^>/s/^\(>[^ ]\{1,10\}\).*/\1/; /^>/!s/ //g' "$examples/$path.fas" >"$name.fas"
  variants "$name.fas"
  "$python" - "$name" "$type" <<'END'
import sys
from Bio import AlignIO
name, kind = sys.argv[1:]
rows = AlignIO.read(name + ".fas", "fasta")
for row in rows:
    row.annotations["molecule_type"] = {"p": "protein", "d": "DNA"}[kind]
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
  # By hand: PAML with names on lines of their own, and as other programs begin their CLUSTAL.
  { echo " $(grep -c '>' "$name.fas") $(sed -n '2,/^>/{/^>/!p}' "$name.fas" | tr -d '\n' | wc -c)"; sed 's/^>//' "$name.fas"; } >"$name.paml"
  for header in "MUSCLE (3.8) multiple sequence alignment" "Kalign (2.0) alignment in ClustalW format" \
    "PROBCONS version 1.12 multiple sequence alignment" "CLUSTAL FORMAT for T-COFFEE Version_11, CPU=0.0 sec"; do
    sed "1s/.*/$header/" "$name.biopython.clustal" >"$name.clustal.${header%% *}.$(wc -c <<<"$header")"
  done
  for form in biopython.clustal biopython.nexus biopython.phylip biopython.stockholm emboss.msf; do
    sed 's/$/\r/' "$name.$form" >"$name.$form.crlf"
  done
  mv "$name.fas" expected
  same expected "$type" "$name".*
done

# These align anew: their own FASTA is what counts. hmmalign's insert columns are the same in one block and in several.
cp "$examples/globins.fas" globins.fas
for form in fasta clustal msf phylip stockholm; do clustalo -i globins.fas --outfmt=$form -o clustalo.$form; done
clustalo -i globins.fas --outfmt=clustal --residuenumber --wrap=50 -o clustalo.numbers
same clustalo.fasta p clustalo.{clustal,numbers,msf,phylip,stockholm}
hmmbuild globins.hmm globins.fas >/dev/null
sed '/^>/!s/-//g' globins.fas >unaligned.fas
for form in Stockholm Pfam; do hmmalign --outformat $form globins.hmm unaligned.fas >hmmalign.$form; done
same hmmalign.Pfam p hmmalign.Stockholm

echo "$files files, $failures differ"
[ $failures = 0 ] && [ $files -gt 150 ]
