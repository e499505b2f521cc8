#!/usr/bin/env bash
# Runs the statements of regress/sql, each file in turn, and compares what psql prints with regress/expected.
#   regress_test.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail

here=$(dirname "$(realpath "$0")")
if [ $# -eq 2 ]; then
    exec "$1/scripts/with-postgresql.sh" "$2" main -- "$0"
fi

printed=$(mktemp -d)
trap 'rm -rf "$printed"' EXIT
code=0
"$(pg_config --pkglibdir)/pgxs/src/test/regress/pg_regress" --inputdir="$here/regress" --outputdir="$printed" \
    --bindir= --host="$PGHOST" --port="$PGPORT" --user="$PGUSER" --dbname=contrib_regression \
    extension pieces records tables encodings limits memory || code=$?
if [ $code -ne 0 ]; then
    cat "$printed/regression.diffs"
    [ -z "${KX_KEEP_RESULTS-}" ] || cp -r "$printed/results" "$KX_KEEP_RESULTS"
fi
exit $code
