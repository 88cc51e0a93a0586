"""Joins the rows of all groups, and names the partitions of those alignments that went through."""
import batch

rows = [row for part in snakemake.input for row in batch.readtable(part)]
names = batch.partitionnames([row.alignment for row in rows if row.status == "ok"])
rows = [row._replace(partition=next(names)) if row.status == "ok" else row for row in rows]
batch.writetable(snakemake.output[0], [batch.Row._fields, *rows])
