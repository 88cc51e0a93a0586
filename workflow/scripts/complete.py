"""Ends the workflow badly when an alignment failed, so that the exit status tells. All other results stay."""
import sys

import batch

rows = batch.readtable(snakemake.input.table)
failed = sum(row.status != "ok" for row in rows)
if failed:
    sys.exit(f"\n{failed} of {len(rows)} alignments failed: see {snakemake.input.table}\n")
