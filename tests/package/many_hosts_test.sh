#!/usr/bin/env bash
# The example converts by byte ranges to the same bytes as one kxdu.
#   many_hosts_test.sh KXDU EXAMPLE
set -euo pipefail

PATH=$(dirname "$1"):$PATH
example=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
export HOME=$folder BLOCK=100k

kxdu sample --identifiers 40000 -o network.fdn
kxdu decode network.fdn -o whole.jsonl
"$example" network.fdn decode >ranges.jsonl
cmp whole.jsonl ranges.jsonl

kxdu get NE,PP:3 network.fdn -o whole.tsv
"$example" network.fdn get NE,PP:3 >ranges.tsv
cmp whole.tsv ranges.tsv

# The exit code counts the ranges with rejected lines. Two of them prove that there was more than one range.
sed '1~20000s/.*//' network.fdn >damaged.fdn
code=0
"$example" damaged.fdn decode >damaged.jsonl 2>rejects || code=$?
[ "$code" -eq 2 ]
[ "$(wc -l <damaged.jsonl)" -eq 39998 ]
