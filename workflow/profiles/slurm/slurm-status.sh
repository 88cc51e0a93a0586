#!/usr/bin/env bash
# What has become of a SLURM job, in one of the three words that Snakemake knows: slurm-status.sh JOB
# The controller forgets a job some minutes after its end; then accounting tells, where it is kept. A job that nobody
# knows counts as failed and is tried again. While the controller does not answer, the job counts as running.
set -euo pipefail
job=$1
if answer=$(scontrol --oneliner show job "$job" 2>&1); then
  state=$(sed -E 's/.* JobState=([A-Z_]+).*/\1/' <<<"$answer")
elif [[ $answer == *"Invalid job id"* ]]; then
  state=$(sacct --noheader --parsable2 --allocations --format=State --jobs="$job" 2>/dev/null | tail -n 1) || true
  state=${state:-FORGOTTEN}
else
  state=UNANSWERED
fi
case $state in
  COMPLETED) echo success ;;
  BOOT_FAIL | CANCELLED* | DEADLINE | FAILED | FORGOTTEN | NODE_FAIL | OUT_OF_MEMORY | PREEMPTED | REVOKED | TIMEOUT)
    echo failed
    ;;
  *) echo running ;;
esac
