#!/usr/bin/env bash
# The commands of the guide print what stands below them, beside the three clusters that it names.
#   guide_test.sh SOURCE_FOLDER BUILD_FOLDER KXDU
set -euo pipefail

exec "$1/scripts/with-postgresql.sh" "$2" main west east -- \
    "$1/tests/package/readme_test.sh" "$1" "$3" docs/postgresql.md
