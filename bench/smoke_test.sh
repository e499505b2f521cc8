#!/usr/bin/env bash
# Every benchmark runs, if only for a moment, and agrees with its literal counterpart; a report is made of them.
#   smoke_test.sh KX_BENCH_ALLOCATIONS
set -euo pipefail

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" --benchmark_min_time=0.00001 --benchmark_out="$folder/run.json" >"$folder/out"
"$(dirname "$0")/report.py" "$folder/run.json" "$folder/run.json" --no-limits --svg "$folder/chart.svg" >"$folder/report"
grep -q 'ResID2PortIndex(PortIndex)' "$folder/report"
grep -q '60-byte port, written on 8 threads' "$folder/report"
grep -q '</svg>' "$folder/chart.svg"
