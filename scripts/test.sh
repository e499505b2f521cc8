#!/usr/bin/env bash
# Installs what is missing, builds each preset and runs its tests. Its last line counts the tests of all presets.
#   scripts/test.sh [PRESET...]      default: release asan tsan, of which g++ compiles two and clang one
set -euo pipefail
cd "$(dirname "$0")/.."

presets=("$@")
if [ ${#presets[@]} -eq 0 ]; then
    presets=(release asan tsan)
fi

scripts/install-deps.sh
export ASAN_OPTIONS=detect_stack_use_after_return=1
export TSAN_OPTIONS=halt_on_error=1

# count WHAT: the number that the report of ctest gives to tests, failures, skipped or disabled.
count() {
    sed -n "/<testsuite/,/>/s/.*\b$1=\"\([0-9]*\)\".*/\1/p" "$report" | head -n 1
}

passed=0
failed=0
for preset in "${presets[@]}"; do
    log=build/$preset.log
    echo "== $preset: build"
    if ! scripts/build.sh "$preset"; then
        failed=$((failed + 1))
        continue
    fi
    echo "== $preset: test"
    report=$PWD/build/$preset.xml
    rm -f "$report"
    ctest --preset "$preset" -j "$(nproc)" --output-junit "$report" >>"$log" 2>&1 || true
    if [ ! -s "$report" ] || [ -z "$(count tests)" ]; then
        tail -n 60 "$log"
        echo "== $preset: the tests did not run (whole log: $log)"
        failed=$((failed + 1))
        continue
    fi
    bad=$(count failures)
    left_out=$(($(count skipped) + $(count disabled)))
    good=$(($(count tests) - bad - left_out))
    if [ "$bad" -gt 0 ]; then
        sed -n '/The following tests FAILED/,$p' "$log"
        echo "== $preset: whole log: $log"
    fi
    if [ "$left_out" -gt 0 ]; then
        grep -E '\*\*\*(Skipped|Not Run)' "$log" || true
        echo "== $preset: $left_out skipped"
    fi
    echo "== $preset: $good passed, $bad failed"
    passed=$((passed + good))
    failed=$((failed + bad))
done

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
