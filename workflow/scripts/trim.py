"""Trims the alignments of one group. What was made of them before goes first: nothing old stays where one fails."""
import json
import os
import tempfile

import batch

params = snakemake.params


def files(path):
    return [path + ending for ending in params.endings]


with batch.logged(snakemake.log[0]) as log, tempfile.TemporaryDirectory(prefix="trimora-") as scratch:
    batch.remove(params.stale)
    for path in params.members:
        batch.remove(files(path))
    first, last = (os.path.join(scratch, name) for name in ("first", "last"))
    for link in (first, last):
        os.symlink(os.path.abspath(params.reference), link)
    links = dict.fromkeys((first, last), params.reference)
    rows, said = batch.run(params.program, params.options, [first, *params.members, last], scratch, "list", links)
    log.write(said)
    if rows[0]["status"] != "ok":
        raise batch.Broken(f"{params.reference}, which settles what holds for all: {rows[0]['message']}")
    for row in rows[1:-1]:
        if row["status"] == "ok":
            row["files"] = {file: batch.size(file) for file in files(row["alignment"])}
        else:
            batch.remove(files(row["alignment"]))
            row["files"] = {}
    with open(snakemake.output[0], "w") as record:
        record.write(json.dumps(rows[1:-1]))
