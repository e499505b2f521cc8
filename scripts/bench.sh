#!/usr/bin/env bash
# Measures the library, each conversion beside its literal counterpart, and kxdu beside mawk and grep. Prints the
# figures, writes them to build/figures, and names each limit that is missed; then it exits with 1. Takes some minutes and
# wants a quiet machine.
#   scripts/bench.sh [library|kxdu]      default: both
set -euo pipefail
cd "$(dirname "$0")/.."

parts=("$@")
if [ $# -eq 0 ]; then
    parts=(library kxdu)
fi
for part in "${parts[@]}"; do
    if ! [[ $part =~ ^(library|kxdu)$ ]]; then
        sed -n '2,5s/^# \?//p' "$0" >&2
        exit 2
    fi
done

scripts/install-deps.sh tool bench
scripts/build.sh bench
bin=build/bench/bin
folder=build/figures
mkdir -p $folder

# measured NAME PROGRAM [OPTION...]: runs a program that writes NAME.json, and keeps what it prints in NAME.log. Returns
# its failure, since "set -e" does not reach a function in front of "||".
measured() {
    local name=$1
    shift
    rm -f "$folder/$name.json"
    "$@" --benchmark_out="$folder/$name.json" >"$folder/$name.log" 2>&1 || {
        tail -n 40 "$folder/$name.log" >&2
        echo "bench: $1 failed (whole log: $folder/$name.log)" >&2
        return 1
    }
}

# Of all repetitions the fastest counts: whatever else the machine does makes a call slower, never faster. In a round,
# benchmarks of one conversion follow each other.
measure_library() {
    local round rounds=()
    echo "measuring the library"
    rm -f $folder/library.json
    measured allocations $bin/kx_bench_allocations --benchmark_min_time=0.00001 || return 1
    for round in {01..15}; do
        measured "times-$round" $bin/kx_bench --benchmark_min_time=0.008 --benchmark_repetitions=3 || return 1
        rounds+=("$folder/times-$round.json")
    done
    bench/report.py $folder/allocations.json "${rounds[@]}" --json $folder/library.json --svg $folder/library.svg
}

measure_kxdu() {
    echo "measuring kxdu"
    rm -f $folder/kxdu.json
    bench/kxdu.py $bin/kxdu --json $folder/kxdu.json
}

code=0
for part in "${parts[@]}"; do
    case $part in
        library) measure_library || code=1 ;;
        kxdu) measure_kxdu || code=1 ;;
    esac
done
exit $code
