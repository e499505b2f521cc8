#!/usr/bin/env bash
# Converts a file on several hosts. GNU parallel cuts it into ranges that end at line ends, runs a kxdu for each range,
# and writes their outputs in the order of the file. The output is the same as that of one kxdu.
#   many_hosts.sh FILE VERB [ARGUMENT...] >OUTPUT
# HOSTS     names of hosts that ssh reaches and that have kxdu, separated by ","; the default is ":", this host
# BLOCK     size of a range; the default is 64M
# The exit code is the number of ranges for which kxdu failed or rejected lines; 101 stands for more than 100. kxdu
# counts the lines that it reports within their range.
set -euo pipefail

if [ $# -lt 2 ]; then
    sed -n '2,8s/^# \?//p' "$0" >&2
    exit 2
fi
file=$1
shift

# One thread for each range: parallel runs as many ranges at a time as a host has cores.
exec parallel --will-cite --keep-order --quote --pipepart --arg-file "$file" --block "${BLOCK:-64M}" \
              --sshlogin "${HOSTS:-:}" kxdu "$@" --jobs 1
