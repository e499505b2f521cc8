#!/usr/bin/env bash
# Installs what is missing, builds each preset and runs its tests.
#   scripts/test.sh [PRESET...]      default: release; others: bindings debug clang asan tsan
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh
. scripts/ccache.sh  # some tests build the library

presets=("${@:-release}")
groups=(tool test)
if [[ " ${presets[*]} " =~ \ (clang|asan)\  ]]; then
    groups+=(clang)
fi
if [[ " ${presets[*]} " =~ \ bindings\  ]]; then
    groups+=(postgresql python)
fi
scripts/install-deps.sh "${groups[@]}"
export ASAN_OPTIONS=detect_stack_use_after_return=1
export TSAN_OPTIONS=halt_on_error=1

# attribute NAME: what the report of ctest says of all tests: tests, failures, skipped or disabled.
attribute() {
    sed -n "/<testsuite/,/>/s/.*\b$1=\"\([0-9]*\)\".*/\1/p" "$report" | head -n 1
}

for preset in "${presets[@]}"; do
    log=build/$preset.log
    echo "== $preset: build"
    if ! scripts/build.sh "$preset"; then
        failed
        continue
    fi
    echo "== $preset: test"
    report=$PWD/build/$preset.xml
    rm -f "$report"
    ctest --preset "$preset" -j "$(nproc)" --output-junit "$report" >>"$log" 2>&1 || true
    if [ ! -s "$report" ] || [ -z "$(attribute tests)" ]; then
        tail -n 60 "$log"
        echo "== $preset: the tests did not run (whole log: $log)"
        failed
        continue
    fi
    bad=$(attribute failures)
    left_out=$(($(attribute skipped) + $(attribute disabled)))
    if [ "$bad" -gt 0 ]; then
        sed -n '/\*\*\*/,/^ *Start /p' "$log" | tail -n 100  # what failing tests print
        sed -n '/The following tests FAILED/,$p' "$log"
        echo "== $preset: $bad failed (whole log: $log)"
    fi
    if [ "$left_out" -gt 0 ]; then
        grep -E '\*\*\*(Skipped|Not Run)' "$log" || true
        echo "== $preset: $left_out skipped"
    fi
    passed $(($(attribute tests) - bad - left_out))
    failed "$bad"
done

finish
