#!/usr/bin/env bash
# Checks the format of every source file. clang-tidy and cppcheck look at all but tests, fuzzers and benchmarks. Each
# file counts once for its format and once for clang-tidy; cppcheck counts once.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh

scripts/install-deps.sh tool test postgresql python lint
mkdir -p build
cmake --preset bindings >build/lint.log  # clang-tidy asks it how each file is compiled

mapfile -t sources < <(git ls-files -- '*.cpp' '*.h' '*.c')
mapfile -t misformatted < <(printf '%s\n' "${sources[@]}" | xargs -P "$(nproc)" -n 16 bash -c \
    'for file; do clang-format-14 --dry-run --Werror "$file" >/dev/null 2>&1 || echo "$file"; done' bash)
if [ ${#misformatted[@]} -gt 0 ]; then
    printf 'clang-format: %s\n' "${misformatted[@]}"
fi
failed ${#misformatted[@]}
passed $((${#sources[@]} - ${#misformatted[@]}))

mapfile -t checked < <(git ls-files -- '*.cpp' | grep -vE '^(tests|fuzz|bench)/')
findings=build/tidy.txt
scripts/tidy.py build/bindings/compile_commands.json build/tidy "${checked[@]}" >"$findings"
head -n -1 "$findings"
read -r clean dirty < <(tail -n 1 "$findings")
passed "$clean"
failed "$dirty"

mapfile -t folders < <(printf '%s\n' "${checked[@]}" | cut -d/ -f1 | sort -u)
if cppcheck --enable=warning,performance,portability --suppressions-list=.cppcheck-suppressions --std=c++20 \
            --language=c++ --error-exitcode=1 --quiet -j "$(nproc)" -Iinclude -Iplatform/include \
            -Istandalone/include -Ibindings/c/include -I. -Itools/kxdu "${folders[@]}"; then
    passed
else
    echo "cppcheck: findings above"
    failed
fi

finish
