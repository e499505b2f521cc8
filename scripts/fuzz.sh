#!/usr/bin/env bash
# Builds the fuzzers and runs each for so many seconds, one on each core. Inputs that stop a fuzzer are kept in
# build/fuzz/findings, inputs that reach new code in build/fuzz/corpus, for the next run.
#   scripts/fuzz.sh SECONDS [FUZZER...]      default: all
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh

all=(scanner readers rewriting tags lines encode toml csv blockreader compressed c)
seconds=${1:-}
fuzzers=("${@:2}")
if [ ${#fuzzers[@]} -eq 0 ]; then
    fuzzers=("${all[@]}")
fi
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]] || [ -n "$(comm -23 <(printf '%s\n' "${fuzzers[@]}" | sort) \
                                                         <(printf '%s\n' "${all[@]}" | sort))" ]; then
    echo "usage: scripts/fuzz.sh SECONDS [FUZZER...], of: ${all[*]}" >&2
    exit 2
fi

scripts/install-deps.sh tool fuzz
folder=build/fuzz
mkdir -p $folder/findings
echo "== fuzz: build"
if ! scripts/build.sh fuzz; then
    failed ${#fuzzers[@]}
    finish
fi

# The fuzzers write inventories as files: into memory, not onto a disk.
TMPDIR=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
trap 'rm -rf "$TMPDIR"' EXIT
export TMPDIR
for corpus in fuzz/corpus/*.txt; do
    fuzz/seeds.py "$corpus" "$TMPDIR/seeds/$(basename "$corpus" .txt)"
done

# What the compressors write, some of it cut off.
mkdir "$TMPDIR/seeds/compressed"
for compressor in gzip zstd xz; do
    for text in '' 'NE=5\n' 'NE=5,FR=1\nNE=6\n'; do
        printf '%b' "$text" | $compressor -c >"$TMPDIR/seeds/compressed/$compressor-${#text}"
        head -c 20 "$TMPDIR/seeds/compressed/$compressor-${#text}" >"$TMPDIR/seeds/compressed/$compressor-${#text}-cut"
    done
done

# Five fuzzers take identifiers.
seeds_of() {
    case $1 in
        scanner | readers | rewriting | tags | c) echo "$TMPDIR/seeds/fdn" ;;
        *) echo "$TMPDIR/seeds/$1" ;;
    esac
}

fuzz() {
    local name=$1 log=build/fuzz/$1.log runs places
    mkdir -p "build/fuzz/corpus/$name"
    if ASAN_OPTIONS=detect_stack_use_after_return=1 UBSAN_OPTIONS=print_stacktrace=1 \
        "build/fuzz/bin/kx_fuzz_$name" -max_total_time="$seconds" -max_len=2048 -timeout=10 -rss_limit_mb=1024 \
            -dict=fuzz/fdn.dict -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$name-" \
            "build/fuzz/corpus/$name" "$(seeds_of "$name")" >"$log" 2>&1; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
        places=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
        echo "== fuzz: $name: $runs inputs, $places places of the code"
        touch "$TMPDIR/passed-$name"
        return
    fi
    grep -v '^INFO\|^#[0-9]*\s' "$log" | head -n 40 || true
    echo "== fuzz: $name: stopped (whole log: $log). To see it again:"
    sed -n "s|.*Test unit written to \(.*\)|     build/fuzz/bin/kx_fuzz_$name \1|p" "$log"
}
export -f fuzz seeds_of
export seconds
printf '%s\n' "${fuzzers[@]}" | xargs -P "$(nproc)" -I{} bash -euo pipefail -c 'fuzz "$0"' {} || true

for fuzzer in "${fuzzers[@]}"; do
    if [ -e "$TMPDIR/passed-$fuzzer" ]; then passed; else failed; fi
done
finish
