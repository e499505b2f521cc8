#!/usr/bin/env bash
# Checks the format of every source file, and lets clang-tidy and cppcheck look at all but tests, fuzzers and
# benchmarks. Its last line counts the files, and cppcheck as one.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
mkdir -p build
cmake --preset release >build/lint.log  # clang-tidy asks it how each file is compiled

mapfile -t sources < <(git ls-files -- '*.cpp' '*.h')
mapfile -t checked < <(git ls-files -- 'frame/*.cpp' 'device/*.cpp' 'resid/*.cpp' 'common/*.cpp' 'platform/*.cpp' \
                                       'standalone/*.cpp' 'tools/*.cpp' 'examples/*.cpp')
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT

mapfile -t misformatted < <(printf '%s\n' "${sources[@]}" | xargs -P "$(nproc)" -I{} bash -c \
    'clang-format-14 --dry-run --Werror "$0" >/dev/null 2>&1 || echo "$0"' {})
for source in "${misformatted[@]}"; do
    echo "clang-format: $source"
done
failed=${#misformatted[@]}
passed=$((${#sources[@]} - failed))

check() {
    local log=$1/$(tr / _ <<<"$2")
    if clang-tidy-14 -p build/release --quiet --warnings-as-errors='*' "$2" >"$log" 2>&1; then
        rm -f "$log"
    fi
}
export -f check
printf '%s\n' "${checked[@]}" | xargs -P "$(nproc)" -I{} bash -c 'check "$0" "$1"' "$results" {}
bad=0
for log in "$results"/*; do
    [ -e "$log" ] || continue
    grep -v 'warnings generated\|Suppressed\|Use -header-filter' "$log" || true
    bad=$((bad + 1))
done
passed=$((passed + ${#checked[@]} - bad))
failed=$((failed + bad))

if cppcheck --enable=warning,performance,portability --suppressions-list=.cppcheck-suppressions --std=c++20 \
            --language=c++ --error-exitcode=1 --quiet -j "$(nproc)" -Iinclude -Iplatform/include \
            -Istandalone/include -I. -Itools/kxdu platform frame device resid common standalone tools examples; then
    passed=$((passed + 1))
else
    echo "cppcheck: findings above"
    failed=$((failed + 1))
fi

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
