#!/usr/bin/env bash
# Each compiler that is there takes the program as C11 without a warning, and it finds nothing wrong.
#   compilers_test.sh PROGRAM.c HEADER_FOLDER LIBRARY_FOLDER COMPILER...
set -euo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tried=0
for compiler in "${@:4}"; do
    command -v "$compiler" >/dev/null || continue
    tried=$((tried + 1))
    "$compiler" -std=c11 -Wall -Wextra -pedantic -Werror -I"$2" "$1" -o "$work/program" \
        -L"$3" -lkx_c -Wl,-rpath,"$3"
    "$work/program"
done
[ "$tried" -gt 0 ]
