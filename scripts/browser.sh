#!/usr/bin/env bash
# Opens the page of `kxdu report` in Chromium without a window and uses it. Leaves screenshots in build/browser: look at
# them after a change of the page.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh tool browser
scripts/build.sh release kxdu
exec tests/browser/report_test.py build/release/bin/kxdu build/browser
