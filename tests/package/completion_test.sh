#!/usr/bin/env bash
# Completes command lines with the script for bash: first by its function, then by the keys of an interactive bash.
#   completion_test.sh SCRIPT KXDU
set -euo pipefail
script=$(realpath "$1")
PATH=$(dirname "$(realpath "$(command -v "$2")")"):$PATH
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir folder
touch network.fdn 'two words.fdn'
failed=0

# shellcheck source=/dev/null
. "$script"
compopt() { :; }  # only readline has it

# completes EXPECTED WORD...: what the last word can become, sorted, separated by blanks.
completes() {
    local expected=$1
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _kxdu
    local found
    found=$(printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd ' ')
    if [ "$found" != "$expected" ]; then
        printf 'completes "%s":\n  expected: %s\n  found:    %s\n' "$*" "$expected" "$found"
        failed=1
    fi
}

completes "decode" kxdu dec
completes "encode explain" kxdu e
completes "--version" kxdu --v
completes "export import init list" kxdu inventory ""
completes "list" kxdu inventory l
completes "--format" kxdu decode --fo
completes "--nes" kxdu inventory list --n
completes "csv" kxdu decode --format cs
completes "csv" kxdu inventory list --format cs
completes "csv" kxdu decode --format = cs
completes "jsonl" kxdu fb --format js
completes "always auto never" kxdu explain --color ""
completes "network.fdn" kxdu decode net
completes "two words.fdn" kxdu decode tw
completes "network.fdn" kxdu decode --output net
completes "folder" kxdu filter --config ""
completes "ShelfIndex" kxdu decode --as Sh
completes "ctp-names" kxdu tables ct
completes "decode" kxdu help dec
completes "" kxdu sample --seed ""
completes "" kxdu nonsense --f
completes "--format" kxdu decode -o encode --fo

# What a user sees who presses the tab key.
cat >keys <<END
. '$script'
kxdu expl	NE=5
kxdu tables client-r	--format cs	| head -n 1
exit
END
typed=$(TERM=dumb LC_ALL=C.UTF-8 script -qec 'bash --norc --noprofile -i' /dev/null <keys)
for part in 'network element 5' 'name,level'; do
    if [[ $typed != *"$part"* ]]; then
        printf 'typed keys: no "%s" in:\n%s\n' "$part" "$typed"
        failed=1
    fi
done
exit "$failed"
