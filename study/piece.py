"""One piece of the study: piece.py STAGE CELL FIRST COUNT FILE TRIMORA-RUN. The rows of replicates FIRST to FIRST + COUNT - 1.

Stage `pairs` trims the first gene with every combination of the parameters and counts pairs of residues. Stage `trees` makes
trees by FastTree, stage `iqtree` some by IQ-TREE. Every program runs with one thread; all replicates of a piece go through
the trimmer and through FastTree together, so that starting them costs little.
"""
import itertools
import os
import random
import subprocess
import sys
import tempfile
from pathlib import Path

from files import CODONS, HERE, fasta, phylip, read_cells, read_fasta, read_table, true_alignment, write_table
from measure import Branches, compare, pairs
from simulate import simulate

ALIGN = {"mafft": ["mafft", "--quiet", "--thread", "1", "--threadit", "0"],
         "linsi": ["mafft", "--quiet", "--thread", "1", "--threadit", "0", "--localpair", "--maxiterate", "100"]}
FASTTREE = {"dna": ["-nt", "-gtr"], "codons": ["-nt", "-gtr"], "protein": ["-lg"]}
IQTREE_VARIANTS = ["none", "classic", "half_5_51"]
GRID = [f"-b5={b5} -b4={b4} -b3={b3} -b2={b2}%" for b5, b4, b3, b2
        in itertools.product("nha", (2, 5, 10), (4, 8, 16), (51, 70, 85))]


def run(command, text=None):
    done = subprocess.run(command, input=text, text=True, capture_output=True, env={**os.environ, "LC_ALL": "C"})
    if done.returncode:
        raise SystemExit(f"{' '.join(map(str, command))}: {done.stderr}")
    return done.stdout


class Gene:
    """A gene that was simulated, as it is aligned: rows of letters, rows of places (None for a gap), and the true rows."""

    def __init__(self, cell, letters, order, speed):
        self.true, self.speed = true_alignment(letters, order), speed
        words = {name: "".join(a for a, _ in row) for name, row in letters.items()}
        unit = 3 if cell["kind"] == "codons" else 1
        if unit == 3:
            words = {name: "".join(CODONS[word[i:i + 3]] for i in range(0, len(word), 3)).replace("*", "X")
                     for name, word in words.items()}
        with tempfile.NamedTemporaryFile("w", suffix=".fas") as file:
            file.write(fasta(words))
            file.flush()
            aligned = read_fasta(run([*ALIGN[cell["aligner"]], file.name]))
        self.rows, self.places = {}, []
        for name, row in letters.items():
            rest = iter(row)
            cells = [next(rest) if a != "-" else ("-", None) for a in aligned[name] for _ in range(unit)]
            self.rows[name] = "".join(a for a, _ in cells)
            self.places.append([place for _, place in cells])
        self.columns = len(cells)


def replicates(cell, first, count):
    """{replicate: (the true tree, its genes)}"""
    made = {}
    for replicate in range(first, first + count):
        tree, genes = simulate(cell, replicate)
        made[replicate] = Branches(tree.newick()), [Gene(cell, *gene) for gene in genes]
    return made


def trim(program, cell, made, options):
    """{(replicate, gene): the columns selected}, from 0"""
    kind = {"dna": "D", "codons": "C", "protein": "P"}[cell["kind"]]
    with tempfile.TemporaryDirectory() as folder:
        folder, selected = Path(folder), {}
        (folder / "in").mkdir()
        for replicate, (_, genes) in made.items():
            for i, gene in enumerate(genes):
                (folder / "in" / f"{replicate}.{i}.fas").write_text(fasta(gene.rows))
        run([program, folder / "in", f"-t={kind}", *options.split(), "-s=n", "-p=n", "--columns", f"--into={folder}/out",
             "--quiet"])
        for file in (folder / "out").glob("*.columns.tsv"):
            lines = [line.split("\t") for line in file.read_text().splitlines()[1:]]
            replicate, i = file.name.split(".")[:2]
            selected[int(replicate), int(i)] = [int(line[0]) - 1 for line in lines if line[6]]
    return selected


def pick(rows, columns):
    return {name: "".join(text[i] for i in columns) for name, text in rows.items()}


def half_gaps(gene):
    """The columns with gaps in at most half of the sequences."""
    return [i for i, column in enumerate(zip(*gene.rows.values())) if 2 * column.count("-") <= len(column)]


