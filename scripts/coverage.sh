#!/usr/bin/env bash
# Builds the library's test programs for measuring, runs them, and prints which lines and branches of the library they
# reach, its public headers included. Fails when a test does, or below 98 % of lines and 92 % of branches. Lines that
# are not reached, file by file: build/coverage/report.txt.
#
# Branches that the compiler makes for exceptions do not count: nobody wrote them, and the tests with failing memory are
# there for what they do. Nor do those of lines without code, such as a closing brace.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
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
