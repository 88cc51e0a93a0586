"""Genes with missing and reordered species, trimmed in one run, and put together once more: check.py PROGRAM COUNT

What the run concatenates is compared with what its single files give, the partitions with the columns of each gene, and
what --columns tells of a gene rebuilds its trimmed alignment. Every ninth gene cannot be read.
"""
import pathlib
import random
import re
import subprocess
import sys

program, count = sys.argv[1], int(sys.argv[2])
random.seed(count)


def gene(number):
    """Names and rows of one gene, among them columns that are gaps in every row."""
    width, rows = random.randint(12, 60), []
    ancestor = random.choices("ACGT", k=width)
    dropped = set(random.sample(range(width), random.choice([0, 0, 2])))
    for species in random.sample(range(25), random.randint(3, 12)):
        row = [random.choice("ACGT-") if random.random() < 0.1 else letter for letter in ancestor]
        row = "".join("-" if p in dropped else letter for p, letter in enumerate(row))
        rows.append((f"Species_{species}|gene{number}", row))
    return rows


def read(path):
    records = pathlib.Path(path).read_text().split(">")[1:]
    return [(name, re.sub(r"\s", "", rest)) for name, _, rest in (record.partition("\n") for record in records)]


def together(genes):
    """The supermatrix as name: row."""
    matrix, width = {}, 0
    for rows in genes:
        for name, row in rows:
            matrix.setdefault(name.split("|")[0], "?" * width)
            matrix[name.split("|")[0]] += row
        width += len(rows[0][1])
        matrix = {name: row.ljust(width, "?") for name, row in matrix.items()}
    return matrix


names = [f"gene{number}.fas" for number in range(count)]
for number, name in enumerate(names):
    text = "".join(f">{sequence}\n{row}\n" for sequence, row in gene(number))
    pathlib.Path(name).write_text(text + "-\n" * (number % 9 == 4))
pathlib.Path("list").write_text("".join(name + "\n" for name in names))
options = "-t=D -b0=2 -b4=2 -b3=2 -b5=h -p=n -u=y -a=y -c=y -w=y --match=name --name-end=| --keep-going --partitions"
options += " --format=trimora,fasta --into=out --columns --table=table.tsv"
run = subprocess.run([program, "list", *options.split()], capture_output=True)
assert run.returncode == 1, run.stderr

header, *lines = [line.split("\t") for line in pathlib.Path("table.tsv").read_text().splitlines()]
table = [dict(zip(header, line)) for line in lines]
failed = [row["alignment"] for row in table if row["status"] != "ok"]
assert [row["alignment"] for row in table] == names and failed == names[4::9], table
read_ok = [name for name in names if name not in failed]

trimmed, whole = [], []
for name in read_ok:
    rows = read(name)
    columns = [line.split("\t") for line in pathlib.Path(f"out/{name}-tr.columns.tsv").read_text().splitlines()[1:]]
    assert [int(line[0]) for line in columns] == list(range(1, len(rows[0][1]) + 1)), name
    chosen = lambda field: [(n, "".join(row[int(c[0]) - 1] for c in columns if c[field])) for n, row in rows]
    assert chosen(6) == read(f"out/{name}-tr.fasta") == read(f"out/{name}-tr"), name
    filtered = subprocess.run([program, "-", *options.split()[:5]], stdin=open(name), capture_output=True)
    assert filtered.stdout == pathlib.Path(f"out/{name}-tr.fasta").read_bytes(), filtered
    trimmed.append(chosen(6))
    whole.append(chosen(1))
ungapped = [read(f"out/{name}--.fasta") for name in read_ok]

for path, genes in ("out/list-tr.seq", trimmed), ("out/list.seq", whole), ("out/list--.seq", ungapped):
    matrix = together(genes)
    assert list(matrix.items()) == read(path) == read(path + ".fasta"), path
    raxml = re.findall(r"^DNA, (\w+) = (\d+)-(\d+)$", pathlib.Path(path + ".partitions").read_text(), re.M)
    nexus = re.findall(r"^ *charset (\w+) = (\d+)-(\d+);$", pathlib.Path(path + ".nex").read_text(), re.M)
    expected, end = [], 0
    for name, rows in zip(read_ok, genes):
        first, end = end + 1, end + len(rows[0][1])
        expected += [(name[:-4], str(first), str(end))] * (first <= end)
    assert raxml == expected and nexus == 2 * expected, path
print(f"{len(read_ok)} genes, {len(matrix)} species, {len(together(trimmed)['Species_0'])} columns agree")
