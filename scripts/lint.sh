#!/usr/bin/env bash
# Checks the format of every source file, and lets clang-tidy and cppcheck look at all but tests, fuzzers and
# benchmarks. Needs the release preset configured. Its last line counts the files, and cppcheck as one.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t sources < <(git ls-files -- '*.cpp' '*.h')
mapfile -t checked < <(git ls-files -- 'frame/*.cpp' 'device/*.cpp' 'resid/*.cpp' 'common/*.cpp' 'platform/*.cpp' \
                                       'standalone/*.cpp' 'tools/*.cpp' 'examples/*.cpp')
passed=0
failed=0
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT

for source in "${sources[@]}"; do
    if clang-format-14 --dry-run --Werror "$source" >"$results/format" 2>&1; then
        passed=$((passed + 1))
    else
        echo "clang-format: $source"
        failed=$((failed + 1))
    fi
done

check() {
    local log=$1/$(tr / _ <<<"$2")
    if clang-tidy-14 -p build/release --quiet --warnings-as-errors='*' --extra-arg=-Wno-unknown-warning-option \
                     "$2" >"$log" 2>&1; then
        rm -f "$log"
    fi
}
export -f check
printf '%s\n' "${checked[@]}" | xargs -P "$(nproc)" -I{} bash -c 'check "$0" "$1"' "$results" {}
rm -f "$results/format"
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
            -Istandalone/include -I. platform frame device resid common standalone tools examples; then
    passed=$((passed + 1))
else
    echo "cppcheck: findings above"
    failed=$((failed + 1))
fi

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
