#!/usr/bin/env bash
# Measures the library, each conversion beside its literal counterpart; kxdu beside simdjson, mawk, grep, jq and
# sqlite3; and the bindings for SQLite, PostgreSQL and Python beside what people would use instead. Prints the figures,
# writes them to build/figures, and names each limit that is missed; then it exits with 1. Takes some minutes and wants
# a quiet machine.
#   scripts/bench.sh [library|kxdu|bindings]...      default: library and kxdu
set -euo pipefail
cd "$(dirname "$0")/.."

parts=("$@")
if [ $# -eq 0 ]; then
    parts=(library kxdu)
fi
for part in "${parts[@]}"; do
    if ! [[ $part =~ ^(library|kxdu|bindings)$ ]]; then
        sed -n '2,6s/^# \?//p' "$0" >&2
        exit 2
    fi
done

bin=build/bench/bin
bindings=build/bindings
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
    scripts/build.sh bench kx_bench kx_bench_allocations || return 1
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
    scripts/build.sh bench kxdu kx_bench_jsonread || return 1
    echo "measuring kxdu"
    rm -f $folder/kxdu.json
    bench/kxdu.py $bin/kxdu --json $folder/kxdu.json
}

# All three are measured, even if one misses a limit.
measure_bindings() {
    local failures=0
    scripts/build.sh bindings kxdu kx_sqlite kx_python kx_fdn || return 1
    echo "measuring the extension for SQLite"
    /usr/bin/python3 -B bench/sqlite.py $bindings/bin/kxdu $bindings/lib/kx_sqlite.so || failures=1
    echo "measuring the package for Python"
    rm -f $folder/python.json
    PYTHONPATH=$bindings/python /usr/bin/python3 -B bench/python.py $bindings/bin/kxdu --json $folder/python.json ||
        failures=1
    echo "measuring the extension for PostgreSQL"
    bench/postgresql.sh || failures=1
    return $failures
}

scripts/install-deps.sh tool bench
if [[ " ${parts[*]} " == *" bindings "* ]]; then
    scripts/install-deps.sh test postgresql python
fi
code=0
for part in "${parts[@]}"; do
    case $part in
        library) measure_library || code=1 ;;
        kxdu) measure_kxdu || code=1 ;;
        bindings) measure_bindings || code=1 ;;
    esac
done
exit $code
