"""repeat.py CELL FIRST COUNT TRIMORA-RUN FOLDER, in study/: prints a digest of the letters and of the columns of each setting,
and fails where a distance is farther than TOLERANCE from the stored one."""
import hashlib
import sys
from pathlib import Path

sys.path.insert(0, ".")
import piece  # noqa: E402
from files import HERE, read_cells, read_table, write_table  # noqa: E402

TOLERANCE = 0.201  # of a distance from 0 to 1: one split of eight species exchanged for another


def digest(what):
    return hashlib.sha256(repr(what).encode()).hexdigest()[:16]


name, first, count, program, folder = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), sys.argv[4], Path(sys.argv[5])
cell = read_cells()[name]
made = piece.replicates(cell, first, count)
print("letters", digest([[([text.replace("-", "") for text in gene.rows.values()], gene.true) for gene in genes]
                         for _, genes in made.values()]), sep="\t")
print("aligned", digest([[gene.rows for gene in genes] for _, genes in made.values()]), sep="\t")
for row in read_table(HERE / "settings.tsv"):
    selected = piece.trim(program, cell, made, row["options"])
    print(row["variant"], digest(sorted(selected.items())), sep="\t")

write_table(folder / "rows.tsv", piece.TREES,
            piece.tree_rows(program, cell, first, count, piece.fasttree, 0.95, None, (1, cell["genes"])))
stored = {(row["replicate"], row["genes"], row["variant"]): row
          for row in read_table(HERE / "results" / "raw" / "trees" / f"{name}.000.tsv")}
for row in read_table(folder / "rows.tsv"):
    was = stored[row["replicate"], row["genes"], row["variant"]]
    far = bool(row["rf"]) != bool(was["rf"]) or (row["rf"] and abs(float(row["rf"]) - float(was["rf"])) > TOLERANCE)
    if row["columns"] != was["columns"] or far:
        print("otherwise than stored:", row, was)
