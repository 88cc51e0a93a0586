"""Random batches with random filters, rebuilt from the genes alone: batches.py PROGRAM FIRST LAST

Each batch, numbered FIRST to LAST, has genes with missing species, fragments, unknown letters and gaps at the ends. It is
trimmed with random filters and put together, or only put together (--join). What the run writes is compared with what this
program makes of the genes and of the single files: the supermatrix and its partitions, the four counts of each gene, variable and informative
columns, occupancy, what was left out, the genes kept. The data of the overview are those of the table and the occupancy.
"""
import json
import pathlib
import random
import re
import shutil
import subprocess
import sys

program, first_batch, last_batch = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
STATES = {"D": "ACGT", "C": "ACGT", "P": "ACDEFGHIKLMNPQRSTVWY"}
UNKNOWN = {"D": "N?*!", "C": "N?*!", "P": "X?*!"}


def gene(number, kind, species):
    """Names and rows of one gene."""
    width = random.randint(20, 90)
    ancestor = random.choices(STATES[kind], k=width)
    other = STATES[kind] + random.choice(["", "-", UNKNOWN[kind][:2], "BZ" if kind == "P" else "RY"]) + "--"
    rows = []
    for one in random.sample(species, random.randint(2, len(species))):
        row = [random.choice(other) if random.random() < 0.08 else letter for letter in ancestor]
        start, end = (random.randint(0, width // 2) if random.random() < 0.25 else 0 for _ in "12")
        row[:start], row[width - end:] = "-" * start, "-" * end
        text = "".join(row)
        rows.append((f"{one}|gene{number}", text.lower() if random.random() < 0.1 else text))
    return rows


def read(path):
    records = pathlib.Path(path).read_text().split(">")[1:]
    return [(name, re.sub(r"\s", "", rest)) for name, _, rest in (record.partition("\n") for record in records)]


def counts(row, kind):
    """Letters, unknown, gaps, gaps at the ends."""
    gaps = row.count("-")
    unknown = sum(letter.upper() in UNKNOWN[kind] for letter in row)
    core = re.sub("[^-A-Z]", "-", re.sub(f"[{re.escape(UNKNOWN[kind])}]", "?", row.upper()))
    inner = row[len(core) - len(core.lstrip("-")):len(core.rstrip("-"))]
    return [len(row) - gaps - unknown, unknown, gaps, gaps - inner.count("-")]


def total(rows, kind):
    return [sum(column) for column in zip(*(counts(row, kind) for _, row in rows))]


def variation(rows, kind):
    variable = informative = 0
    for column in zip(*(row.upper() for _, row in rows)):
        times = [column.count(state) for state in STATES[kind]]
        variable += sum(n > 0 for n in times) > 1
        informative += sum(n > 1 for n in times) > 1
    return variable, informative


def without_gap_columns(rows):
    kept = [p for p in range(len(rows[0][1])) if any(row[p] != "-" for _, row in rows)]
    return [(name, "".join(row[p] for p in kept)) for name, row in rows]


def enough(number, least, of):
    return number * 100 >= int(least[:-1]) * of if least.endswith("%") else number >= int(least)


def partitions(widths, division):
    """The columns of each partition of genes with these names and widths, from 1."""
    expected, end = [], 0
    for name, width in widths:
        columns = range(end + 1, end + width + 1)
        end += width
        for ending, chosen in {"genes": {"": "123"}, "positions": {"_pos1": "1", "_pos2": "2", "_pos3": "3"},
                               "12+3": {"_pos12": "12", "_pos3": "3"}}[division].items():
            members = [c for k, c in enumerate(columns) if str(k % 3 + 1) in chosen]
            expected += [(name + ending, members)] * bool(members)
    return expected


def ranges_in(text, pattern):
    """The partitions in a file: their names, and the columns of their ranges."""
    found = []
    for name, ranges in re.findall(pattern, text, re.M):
        members = []
        for first, last, step in re.findall(r"(\d+)(?:-(\d+))?(?:\\(\d))?", ranges):
            members += range(int(first), int(last or first) + 1, int(step or 1))
        found.append((name, sorted(members)))
    return found


def overview(path):
    """Its table and occupancy, as the files of the run have them."""
    data = json.loads(re.search('(?s) id="data">(.*?)</script>', pathlib.Path(path).read_text())[1])
    text = lambda cell: "NA" if cell is None else str(cell)
    lines = [data["table"]["columns"], *([text(cell) for cell in row] for row in data["table"]["rows"])]
    who = data["occupancy"]
    if not who:
        return lines, None
    occupancy = [["species", *(lines[1 + g][0] for g in who["genes"])]]
    occupancy += [[name, *map(text, letters)] for name, letters in zip(who["species"], who["letters"])]
    return lines, occupancy


def batch(number):
    random.seed(number)
    shutil.rmtree("batch", ignore_errors=True)
    pathlib.Path("batch/genes").mkdir(parents=True)
    kind, join = random.choice("DPC"), random.random() < 0.3
    species = [f"Genus_{chr(97 + k) * 3}" for k in range(random.randint(3, 10))]
    genes = {f"batch/genes/g{k:02}": gene(k, kind, species) for k in range(random.randint(2, 8))}
    for path, rows in genes.items():
        pathlib.Path(path).write_text("".join(f">{name}\n{row}\n" for name, row in rows))
    division = random.choice(["genes", "positions", "12+3"]) if kind == "C" else "genes"
    maybe = lambda *values: random.choice([None, None, *values])
    filled, columns = (None, None) if join else (maybe("60%", "90%"), maybe("20", "40"))
    least_species, least_genes = maybe("2", "4", "50%", "75%"), maybe("2", "30%", "60%")
    listed = maybe(random.sample(species, random.randint(2, len(species))))
    new = {one: f"new_{one}" if listed and random.random() < 0.3 else one for one in listed or species}
    options = ["batch/genes", f"-t={kind}", "--match=name", "--name-end=|", "--into=batch/out", "--name=all", "--quiet",
               "--table=batch/table", "--occupancy=batch/occupancy", "--overview=batch/page.html", f"--partitions={division}"]
    options += ["--join"] if join else ["-a=y", "-b4=2", "-p=n", "-b5=" + random.choice("nha"), "-b3=4"]
    for option, value in {"filled": filled, "columns": columns, "species": least_species, "genes": least_genes}.items():
        options += [f"--min-{option}={value}"] if value else []
    if listed:
        lines = "".join(one + (f"\t{new[one]}" if new[one] != one else "") + "\n" for one in listed)
        pathlib.Path("batch/list").write_text(lines)
        options += ["--species=batch/list"]
    run = subprocess.run([program, *options], capture_output=True, text=True)

    # What stays of the genes, and what it looks like before selection.
    left_out, before = [], {}
    everybody = {one for rows in genes.values() for one in (name.split("|")[0] for name, _ in rows)} & set(new)
    for path, rows in genes.items():
        if listed:
            left_out += [("--species", path, name) for name, _ in rows if name.split("|")[0] not in listed]
            rows = [row for row in rows if row[0].split("|")[0] in listed]
            rows.sort(key=lambda row: listed.index(row[0].split("|")[0]))
        if filled:
            letters = sorted(counts(row, kind)[0] for _, row in rows)
            median = letters[(len(letters) - 1) // 2] + letters[len(letters) // 2] if letters else 0
            few = [row for row in rows if counts(row[1], kind)[0] * 200 < int(filled[:-1]) * median]
            left_out += [("--min-filled", path, name) for name, _ in few]
            rows = [row for row in rows if row not in few]
        if len(rows) < (1 if join else 2) and (listed or filled):
            left_out.append(("--min-filled" if filled else "--species", path, ""))
        elif least_species and not enough(len(rows), least_species, len(everybody)):
            left_out.append(("--min-species", path, ""))
        else:
            before[path] = rows if join else without_gap_columns(rows)
    after = {}
    table = [line.split("\t") for line in pathlib.Path("batch/table").read_text().splitlines()]
    shown_table, shown_occupancy = overview("batch/page.html")
    assert shown_table == table, "overview"
    table = {line[0]: dict(zip(table[0], line)) for line in table[1:]}
    assert list(table) == list(genes), "table"
    for path, rows in before.items():
        line = table[path]
        if join:
            after[path] = rows
        elif columns and int(line["selected"]) < int(columns):
            left_out.append(("--min-columns", path, ""))
        else:
            trimmed = read(f"batch/out/{path[12:]}-tr.fasta")
            names = [new[n.split("|")[0]] if new[n.split("|")[0]] != n.split("|")[0] else n for n, _ in rows]
            assert [name for name, _ in trimmed] == names, (path, trimmed, names)
            after[path] = [(name, row) for (name, _), (_, row) in zip(rows, trimmed)]
    status = {path: "ok" if path in after else "left out" for path in genes}
    assert {path: line["status"] for path, line in table.items()} == status, "status"

    present = {}
    for path, rows in after.items():
        for name, _ in rows:
            present.setdefault(name.split("|")[0], []).append(path)
    for path, rows in after.items():
        missing, line = len(present) - len(rows), table[path]
        for suffix, shown in ("_before", before[path]), ("", rows):
            expected = total(shown, kind) + [missing * len(shown[0][1])]
            found = [int(line[what + suffix]) for what in ("letters", "unknown", "gaps", "end_gaps", "absent")]
            assert found == expected, (path, suffix, found, expected)
        assert (int(line["variable"]), int(line["informative"])) == variation(rows, kind), (path, "informative")

    meet = len(after) < 2 or any(len(paths) > 1 for paths in present.values())
    kept = [one for one in present if not least_genes or enough(len(present[one]), least_genes, len(after))]
    kept.sort(key=lambda one: listed.index(one) if listed else 0)
    if after and meet:
        left_out += [("--min-genes", "", new[one]) for one in present if one not in kept]
    table_path = pathlib.Path("batch/out/all.left_out.tsv")
    if listed or filled or columns or least_species or least_genes:
        lines = [line.split("\t") for line in table_path.read_text().splitlines()[1:]]
        assert sorted((line[0], line[2], line[3]) for line in lines) == sorted(left_out), "left out"
    joined = pathlib.Path("batch/out/all.seq.fasta" if join else "batch/out/all-tr.seq.fasta")
    if not (after and meet and kept):
        assert not joined.exists() and run.returncode == 1 and shown_occupancy is None, run
        return 0
    assert run.returncode == 0, run
    rows_of = {path: {name.split("|")[0]: row for name, row in rows} for path, rows in after.items()}
    width = {path: len(rows[0][1]) for path, rows in after.items()}
    matrix = [(new[one], "".join(rows_of[path].get(one, "?" * width[path]) for path in after)) for one in kept]
    assert read(joined) == matrix, "supermatrix"
    expected = partitions([(path[12:], width[path]) for path in after], division)
    nexus = joined.with_suffix(".nex").read_text()
    raxml = joined.with_suffix(".partitions").read_text()
    assert ranges_in(raxml, rf"^{'LG' if kind == 'P' else 'DNA'}, (\w+) = (.*)$") == expected, "partitions"
    assert ranges_in(nexus, r"^  charset (\w+) = (.*);$") == 2 * expected, "charsets"
    occupancy = [["species", *after]]
    for one in kept:
        cells = [str(counts(rows_of[p][one], kind)[0]) if one in rows_of[p] else "NA" for p in after]
        occupancy.append([new[one], *cells])
    found = [line.split("\t") for line in pathlib.Path("batch/occupancy").read_text().splitlines()]
    assert found == occupancy == shown_occupancy, "occupancy"
    single = list(after) if join else [f"batch/out/{path[12:]}-tr.fasta" for path in after]
    assert pathlib.Path("batch/out/all.kept.txt").read_text().split() == single, "kept"
    return 1


joined = 0
for number in range(first_batch, last_batch + 1):
    try:
        joined += batch(number)
    except Exception:
        print("batch", number, file=sys.stderr)
        raise
print(f"{last_batch - first_batch + 1} batches, {joined} of them put together, agree")
