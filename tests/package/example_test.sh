#!/usr/bin/env bash
# Runs an example and compares what it prints with the "// prints: " lines of its source.
#   example_test.sh PROGRAM SOURCE
set -euo pipefail

diff <(sed -n 's,^// prints: ,,p' "$2") <("$1")
grep -q '^// prints: ' "$2"
