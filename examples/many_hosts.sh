#!/usr/bin/env bash
# Converts a file that is more than one machine wants to do: GNU parallel cuts it by byte ranges, at line ends, gives
# each range to a kxdu of its own, and writes what they give in the order of the file: the same bytes as one kxdu.
#   many_hosts.sh FILE VERB [ARGUMENT...] >OUTPUT
# HOSTS     names, separated by ",", that ssh reaches and on which kxdu is installed; ":" is this one, and the default
# BLOCK     how much a kxdu gets at a time; 64M
# The exit code is the number of ranges that did not end with 0, 101 for more than a hundred: lines were rejected there
# (which kxdu tells by their number within the range), or kxdu could not run.
set -euo pipefail

if [ $# -lt 2 ]; then
    sed -n '2,8s/^# \?//p' "$0" >&2
    exit 2
fi
file=$1
shift

# One thread for each range: parallel runs as many at a time as a host has cores.
exec parallel --will-cite --keep-order --quote --pipepart --arg-file "$file" --block "${BLOCK:-64M}" \
              --sshlogin "${HOSTS:-:}" kxdu "$@" --jobs 1
