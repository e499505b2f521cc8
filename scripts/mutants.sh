#!/usr/bin/env bash
# Makes small changes to copies of the sources (an operator, a constant, two rows, a dropped step), one at a time, and
# sees whether a test of the library fails for each. Names those that no test notices. Fails when fewer than 95 % are
# noticed, or one that is not, is not explained in tests/mutants.txt; of all, also when one is explained there that is
# noticed or gone, or fewer than 300 are built. Takes three quarters of an hour; build/mutants/report.txt says how far it
# is.
#   scripts/mutants.sh [--list] [--jobs N] [ID...]      default: all, on all processors
set -euo pipefail
exec python3 "$(dirname "$0")/mutants.py" "$@"
