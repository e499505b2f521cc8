#!/usr/bin/env bash
# Measures the library, each conversion beside its literal counterpart, and then kxdu, beside mawk and grep. Prints the
# figures, writes them to build/bench, and names each limit that is missed; then it ends with 1. Wants a quiet machine,
# and takes some minutes on it.
#   scripts/bench.sh [--update] [library|kxdu]     --update: also puts the figures into docs/performance.md
set -euo pipefail
cd "$(dirname "$0")/.."

update=()
parts=()
for argument in "$@"; do
    case $argument in
        --update) update=(--update) ;;
        library | kxdu) parts+=("$argument") ;;
        *) sed -n '2,5s/^# \?//p' "$0" >&2; exit 2 ;;
    esac
done
if [ ${#parts[@]} -eq 0 ]; then
    parts=(library kxdu)
fi

scripts/install-deps.sh
scripts/build.sh release
mkdir -p build/bench
log=build/bench/library.log

# Rates of one run only are compared, and of several repetitions in random order the fastest counts: what else the
# machine does makes a call slower, never faster.
measure_library() {
    local bin=build/release/bin folder=build/bench document=()
    echo "measuring the library"
    "$bin"/kx_bench_allocations --benchmark_min_time=0.00001 --benchmark_out=$folder/allocations.json >"$log" 2>&1
    "$bin"/kx_bench --benchmark_min_time=0.03 --benchmark_repetitions=15 --benchmark_enable_random_interleaving=true \
                    --benchmark_out=$folder/times.json >"$log" 2>&1
    if [ ${#update[@]} -gt 0 ]; then
        document=(--document docs/performance.md)
    fi
    local code=0
    bench/report.py $folder/times.json $folder/allocations.json --json $folder/library.json \
                    --svg $folder/performance.svg "${document[@]}" || code=$?
    if [ ${#update[@]} -gt 0 ]; then
        cp $folder/performance.svg docs/performance.svg
    fi
    return $code
}

measure_kxdu() {
    local document=()
    echo "measuring kxdu"
    if [ ${#update[@]} -gt 0 ]; then
        document=(--document docs/performance.md)
    fi
    bench/kxdu.py build/release/bin/kxdu --json build/bench/kxdu.json "${document[@]}"
}

code=0
for part in "${parts[@]}"; do
    case $part in
        library) measure_library || code=1 ;;
        kxdu) measure_kxdu || code=1 ;;
    esac
done
exit $code
