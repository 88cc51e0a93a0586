"""Lets the program concatenate the alignments that went through, and says where each one stands.

The program writes into the folder of the last alignment. A link to that one, in a folder beside the results, brings the
files to the results, under the names that the program gives them.
"""
import os
import tempfile

import batch

params, output = snakemake.params, snakemake.output
rows = [row for row in batch.readtable(snakemake.input.table) if row.status == "ok"]
paths = [row.alignment for row in rows]
with tempfile.TemporaryDirectory(prefix="batch-", dir=os.path.dirname(output.concatenations[0])) as scratch:
    link = os.path.join(scratch, "last")
    os.symlink(os.path.abspath(paths[-1]), link)
    os.mkdir(os.path.join(scratch, "list"))
    pathsfile = os.path.join(scratch, "list", params.pathsname)
    text, wentthrough, _ = batch.run(params.program, params.options + batch.NO_FILES, [*paths[:-1], link], pathsfile)
    results = list(batch.RESULT.finditer(text))
    if not wentthrough or len(results) != len(rows):
        raise batch.Broken(f"the concatenation ended early: {batch.message(text)}")
    for name in output.concatenations:
        os.replace(os.path.join(scratch, os.path.basename(name)), name)

for raxml, nexus, kind in zip(output.raxml, output.nexus, params.kinds):
    end = 0
    with open(raxml, "w") as lines, open(nexus, "w") as sets:
        sets.write("#nexus\nbegin sets;\n")
        for row, result in zip(rows, results):
            first, end = end + 1, end + int(result[kind])
            if first <= end:  # an empty range is no partition
                lines.write(f"{params.model}, {row.partition} = {first}-{end}\n")
                sets.write(f"    charset {row.partition} = {first}-{end};\n")
        sets.write("end;\n")
