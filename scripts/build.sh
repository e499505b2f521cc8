#!/usr/bin/env bash
# Configures a preset and builds it or some of its targets, with ccache if that is installed. Prints nothing unless it
# fails; then it shows the end of the log, build/PRESET.log.
#   scripts/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
targets=()
if [ $# -gt 1 ]; then
    targets=(--target "${@:2}")
fi
. scripts/ccache.sh
log=build/$preset.log
mkdir -p build
if ! { cmake --preset "$preset" && cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}"; } >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    echo "build: $preset failed (whole log: $log)" >&2
    exit 1
fi
