#!/usr/bin/env bash
# Runs every benchmark for a moment, to test that each agrees with its literal counterpart or its neighbours, and that
# the reports work.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh

scripts/install-deps.sh tool bench
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
run=$folder/run.json
report=$folder/report

if scripts/build.sh bench kx_bench_allocations &&
   build/bench/bin/kx_bench_allocations --benchmark_min_time=0.00001 --benchmark_out="$run" >"$folder/out" &&
   bench/report.py "$run" "$run" --no-limits >"$report" &&
   grep -q 'ResID2PortIndex(PortIndex)' "$report" && grep -q '60-byte port, written on 8 threads' "$report"; then
    passed
else
    failed
fi

if scripts/build.sh bench kxdu kx_bench_jsonread &&
   bench/kxdu.py build/bench/bin/kxdu --identifiers 2000 --nes 2000 --seconds 0 --no-limits >"$report" &&
   grep -q 'simdjson, beside encode' "$report" && grep -q 'kxdu inventory import: .* MiB at most' "$report"; then
    passed
else
    failed
fi
finish
