#!/usr/bin/env bash
# Installs what is missing, builds kxdu, and shows it at work: identifiers of a made-up network become records and
# identifiers again.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/demonstration.sh

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# 1234567 as 1,234,567.
grouped() {
    sed -e ':again' -e 's/\([0-9]\)\([0-9]\{3\}\)\($\|,\)/\1,\2\3/' -e 'tagain' <<<"$1"
}

# Shows a command and runs it.
run() {
    printf '\n$ %s\n' "$*"
    "$@"
}

# The same, with the number of identifiers a second.
measure() {
    local begin end
    begin=$(microseconds)
    run "$@"
    end=$(microseconds)
    echo "  $(grouped "$identifiers") identifiers in $(((end - begin) / 1000)) ms:" \
         "$(grouped $((identifiers * 1000000 / (end - begin)))) a second"
}

# Explains the first identifier of the network that matches.
explain_first() {
    local fdn
    fdn=$(grep -m 1 -e "$1" network.fdn)
    printf "\n$ kxdu explain '%s'\n" "$fdn"
    kxdu explain "$fdn"
}

heading "Build"
scripts/install-deps.sh tool
scripts/build.sh tool
PATH="$PWD/build/tool/bin:$PATH"
kxdu --version

cd "$folder"
unset KX_CONFIG_DIR

heading "A network of 2,000 NEs, and its inventory"
run kxdu sample --ne 2000 --seed 1 -o network.fdn --inventory-csv network
identifiers=$(wc -l <network.fdn)
echo "  $(grouped "$identifiers") identifiers, $(grouped "$(wc -c <network.fdn)") bytes"
run kxdu inventory init network.db
run kxdu inventory import network.db network
run export KX_INVENTORY=network.db  # knows the type of each NE

heading "From text to records and back"
measure kxdu decode network.fdn -o records.jsonl
run grep -m 1 PortIndex records.jsonl
measure kxdu encode records.jsonl -o back.fdn
run cmp network.fdn back.fdn
echo "  the same, byte for byte"
measure kxdu check network.fdn
echo "  nothing found"

heading "Three of them explained"
explain_first 'MD=[1-9].*,MEP='
explain_first 'SS=2,.*PP=.* to '
explain_first 'PP=.*→.*SUBIF='
