"""The simulator against INDELible: check.py REPLICATES FILE. The same trees, models and indels, with equal rates.

Both make true alignments. What can be counted in them has to agree: the difference of each measure, averaged over replicates,
is written with its interval of 95 %, which should hold 0.
"""
import itertools
import random
import subprocess
import sys
import tempfile
from pathlib import Path
from statistics import mean

import simulate
from files import read_cells, read_fasta, true_alignment, write_table
from summarise import interval, shown

MODELS = {"dna": ("NUCLEOTIDE 1", "[submodel] HKY 3.0\n [statefreq] 0.28 0.20 0.30 0.22", 50),  # T C A G
          "protein": ("AMINOACID 1", "[submodel] LG", 30)}


def ours(cell, replicate):
    rnd = random.Random(f"check/{cell['kind']}/{replicate}").random
    model, tree = simulate.MODELS[cell["kind"]](), simulate.grow(cell, rnd)
    gene = simulate.Gene(cell, model, tree, rnd)
    tree.length = [length * gene.speed for length in tree.length]
    return tree, list(true_alignment(gene.letters(tree.name), gene.order()).values())


def indelible(cell, trees):
    type_, model, longest = MODELS[cell["kind"]]
    rate = cell["indels"] / 2
    text = f"[TYPE] {type_}\n[SETTINGS]\n [randomseed] 1\n [output] FASTA\n[MODEL] m\n {model}\n"
    text += f" [indelmodel] POW 1.7 {longest}\n [insertrate] {rate}\n [deleterate] {rate}\n"
    text += "".join(f"[TREE] t{i} {tree.newick()}\n[PARTITIONS] p{i} [t{i} m {cell['columns']}]\n"
                    for i, tree in enumerate(trees))
    text += "[EVOLVE]\n" + "".join(f"p{i} 1 o{i}\n" for i in range(len(trees)))
    with tempfile.TemporaryDirectory() as folder:
        (Path(folder) / "control.txt").write_text(text)
        subprocess.run(["indelible"], cwd=folder, check=True, capture_output=True)
        return [list(read_fasta((Path(folder) / f"o{i}_TRUE.fas").read_text()).values()) for i in range(len(trees))]


def measures(rows):
    pairs = [(a, b) for x, y in itertools.combinations(rows, 2) for a, b in zip(x, y) if a != "-" and b != "-"]
    runs = [len(list(run)) for row in rows for gap, run in itertools.groupby(row, lambda a: a == "-") if gap]
    letters = sum(len(row) - row.count("-") for row in rows)
    return {"different residues": sum(a != b for a, b in pairs) / len(pairs),
            "columns": len(rows[0]), "residues of a sequence": letters / len(rows),
            "gaps of a sequence": len(runs) / len(rows), "length of a gap": mean(runs),
            "share of A": sum(row.count("A") for row in rows) / letters}


if __name__ == "__main__":
    count, file = int(sys.argv[1]), Path(sys.argv[2])
    table = []
    for kind, columns in (("dna", 500), ("protein", 300)):
        cell = {**read_cells()["base"], "kind": kind, "columns": columns, "sigma": 0.0}
        made = [ours(cell, r) for r in range(count)]
        here = [measures(rows) for _, rows in made]
        there = [measures(rows) for rows in indelible(cell, [tree for tree, _ in made])]
        for name in here[0]:
            difference, width = interval([a[name] - b[name] for a, b in zip(here, there)])
            table.append([kind, name, count, *(shown(mean(one[name] for one in all_), 4) for all_ in (here, there)),
                          shown(difference, 4), shown(width, 4)])
    write_table(file, ["kind", "measure", "replicates", "here", "indelible", "difference", "difference_width"], table)
