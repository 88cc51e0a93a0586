"""Trims the alignments of one group. What was made of them before goes first: nothing old stays where one fails."""
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
    link = os.path.join(scratch, "reference")
    os.symlink(os.path.abspath(params.reference), link)
    paths = [link, *params.members, link]
    rows, said = batch.run(params.program, params.options, paths, scratch, "list", (link, params.reference))
    log.write(said)
    if rows[0]["status"] != "ok":
        raise batch.Broken(f"{params.reference}, which settles what holds for all: {rows[0]['message']}")
    for row in rows[1:-1]:
        if row["status"] == "ok":
            row["files"] = {file: batch.size(file) for file in files(row["alignment"])}
        else:
            batch.remove(files(row["alignment"]))
            row["files"] = {}
    batch.writerecord(snakemake.output[0], rows[1:-1])
