#!/usr/bin/env bash
# Counts the instructions of a call of each conversion. A conversion fails with more than 5 % above
# bench/instructions.txt. This shows a regression without a clock, so also on a busy machine.
#   bench/instructions.sh [--update]     --update: writes the figures instead; the commit says why they changed
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh
export LC_ALL=C

scripts/install-deps.sh tool bench
figures=bench/instructions.txt
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
log=$folder/log

if ! scripts/build.sh bench kx_bench_instructions; then
    failed
    finish
fi

# The C library chooses its text functions by the processor; here it must take those that every x86-64 has. This library
# also chooses by the processor, but only for texts of 64 bytes and more.
without=-AVX2,-AVX512F,-AVX512VL,-AVX512BW,-BMI2,-ERMS,-FSRM,-RTM,-LZCNT,-MOVBE,-SSE4_1,-SSE4_2,-SSSE3
export GLIBC_TUNABLES=glibc.cpu.hwcaps=$without
if ! valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file="$folder/dump" \
              build/bench/bin/kx_bench_instructions >"$folder/calls" 2>"$log"; then
    tail -n 40 "$log"
    echo "instructions: the program did not run"
    failed
    finish
fi

# One dump for each conversion, with its name and the instructions of all its calls.
for dump in "$folder"/dump.*; do
    sed -n 's/^desc: Trigger: Client Request: //p; s/^totals: //p' "$dump" | paste -d' ' - -
done | sort >"$folder/totals"
sort "$folder/calls" | join - "$folder/totals" | awk '{ printf "%-32s %8.1f\n", $1, $3 / $2 }' >"$folder/counted"

if [ "${1-}" = --update ]; then
    {
        echo "# Instructions of one call, on average over 500 identifiers or records; written by bench/instructions.sh."
        cat "$folder/counted"
    } >"$figures"
fi

grep -v '^#' "$figures" | awk '
    NR == FNR { kept[$1] = $2; next }
    !($1 in kept) { print $1 ": no figure is kept"; ++failed; next }
    {
        change = 100 * ($2 / kept[$1] - 1)
        if (change > 5 || change < -5) {
            printf "%s: %.1f instructions a call, %.1f were kept: %+.1f %%\n", $1, $2, kept[$1], change
        }
        change > 5 ? ++failed : ++passed
        delete kept[$1]
    }
    END {
        for (name in kept) {
            print name ": was not counted"
            ++failed
        }
        print passed + 0, failed + 0
    }' - "$folder/counted" >"$folder/compared"
head -n -1 "$folder/compared"
read -r good bad < <(tail -n 1 "$folder/compared")
passed "$good"
failed "$bad"
finish
