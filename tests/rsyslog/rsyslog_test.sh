#!/usr/bin/env bash
# A real rsyslogd passes 100,000 alarms to kxdu by the recipe in the guide. Meanwhile kxdu is killed several times.
# Each alarm must be in the file that it belongs to. Needs no root.
#   rsyslog_test.sh KXDU GUIDE
set -euo pipefail

kxdu=$(realpath "$1")
guide=$(realpath "$2")
PATH=$PATH:/usr/sbin
work=$(mktemp -d)
cd "$work"
daemon=
cleanup() {
    [ -z "$daemon" ] || kill -KILL "$daemon" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "rsyslog_test: $*" >&2
    tail -n 20 "$work"/log/kxdu.log "$work"/rsyslogd.log >&2 || true
    exit 1
}

# until_true SECONDS COMMAND...: repeats a command until it succeeds.
until_true() {
    local end=$((SECONDS + $1))
    while ! "${@:2}"; do
        [ "$SECONDS" -lt "$end" ] || fail "waited $1 s for: ${*:2}"
        sleep 0.05
    done
}

# hold_back IDENTIFIER
hold_back() {
    printf '%s\n' 'EventSwitch = 2' "Blacklist = \"$1\"" >new.cfg
    mv new.cfg nms/kx_corbaagent_bundle/bundle.cfg
}

mkdir -p nms/kx_corbaagent_bundle log spool
hold_back 7
echo "global(workDirectory=\"$work/spool\")" >rsyslog.conf
# shellcheck disable=SC2016
sed -n '/^```rsyslog$/,/^```$/{/^```/!p}' "$guide" |
    sed "s|port=\"[0-9]*\"|port=\"0\" listenPortFileName=\"$work/port\"|; s|/usr/bin/kxdu|$kxdu|
         s|/etc/nms|$work/nms|; s|/var/log|$work/log|g" >>rsyslog.conf
grep -q listenPortFileName rsyslog.conf || fail "the guide has no recipe"

rsyslogd -n -f "$work/rsyslog.conf" -i "$work/pid" >rsyslogd.log 2>&1 &
daemon=$!
until_true 30 test -s port

# alarms FROM TO: the identifiers 0 to 9 take turns.
alarms() {
    seq "$1" "$2" | sed 's/.*\(.\)$/\1\tLOS\tNE=&/'
}

send() {
    cat >"/dev/tcp/127.0.0.1/$(cat port)"
}

# has_lines FILE COUNT
has_lines() {
    [ -e "$1" ] && [ "$(wc -l <"$1")" -ge "$2" ]
}

alarms 1 100000 | send &
kills=0
for reached in 5000 {10000..85000..7500}; do
    until_true 120 has_lines log/alarms.log "$reached"
    if pkill -KILL -P "$daemon" -x kxdu; then
        kills=$((kills + 1))
    fi
done
[ "$kills" -ge 3 ] || fail "kxdu was killed only $kills times"
wait $!

# has_all FILE COUNT: counts each alarm once.
has_all() {
    [ "$(sort -u "$1" | wc -l)" -ge "$2" ]
}
until_true 120 has_lines log/alarms.log 90000
until_true 120 has_all log/alarms.log 90000
until_true 30 has_all log/held.log 10000

# If the last kill came after the last alarm, no kxdu runs now: more alarms start one.
alarms 100001 100010 | send
until_true 30 has_all log/held.log 10001
until_true 30 has_all log/alarms.log 90009
hold_back 8
alarms 100011 100020 | send
until_true 30 has_all log/held.log 10002
until_true 30 has_all log/alarms.log 90018
kill -TERM "$daemon"
wait "$daemon" || true
daemon=

sort -u log/alarms.log >passed
sort -u log/held.log >held
{ alarms 1 100010 | grep -v ^7; alarms 100011 100020 | grep -v ^8; } | sort | cmp - passed ||
    fail "alarms.log does not have the alarms that pass"
{ alarms 1 100010 | grep ^7; alarms 100011 100020 | grep ^8; } | sort | cmp - held ||
    fail "held.log does not have the alarms that are held back"
twice=$(($(cat log/alarms.log log/held.log | wc -l) - 100020))
[ "$twice" -le "$kills" ] || fail "$twice alarms came twice, but kxdu was killed $kills times"
grep -q 'has changed: EventSwitch is "2", Blacklist is "8" from now on' log/kxdu.log ||
    fail "no message says that the configuration has changed"
echo "100,020 alarms, $kills kills: none lost, $twice twice"
