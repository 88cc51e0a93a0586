"""Trims the alignments of one group. What was made of them before goes first: nothing old stays where one fails."""
import json
import os
import pathlib
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
        row["files"] = {file: batch.size(file) for file in files(row["alignment"]) if row["status"] == "ok"}
        if not row["files"]:
            batch.remove(files(row["alignment"]))
    pathlib.Path(snakemake.output[0]).write_text(json.dumps(rows[1:-1]))
