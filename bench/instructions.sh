#!/usr/bin/env bash
# Counts the instructions of a call of each conversion, and of a line that verbs of kxdu take. A figure of more than 5 %
# above bench/instructions.txt fails. This shows a regression without a clock, so also on a busy machine.
#   bench/instructions.sh [--update]     --update: writes the figures instead; the commit says why they changed
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh
export LC_ALL=C

scripts/install-deps.sh tool bench
figures=bench/instructions.txt
bin=$PWD/build/bench/bin
lines=20000
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
log=$folder/log

if ! scripts/build.sh bench kx_bench_instructions kxdu; then
    failed
    finish
fi

# The C library and simdjson choose their functions by the processor. Here they must always take the same: those for
# every x86-64, and those for processors with SSE4.2.
without=-AVX2,-AVX512F,-AVX512VL,-AVX512BW,-BMI2,-ERMS,-FSRM,-RTM,-LZCNT,-MOVBE,-SSE4_1,-SSE4_2,-SSSE3
export GLIBC_TUNABLES=glibc.cpu.hwcaps=$without
export SIMDJSON_FORCE_IMPLEMENTATION=westmere

# callgrind [OPTION...] PROGRAM...: runs a program that must succeed; otherwise the script ends.
callgrind() {
    if ! valgrind --tool=callgrind --callgrind-out-file="$folder/dump" "$@" 2>"$log"; then
        tail -n 40 "$log" >&2
        echo "instructions: failed: $*" >&2
        return 1
    fi
}

# One dump for each conversion, with its name and the instructions of all its calls.
count_conversions() {
    callgrind --instr-atstart=no "$bin/kx_bench_instructions" >"$folder/calls"
    for dump in "$folder"/dump.*; do
        sed -n 's/^desc: Trigger: Client Request: //p; s/^totals: //p' "$dump" | paste -d' ' - -
    done | sort >"$folder/totals"
    sort "$folder/calls" | join - "$folder/totals" | awk '{ printf "%-32s %8.1f\n", $1, $3 / $2 }'
}

# make_inputs: the sample's identifiers, inventory, records and alarms, with a list of notifications to hold back.
make_inputs() {
    "$bin/kxdu" sample --identifiers $lines -o network.fdn --inventory-csv tables
    "$bin/kxdu" inventory init network.db
    "$bin/kxdu" inventory import network.db tables
    "$bin/kxdu" decode network.fdn -o records.jsonl
    awk '{ print 1000000 + NR % 200, $0 }' network.fdn >alarms.txt
    mkdir kx_corbaagent_bundle
    printf 'EventSwitch = 2\nBlacklist = "%s"\n' "$(seq -s, 1000000 5 1000195)" >kx_corbaagent_bundle/bundle.cfg
}

# count_verb FILE VERB [OPTION...]: a line is what a file of $lines takes more than one of a single line.
count_verb() {
    local file=$1 verb=$2 input totals=()
    shift
    head -n 1 "$file" >one-line
    for input in "$file" one-line; do
        callgrind "$bin/kxdu" "$@" --jobs 1 "$input" >/dev/null
        totals+=("$(sed -n 's/^totals: //p' "$folder/dump")")
    done
    awk -v name="kxdu-$verb" -v all="${totals[0]}" -v one="${totals[1]}" -v lines=$lines \
        'BEGIN { printf "%-32s %8.1f\n", name, (all - one) / (lines - 1) }'
}

count_verbs() {
    cd "$folder"
    make_inputs >"$log"
    count_verb network.fdn decode
    count_verb records.jsonl encode --inventory network.db
    count_verb network.fdn check --inventory network.db
    count_verb network.fdn get NE,PP:2
    count_verb alarms.txt filter --config .
}

count_conversions >"$folder/counted"
(count_verbs) >>"$folder/counted"

if [ "${1-}" = --update ]; then
    {
        echo "# Instructions of a call, on average over 500 identifiers or records. For verbs of kxdu, of a line, on"
        echo "# average over $lines. Written by bench/instructions.sh."
        cat "$folder/counted"
    } >"$figures"
fi

grep -v '^#' "$figures" | awk '
    NR == FNR { kept[$1] = $2; next }
    !($1 in kept) { print $1 ": no figure is kept"; ++failed; next }
    {
        change = 100 * ($2 / kept[$1] - 1)
        if (change > 5 || change < -5) {
            printf "%s: %.1f instructions, %.1f were kept: %+.1f %%\n", $1, $2, kept[$1], change
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
