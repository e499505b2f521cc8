#!/usr/bin/env bash
# Measures the library, each conversion beside its literal counterpart, and then kxdu, beside mawk and grep. Prints the
# figures, writes them to build/bench, and names each limit that is missed; then it ends with 1. Wants a quiet machine,
# and takes some minutes on it.
#   scripts/bench.sh [--update] [library|kxdu]     --update: also puts the figures into docs/performance.md
set -euo pipefail
cd "$(dirname "$0")/.."

document=()
parts=()
for argument in "$@"; do
    case $argument in
        --update) document=(--document docs/performance.md) ;;
        library | kxdu) parts+=("$argument") ;;
        *) sed -n '2,5s/^# \?//p' "$0" >&2; exit 2 ;;
    esac
done
if [ ${#parts[@]} -eq 0 ]; then
    parts=(library kxdu)
fi

scripts/install-deps.sh
scripts/build.sh release
bin=build/release/bin
folder=build/bench
mkdir -p $folder

# Measures with a program into NAME.json, and keeps what it says in NAME.log. Figures of an earlier run are never left
# where those of this one are looked for. Says itself whether it failed: nothing ends by itself behind "||".
#   measured NAME PROGRAM [OPTION...]
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

# Rates of one run only are compared, and of several repetitions in random order the fastest counts: what else the
# machine does makes a call slower, never faster.
measure_library() {
    echo "measuring the library"
    rm -f $folder/library.json $folder/performance.svg
    measured allocations $bin/kx_bench_allocations --benchmark_min_time=0.00001 || return 1
    measured times $bin/kx_bench --benchmark_min_time=0.008 --benchmark_repetitions=45 \
                                 --benchmark_enable_random_interleaving=true || return 1
    local code=0
    bench/report.py $folder/times.json $folder/allocations.json --json $folder/library.json \
                    --svg $folder/performance.svg "${document[@]}" || code=1
    if [ ${#document[@]} -gt 0 ]; then
        cp $folder/performance.svg docs/performance.svg || return 1
    fi
    return $code
}

measure_kxdu() {
    echo "measuring kxdu"
    rm -f $folder/kxdu.json
    bench/kxdu.py $bin/kxdu --json $folder/kxdu.json "${document[@]}"
}

code=0
for part in "${parts[@]}"; do
    case $part in
        library) measure_library || code=1 ;;
        kxdu) measure_kxdu || code=1 ;;
    esac
done
exit $code
