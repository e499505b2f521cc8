#!/usr/bin/env bash
# Measures the functions of kx_fdn beside regular expressions over the same 2,000,000 rows, in one cluster and one run.
# Prints the times, and fails if NE and port numbers are not at least 10 times as fast.
#   bench/postgresql.sh
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1-}" != measure ]; then
    scripts/build.sh bindings kx_fdn kxdu
    exec scripts/with-postgresql.sh build/bindings main -- "$0" measure
fi

# The fastest of several rounds counts: other work on the machine makes a query slower, never faster.
psql -q -v ON_ERROR_STOP=1 -c 'CREATE EXTENSION kx_fdn' -c 'CREATE TABLE network (fdn text NOT NULL)'
build/bindings/bin/kxdu sample --identifiers 2000000 |
    psql -q -c "\copy network FROM STDIN WITH (FORMAT csv, DELIMITER E'\x01', QUOTE E'\x02')"
psql -qAt -F ' ' -v ON_ERROR_STOP=1 <<'END' | tee build/postgresql.txt
VACUUM ANALYZE network;
SET max_parallel_workers_per_gather = 0;
CREATE TABLE contest (name text, query text, best double precision, answer text);
INSERT INTO contest VALUES
    ('kx_fdn', $$SELECT (sum(fdn_ne(fdn)), sum(fdn_number(fdn, 'PP:2')))::text FROM network$$),
    ('regular expressions', $$SELECT (sum(substring(fdn from '(?:^|,)NE=(-?[0-9]+)')::int),
        sum(substring(fdn from '(?:^|,)PP=[^,|]*[|][^,|]*[|](-?[0-9]+)')::int))::text FROM network$$),
    ('length(fdn)', 'SELECT sum(length(fdn))::text FROM network');
DO $$
DECLARE
    entry contest;
    begun timestamptz;
    answer text;
BEGIN
    FOR round IN 1..3 LOOP
        FOR entry IN SELECT * FROM contest LOOP
            begun := clock_timestamp();
            EXECUTE entry.query INTO answer;
            UPDATE contest SET answer = measured.answer, best = least(best, measured.seconds)
              FROM (SELECT answer, extract(epoch FROM clock_timestamp() - begun) AS seconds) AS measured
             WHERE name = entry.name;
        END LOOP;
    END LOOP;
END $$;
SELECT name || ': ' || round(best::numeric, 3) || ' s, answer ' || answer FROM contest ORDER BY best;
SELECT 'kx_fdn is ' || round((slow.best / quick.best)::numeric, 1) || ' times as fast'
  FROM contest AS quick, contest AS slow WHERE quick.name = 'kx_fdn' AND slow.name = 'regular expressions';
SELECT 'passed' FROM contest AS quick, contest AS slow
 WHERE quick.name = 'kx_fdn' AND slow.name = 'regular expressions'
   AND slow.best >= 10 * quick.best AND slow.answer = quick.answer;
END
if ! grep -qx passed build/postgresql.txt; then
    echo "bench: kx_fdn is less than 10 times as fast, or the answers differ" >&2
    exit 1
fi
