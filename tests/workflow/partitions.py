"""Whether the columns that partitions.py FOLDER/*.partitions name are those of the files of each alignment."""
import pathlib
import re
import sys


def read(path):
    return ["".join(r.split("\n")[1:]).replace(" ", "") for r in pathlib.Path(path).read_text().split(">")[1:]]


header, *rows = [line.split("\t") for line in pathlib.Path(sys.argv[1], "table.tsv").read_text().splitlines()]
rows = [dict(zip(header, row)) for row in rows]
for name, suffix in ("fasta.txt-tr.seq", "-tr"), ("fasta.txt.seq", ""), ("fasta.txt--.seq", "--"):
    file = pathlib.Path(sys.argv[1], name)
    raxml = re.findall(r"^DNA, (\w+) = (\d+)-(\d+)$", pathlib.Path(f"{file}.partitions").read_text(), re.M)
    nexus = re.findall(r"^ *charset (\w+) = (\d+)-(\d+);$", pathlib.Path(f"{file}.nex").read_text(), re.M)
    alone = {row["partition"]: read(row["alignment"] + suffix) for row in rows}
    filled = [(partition, sequences) for partition, sequences in alone.items() if sequences[0]]
    assert raxml == nexus and len({partition.lower() for partition in alone}) == len(rows), (raxml, nexus, alone.keys())
    assert [(p, [text[int(a) - 1 : int(b)] for text in read(file)]) for p, a, b in raxml] == filled, name
for row in rows:
    trimmed = read(row["alignment"] + "-tr")
    assert (int(row["sequences"]), int(row["selected"])) == (len(trimmed), len(trimmed[0])), row
