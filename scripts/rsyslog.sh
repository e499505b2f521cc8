#!/usr/bin/env bash
# Lets a real rsyslogd pass alarms to kxdu, as docs/guide.md says, and kills kxdu meanwhile.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh

scripts/install-deps.sh tool rsyslog
scripts/build.sh tool
if tests/rsyslog/rsyslog_test.sh build/tool/bin/kxdu docs/guide.md; then
    passed
else
    failed
fi
finish
