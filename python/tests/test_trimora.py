"""The package against the program, and every way in and out. TRIMORA_CASES=1000 draws more alignments."""
import csv
import doctest
import importlib
import io
import os
import pickle
import random
import shutil
import subprocess
import sys
import threading
import time
from pathlib import Path

import numpy
import pytest
from Bio.Align import MultipleSeqAlignment
from Bio.Seq import MutableSeq, Seq
from Bio.SeqRecord import SeqRecord

import trimora

project = Path(__file__).resolve().parents[2]
cases = int(os.environ.get("TRIMORA_CASES", 50))
classes_in_words = {"F": "flank", "C": "conserved", ".": "nonconserved", "-": "gap", "d": "dropped"}


@pytest.fixture(autouse=True)
def examples(tmp_path, monkeypatch):
    for file in (project / "examples").glob("*.*"):
        shutil.copy(file, tmp_path)
    monkeypatch.chdir(tmp_path)
    return tmp_path


def run(*arguments, **more):
    command = [sys.executable, "-m", "trimora", *map(str, arguments)]
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, **more)


# ---- Against the program


def drawn_alignment(draw, kind):
    """Columns that are alike, mixed, full of gaps or empty."""
    alphabet = "ACDEFGHIKLMNPQRSTVWYacX?" if kind == "protein" else "ACGTUacgtNR?"
    numseq, width = draw.randrange(2, 14), draw.randrange(4, 150)
    common = [draw.choice(alphabet) for _ in range(width)]
    alike = [draw.choice((0.2, 0.7, 0.9, 1)) for _ in range(width)]
    gaps = [draw.choice((0, 0, 0, 0, 0.2, 0.5, 1)) for _ in range(width)]

    def letter(p):
        if draw.random() < gaps[p]:
            return "-"
        return common[p] if draw.random() < alike[p] else draw.choice(alphabet)

    return {f"seq{i} of drawn": "".join(map(letter, range(width))) for i in range(numseq)}


