// What `trimora-run --help` says.
#pragma once

inline constexpr char help[] = R"(Usage: trimora-run FILE [-X=VALUE ...] [--OPTION ...]
Trims FILE, an alignment or a paths file (a list of alignments, one a line).
Example: trimora-run globins.fas -b5=h    writes globins.fas-tr, the selected
blocks, and globins.fas-tr.htm, the report, beside the alignment.
Exit status: 0 done, 1 failed or something is incomplete, 2 wrong usage.
  -t=P|D|C    type of sequence: protein, DNA, codons (default: by file)
  -b1=NUMBER  sequences for a conserved position: half + 1 (default) to b2
  -b2=NUMBER  sequences for a flank position: b1 to all (85 %)
  -b3=NUMBER  contiguous nonconserved positions at most: 0 to 32000 (8)
  -b4=NUMBER  length of a block at least: 2 to 32000; sets b0 too (10)
  -b0=NUMBER  length of an initial block at least: 2 to 32000 (10)
  -b5=N|H|A   allowed gap positions: none, with half, all (N)
  -b6=Y|N     use the similarity matrix, for proteins (Y)
  -e=TEXT     suffix of the files written, 1 to 5 characters (-tr)
  -s=Y|N      write the selected blocks (Y)              FILE-tr
  -p=Y|T|S|N  write the report: HTML, text, short, none (Y)  FILE-tr.htm ...
  -v=NUMBER   characters per line of the report: 50 to 32000 (60)
  -k=Y|N      write the mask (N)                         FILE-trMask
  -d=Y|N      write the PostScript map of the blocks (N) FILE-trPS
  -n=Y|N      write the nonconserved blocks (N)          FILE-trComp
  -u=Y|N      write the ungapped alignment (N)           FILE--
  -a=Y|N      batch: write the concatenated selected blocks (N)
  -c=Y|N      batch: write the concatenated input alignments (N)
  -w=Y|N      batch: write the concatenated ungapped alignments (N)
  --match=same|name|order  batch: concatenate sequences by order, whose names
              have to be the same (the default), by name, with ? where an
              alignment lacks one, or by order, whatever the names
  --name-end=CHARACTERS  with --match=name: the name of a species ends at the
              first of these, not at the first blank
  --partitions  with each concatenation: which columns are of which alignment,
              for RAxML (.partitions), IQ-TREE and MrBayes (.nex)
  --model=NAME  model named in .partitions (DNA; proteins: LG)
  --format=trimora|fasta|phylip|nexus  forms of the alignments written,
              several with commas; all but the default, trimora, add
              .fasta, .phy or .nexus
  --into=FOLDER  write everything there, not beside the alignments
  --columns   write what became of each column         FILE-tr.columns.tsv
  --table=FILE  write a line for each alignment: sizes, status, message
  --keep-going  batch: go on behind an alignment that fails
  --strict    every note makes the status 1 in the end
-b1 and -b2 take per cent of the sequences, too: -b1=60% -b2=95%
FILE may be -: zcat x.fas.gz | trimora-run - -t=D > out.fasta
)";
