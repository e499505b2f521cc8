-- Identifiers in tables: expression indexes, generated columns, constraints, parallel queries.
CREATE TABLE port_alarms (
    fdn text CHECK (fdn_problem(fdn) IS NULL),
    ne integer GENERATED ALWAYS AS (fdn_ne(fdn)) STORED
);
INSERT INTO port_alarms SELECT format('NE=%s,FR=1,S=%s,CP=-1,PP=16|1025|%s|', 1 + i % 1000, i % 16, i % 48)
  FROM generate_series(1, 50000) AS i;
INSERT INTO port_alarms VALUES ('NE=x');
CREATE INDEX ON port_alarms (fdn_ne(fdn), fdn_number(fdn, 'PP:2'));
CREATE INDEX ON port_alarms (fdn_get(fdn, 'PP:3')) WHERE fdn_kind(fdn) = 'port';
ANALYZE port_alarms;
EXPLAIN (COSTS OFF) SELECT * FROM port_alarms WHERE fdn_ne(fdn) = 7 AND fdn_number(fdn, 'PP:2') = 6;
SELECT count(*), min(ne), max(ne) FROM port_alarms WHERE fdn_ne(fdn) = 7 AND fdn_number(fdn, 'PP:2') = 6;
SET max_parallel_workers_per_gather = 2;
SET parallel_setup_cost = 0;
SET parallel_tuple_cost = 0;
SET min_parallel_table_scan_size = 0;
EXPLAIN (COSTS OFF) SELECT sum(fdn_ne(fdn)), count((fdn_port(fdn)).name) FROM port_alarms WHERE fdn_under(fdn, 'NE=7');
SELECT count(*), sum(fdn_ne(fdn)), count((fdn_port(fdn)).name) FROM port_alarms WHERE fdn_under(fdn, 'NE=7');
-- From functions of other languages, which keep their own memory.
DO $$
DECLARE
    port fdn_port;
BEGIN
    FOR i IN 1..3 LOOP
        SELECT * INTO port FROM fdn_port(format('NE=%s,PP=16||%s|', i, 2 * i));
        RAISE NOTICE 'NE %, port %', port.ne, port.port;
    END LOOP;
    PERFORM fdn_get('NE=5', 'XY');
EXCEPTION WHEN invalid_parameter_value THEN
    RAISE NOTICE 'caught: %', SQLERRM;
END $$;
