#!/usr/bin/env bash
# Installs what is missing, builds the extensions for SQLite and PostgreSQL, and asks both five questions of an operator
# about a made-up network, its inventory and its alarms. Prints each query, the answers and their times. Fails if two
# answers differ. PostgreSQL runs in a temporary folder; nothing is installed into a server.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/demonstration.sh

if [ "${1-}" != ask ]; then
    heading "Build"
    scripts/install-deps.sh tool postgresql python
    scripts/build.sh bindings kxdu kx_sqlite kx_fdn
    exec scripts/with-postgresql.sh build/bindings main -- "$0" ask
fi

extension=$PWD/build/bindings/lib/kx_sqlite
PATH="$PWD/build/bindings/bin:$PATH"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
unset KX_CONFIG_DIR KX_INVENTORY
TIMEFORMAT='  %R s'

heading "A network of 2,000 NEs"
kxdu sample --ne 2000 --seed 1 -o network.fdn --inventory-csv network
kxdu inventory init network.db
kxdu inventory import network.db network

# What happened since then: an NE that the inventory does not know, ports of optical channels, and ports that another
# program writes in its own way.
awk -F , '
    /^NE=7,/  { line = $0; sub(/^NE=7/, "NE=90007", line); print line }
    /\|931\|/ { line = $0; sub(/PP=.*/, "PP=5|12|" 90 + ++channels % 8 "|channel", line); print line }
    /,FR=[0-9]+,S=[0-9]+,CP=-1,PP=[^,]*$/ && ++ports % 20000 == 0 {
        line = $0; sub(/^NE=/, "NE=0", line); print line
        print $1 "," $3 "," $2 "," $4 "," $5
    }' network.fdn >since.fdn
cat since.fdn >>network.fdn
awk 'BEGIN { srand(1); split("critical,major,minor,warning", severity, ",") }
     /[PL]P=[^,]*$/ && rand() < 0.02 { print severity[1 + int(4 * rand())] "\t" $0 }' network.fdn >alarms.tsv
echo "$(wc -l <network.fdn) identifiers, $(wc -l <alarms.tsv) alarms"

heading "Into SQLite"
ask_sqlite() {
    sqlite3 -cmd ".load $extension" -cmd "ATTACH 'network.db' AS inventory" demo.db "$@"
}
time ask_sqlite <<'END'
CREATE TABLE network AS SELECT fdn FROM fdn_file('network.fdn');
CREATE INDEX network_ne ON network (fdn_ne(fdn));
CREATE TABLE alarm (severity TEXT, fdn TEXT);
.mode ascii
.separator "\t" "\n"
.import alarms.tsv alarm
END

heading "Into PostgreSQL"
time psql -q -v ON_ERROR_STOP=1 <<'END'
CREATE EXTENSION kx_fdn;
CREATE TABLE network (fdn text);
\copy network FROM network.fdn WITH (FORMAT csv, DELIMITER E'\x01', QUOTE E'\x02')
CREATE INDEX network_ne ON network (fdn_ne(fdn));
CREATE TABLE alarm (severity text, fdn text);
\copy alarm FROM alarms.tsv WITH (FORMAT csv, DELIMITER E'\t', QUOTE E'\x02')
CREATE TABLE ne (ne_id integer PRIMARY KEY, ne_type integer, multi_sub_shelf integer, oam_number_omitted integer);
\copy ne FROM network/ne.csv WITH (FORMAT csv, HEADER)
CREATE TABLE domain_member (cache text, domain text, ne_type integer);
\copy domain_member FROM network/domain_member.csv WITH (FORMAT csv, HEADER)
ANALYZE;
END

# shown NAME COMMAND...: runs the command, and says how long it took.
shown() {
    local name=$1 begin end
    shift
    begin=$(microseconds)
    "$@"
    end=$(microseconds)
    echo "  $name: $(((end - begin) / 1000)) ms"
}

# ask QUESTION QUERY: of both.
ask() {
    heading "$1"
    printf '%s\n\n' "$2"
    shown SQLite ask_sqlite -box "$2"
    shown PostgreSQL psql -c "$2"
    ask_sqlite -separator '|' "$2" >sqlite.txt
    psql -At -c "$2" >postgresql.txt
    if [ ! -s sqlite.txt ] || ! diff sqlite.txt postgresql.txt; then
        echo "demo-sql: no answer, or two" >&2
        exit 1
    fi
}

ask "Which NEs have ports of optical channels (interface level 12292)?" \
"SELECT fdn_ne(fdn) AS ne, count(*) AS ports
FROM network
WHERE fdn_kind(fdn) = 'port' AND fb_level(fdn_number(fdn, 'PP:1')) = 12292
GROUP BY fdn_ne(fdn) ORDER BY ports DESC, ne LIMIT 5"

ask "How many alarms has each family of NEs?" \
"SELECT domain AS family, count(*) AS alarms, sum(CASE severity WHEN 'critical' THEN 1 ELSE 0 END) AS critical
FROM alarm
JOIN ne ON ne_id = fdn_ne(fdn)
JOIN domain_member USING (ne_type)
WHERE cache = 'NE_TYPE_LIST'
GROUP BY domain ORDER BY alarms DESC, family"

ask "Which NEs have ports in the file, and are missing from the inventory?" \
"SELECT fdn_ne(fdn) AS ne, count(*) AS ports
FROM network
WHERE fdn_kind(fdn) = 'port' AND fdn_ne(fdn) NOT IN (SELECT ne_id FROM ne)
GROUP BY fdn_ne(fdn) ORDER BY ne"

ask "Which ports are written twice, in different ways?" \
"SELECT min(fdn) AS one, max(fdn) AS other
FROM network
WHERE fdn_kind(fdn) = 'port'
GROUP BY fdn_record(fdn) HAVING min(fdn) <> max(fdn) ORDER BY one LIMIT 5"

ask "Which ports lie in shelf 1 of NE 6?" \
"SELECT fdn_number(fdn, 'S') AS slot, fdn_number(fdn, 'PP:2') AS port, fdn_get(fdn, 'PP:3') AS name
FROM network
WHERE fdn_ne(fdn) = 6 AND fdn_under(fdn, 'NE=6,FR=1') AND fdn_kind(fdn) = 'port'
ORDER BY slot, port, fdn LIMIT 5"