def variants(program, cell, made, wanted):
    """{variant: {replicate: [rows of each gene]}}"""
    result = {"none": {r: [gene.rows for gene in genes] for r, (_, genes) in made.items()},
              "true": {r: [gene.true for gene in genes] for r, (_, genes) in made.items()},
              "half_gaps": {r: [pick(gene.rows, half_gaps(gene)) for gene in genes] for r, (_, genes) in made.items()}}
    for row in read_table(HERE / "settings.tsv"):
        if wanted and row["variant"] not in wanted:
            continue
        selected = trim(program, cell, made, row["options"])
        result[row["variant"]] = {r: [pick(gene.rows, selected[r, i]) for i, gene in enumerate(genes)]
                                  for r, (_, genes) in made.items()}
        if row["random"] == "yes":
            result["random_" + row["variant"]] = {
                r: [pick(gene.rows, at_random(gene, selected[r, i], f"{cell['cell']}/{r}/{i}"))
                    for i, gene in enumerate(genes)] for r, (_, genes) in made.items()}
    return {name: rows for name, rows in result.items() if not wanted or name in wanted}


def at_random(gene, selected, seed):
    """As many columns as were selected, in order."""
    rnd, columns = random.Random(seed).random, list(range(gene.columns))
    return sorted(columns.pop(int(rnd() * len(columns))) for _ in selected)


def together(genes):
    names = sorted(set().union(*genes))
    widths = [len(next(iter(gene.values()))) for gene in genes]
    return {name: "".join(gene.get(name, "-" * width) for gene, width in zip(genes, widths)) for name in names}


def fasttree(cell, alignments):
    """The trees of all alignments, by one run."""
    text = "".join(map(phylip, alignments))
    command = ["fasttree", *FASTTREE[cell["kind"]], "-quiet", "-nopr", "-n", str(len(alignments))]
    return run(command, text).splitlines() if alignments else []


def iqtree(cell, alignments):
    trees = []
    for rows in alignments:
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "a.phy"
            file.write_text(phylip(rows))
            model = "LG+G" if cell["kind"] == "protein" else "GTR+G"
            run(["iqtree2", "-s", file, "-m", model, "-B", "1000", "-T", "1", "-seed", "1", "-quiet", "-keep-ident"])
            trees.append((Path(folder) / "a.phy.treefile").read_text())
    return trees


def tree_rows(program, cell, first, count, infer, supported, wanted, sizes):
    made = replicates(cell, first, count)
    for variant, all_rows in variants(program, cell, made, wanted).items():
        for size in sizes:
            alignments = {r: together(genes[:size]) for r, genes in all_rows.items()}
            full = {r: rows for r, rows in alignments.items() if next(iter(rows.values()))}
            trees = dict(zip(full, infer(cell, list(full.values()))))
            for r, rows in alignments.items():
                genes = made[r][1][:size]
                row = [cell["cell"], r, size, variant, len(next(iter(rows.values()))), sum(gene.columns for gene in genes)]
                if r not in trees:
                    yield [*row, *[""] * 6]
                    continue
                found = compare(Branches(trees[r]), made[r][0], supported)
                found["length"] /= sum(gene.speed for gene in genes) / len(genes)
                yield [*row, f"{found['rf']:.4f}", *(found[key] for key in ("lost", "false", "believed", "false_believed")),
                       f"{found['length']:.3f}"]


def pair_rows(program, cell, first, count):
    made = replicates({**cell, "genes": 1}, first, count)
    scored = {r: pairs(genes[0].places) for r, (_, genes) in made.items()}
    for r, counts in scored.items():
        yield [cell["cell"], r, "none", len(counts), sum(a for a, _ in counts), sum(b for _, b in counts)]
    for options in [f"{options}{b6}" for options in GRID for b6 in ["", " -b6=n"][:1 + (cell["kind"] == "protein")]]:
        for (r, _), columns in sorted(trim(program, cell, made, options).items()):
            yield [cell["cell"], r, options, len(columns), *(sum(scored[r][i][k] for i in columns) for k in (0, 1))]


PAIRS = ["cell", "replicate", "options", "columns", "right", "wrong"]
TREES = ["cell", "replicate", "genes", "variant", "columns", "of", "rf", "lost", "false", "believed", "false_believed",
         "length"]

if __name__ == "__main__":
    stage, name, first, count, file, program = sys.argv[1:]
    cell, first, count = read_cells()[name], int(first), int(count)
    if stage == "pairs":
        write_table(Path(file), PAIRS, pair_rows(program, cell, first, count))
    elif stage == "trees":
        write_table(Path(file), TREES, tree_rows(program, cell, first, count, fasttree, 0.95, None, (1, cell["genes"])))
    elif stage == "iqtree":
        write_table(Path(file), TREES, tree_rows(program, cell, first, count, iqtree, 95, IQTREE_VARIANTS, (1,)))
