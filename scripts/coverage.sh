#!/usr/bin/env bash
# Builds the library's tests with counters, runs them, and prints which lines and branches of the library and its public
# headers they reach. Fails if a test does, or below 98 % of lines and 92 % of branches. build/coverage/report.txt names
# the lines that no test reaches.
#
# Branches that the compiler adds for exceptions do not count: the tests with failing memory look after those. Nor do
# branches of lines without code, such as a closing brace.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh tool test coverage
scripts/build.sh coverage tests/{platform,frame,device,resid,common}/all kx_churn_tests kx_failingmemory_tests
find build/coverage -name '*.gcda' -delete
log=build/coverage.log
if ! ctest --preset coverage -j "$(nproc)" -R '^kx_' -E '^kx_(standalone|failinghost)' >>"$log" 2>&1; then
    sed -n '/The following tests FAILED/,$p' "$log"
    exit 1
fi
gcovr --root . --object-directory build/coverage --gcov-executable gcov-12 \
    --filter '(frame|device|resid|common|platform)/' --filter 'include/kx_domain_util/' \
    --exclude-throw-branches --exclude-unreachable-branches \
    --print-summary --txt build/coverage/report.txt --fail-under-line 98 --fail-under-branch 92
