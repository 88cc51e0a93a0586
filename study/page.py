"""Writes docs/when-to-trim.md: the text of when-to-trim.md in this folder, with each number in braces taken from the rows.

Numbers  {MEASURE SETTING one|several [CELL...]}, over all cells if none is named; kind=protein: all of proteins
         change, false_change  distance, and false splits of high support: minus those without trimming, with the interval
         range                 least and greatest change of the cells
         false, right          false and right splits of high support in a tree
         columns, empty, rows  per cent kept; alignments that nothing is left of; all alignments
         length                of the tree, relative to the true one
         {judged SETTING one|several}: change on the half by which no preset was chosen; {chosen ...}: on the other one
         {better one|several}: the settings that are nearer to the true tree than not trimming
         {pairs columns|right|wrong SETTING KIND}: per cent kept; {left_out SETTING KIND}: of wrong pairs
         {identity CELL}: of residues in a pair of sequences; {cells}, {replicates}; {iqtree}: all of it
         {rule}: the setting that it takes now; `rule` is also a SETTING
What the words say of the numbers is in untrue(): it prints what no longer holds, and then the words have to be changed.
"""
import itertools
import re
import textwrap
from statistics import StatisticsError, mean

from files import HERE, read_cells, read_table, true_alignment
from simulate import simulate
from summarise import differences, interval, trees

CELLS, FOUND, JUDGED = read_cells(), trees(), read_table(HERE / "results" / "judged.tsv")
OPTIONS = {row["variant"]: row["options"] for row in read_table(HERE / "settings.tsv")}
DEFAULTS = {"-b2": "85%", "-b3": "8", "-b4": "10", "-b5": "n"}


def meant(setting):
    return rule() if setting == "rule" else {"relaxed": "half_5_51"}.get(setting, setting)


def options(setting):
    """All of them, as "-b2=51% -b3=8 -b4=5 -b5=h"."""
    return " ".join(f"{name}={value}" for name, value in
                    {**DEFAULTS, **dict(option.split("=") for option in OPTIONS[setting].split())}.items())


def keys(setting, size, cells=(), program="trees"):
    """Those of the cells, in their order."""
    wanted = {name for word in cells for name, cell in CELLS.items() if word in (name, "kind=" + cell["kind"])} or CELLS
    found = [key for key in FOUND if key[0] == program and key[3] == meant(setting) and key[1] in wanted
             and (key[2] == 1) == (size == "one")]
    if not found or cells and set(cells) <= CELLS.keys() and len(found) != len(cells):
        raise StatisticsError(f"no trees of {setting}, {size}, {cells or 'any cell'}")
    return sorted(found, key=lambda key: list(CELLS).index(key[1]))


def signed(value, digits):
    return f"{value:+.{digits}f}" if round(value, digits) else f"{0:.{digits}f}"


def with_interval(value, width, digits):
    if width is None:
        raise StatisticsError("fewer than three replicates")
    return f"{signed(value, digits)} ± {width:.{digits}f}"


def change(setting, size, *cells, measure="rf", digits=None):
    found = keys(setting, size, cells)
    return with_interval(*interval(*(differences(FOUND, key, measure) for key in found)), digits or (3 if len(found) > 5 else 2))


def false_change(*what):
    return change(*what, measure="false_believed", digits=2)


def range_(setting, size, *cells):
    values = [mean(differences(FOUND, key)) for key in keys(setting, size, cells)]
    return f"{signed(min(values), 2)} to {signed(max(values), 2)}"


def rows(setting, size, *cells):
    return [row for key in keys(setting, size, cells) for row in FOUND[key].values()]


def over_cells(value, digits, trees=True):
    """The mean over the cells of their means, over trees or over all replicates."""
    def said(*what):
        cells = [[value(row) for row in FOUND[key].values() if row["rf"] or not trees] for key in keys(*what[:2], what[2:])]
        return f"{mean(mean(values) for values in cells if values):.{digits}f}"
    return said


def by_half(half):
    def said(setting, size):
        row, = (row for row in JUDGED if (row["half"], row["genes"], row["variant"]) == (half, size, meant(setting)))
        return with_interval(float(row["difference"]), float(row["difference_width"]), 3)
    return said


def pairs(measure, setting, kind):
    wanted = set(options(meant(setting)).split())
    shares = [float(row[measure]) for row in read_table(HERE / "results" / "pairs.tsv")
              if CELLS[row["cell"]]["kind"] == kind and set(row["options"].split()) == wanted]
    return f"{100 * mean(shares):.0f}"


def rule():
    """The fewest false splits of high support among settings whose distance is, with its interval, at most 0.02 above that
    of not trimming, with one gene and with several: on the chosen half."""
    rows = {(row["variant"], row["genes"]): row for row in JUDGED if row["half"] == "chosen"}

    def most(setting, size):
        return float(rows[setting, size]["difference"]) + float(rows[setting, size]["difference_width"])

    def false(setting):
        return sum(float(rows[setting, size]["false_believed_difference"]) for size in ("one", "several"))
    left = [setting for setting in OPTIONS if most(setting, "one") <= 0.02 and most(setting, "several") <= 0.02]
    return min(left, key=false, default="")


