"""Cells and alignments as files: files.py CELL REPLICATE FOLDER writes what is simulated for a replicate of a cell."""
import csv
import sys
from pathlib import Path

HERE = Path(__file__).parent
CODE = "FFLLSSSSYY**CC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"
CODONS = {a + b + c: CODE[16 * i + 4 * j + k]
          for i, a in enumerate("TCAG") for j, b in enumerate("TCAG") for k, c in enumerate("TCAG")}


def read_cells(file=HERE / "cells.tsv"):
    """{name: cell}. An empty field is that of the base case, the first row."""
    rows = list(csv.DictReader(file.open(), delimiter="\t"))
    cells = {}
    for row in rows:
        filled = {key: value or rows[0][key] for key, value in row.items()}
        cells[row["cell"]] = {key: number(value) for key, value in filled.items()}
    return cells


def number(text):
    try:
        return float(text) if "." in text else int(text)
    except ValueError:
        return text


def read_fasta(text):
    """{name: letters}"""
    records = (record.partition("\n") for record in text.split(">")[1:])
    return {name.strip(): "".join(body.split()) for name, _, body in records}


def true_alignment(letters, order):
    """{name: text}: one column for each place that is left. A letter too many is to the right of the one before it."""
    here = {place for row in letters.values() for _, place in row}
    columns = {place: i for i, place in enumerate(place for place in order if place in here)}
    rows = {}
    for name, row in letters.items():
        text = ["-"] * len(columns)
        for letter, place in row:
            if place in columns:
                text[columns[place]] = letter
        rows[name] = "".join(text)
    return rows


def fasta(rows):
    return "".join(f">{name}\n{text}\n" for name, text in rows.items())


def phylip(rows, line=1000):
    """Interleaved, because FastTree reads no line of more than 5000 letters."""
    width, length = max(map(len, rows)), len(next(iter(rows.values())))
    text = f"{len(rows)} {length}\n"
    for i in range(0, length, line):
        text += "".join(f"{'' if i else name:<{width}}  {letters[i:i + line]}\n" for name, letters in rows.items()) + "\n"
    return text


def write_table(file, header, rows):
    """Under another name until it is whole: whoever finds the file finds all of it."""
    file.parent.mkdir(parents=True, exist_ok=True)
    part = file.with_name(file.name + ".part")
    part.write_text("".join("\t".join(map(str, row)) + "\n" for row in [header, *rows]))
    part.rename(file)


def read_table(file):
    with file.open() as lines:
        return list(csv.DictReader(lines, delimiter="\t"))


if __name__ == "__main__":
    from simulate import simulate
    name, replicate, folder = sys.argv[1], int(sys.argv[2]), Path(sys.argv[3])
    folder.mkdir(parents=True, exist_ok=True)
    tree, genes = simulate(read_cells()[name], replicate)
    (folder / "tree.nwk").write_text(tree.newick() + "\n")
    for i, (letters, order, _) in enumerate(genes, 1):
        (folder / f"gene{i}.fas").write_text(fasta({name: "".join(a for a, _ in row) for name, row in letters.items()}))
        (folder / f"gene{i}.true.fas").write_text(fasta(true_alignment(letters, order)))
