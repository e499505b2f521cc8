#!/usr/bin/env bash
# Compares what the two libraries export, and the types in it, with what abi/ keeps. A change fails here: one that was
# meant is kept by --update, and raises KX_SOVERSION when old programs do not run with it any more. libkx_standalone is
# left out: its few functions are for programs that are built with it.
# The last line is "N passed, N failed".
#   scripts/abi.sh [--update]
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
if ! scripts/build.sh abi; then
    echo "0 passed, 1 failed"
    exit 1
fi

passed=0
failed=0
for library in kx_domain_util kx_platform; do
    built=build/abi/lib/lib$library.so
    kept=abi/lib$library.abi
    if [ "${1-}" = --update ]; then
        abidw --suppressions abi/suppressions.ini --no-show-locs --no-corpus-path --no-comp-dir-path \
              --out-file "$kept" "$built"
        sed -i "s|path='$PWD/|path='|" "$kept"  # what is kept is the same wherever it was made
    fi
    if abidiff --suppressions abi/suppressions.ini "$kept" "$built"; then
        echo "abi: lib$library.so is what $kept says"
        passed=$((passed + 1))
    else
        echo "abi: lib$library.so differs from $kept"
        failed=$((failed + 1))
    fi
done

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
