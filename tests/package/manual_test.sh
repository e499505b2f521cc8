#!/usr/bin/env bash
# Shows each manual page with man, and compares it with the help of its verb.
#   manual_test.sh MAN_FOLDER KXDU
set -euo pipefail
export LC_ALL=C.UTF-8 MANWIDTH=200
unset COLUMNS
pages=$1
kxdu=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

complain() {
    echo "$*"
    failed=1
}

# words: one a line, so that texts compare equal however they are wrapped.
words() {
    tr -s ' ' '\n' | sort -u
}

count=0
for page in "$pages"/man1/*.1.gz; do
    name=$(basename "$page" .1.gz)
    verb=${name#kxdu}
    verb=${verb#-}
    if [[ $verb == inventory-* ]]; then
        verb="inventory ${verb#inventory-}"
    fi
    man --warnings=w "$page" 2>"$work/warnings" | col -bx >"$work/shown"
    [ ! -s "$work/warnings" ] || complain "$name: $(cat "$work/warnings")"
    for section in NAME SYNOPSIS DESCRIPTION OPTIONS 'SEE ALSO'; do
        grep -q "^$section\$" "$work/shown" || complain "$name: no $section"
    done
    # shellcheck disable=SC2086
    "$kxdu" help $verb >"$work/help"
    missing=$(comm -23 <(sed -n '/^Examples\?:/,$ { s/^Examples\?://; s/^Exit code://; p }' "$work/help" | words) \
                       <(words <"$work/shown"))
    # shellcheck disable=SC2086
    [ -z "$missing" ] || complain "$name: lacks these words of the help:" $missing
    count=$((count + 1))
done
[ "$count" -ge 19 ] || complain "only $count pages"
exit "$failed"
