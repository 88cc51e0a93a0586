"""Trims the alignments of one group; their rows of the table are the output."""
import batch

params = snakemake.params
members = [path for path, *_ in params.members]
batch.writetable(snakemake.output[0], batch.trim(params.program, params.options, params.reference[0][0], members))
