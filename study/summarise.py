"""Makes the tables in results/ of the rows in results/raw/, whichever are there.

Intervals are of 95 %, by Student's t; differences are paired: of the same replicate, trimmed and not trimmed. A replicate
whose trimmed alignment is empty has no tree: it is counted, and is in no mean.
"""
from collections import defaultdict
from pathlib import Path
from statistics import NormalDist, mean, variance

from files import HERE, read_cells, read_table, write_table

RESULTS = HERE / "results"


def rows_of(*stages):
    return [{**row, "by": stage} for stage in stages for file in sorted((RESULTS / "raw" / stage).glob("*.tsv"))
            for row in read_table(file)]


def student(freedom):
    """The factor of a 95 % interval: an expansion that is right to a hundredth from five degrees of freedom on."""
    z, n = NormalDist().inv_cdf(0.975), freedom
    return (z + (z ** 3 + z) / (4 * n) + (5 * z ** 5 + 16 * z ** 3 + 3 * z) / (96 * n ** 2)
            + (3 * z ** 7 + 19 * z ** 5 + 17 * z ** 3 - 15 * z) / (384 * n ** 3))


def interval(*cells):
    """The mean over the cells, each of which counts alike, whatever its number of values, and the half width of its
    interval; no width where there are fewer than three values. What one value alone leaves open, the others tell."""
    cells = [values for values in cells if values]
    if not cells:
        return None, None
    freedom = sum(len(values) - 1 for values in cells)
    middle = mean(mean(values) for values in cells)
    if freedom < 2:
        return middle, None
    pooled = sum((len(values) - 1) * variance(values) for values in cells if len(values) > 1) / freedom
    spread = sum((variance(values) if len(values) > 1 else pooled) / len(values) for values in cells)
    return middle, student(freedom) * spread ** 0.5 / len(cells)


def shown(value, digits=3):
    return "" if value is None else f"{value:.{digits}f}"


def trees():
    """{(program, cell, genes, variant): {replicate: row}}"""
    found = defaultdict(dict)
    for row in rows_of("trees", "iqtree"):
        found[row["by"], row["cell"], int(row["genes"]), row["variant"]][int(row["replicate"])] = row
    return found


def differences(found, key, measure="rf", parities=(0, 1)):
    """To not trimming, replicate by replicate: less than 0 is better. Only even replicates have the parity 0."""
    here, there = found[key], found[(*key[:3], "none")]
    return [float(here[r][measure]) - float(there[r][measure]) for r in sorted(here.keys() & there.keys())
            if here[r]["rf"] and there[r]["rf"] and r % 2 in parities]


def tree_table(found):
    for key, rows in found.items():
        program, cell, genes, variant = key
        made = [row for row in rows.values() if row["rf"]]
        columns = mean(int(row["columns"]) / int(row["of"]) for row in rows.values())
        rf, width = interval([float(row["rf"]) for row in made])
        difference, difference_width = interval(differences(found, key))
        false, false_width = interval(differences(found, key, "false_believed"))
        per_tree = [mean(float(row[name]) for row in made) if made else None
                    for name in ("lost", "false", "believed", "false_believed", "length")]
        yield [{"trees": "FastTree", "iqtree": "IQ-TREE"}[program], cell, genes, variant, len(made), len(rows) - len(made),
               shown(columns), shown(rf), shown(width), shown(difference), shown(difference_width),
               *(shown(value, 2) for value in (*per_tree, false, false_width))]


def pair_table():
    found = defaultdict(dict)
    for row in rows_of("pairs"):
        found[row["cell"], row["options"]][row["replicate"]] = [int(row[name]) for name in ("columns", "right", "wrong")]
    for (cell, options), rows in found.items():
        all_ = found[cell, "none"]
        shares = [interval([rows[r][k] / all_[r][k] for r in rows if all_[r][k]]) for k in range(3)]
        wrong = mean(all_[r][2] / (all_[r][1] + all_[r][2]) for r in rows)
        if options == "none":
            yield [cell, options, len(rows), *["1.000", ""] * 3, shown(wrong)]
        else:
            yield [cell, options, len(rows), *(shown(value) for share in shares for value in share), ""]


def judged_table(found):
    """The difference to no trimming over many cells: on the half of the seeds and cells by which presets were chosen, the
    even ones, on the other half, and on all."""
    order = list(read_cells())
    names = sorted({variant for _, _, _, variant in found})
    for half, parities in (("chosen", {0}), ("judged", {1}), ("all", {0, 1})):
        for genes in ("one", "several"):
            for variant in names:
                keys = [key for key in found if key[0] == "trees" and key[3] == variant and (key[2] == 1) == (genes == "one")
                        and order.index(key[1]) % 2 in parities]
                rf, false = ([differences(found, key, measure, parities) for key in keys]
                             for measure in ("rf", "false_believed"))
                if variant != "none" and any(rf):
                    yield [half, genes, variant, len(keys), sum(map(len, rf)),
                           *map(shown, (*interval(*rf), *interval(*false)))]


if __name__ == "__main__":
    found = trees()
    write_table(RESULTS / "trees.tsv", ["program", "cell", "genes", "variant", "replicates", "empty", "columns", "rf",
                                        "rf_width", "difference", "difference_width", "lost", "false", "believed",
                                        "false_believed", "length", "false_believed_difference",
                                        "false_believed_width"], tree_table(found))
    write_table(RESULTS / "pairs.tsv", ["cell", "options", "replicates", "columns", "columns_width", "right", "right_width",
                                        "wrong", "wrong_width", "wrong_in_all"], pair_table())
    write_table(RESULTS / "judged.tsv", ["half", "genes", "variant", "cells", "pairs_of_trees", "difference",
                                         "difference_width", "false_believed_difference",
                                         "false_believed_width"], judged_table(found))