def drawn_parameters(draw, numseq):
    parameters = {"gaps": draw.choice(("none", "half", "all")), "b3": draw.choice((0, 1, 3, 8)), "b4": draw.randrange(2, 9)}
    if draw.random() < 0.5:
        parameters["b0"] = draw.randrange(2, 12)
    b1 = draw.randrange(numseq // 2 + 1, numseq + 1)
    share = draw.randrange(101)
    pairs = ((b1, draw.randrange(b1, numseq + 1)), (f"{share}%", f"{draw.randrange(share, 101)}%"))
    for name, value in zip(("b1", "b2"), draw.choice(pairs)):
        if draw.random() < 0.6:
            parameters[name] = value
    if draw.random() < 0.3:
        parameters["similarity"] = False
    if draw.random() < 0.3:
        parameters["preset"] = draw.choice(("classic", "relaxed"))
    return parameters


def as_options(kind, parameters):
    options = [f"-t={kind[0].upper()}"]
    for name, value in parameters.items():
        text = str(value)[0].upper() if name == "gaps" else "N" if name == "similarity" else value
        options.append(f"-{ {'gaps': 'b5', 'similarity': 'b6', 'preset': '-preset'}.get(name, name) }={text}")
    return options


def check_against_table(sel, table):
    """The columns, scores, classes and reasons of trimora-run --columns, whose columns count from 1."""
    with open(table, newline="") as lines:
        rows = list(csv.DictReader(lines, delimiter="\t", quoting=csv.QUOTE_NONE))
    assert [int(row["column"]) for row in rows] == list(range(1, len(rows) + 1))
    assert [int(row["column"]) - 1 for row in rows if row["new"]] == sel.columns.tolist()
    assert numpy.array([row["score"] or "0" for row in rows], dtype=numpy.float32).tolist() == sel.scores.tolist()
    assert [row["class"] for row in rows] == [classes_in_words[c] for c in sel.classes]
    from_1 = [
        f"{words[: words.index('(column ')]}(column {int(words.split()[-1][:-1]) + 1})" if "(column " in words else words
        for words in sel.reasons
    ]
    assert [row["reason"] for row in rows] == from_1
    assert set(sel.columns.tolist()) == {
        c for first, end in sel.blocks for c in range(first, end) if sel.classes[c] != "d"
    }


@pytest.mark.parametrize("path", [*(project / "examples").rglob("*.fas"), *(project / "examples").rglob("*.pir")], ids=str)
@pytest.mark.parametrize(
    "parameters",
    [{}, {"gaps": "half", "b4": 5}, {"gaps": "all", "b1": "60%", "similarity": False}, {"preset": "relaxed", "b3": 6},
     {"preset": "none"}],
)  # fmt: skip
def test_examples_are_as_the_program_says(examples, path, parameters):
    file = shutil.copy(path, examples)
    kind = "protein" if path.stem in ("globins", "drawing") else "dna"
    done = run(file, "--columns", *as_options(kind, parameters))
    assert done.returncode == 0, done.stderr
    check_against_table(trimora.select(trimora.read(file), kind=kind, **parameters), f"{file}-tr.columns.tsv")


def test_drawn_alignments_are_as_the_program_says():
    draw = random.Random(21)
    for number in range(cases):
        kind = draw.choice(("protein", "dna", "codons"))
        drawn = drawn_alignment(draw, kind)
        parameters = drawn_parameters(draw, len(drawn))
        try:
            sel = trimora.select(trimora.Alignment(drawn, kind=kind), **parameters)
        except trimora.Error as error:
            assert error.kind == "too_few_positions"
            continue
        Path("drawn.fas").write_text("".join(f">{name}\n{row}\n" for name, row in drawn.items()))
        done = run("drawn.fas", "--columns", *as_options(kind, parameters))
        assert done.returncode == 0, (number, parameters, done.stderr)
        check_against_table(sel, "drawn.fas-tr.columns.tsv")
        rows = [dict(trimora.read("drawn.fas-tr.fasta"))] if len(sel.columns) else []
        assert rows in ([], [dict(sel.trimmed)])


def drawn_genes(draw):
    """Genes of some of nine species, in any order."""
    genes = {}
    for number in range(draw.randrange(2, 7)):
        width = draw.randrange(3, 70)
        some = draw.sample([f"S{k}" for k in range(9)], draw.randrange(2, 9))
        genes[f"g{number}"] = {
            f"{name}|gene {number}": "A" + "".join(draw.choice("ACGTNacgt-") for _ in range(width)) for name in some}
    return genes  # fmt: skip


def test_supermatrices_are_as_the_program_says():
    draw = random.Random(22)
    put_together = 0
    for number in range(cases):
        genes = drawn_genes(draw)
        shutil.rmtree("genes", ignore_errors=True)
        Path("genes").mkdir()
        for name, rows in genes.items():
            Path(f"genes/{name}").write_text("".join(f">{key}\n{row}\n" for key, row in rows.items()))
        filters = {"min_species": draw.choice((None, 3, 5, "60%")), "min_genes": draw.choice((None, 2, "50%"))}
        options = [f"--{name.replace('_', '-')}={value}" for name, value in filters.items() if value]
        if draw.random() < 0.5:
            filters["species"] = {f"S{k}": draw.choice(("", f"new S{k}")) for k in draw.sample(range(9), 6)}
            Path("species").write_text("".join("\t".join(pair).strip() + "\n" for pair in filters["species"].items()))
            options.append("--species=species")
        done = run("genes", "-t=D", "--join", "--match=name", "--name-end=|", "--partitions", "--occupancy=letters", "--name=all",
                   "--into=out", *options)  # fmt: skip
        alis = {name: trimora.Alignment(rows, kind="dna") for name, rows in genes.items()}
        try:
            m = trimora.supermatrix(alis, name_end="|", **filters)
        except trimora.Error:
            assert done.returncode == 1, (number, options, done.stderr)
            continue
        assert done.returncode == 0, (number, options, done.stderr)
        put_together += 1
        text = Path("out/all.seq.fasta").read_text().split(">")[1:]
        assert dict(m.alignment) == {name: rows.replace("\n", "") for name, _, rows in (each.partition("\n") for each in text)}
        lines = [line.split("\t") for line in Path("letters").read_text().splitlines()]
        assert m.alignment.names == [line[0] for line in lines[1:]]
        kept = [name for name in genes if name not in m.left_out]
        assert [Path(path).name for path in lines[0][1:]] == kept
        assert m.occupancy[:, [list(genes).index(name) for name in kept]].tolist() == [
            [-1 if cell == "NA" else int(cell) for cell in line[1:]] for line in lines[1:]]  # fmt: skip
        assert Path("out/all.seq.partitions").read_text() == "".join(
            f"DNA, {name} = {m.partitions[name][0] + 1}-{m.partitions[name][1]}\n" for name in kept)  # fmt: skip
    assert put_together > cases // 2


def test_codons_are_as_the_program_says():
    proteins = {"a x": "MKV-LWQERTYIPAS", "b": "MKVALWQ-RTYIPAS", "c": "MKV-LW--RTYIPAT"}
    codon = dict(zip("MKVALWQERTYIPST", "ATG AAG GTC GCT TTA TGA CAA GAA CGT ACC TAT ATC CCG TCT ACA".split()))
    cds = {name.split()[0]: "".join(codon[letter] for letter in row if letter != "-") + "TAA" for name, row in proteins.items()}
    Path("proteins").write_text("".join(f">{name}\n{row}\n" for name, row in proteins.items()))
    Path("cds").write_text("".join(f">{name}\n{row}\n" for name, row in cds.items()))
    done = run("proteins", "-t=P", "-b4=2", "--codons=cds", "--code=2", "-p=n")
    assert done.returncode == 0, done.stderr
    sel = trimora.select(proteins, kind="protein", b4=2)
    records = [SeqRecord(Seq(row), id=name) for name, row in cds.items()]
    for given in ("cds", Path("cds"), cds, list(cds.items()), records, {each.id: each for each in records}):
        t = trimora.codons(sel, given, code=2)
        assert dict(t) == dict(trimora.read("proteins-tr.codons.fasta")) and t.kind == "codons"
    assert trimora.codons(proteins, cds, code=2).sequences[0].startswith("ATGAAGGTC---TTATGACAA")
    with pytest.raises(trimora.Error, match="a x") as caught:
        trimora.codons(sel, cds)  # W is not TGA in the standard code
    assert (caught.value.kind, caught.value.sequence) == ("other_sequences", 0)


def test_what_supermatrix_takes():
    one, two = {"a": "ACGTA", "b": "ACGTC"}, {"b": "GG", "c": "GC"}
    sel = trimora.select(one, kind="dna", b4=2)
    m = trimora.supermatrix([sel, two, trimora.Alignment(one)], min_columns=2)
    assert (m.partitions, m.left_out, m.alignment.names) == ([(0, 4), (4, 6), (6, 11)], [], ["a", "b", "c"])
    assert m.alignment.sequences[2] == "????GC?????" and m.occupancy[2].tolist() == [-1, 2, -1]
    assert trimora.supermatrix([one, two], match="order").alignment.sequences == ["ACGTAGG", "ACGTCGC"]
    assert trimora.supermatrix([one, two], min_columns=3).left_out == [1]
    assert trimora.supermatrix({"x": one, "y": two}, species=["c", "b"]).alignment.names == ["c", "b"]
    fields = [{"x_Homo_1": "AC", "x_Pan_2": "AC"}, {"Homo": "G", "Pan": "T"}]
    assert trimora.supermatrix([fields[0], {"y_Pan": "G", "y_Homo": "T"}], name_parts=2).alignment.sequences == ["ACT", "ACG"]
    with pytest.raises(trimora.Error, match="no species is in two"):
        trimora.supermatrix(fields)
    with pytest.raises(trimora.Error, match="no alignment is left"):
        trimora.supermatrix([one, two], species=["z"])
    with pytest.raises(trimora.Error, match="two sequences are called a: they are of one species, by the names of alignment 1"):
        trimora.supermatrix([{"a|1": "AC", "a|2": "AC"}], name_end="|")
    with pytest.raises(trimora.Error, match="where the first one has a"):
        trimora.supermatrix([one, two], match="same")
    with pytest.raises(trimora.Error, match="another type"):
        trimora.supermatrix([one, trimora.Alignment({"a": "MKL", "b": "MKL"}, kind="protein")])


# ---- Ways in and out

plain = {"one a": "ACDEFGHIKLMN-A", "two": "ACDEFGHIKLMNPA", "three": "ACDEYGHIKLM.PA"}
settings = {"kind": "protein", "b3": 1, "b4": 2, "gaps": "half"}
letters = numpy.array([list(row) for row in plain.values()], dtype="S1")


def records(seq):
    return MultipleSeqAlignment(
        [
            SeqRecord(seq(row), id=name, description="d", annotations={"organism": "x"},
                      letter_annotations={"quality": list(range(14))})
            for name, row in plain.items()
        ],
        annotations={"tool": "y"}, column_annotations={"mark": "abcdefghijklmn"},
    )  # fmt: skip


@pytest.mark.parametrize(
    "given",
    [plain, list(plain.items()), {name: row.encode() for name, row in plain.items()}, trimora.Alignment(plain),
     {name: Seq(row) for name, row in plain.items()}, records(Seq),
     trimora.Alignment(list(plain), letters), trimora.Alignment(list(plain), letters.view("uint8")),
     trimora.Alignment(list(plain), numpy.asfortranarray(letters)), trimora.Alignment(list(plain), letters[:, ::-1][:, ::-1]),
     trimora.Alignment(list(plain), numpy.array(list(plain.values())))],
)  # fmt: skip
def test_every_kind_of_alignment_is_taken(given):
    sel = trimora.select(given, **settings)
    assert sel.columns.tolist() == [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13]
    assert dict(sel.trimmed) == {name: row.replace(".", "-") for name, row in plain.items()}


def test_columns_of_another_alignment_have_its_type():
    sel = trimora.select(plain, kind="protein", b3=1, b4=2)  # the gaps go, and what is beside them
    columns = sel.columns.tolist()
    assert 0 < len(columns) < 14

    def picked(row):
        return "".join(row[c] for c in columns)

    expected = {name: picked(row) for name, row in plain.items()}
    assert sel.apply(plain) == expected
    assert sel.apply(list(plain.items())) == list(expected.items())
    assert sel.apply({name: row.encode() for name, row in plain.items()}) == {n: r.encode() for n, r in expected.items()}
    assert sel.apply(letters).tobytes().decode() == "".join(expected.values())
    assert str(sel.apply(trimora.Alignment(plain))) == str(sel.trimmed)
    for seq in (Seq, MutableSeq):
        done = sel.apply(records(seq))
        assert isinstance(done, MultipleSeqAlignment)
        assert {record.id: str(record.seq) for record in done} == expected
        assert type(done[0].seq) is seq
        assert (done[0].description, done[0].annotations, done.annotations) == ("d", {"organism": "x"}, {"tool": "y"})
        assert done[0].letter_annotations["quality"] == columns
        assert done.column_annotations["mark"] == picked("abcdefghijklmn")
    for wrong in ({"a": "ACGT"}, letters[:, 1:], trimora.Alignment({"a": "ACGT", "b": "ACGT"}), records(Seq)[:, 1:]):
        with pytest.raises(ValueError, match="made of an alignment of 14"):
            sel.apply(wrong)


def test_read_takes_paths_files_and_bytes_and_keeps_strange_names(examples):
    content = b">b\xe9b\xe9\nACGTACGTACGT\n>\xc3\xa9\nACGTACGTACG-\n"
    path = examples / "n\xe4me.fas"
    path.write_bytes(content)
    sources = [path, str(path), content, bytearray(content), io.BytesIO(content), path.open("rb"),
               path.open(encoding="utf-8", errors="surrogateescape")]  # fmt: skip
    for source in sources:
        ali = trimora.read(source)
        assert ali.names == ["b\udce9b\udce9", "\xe9"]
        trimora.Alignment(dict(ali)).write("again.fas")
        assert Path("again.fas").read_bytes() == content


@pytest.mark.parametrize(
    "form, begins", [("fasta", ">one a\nACD"), ("phylip", "3 14\n"), ("nexus", "#NEXUS"), ("trimora", ">one a\nACD")]
)
def test_every_form_is_written_and_read_again(form, begins):
    trimora.Alignment(plain, kind="protein").write("out", form=form)
    assert Path("out").read_text().lstrip().startswith(begins)
    assert trimora.read("out").sequences == [row.replace(".", "-") for row in plain.values()]


# ---- What is wrong


@pytest.mark.parametrize(
    "kind, sequence, name, given",
    [("not_found", None, "nowhere.fas", lambda: trimora.read("nowhere.fas")),
     ("unknown_format", None, None, lambda: trimora.read(b"hello\n")),
     ("unequal_lengths", 1, "b", lambda: trimora.Alignment({"a": "ACGT", "b": "AC"})),
     ("bad_character", 0, "a", lambda: trimora.Alignment({"a": "AC\xe9T", "b": "ACGT"})),
     ("too_few_sequences", None, None, lambda: trimora.Alignment({})),
     ("undecided_type", None, None, lambda: trimora.select({"a": "NN", "b": "NN"})),
     ("not_writable", None, "no/such/folder", lambda: trimora.Alignment(plain).write("no/such/folder")),
     ("same_name", None, None, lambda: trimora.Alignment([("a", "AC"), ("a", "AC")]).write("x", form="nexus"))],
)  # fmt: skip
def test_errors_say_what_and_where(kind, sequence, name, given):
    with pytest.raises(trimora.Error) as caught:
        given()
    assert (caught.value.kind, caught.value.sequence) == (kind, sequence)
    assert name is None or caught.value.name == name
    copy = pickle.loads(pickle.dumps(caught.value))
    assert (str(copy), copy.kind, copy.sequence, copy.name) == (
        str(caught.value), caught.value.kind, caught.value.sequence, caught.value.name)  # fmt: skip


@pytest.mark.parametrize(
    "error, call",
    [(TypeError, lambda: trimora.read(3)), (TypeError, lambda: trimora.Alignment("ACGT")),
     (TypeError, lambda: trimora.Alignment([1, 2])), (TypeError, lambda: trimora.Alignment({1: "ACGT", 2: "ACGT"})),
     (TypeError, lambda: trimora.Alignment({"a": 5, "b": 5})), (TypeError, lambda: trimora.Alignment(["a"], [[1]])),
     (TypeError, lambda: trimora.Alignment(list(plain), letters.astype("U1"))),
     (ValueError, lambda: trimora.Alignment(["a"], letters)), (ValueError, lambda: trimora.Alignment(plain, kind="rna")),
     (TypeError, lambda: trimora.select("globins.fas")), (ValueError, lambda: trimora.select(plain, gaps="some")),
     (TypeError, lambda: trimora.select(plain, gaps=True)), (TypeError, lambda: trimora.select(plain, b4=5.0)),
     (TypeError, lambda: trimora.select(plain, b4=True)), (TypeError, lambda: trimora.select(plain, similarity=1)),
     (ValueError, lambda: trimora.select(plain, **{**settings, "b4": 1})),
     (ValueError, lambda: trimora.select(plain, **{**settings, "b4": 2**40})),
     (ValueError, lambda: trimora.select(plain, **{**settings, "b1": 9})),
     (ValueError, lambda: trimora.select(plain, b1="60.5%")), (ValueError, lambda: trimora.select(plain, b1="101%")),
     (ValueError, lambda: trimora.Alignment(plain).write("x", form="clustal")),
     (TypeError, lambda: trimora.supermatrix(trimora.Alignment(plain))), (ValueError, lambda: trimora.supermatrix([])),
     (TypeError, lambda: trimora.supermatrix(None)), (ValueError, lambda: trimora.supermatrix([plain], min_columns=-1)),
     (ValueError, lambda: trimora.supermatrix([plain], match="names")), (TypeError, lambda: trimora.supermatrix([1])),
     (ValueError, lambda: trimora.supermatrix([plain], min_species=0)), (TypeError, lambda: trimora.supermatrix([plain], species="a")),
     (ValueError, lambda: trimora.supermatrix([plain], name_parts="2-1")), (TypeError, lambda: trimora.codons(plain, 3)),
     (ValueError, lambda: trimora.supermatrix([plain], min_genes=2, match="order")), (ValueError, lambda: trimora.codons(plain, {}, code=7)),
     (ValueError, lambda: trimora.select(plain, preset="strict")), (TypeError, lambda: trimora.select(plain, preset=1))],
)  # fmt: skip
def test_wrong_arguments_are_python_errors(error, call):
    with pytest.raises(error) as caught:
        call()
    assert not isinstance(caught.value, trimora.Error)


# ---- Threads, and without numpy


def test_threads_select_at_once_and_let_others_run():
    draw = random.Random(3)
    alis = [trimora.Alignment(drawn_alignment(draw, "dna")) for _ in range(8)] + [trimora.read("globins.fas")] * 8
    choices = [dict(gaps=gaps, b4=b4, kind="dna") for gaps in ("none", "half", "all") for b4 in (2, 5)]

    def results():
        sels = [trimora.select(ali, **choice) for ali in alis for choice in choices]
        return [(sel.columns.tolist(), sel.scores.tolist(), sel.reasons, str(sel.trimmed)) for sel in sels]

    expected, found = results(), []
    threads = [threading.Thread(target=lambda: found.append(results())) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [expected] * 4


def test_the_interpreter_is_free_during_a_selection():
    ali = trimora.Alignment({f"s{i}": "ACGTTGCA" * 2000 for i in range(50)})
    steps, ended, before = [0], threading.Event(), sys.getswitchinterval()

    def count():
        while not ended.is_set():
            steps[0] += 1
            time.sleep(0.0001)

    counter = threading.Thread(target=count)
    try:
        counter.start()
        sys.setswitchinterval(1000)  # another thread runs only when this one gives way by itself
        start = steps[0]
        for _ in range(10000):
            trimora.select(ali)
            if steps[0] > start:
                break
        assert steps[0] > start
    finally:
        ended.set()
        sys.setswitchinterval(before)
        counter.join()


def test_lists_take_the_place_of_arrays_without_numpy():
    program = """
import sys
sys.modules["numpy"] = None
import trimora
sel = trimora.select(trimora.read("globins.fas"))
print(type(sel.columns).__name__, type(sel.scores).__name__, len(sel.columns), len(sel.scores))
print(sel.apply(trimora.read("globins.fas")).width)
"""
    done = subprocess.run([sys.executable, "-c", program], stdout=subprocess.PIPE, text=True, check=True)
    assert done.stdout.split() == ["list", "list", "114", "154", "114"]


def test_the_module_runs_as_the_program():
    assert run("--version").stdout == f"trimora-run {trimora.__version__}\n"
    assert run("--no-such-option").returncode == 2
    assert run("nowhere.fas").returncode == 1


@pytest.mark.parametrize("module", ["trimora", "trimora._alignment", "trimora._error", "trimora._joining", "trimora._selection"])
def test_examples_in_the_help_run(module):
    done = doctest.testmod(importlib.import_module(module), extraglobs={"trimora": trimora})
    assert done.attempted > 0 and done.failed == 0


def test_examples_in_the_readme_run():
    assert doctest.testfile(str(project / "python/README.md"), module_relative=False).failed == 0
