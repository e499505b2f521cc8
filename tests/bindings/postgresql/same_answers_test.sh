#!/usr/bin/env bash
# The extension answers as kxdu does, for 100,000 identifiers, half of them odd.
#   same_answers_test.sh SOURCE_FOLDER BUILD_FOLDER KXDU
set -euo pipefail

here=$(dirname "$(realpath "$0")")
if [ $# -eq 3 ]; then
    exec "$1/scripts/with-postgresql.sh" "$2" main -- env KXDU="$3" "$0"
fi

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
unset KX_INVENTORY KX_CONFIG_DIR

# What kxdu says. It exits with 1 for lines that it rejects or finds something in; there are some.
"$KXDU" sample --identifiers 50000 --seed 3 -o network.fdn
"$here/oddities.py" <network.fdn >odd.fdn
cat network.fdn odd.fdn >all.fdn
pieces=(NE FR S CP SS PP PP:0 PP:1 PP:2 PP:3 LP LP:2 AP:1 MD:1 TUNNEL:6)
for verb in decode check; do
    code=0
    "$KXDU" $verb $([ $verb = decode ] || echo --levels-only) all.fdn >$verb 2>rejected.$verb || code=$?
    [ $code -eq 1 ]
done
sed -En 's/^all\.fdn:([0-9]+):([0-9]+: .*)$/\1\x01\2/p' check | awk -F '\001' '!seen[$1]++' >problems
"$KXDU" get "$(IFS=,; echo "${pieces[*]}")" all.fdn >got
seq 0 70000 | "$KXDU" fb --format csv - >fb.csv || [ $? -eq 1 ]

psql -q -v ON_ERROR_STOP=1 -v pieces="${pieces[*]}" <<'END'
CREATE EXTENSION kx_fdn;
CREATE TABLE texts (line bigserial, fdn text);
\copy texts (fdn) FROM all.fdn WITH (FORMAT csv, DELIMITER E'\x01', QUOTE E'\x02')
CREATE TABLE decoded (answer jsonb);
\copy decoded FROM decode WITH (FORMAT csv, DELIMITER E'\x01', QUOTE E'\x02')
CREATE TABLE problems (line bigint, problem text);
\copy problems FROM problems WITH (FORMAT csv, DELIMITER E'\x01', QUOTE E'\x02')
CREATE TABLE got (line bigserial, cells text);
\copy got (cells) FROM got WITH (FORMAT csv, DELIMITER E'\x01', QUOTE E'\x02')
CREATE TABLE fb (fb_type integer, found integer, name text, level integer, rate text, bidir text, a text, b text,
                 c text, d text);
\copy fb FROM fb.csv WITH (FORMAT csv, HEADER)

-- Identifiers that occur twice were decoded twice, to the same.
CREATE TABLE records AS SELECT DISTINCT answer ->> 'fdn' AS fdn, answer ->> 'type' AS type, answer -> 'record' AS record
                          FROM decoded;
CREATE TABLE fields AS
    SELECT fdn, key AS field, CASE jsonb_typeof(value) WHEN 'number' THEN nullif(value #>> '{}', '-1')
                                                       ELSE value #>> '{}' END AS value
      FROM records, jsonb_each(record) WHERE jsonb_typeof(value) <> 'object';
INSERT INTO fields
    SELECT fdn, 'port.' || key, CASE jsonb_typeof(value) WHEN 'number' THEN nullif(value #>> '{}', '-1')
                                                         ELSE value #>> '{}' END
      FROM records, jsonb_each(record -> 'port');
CREATE TABLE cells AS
    SELECT fdn, piece, replace(replace(replace(replace(escaped, '\\', E'\x02'), '\t', E'\t'), '\r', E'\r'), E'\x02', '\')
             AS cell
      FROM texts JOIN got USING (line),
           unnest(string_to_array(:'pieces', ' '), string_to_array(cells, E'\t')) AS cell (piece, escaped);

-- Each row of this view is a question, how often it was asked, and how often the answers differ.
CREATE VIEW comparison AS
SELECT 'lines' AS question, count(*) AS asked, count(*) - 100000 AS differ FROM texts
UNION ALL
SELECT 'type', count(*), count(*) FILTER (WHERE fdn_type(t.fdn) IS DISTINCT FROM r.type)
  FROM texts t LEFT JOIN records r ON r.fdn = t.fdn
UNION ALL
SELECT 'kind', count(*), count(*) FILTER (WHERE (fdn_kind(t.fdn) IS NULL) <> (r.type IS NULL))
  FROM texts t LEFT JOIN records r ON r.fdn = t.fdn
UNION ALL
SELECT 'record', count(*), count(*) FILTER (WHERE fdn_record(fdn) IS DISTINCT FROM record) FROM records
UNION ALL
SELECT 'field', count(*), count(*) FILTER (WHERE fdn_field(fdn, field) IS DISTINCT FROM value) FROM fields
UNION ALL
SELECT 'problem', count(problem), count(*) FILTER (WHERE fdn_problem(fdn) IS DISTINCT FROM problem)
  FROM texts LEFT JOIN problems USING (line)
UNION ALL
-- kxdu leaves the cell of a missing piece empty, and keeps a number that says "none".
SELECT 'get', count(*), count(*) FILTER (WHERE coalesce(fdn_get(fdn, piece), '') <>
           CASE WHEN piece NOT IN ('PP:3', 'MD:1') AND cell ~ '^ *(-1|[+]?4294967295)([^0-9]|$)' THEN '' ELSE cell END)
  FROM cells
UNION ALL
SELECT 'number', count(*), count(*) FILTER (WHERE fdn_number(fdn, piece) IS DISTINCT FROM nullif(cell::integer, -1))
  FROM cells WHERE cell ~ '^-?[0-9]{1,9}$'
UNION ALL
SELECT 'port', count(*), count(*) FILTER (WHERE
           (p.ne, p.shelf, p.slot, p.sub_slot, p.port, p.pp_type, p.fb_type, p.name, p.is_logical) IS DISTINCT FROM
           (nullif((record ->> 'neId')::integer, -1), nullif((record ->> 'shelfId')::integer, -1),
            nullif((record ->> 'slotId')::integer, -1), nullif((record ->> 'subSlotId')::integer, -1),
            nullif((record ->> 'portId')::integer, -1), nullif(nullif((record ->> 'ppType')::integer, 0), -1),
            nullif(nullif((record ->> 'fbType')::integer, 0), -1), nullif(record ->> 'portLabel', ''),
            (record ->> 'isLogical')::boolean))
  FROM records, fdn_port(fdn) AS p WHERE type = 'PortIndex' AND NOT p IS NULL
UNION ALL
SELECT 'FB type', count(coalesce(name, level::text)),
       count(*) FILTER (WHERE fb_name(fb_type) IS DISTINCT FROM name OR fb_level(fb_type) IS DISTINCT FROM level)
  FROM fb;
CREATE TABLE outcome AS SELECT * FROM comparison;
END

psql -c 'SELECT * FROM outcome'
[ "$(psql -Atc 'SELECT count(*) FROM outcome WHERE differ = 0 AND asked > 100')" -eq 10 ]
