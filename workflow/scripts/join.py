"""Joins the records of all groups to one table, and lets the program concatenate the alignments that went through.

The program writes into the folder of the last alignment. A link to that one, in a folder beside the results, brings the
concatenations to the results, under the names that the program gives them.
"""
import json
import os
import pathlib
import shutil

import batch

params, output = snakemake.params, snakemake.output
results = os.path.dirname(output.table)
scratch = os.path.join(results, "concatenating")

with batch.logged(snakemake.log[0]) as log:
    batch.remove(params.stale)
    rows = [row for record in snakemake.input for row in json.loads(pathlib.Path(record).read_text())]
    if [row["alignment"] for row in rows] != batch.readpaths(params.paths):
        raise batch.Refused(f"the paths file {params.paths} has changed since the workflow was started: start it again")
    passed = [row["alignment"] for row in rows if row["status"] == "ok"]
    made = []
    if params.concatenations and passed:
        shutil.rmtree(scratch, ignore_errors=True)
        os.makedirs(os.path.join(scratch, "last"))
        link = os.path.join(scratch, "last", os.path.basename(passed[-1]))  # the name of its partition is made of it
        os.symlink(os.path.abspath(passed[-1]), link)
        options = [word for word in params.options if word != "--columns"] + batch.NO_FILES
        name = os.path.basename(params.paths)
        joined, said = batch.run(params.program, options, [*passed[:-1], link], scratch, name, {link: passed[-1]})
        log.write(said)
        for row in joined:
            if row["status"] != "ok":
                raise batch.Broken(f"{row['alignment']} went through before, and now not: {row['message']}")
        for name in params.concatenations:
            file = os.path.join(results, name)
            os.replace(os.path.join(scratch, "last", name), file)
            made.append({"alignment": name, "files": {file: batch.size(file)}})
        shutil.rmtree(scratch)
    columns = [column for column in rows[0] if column != "files"]
    lines = ["\t".join(columns), *("\t".join(row[column] for column in columns) for row in rows)]
    failed = [f"{row['alignment']}: {row['message']}" for row in rows if row["status"] != "ok"]
    for name, texts in (output.table, lines), (output.failed, failed), (output.record, [json.dumps(made)]):
        pathlib.Path(name).write_text("".join(f"{text}\n" for text in texts), errors="surrogateescape")
