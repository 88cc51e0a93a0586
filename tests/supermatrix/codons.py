"""Random proteins with their coding sequences, and what --codons has to make of them: codons.py PROGRAM COUNT"""
import pathlib
import random
import re
import shutil
import subprocess
import sys

program, count = sys.argv[1], int(sys.argv[2])
CODES = {  # as NCBI lists them, in the order of TCAG
    1: "FFLLSSSSYY**CC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG",
    2: "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIMMTTTTNNKKSS**VVVVAAAADDEEGGGG",
    5: "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIMMTTTTNNKKSSSSVVVVAAAADDEEGGGG",
    11: "FFLLSSSSYY**CC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG",
    12: "FFLLSSSSYY**CC*WLLLSPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG",
}
STARTS = {1: ["TTG", "CTG"], 2: ["ATT", "ATC", "GTG"], 5: ["TTG", "GTG"], 11: ["ATC", "GTG"], 12: ["CTG"]}
CODONS = [a + b + c for a in "TCAG" for b in "TCAG" for c in "TCAG"]


def read(path):
    records = pathlib.Path(path).read_text().split(">")[1:]
    return [(name, re.sub(r"\s", "", rest)) for name, _, rest in (record.partition("\n") for record in records)]


def case(number):
    random.seed(number)
    shutil.rmtree("codons", ignore_errors=True)
    pathlib.Path("codons").mkdir()
    code = random.choice(list(CODES))
    encoding = {}
    for codon, residue in zip(CODONS, CODES[code]):
        encoding.setdefault(residue, []).append(codon)
    width, rows, coding, stops = random.randint(30, 60), [], [], 0
    ancestor = random.choices("ACDEFGHIKLMNPQRSTVWY", k=width)
    for k in range(random.randint(3, 6)):
        row = [random.choice("ACDEFGHIKLMNPQRSTVWY--BZX") if random.random() < 0.06 else r for r in ancestor]
        row[0] = "M" if random.random() < 0.5 else row[0]
        codons = []
        for p, residue in enumerate(row):
            of = {"B": "DN", "Z": "EQ", "X": "ACDEFGHIKLMNPQRSTVWY*"}.get(residue, residue)
            codon = "---" if residue == "-" else random.choice(encoding[random.choice(of)])
            if p == 0 and residue == "M" and random.random() < 0.5:
                codon = random.choice(STARTS[code])
            codons.append(codon)
        shown = ["NNN" if codon in encoding["*"] else codon for codon in codons]
        stops += "NNN" in shown
        nucleotides = "".join(codons).replace("-", "") + random.choice(["", random.choice(encoding["*"])])
        nucleotides += random.choice(["", "A", "GC"])
        rows.append((f"s{k}", "".join(row), shown))
        coding.append((f"s{k} coding", re.sub("(.{7})", r"\1-", nucleotides) if random.random() < 0.3 else nucleotides))
    wrong = random.random() < 0.2
    if wrong:  # one codon that does not encode its residue
        name, nucleotides = coding[0]
        at = next(p for p, residue in enumerate(rows[0][1]) if residue in "ACDEFGHIKLNPQRSTVWY" and p > 2)
        before = 3 * (at - rows[0][1][:at].count("-"))
        plain = nucleotides.replace("-", "")
        other = random.choice([codon for codon, r in zip(CODONS, CODES[code]) if r != rows[0][1][at]])
        coding[0] = (name, plain[:before] + other + plain[before + 3:])
    random.shuffle(coding)
    pathlib.Path("codons/p.fas").write_text("".join(f">{n}\n{row}\n" for n, row, _ in rows))
    pathlib.Path("codons/c.fas").write_text("".join(f">{n}\n{row}\n" for n, row in coding))
    run = subprocess.run([program, "codons/p.fas", "--codons=codons/c.fas", f"--code={code}", "-t=P", "-b5=a", "-b4=2", "-p=n",
                          "--columns"], capture_output=True, text=True)
    if wrong:
        place = f"residue {before // 3 + 1}, {rows[0][1][at]}, is not encoded by its codon, {other}, at nucleotide {before + 1}"
        assert run.returncode == 1 and place in run.stderr, (place, run)
        return
    assert run.returncode == 0, run
    assert (f"stop codons inside {stops} of" in run.stderr) == (stops > 0), run
    lines = [line.split("\t") for line in pathlib.Path("codons/p.fas-tr.columns.tsv").read_text().splitlines()[1:]]
    columns = [int(line[0]) - 1 for line in lines if line[6]]
    assert read("codons/p.fas-tr.codons.fasta") == [(n, "".join(shown[c] for c in columns)) for n, _, shown in rows]


for number in range(1, count + 1):
    try:
        case(number)
    except Exception:
        print("case", number, file=sys.stderr)
        raise
print(f"{count} proteins and their coding sequences agree")
