#!/usr/bin/env bash
# Runs every command of the ```console blocks of the documents and compares what it prints with what stands below it.
# The commands of one document run in one folder, so that later ones can use files of earlier ones.
#   readme_test.sh SOURCE_FOLDER KXDU DOCUMENT...
set -euo pipefail
# They would change what is printed.
unset KX_INVENTORY KX_CONFIG_DIR NO_COLOR FORCE_COLOR CLICOLOR_FORCE COLUMNS
export LC_ALL=C.UTF-8

source=$1
PATH=$(dirname "$2"):$PATH
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failed=0
commands=0
for document in "$@"; do
    folder=$work/$(basename "$document")
    mkdir "$folder"
    # Splits the blocks into pairs of files, command.N and expected.N.
    awk -v folder="$folder" '
        /^```console/ { inside = 1; next }
        /^```/        { inside = 0; next }
        inside && /^\$ / {
            ++n
            printf "%s\n", substr($0, 3) > (folder "/command." n)
            printf "" > (folder "/expected." n)
            more = /\\$/
            next
        }
        inside && more { printf "%s\n", $0 >> (folder "/command." n); more = /\\$/; next }
        inside && n   { printf "%s\n", $0 >> (folder "/expected." n) }
    ' "$source/$document"
    mkdir "$folder/run"
    n=1
    while [ -e "$folder/command.$n" ]; do
        (cd "$folder/run" && bash ../command.$n) >"$folder/printed" 2>&1 || true
        if ! diff -u "$folder/expected.$n" "$folder/printed" >"$folder/diff"; then
            echo "$document: $(cat "$folder/command.$n")"
            cat "$folder/diff"
            failed=1
        fi
        commands=$((commands + 1))
        n=$((n + 1))
    done
done

if [ "$commands" -eq 0 ]; then
    echo "no command found" >&2
    exit 1
fi
exit "$failed"