def identity(cell):
    shares = []
    for letters, order, _ in (gene for replicate in range(3) for gene in simulate(CELLS[cell], replicate)[1]):
        for x, y in itertools.combinations(true_alignment(letters, order).values(), 2):
            both = [a == b for a, b in zip(x, y) if a != "-" and b != "-"]
            shares.append(mean(both))
    return f"{100 * mean(shares):.0f}"


def replicates():
    counts = sorted({len(FOUND[key]) for key in keys("none", "one")})
    return f"{counts[0]} to {counts[-1]}" if len(counts) > 1 else str(counts[0])


def limits(setting, size, *cells):
    middle, width = interval(*(differences(FOUND, key) for key in keys(setting, size, cells)))
    return middle - width, middle + width


def better(size):
    """The settings that are nearer to the true tree than not trimming, the best first."""
    return sorted((setting for setting in OPTIONS if limits(setting, size)[1] < 0), key=lambda setting: limits(setting, size))


def better_ones(size):
    return " and ".join(f"`{options(setting)}` by {change(setting, size)}" for setting in better(size))


def iqtree():
    said = []
    for none in keys("none", "one", program="iqtree"):
        changes = (f"`{name}` {with_interval(*interval(differences(FOUND, (*none[:3], setting))), 2)}"
                   for name, setting in (("classic", "classic"), ("relaxed", "half_5_51")))
        said.append(f"{CELLS[none[1]]['what'].split(':')[0]} ({len(FOUND[none])} replicates), {', '.join(changes)}")
    return "; ".join(said)


def wrapped(block):
    """A paragraph or a list in lines that break beside no sign; tables, headings and pictures as they are."""
    if block[0] in "|!#":
        return block
    lines = []
    for item in re.split(r"\n(?=- )", block.replace(" ± ", "\u00a0±\u00a0")):
        lines += textwrap.wrap(re.sub(r"[ \n]+", " ", item), 120, subsequent_indent="  " if item.startswith("- ") else "",
                               break_on_hyphens=False, break_long_words=False)
    return "\n".join(lines).replace("\u00a0", " ")


SAID = {
    "change": change, "false_change": false_change, "range": range_, "judged": by_half("judged"), "chosen": by_half("chosen"),
    "false": over_cells(lambda row: int(row["false_believed"]), 2),
    "right": over_cells(lambda row: int(row["believed"]) - int(row["false_believed"]), 1),
    "length": over_cells(lambda row: float(row["length"]), 2),
    "columns": over_cells(lambda row: 100 * int(row["columns"]) / int(row["of"]), 0, trees=False),
    "empty": lambda *what: str(sum(not row["rf"] for row in rows(*what))), "rows": lambda *what: str(len(rows(*what))),
    "pairs": pairs, "left_out": lambda *what: str(100 - int(pairs("wrong", *what))), "identity": identity,
    "cells": lambda: str(len(keys("none", "one"))), "replicates": replicates, "iqtree": iqtree, "better": better_ones,
    "rule": lambda: options(rule()) if rule() else "no setting",
}


def untrue():
    """Words of the page that the numbers do not bear out."""
    def none_differs(size, *cells):
        return all(low <= 0 <= high for low, high in (limits(name, size, *cells) for name in ("classic", "relaxed")))
    words = {
        "with one gene, no setting is better than none": better("one") == [],
        "with several genes, some are, a little": better("several") != [] and all(
            limits(setting, "several")[0] > -0.03 for setting in better("several")),
        "classic costs much": limits("classic", "one")[0] > 0.1 and limits("classic", "several")[0] > 0.02,
        "relaxed costs little": limits("relaxed", "one")[1] < 0.03 and limits("relaxed", "several")[1] < 0.01,
        "with similar sequences nothing differs": none_differs("one", "shallow") and none_differs("several", "shallow"),
        "the rule takes another setting than relaxed": rule() != "half_5_51"}
    return [said for said, true in words.items() if not true]


def page():
    def said(found):
        name, *what = found[1].split()
        return SAID[name](*what)
    text = re.sub(r"\{([^{}]+)\}", said, (HERE / "when-to-trim.md").read_text())
    return "\n\n".join(map(wrapped, text.strip().split("\n\n"))) + "\n"


if __name__ == "__main__":
    try:
        (HERE.parent / "docs" / "when-to-trim.md").write_text(page())
        for words in untrue():
            print(f"docs/when-to-trim.md: the numbers no longer say: {words}")
    except StatisticsError:
        print("docs/when-to-trim.md stays as it is: some of the conditions that it tells of have no rows yet")
